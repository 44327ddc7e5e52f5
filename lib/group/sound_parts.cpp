#include "group/sound_parts.h"

#include <algorithm>
#include <map>
#include <string>
#include <vector>

#include "group/engine_mesh.h"
#include "group/midsides.h"
#include "group/new_nodes.h"
#include "group/sound_moves.h"
#include "mesh/mesh_records.h"
#include "plane/foot.h"
#include "plane/orientation.h"
#include "plane/triangulation.h"

namespace brelan {

namespace {

using Part = std::array<NodeNumber, 4>;  // none behind a triangle

class Divider {
public:
    Divider(Mesh& mesh, Engine& engine, Drawn& drawn, const Drawing& drawing, const CutPlan& plan)
        : mesh_(mesh), engine_(engine), drawn_(drawn), drawing_(drawing), plan_(plan) {}

    std::set<NodeNumber> run(const std::set<NodeNumber>& on_drawing) {
        collect(on_drawing);
        for (const auto& [side, points] : plan_.sides)
            drawn_.divide(side, plan_.between(side.first, side.second));
        for (const auto& [e, segments] : touched_)
            divide(solid_of(mesh_, e), segments);
        for (const auto& [side, points] : plan_.sides) {
            const SideUsers users = users_of(mesh_, engine_, side);
            for (const ElementNumber e : users.joints)
                divide_joint(e);
            for (const ElementNumber e : users.lines)
                divide_line(e);
        }
        return std::move(nodes_);
    }

private:
    // The elements to divide, with the segments that run through them.
    void collect(const std::set<NodeNumber>& on_drawing) {
        for (std::size_t k = 0; k < plan_.met.size(); ++k)
            for (const Solid& solid : plan_.met[k])
                touched_[solid.element].push_back(k);
        for (const auto& [side, points] : plan_.sides)
            for (const ElementNumber e : users_of(mesh_, engine_, side).solids)
                touched_[e];
        for (const auto& [key, nodes] : plan_.inner)
            for (const Solid& solid : solids_with(mesh_, engine_, key.back()))
                if (key_of(solid) == key)
                    touched_[solid.element];
        for (const NodeNumber node : on_drawing)
            for (const Solid& solid : solids_with(mesh_, engine_, node))
                if (is_better_split(outline_of(mesh_, solid)))
                    touched_[solid.element];
    }

    void divide(Solid solid, const std::vector<std::size_t>& segments) {
        // Doubles are divided alike, whatever corner they begin with.
        std::rotate(solid.node.begin(),
                    std::min_element(solid.node.begin(), solid.node.begin() + solid.count),
                    solid.node.begin() + solid.count);
        const CornerKey key = key_of(solid);
        auto found = parts_.find(key);
        if (found == parts_.end())
            found = parts_.emplace(key, parts_of(solid, segments)).first;
        const std::vector<Part>& parts = found->second;
        const ElementNumber first = solid.element;
        for (std::size_t i = 0; i < parts.size(); ++i)
            write(first, i == 0 ? first : add_element_like(mesh_, engine_, first), parts[i]);
    }

    void write(ElementNumber first, ElementNumber e, const Part& part) {
        ask_for_midsides(mesh_, first, e);
        const std::size_t count = part[3].names_one() ? 4 : 3;
        for (std::size_t i = 0; i < count; ++i) {
            const NodeNumber corner = part[(i + 1) % count];
            if (orientation(node_point(mesh_, part[i]), node_point(mesh_, corner),
                            node_point(mesh_, part[(i + 2) % count])) <= 0)
                refuse(first, corner, "cannot be divided into sound parts");  // GCOVR_EXCL_LINE
        }
        set_corners(mesh_, engine_, e, {{part[0], part[1], part[2], part[3]}});
        nodes_.insert(part.begin(), part.begin() + static_cast<std::ptrdiff_t>(count));
    }

    // GCOVR_EXCL_START: what the plan gives can be divided but for the rounding of coordinates, and no deck
    // is known with which that fails. A mesh with a hole in it must not come out then.
    [[noreturn]] void refuse(ElementNumber e, NodeNumber node, const std::string& why) const {
        const Point at = node_point(mesh_, node);
        fail(place_in_drawing(engine_.group, drawing_, at) + "element " + to_string(e) + " at " +
             text_of(at) + " " + why);
    }
    // GCOVR_EXCL_STOP

