#include "formats/inp_joints.h"

#include <fmt/core.h>

#include <algorithm>
#include <cmath>
#include <numeric>
#include <tuple>

#include "analysis/geometry.h"
#include "cli/exit_status.h"

namespace brelan::tool {

namespace {

// A node of a joint's line, its twin, and the share of the joint's length that they stand for.
struct TwinNodes {
    Number node = 0, twin = 0;
    double share = 0.0;
};

// I1 and I2 lie on the line, I3 is the twin of I2, I4 that of I1.
std::vector<TwinNodes> twins_of(const MeshLists& mesh, const Element& e, const SideMiddles& middles) {
    if (e.corner_count() != 4)
        throw Failure(fmt::format("{}: expected joints of four nodes, but joint {} has three", mesh.file,
                                  e.number.value));
    const Number middle = middles.of(e.corner(0), e.corner(1)), other = middles.of(e.corner(2), e.corner(3));
    if ((middle == 0) != (other == 0))
        throw Failure(fmt::format("{}: expected midside nodes on both sides of joint {} or on none",
                                  mesh.file, e.number.value));
    const double end = middle == 0 ? 1.0 / 2.0 : 1.0 / 6.0;
    std::vector<TwinNodes> twins{{e.corner(0), e.corner(3), end}, {e.corner(1), e.corner(2), end}};
    if (middle != 0)
        twins.push_back({middle, other, 4.0 / 6.0});
    // A joint that ends in the ground closes there: its last node is its own twin.
    std::erase_if(twins, [](const TwinNodes& pair) { return pair.node == pair.twin; });
    return twins;
}

bool is_held(const MeshLists& mesh, Number node, int direction) {
    return mesh.nodes[static_cast<std::size_t>(mesh.node_place(node))]
               .codes[static_cast<std::size_t>(direction - 1)] != 0;
}

// Nodes that twins tie together, each with all others of its place.
std::vector<std::vector<Number>> tied_nodes(const std::vector<TwinNodes>& twins) {
    std::map<Number, Number> leader;
    const auto leader_of = [&](Number node) {
        leader.try_emplace(node, node);
        while (leader[node] != node)
            node = leader[node];
        return node;
    };
    for (const TwinNodes& pair : twins) {
        const Number a = leader_of(pair.node), b = leader_of(pair.twin);
        leader[std::max(a, b)] = std::min(a, b);
    }
    std::map<Number, std::vector<Number>> groups;
    for (const auto& [node, unused] : leader)
        groups[leader_of(node)].push_back(node);
    std::vector<std::vector<Number>> tied;
    tied.reserve(groups.size());
    for (auto& [first, nodes] : groups)
        tied.push_back(std::move(nodes));
    return tied;
}

void add_ties(InpJoints& joints, const MeshLists& mesh, const std::vector<TwinNodes>& twins) {
    for (const std::vector<Number>& nodes : tied_nodes(twins))
        for (const int direction : {1, 2}) {
            const auto held =
                std::ranges::find_if(nodes, [&](Number n) { return is_held(mesh, n, direction); });
            const Number leader = held != nodes.end() ? *held : nodes.front();
            for (const Number node : nodes)
                if (node != leader && !is_held(mesh, node, direction))
                    joints.ties.push_back({node, leader, direction});
        }
}

// Of length 1; where the line has none that of the twins.
Position direction_of(const MeshLists& mesh, const Element& e) {
    for (const auto& [from, to] : {std::pair{0, 1}, std::pair{3, 2}}) {
        const Position a = mesh.point(mesh.node_place(e.corner(from))),
                       b = mesh.point(mesh.node_place(e.corner(to)));
        if (const double length = distance(a, b); length > 0.0)
            return {(b.x - a.x) / length, (b.y - a.y) / length};
    }
    throw Failure(
        fmt::format("{}: expected joints with a length, but joint {} has none", mesh.file, e.number.value));
}

double length_of(const MeshLists& mesh, const Element& e) {
    const auto side = [&](int a, int b) {
        return distance(mesh.point(mesh.node_place(e.corner(a))), mesh.point(mesh.node_place(e.corner(b))));
    };
    return std::max(side(0, 1), side(3, 2));
}

class SpringMaker {
public:
    SpringMaker(InpJoints& joints, const MeshLists& mesh, const InpOptions& options)
        : joints_(joints), mesh_(mesh), options_(options) {
        for (const Element& e : mesh.elements)
            joints.next_number = std::max(joints.next_number, e.number.value + 1);
    }

    void add(const Element& e, const std::vector<TwinNodes>& twins) {
        const Position along = direction_of(mesh_, e);
        const double length =
            length_of(mesh_, e) * (mesh_.kind == LayoutKind::displacement && e.thickness > 0.0F
                                       ? static_cast<double>(e.thickness)
                                       : 1.0);
        const PropertyRow* row = options_.materials.find(ElementClass::joint, e.words.material.value);
        const double across_stiffness = row != nullptr && row->across ? *row->across : options_.joints.across,
                     along_stiffness = row != nullptr && row->along ? *row->along : options_.joints.along;
        for (const TwinNodes& pair : twins)
            for (const auto& [direction, stiffness] :
                 {std::pair{1, across_stiffness}, std::pair{2, along_stiffness}})
                add(e, along, {joints_.next_number++, pair.node, pair.twin}, direction,
                    stiffness * length * pair.share);
    }

private:
    void add(const Element& e, const Position& along, const InpSpring& spring, int direction,
             double stiffness) {
        const auto system = std::ranges::find_if(joints_.systems,
                                                 [&](const Position& known) {
                                                     return known.x == along.x && known.y == along.y;
                                                 }) -
                            joints_.systems.begin();
        if (static_cast<std::size_t>(system) == joints_.systems.size())
            joints_.systems.push_back(along);
        const auto [found, is_new] = places_.try_emplace(
            {static_cast<std::size_t>(system), direction, stiffness}, joints_.springs.size());
        if (is_new)
            joints_.springs.push_back({static_cast<std::size_t>(system), direction, stiffness, {}});
        joints_.springs[found->second].springs.push_back(spring);
        joints_.of_joint[e.number.value].push_back(spring.number);
    }

    InpJoints& joints_;
    const MeshLists& mesh_;
    const InpOptions& options_;
    std::map<std::tuple<std::size_t, int, double>, std::size_t> places_;  // in the lists of springs
};

}  // namespace

InpJoints inp_joints(const MeshLists& mesh, const InpOptions& options, const SideMiddles& middles) {
    InpJoints joints;
    SpringMaker springs(joints, mesh, options);
    std::vector<TwinNodes> all;
    for (const Element& e : mesh.elements) {
        if (e.of != ElementClass::joint)
            continue;
        if (options.joints.form == JointForm::refused)
            throw Failure(fmt::format(
                "{}: expected --joints tie or --joints spring:KN,KS for the joints of the mesh ({}), which "
                "the format does not have",
                mesh.file, mesh.count(ElementClass::joint)));
        const std::vector<TwinNodes> twins = twins_of(mesh, e, middles);
        all.insert(all.end(), twins.begin(), twins.end());
        if (options.joints.form == JointForm::springs)
            springs.add(e, twins);
    }
    if (options.joints.form == JointForm::tied)
        add_ties(joints, mesh, all);
    return joints;
}

}  // namespace brelan::tool