    // The parts of a solid; none where it stays as it is.
    std::vector<Part> parts_of(const Solid& solid, const std::vector<std::size_t>& segments) {
        std::vector<NodeNumber> nodes = plan_.ring_of(solid);
        const std::size_t ring = nodes.size();
        if (const auto inner = plan_.inner.find(key_of(solid)); inner != plan_.inner.end())
            nodes.insert(nodes.end(), inner->second.begin(), inner->second.end());
        std::vector<Chain> chains;
        chains.reserve(segments.size());
        for (const std::size_t k : segments)
            chains.push_back(chain_along(drawing_.segments[k], nodes, ring));
        const bool is_touched =
            nodes.size() != solid.count || is_better_split(outline_of(mesh_, solid)) ||
            std::any_of(chains.begin(), chains.end(), [](const Chain& chain) { return chain.is_inside; });
        if (!is_touched)
            return {};
        Triangulation triangulation(node_points(mesh_, std::span(nodes).first(ring)));
        for (std::size_t i = ring; i < nodes.size(); ++i)
            if (triangulation.add_inside(node_point(mesh_, nodes[i])) < 0)
                refuse(solid.element, nodes[i], "does not hold the point drawn in it");  // GCOVR_EXCL_LINE
        for (const Chain& chain : chains)
            for (std::size_t i = 1; i < chain.places.size(); ++i) {
                const NodeNumber from = nodes[static_cast<std::size_t>(chain.places[i - 1])];
                if (!triangulation.fix(chain.places[i - 1], chain.places[i], drawing_.tolerance))
                    refuse(solid.element, from, "cannot be divided along the line");  // GCOVR_EXCL_LINE
            }
        triangulation.improve();
        for (std::size_t i = nodes.size(); i < triangulation.points().size(); ++i)
            nodes.push_back(
                add_inner_node(mesh_, engine_, triangulation.points()[i], solid.node, Codes::of_all));
        for (const auto& [a, b] : triangulation.fixed_edges())
            drawn_.sides.insert(
                side_between(nodes[static_cast<std::size_t>(a)], nodes[static_cast<std::size_t>(b)]));
        std::vector<Part> parts;
        for (const Triangulation::Part& part : triangulation.parts()) {
            Part named{};
            for (std::size_t i = 0; i < 4 && part[i] >= 0; ++i)
                named[i] = nodes[static_cast<std::size_t>(part[i])];
            parts.push_back(named);
        }
        return parts;
    }

    // The nodes of a solid that lie on a segment, by their places in its ring and behind it.
    struct Chain {
        std::vector<int> places;
        bool is_inside = false;  // not along its sides alone
    };
    Chain chain_along(const DrawnSegment& segment, const std::vector<NodeNumber>& nodes, std::size_t ring) {
        std::vector<std::pair<double, int>> on;
        for (std::size_t i = 0; i < nodes.size(); ++i) {
            const Point at = node_point(mesh_, nodes[i]);
            if (!segment.reach.holds(at))
                continue;
            const Foot foot = foot_on(segment.from, segment.to, at);
            if (foot.distance < drawing_.tolerance) {
                on.emplace_back(foot.share, static_cast<int>(i));
                drawn_.lines.try_emplace(nodes[i], segment.from, segment.to);
            }
        }
        std::sort(on.begin(), on.end());
        Chain chain;
        for (std::size_t i = 0; i < on.size(); ++i) {
            chain.places.push_back(on[i].second);
            if (i == 0)
                continue;
            const auto a = static_cast<std::size_t>(on[i - 1].second);
            const auto b = static_cast<std::size_t>(on[i].second);
            if (a < ring && b < ring && ((a + 1) % ring == b || (b + 1) % ring == a))
                drawn_.sides.insert(side_between(nodes[a], nodes[b]));
            else
                chain.is_inside = true;
        }
        return chain;
    }

    // I1-I2 and I4-I3 lie across each other and have as many new nodes each.
    void divide_joint(ElementNumber e) {
        const Corners c = corners_of(mesh_, e);
        const std::vector<NodeNumber> near = plan_.between(c.n[0], c.n[1]),
                                      far = plan_.between(c.n[3], c.n[2]);
        if (near.empty())
            return;
        NodeNumber a = c.n[0], d = c.n[3];
        ElementNumber part = e;
        for (std::size_t i = 0; i <= near.size(); ++i) {
            const bool last = i == near.size();
            const NodeNumber b = last ? c.n[1] : near[i], other = last ? c.n[2] : far[i];
            if (i > 0)
                part = add_element_like(mesh_, engine_, e);
            set_corners(mesh_, engine_, part, {{a, b, other, d}});
            a = b;
            d = other;
        }
    }

    void divide_line(ElementNumber e) {
        const ElementRecord element = load_element(mesh_, e);
        const NodeNumber from = element.words.corner_1, to = element.words.corner_2;
        std::vector<NodeNumber> ends = plan_.between(from, to);
        ends.push_back(to);
        NodeNumber last = from;
        for (std::size_t i = 0; i < ends.size(); ++i) {
            const ElementNumber part = i == 0 ? e : add_element(mesh_, engine_);
            ElementRecord record = element;
            const ElementRecord ended = two_node_element(last, ends[i], element.words.material);
            record.words = ended.words;
            store_element(mesh_, part, static_cast<std::int8_t>(mesh_.type[e]), record);
            mesh_.type[part] = mesh_.type[e];
            engine_.side_sign[part] = engine_.side_sign[e];
            engine_.workable[part] = engine_.workable[e].names_one() ? part : ElementNumber{};
            note_element(mesh_, engine_, part);
            last = ends[i];
        }
    }

    Mesh& mesh_;
    Engine& engine_;
    Drawn& drawn_;
    const Drawing& drawing_;
    const CutPlan& plan_;
    std::map<ElementNumber, std::vector<std::size_t>> touched_;
    std::map<CornerKey, std::vector<Part>> parts_;
    std::set<NodeNumber> nodes_;  // of what was divided
};

}  // namespace

ElementNumber add_element_like(Mesh& mesh, Engine& engine, ElementNumber first) {
    const ElementNumber e = add_element(mesh, engine);
    copy_attributes(mesh, first, e);
    mesh.words[e].material = mesh.words[first].material;
    mesh.type[e] = mesh.type[first];
    engine.workable[e] = engine.workable[first].names_one() ? e : ElementNumber{};
    return e;
}

std::set<NodeNumber> divide_elements(Mesh& mesh, Engine& engine, Drawn& drawn, const Drawing& drawing,
                                     const CutPlan& plan, const std::set<NodeNumber>& on_drawing) {
    return Divider(mesh, engine, drawn, drawing, plan).run(on_drawing);
}

}  // namespace brelan
