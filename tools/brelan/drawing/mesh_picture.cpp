#include "drawing/mesh_picture.h"

#include <fmt/core.h>

#include <algorithm>
#include <cmath>
#include <iterator>
#include <map>
#include <set>
#include <utility>

#include "analysis/doubles.h"
#include "analysis/joined_nodes.h"
#include "drawing/deck_overlay.h"
#include "drawing/frame.h"
#include "drawing/hatch.h"
#include "drawing/page.h"
#include "drawing/supports.h"
#include "drawing/tangle.h"

namespace brelan::tool {

namespace {

constexpr double LEFT = 62.0, TOP = 40.0, BOTTOM = 40.0, RIGHT = 16.0, LEGEND = 190.0;  // margins
constexpr double TEXT = 12.0;

constexpr Stroke JOINT_BAND{JOINT_COLOR, 6.0}, JOINT_MIDDLE{JOINT_CORE, 1.6};
constexpr Stroke BEAM_STROKE{BEAM_COLOR, 3.0};

Stroke truss_stroke() {
    return {TRUSS_COLOR, 2.2, {9.0, 4.0}};
}

class Builder {
public:
    Builder(const Mesh& mesh, const PictureOptions& options)
        : mesh_(mesh),
          options_(options),
          corners_(corners_of(mesh)),
          page_(options.window ? *options.window : whole(), options.axes ? LEFT : RIGHT, TOP,
                options.width - (options.axes ? LEFT : RIGHT) - (options.legend ? LEGEND : RIGHT)) {}

    Picture build() {
        Scene& scene = picture_.scene;
        scene.area = page_.area();
        scene.width = options_.width;
        scene.height = std::ceil(scene.area.high.y + (options_.axes ? BOTTOM : RIGHT));
        scene.title = picture_text(title_of(mesh_, options_));
        sort_elements();
        add_materials();
        add_sides();
        add_joints();
        add_line_elements();
        if (options_.codes)
            add_supports(scene, mesh_, page_);
        add_shapes(scene, options_.shapes, page_);
        add_faults();
        add_numbers();
        add_frame(scene, page_, options_.axes);
        if (options_.legend)
            add_legend();
        return std::move(picture_);
    }

private:
    static std::size_t at(std::int32_t place) { return static_cast<std::size_t>(place); }

    Bounds whole() const {
        Bounds b = mesh_.bounds();
        constexpr double ROOM = 0.03;  // for supports and thick lines
        const double room = ROOM * (b.extent() > 0.0 ? b.extent() : 1.0);
        return {{b.low.x - room, b.low.y - room}, {b.high.x + room, b.high.y + room}};
    }

    void add(Path path) { picture_.scene.items.emplace_back(std::move(path)); }
    void add(Labels labels) { picture_.scene.items.emplace_back(std::move(labels)); }

    // --- elements --------------------------------------------------------------------------------

    void sort_elements() {
        for (std::size_t i = 0; i < corners_.size(); ++i)
            if (corners_[i].complete())
                groups_[{mesh_.elements[i].of, mesh_.elements[i].words.MATNO}].push_back(
                    static_cast<std::int32_t>(i));
        tangled_ = tangled_elements(mesh_, corners_);
        if (const auto count = std::count(tangled_.begin(), tangled_.end(), true); count > 0)
            picture_.remarks.push_back(fmt::format(
                "{} elements are left out: they reach across the others; see brelan info", count));
    }

    // Those of a group that are drawn.
    std::vector<std::int32_t> drawn(const std::vector<std::int32_t>& elements) const {
        std::vector<std::int32_t> list;
        std::copy_if(elements.begin(), elements.end(), std::back_inserter(list),
                     [&](std::int32_t e) { return !tangled_[at(e)]; });
        return list;
    }

    // Doubles, as the stages of an excavation are, are hatched over the element that they stand on.
    void add_materials() {
        std::vector<bool> over(corners_.size(), false);
        const auto closed = nodes_with_joints_closed(mesh_, corners_);
        for (const auto& [later, earlier] : solid_sets(mesh_, corners_, closed).doubles)
            over[at(later)] = true;
        for (const bool doubles : {false, true})
            for (const auto& [key, elements] : groups_) {
                if (key.first != ElementClass::solid)
                    continue;
                std::vector<std::int32_t> part;
                for (const std::int32_t e : drawn(elements))
                    if (over[at(e)] == doubles)
                        part.push_back(e);
                Polylines rim = page_.on_page(region_outline(mesh_, corners_, part));
                const Rgb color = material_color(key.second);
                constexpr double SPACING = 8.0, WIDTH = 3.2;
                if (!doubles)
                    add({fmt::format("material-{}", key.second), std::move(rim), true, color});
                else
                    add({fmt::format("material-{}-doubles", key.second), hatch(rim, SPACING, page_.area()),
                         false, std::nullopt, Stroke{color, WIDTH}});
                has_doubles_ = has_doubles_ || (doubles && !part.empty());
            }
    }

    // Sides of elements, unless they would cover the picture; outlines of the materials over them.
    void add_sides() {
        std::vector<std::int32_t> solids;
        double length = 0.0;
        for (const auto& [key, elements] : groups_)
            if (key.first == ElementClass::solid) {
                const std::vector<std::int32_t> part = drawn(elements);
                solids.insert(solids.end(), part.begin(), part.end());
            }
        for (const std::int32_t e : solids)
            length += std::sqrt(std::abs(signed_area(mesh_, corners_[at(e)])));
        const double side =
            solids.empty() ? 0.0 : length / static_cast<double>(solids.size()) * page_.scale();
        constexpr double TOO_SMALL = 1.5, SMALL = 10.0;
        if (options_.lines && side >= TOO_SMALL) {
            const double slack = 0.02 / page_.scale();
            const double share = std::min(1.0, side / SMALL);
            add({"sides", page_.on_page(element_sides(mesh_, corners_, solids, slack)), false, std::nullopt,
                 Stroke{MESH_LINE, 0.25 + 0.45 * share, {}, 0.35 + 0.65 * share}});
        } else if (options_.lines && !solids.empty()) {
            picture_.remarks.push_back(
                "the sides of the elements are left out: they lie too close; see --window");
        }
        Polylines rims;
        for (const auto& [key, elements] : groups_)
            if (key.first == ElementClass::solid) {
                const Polylines rim = region_outline(mesh_, corners_, drawn(elements));
                for (const std::size_t end : rim.ends)
                    rims.ends.push_back(rims.points.size() + end);
                rims.points.insert(rims.points.end(), rim.points.begin(), rim.points.end());
            }
        add({"regions", page_.on_page(std::move(rims)), true, std::nullopt, Stroke{REGION_LINE, 1.1}});
    }

    // A band along the middle of a joint, wide enough to be seen when the joint has no width; its own area
    // where that shows.
    void add_joints() {
        for (const auto& [key, elements] : groups_) {
            if (key.first != ElementClass::joint)
                continue;
            Polylines middles, areas;
            for (const std::int32_t e : drawn(elements)) {
                const Corners& c = corners_[at(e)];
                const JointPairs pairs = joint_pairs(mesh_, c);
                for (const auto& pair : pairs.pair) {
                    const Point a = mesh_.point(c[pair[0]]), b = mesh_.point(c[pair[1]]);
                    middles.points.push_back(page_.on_page(Point{(a.x + b.x) / 2.0, (a.y + b.y) / 2.0}));
                }
                middles.end_line();
                for (int k = 0; k < c.count; ++k)
                    areas.points.push_back(page_.on_page(mesh_.point(c[k])));
                areas.end_line();
            }
            const std::string id = fmt::format("joint-{}", key.second);
            add({id + "-area", std::move(areas), true, JOINT_COLOR});
            add({id, middles, false, std::nullopt, JOINT_BAND});
            add({id + "-middle", std::move(middles), false, std::nullopt, JOINT_MIDDLE});
        }
    }

    void add_line_elements() {
        for (const auto& [key, elements] : groups_) {
            if (key.first != ElementClass::beam && key.first != ElementClass::truss)
                continue;
            const bool beam = key.first == ElementClass::beam;
            Polylines lines, ends;
            for (const std::int32_t e : elements)
                for (int k = 0; k < 2; ++k) {
                    const Point p = page_.on_page(mesh_.point(corners_[at(e)][k]));
                    lines.points.push_back(p);
                    ends.points.push_back(p);
                    ends.end_line();
                    if (k == 1)
                        lines.end_line();
                }
            const std::string id = fmt::format("{}-{}", name_of(key.first), key.second);
            add({id, std::move(lines), false, std::nullopt, beam ? BEAM_STROKE : truss_stroke()});
            constexpr double DOT = 5.0;
            if (!beam)
                add({id + "-ends", std::move(ends), false, std::nullopt, Stroke{TRUSS_COLOR, DOT}});
        }
    }

    // --- over the mesh ---------------------------------------------------------------------------

    void add_faults() {
        if (options_.faults == nullptr)
            return;
        constexpr int CORNERS = 16;
        constexpr double RADIUS = 9.0, CELL = 3.0;  // one ring in a square so large
        Polylines rings;
        std::set<std::pair<std::int64_t, std::int64_t>> taken;
        for (const Finding& finding : options_.faults->findings)
            for (const Place& place : finding.places) {
                if (!finding.unsound || finding.check == Check::missing_node ||
                    finding.check == Check::number_used_twice)
                    continue;
                const Point p = page_.on_page(place.at);
                if (!taken.insert({std::llround(p.x / CELL), std::llround(p.y / CELL)}).second)
                    continue;
                for (int k = 0; k < CORNERS; ++k) {
                    const double angle = 2.0 * 3.14159265358979 * k / CORNERS;
                    rings.points.push_back({p.x + RADIUS * std::cos(angle), p.y + RADIUS * std::sin(angle)});
                }
                rings.end_line();
            }
        add({"faults", std::move(rings), true, std::nullopt, Stroke{FAULT_COLOR, 2.2}});
    }

    void add_numbers() {
        constexpr std::size_t MOST = 4000;
        Labels nodes{"node-numbers", {}, 9.0, Anchor::start, INK, false, true};
        for (std::size_t n = 0; options_.node_numbers && n < mesh_.nodes.size(); ++n) {
            const Point p = page_.on_page(mesh_.point(static_cast<std::int32_t>(n)));
            if (page_.shows(p))
                nodes.labels.push_back({{p.x + 2.0, p.y - 2.0}, std::to_string(mesh_.nodes[n].NODE)});
        }
        Labels elements{"element-numbers", {}, 9.0, Anchor::middle, BEAM_COLOR, true, true};
        for (std::size_t i = 0; options_.element_numbers && i < corners_.size(); ++i) {
            if (!corners_[i].complete())
                continue;
            const Point p = page_.on_page(middle(mesh_, corners_[i]));
            if (page_.shows(p))
                elements.labels.push_back({{p.x, p.y + 3.0}, std::to_string(mesh_.elements[i].NEL)});
        }
        for (Labels* labels : {&nodes, &elements})
            if (labels->labels.size() > MOST)
                picture_.remarks.push_back(
                    fmt::format("{} numbers are left out: there is no room for more than {}; see --window",
                                labels->labels.size(), MOST));
            else
                add(std::move(*labels));
    }

    // --- frame and legend ------------------------------------------------------------------------

    void add_legend() {
        constexpr double STEP = 19.0, SAMPLE = 26.0;
        const double x = page_.area().high.x + 16.0;
        double y = TOP + 8.0;
        Labels names{"legend", {}, TEXT, Anchor::start};
        names.clipped = false;
        const auto room = [&] { return y + STEP < picture_.scene.height - 12.0; };
        std::size_t left_out = 0;
        for (const auto& [key, elements] : groups_) {
            if (!room()) {
                ++left_out;
                continue;
            }
            std::string name = group_name(key.first, key.second);
            if (key.first == ElementClass::truss && mesh_.flow_lines)
                name = "flow line " + std::to_string(key.second);
            names.labels.push_back(
                {{x + SAMPLE + 8.0, y + 4.0}, fmt::format("{} ({})", name, elements.size())});
            add_sample(key.first, key.second, {x, y}, SAMPLE);
            y += STEP;
        }
        if (options_.codes)
            for (const SupportSample& sample : support_samples(mesh_)) {
                if (!room())
                    break;
                add_support_symbol(picture_.scene, sample.symbol, {x + SAMPLE / 2.0, y});
                names.labels.push_back({{x + SAMPLE + 8.0, y + 4.0}, sample.name});
                y += STEP;
            }
        if (!options_.shapes.empty() && room()) {
            add_legend_line({x, y}, SAMPLE, shape_stroke(ShapeRole::outline));
            names.labels.push_back({{x + SAMPLE + 8.0, y + 4.0}, "outline of the deck"});
            y += STEP;
        }
        if (left_out > 0)
            names.labels.push_back({{x, y + 4.0}, fmt::format("and {} more", left_out)});
        else if (has_doubles_ && room())
            names.labels.push_back({{x, y + 4.0}, "hatched: doubles (stages)"});
        add(std::move(names));
    }

    void add_sample(ElementClass of, std::int32_t material, const Point& p, double length) {
        switch (of) {
            case ElementClass::solid: {
                Path box{"", {}, true, material_color(material), Stroke{REGION_LINE, 0.8}, false};
                box.lines.points = {
                    {p.x, p.y - 6.0}, {p.x + length, p.y - 6.0}, {p.x + length, p.y + 6.0}, {p.x, p.y + 6.0}};
                box.lines.end_line();
                add(std::move(box));
                return;
            }
            case ElementClass::joint:
                add_legend_line(p, length, JOINT_BAND);
                add_legend_line(p, length, JOINT_MIDDLE);
                return;
            case ElementClass::beam:
                add_legend_line(p, length, BEAM_STROKE);
                return;
            case ElementClass::truss:
                add_legend_line(p, length, truss_stroke());
                return;
        }
    }

    void add_legend_line(const Point& p, double length, const Stroke& stroke) {
        Path line{"", {}, false, std::nullopt, stroke, false};
        line.lines.points = {p, {p.x + length, p.y}};
        line.lines.end_line();
        add(std::move(line));
    }

    const Mesh& mesh_;
    const PictureOptions& options_;
    std::vector<Corners> corners_;
    Page page_;
    Picture picture_;
    std::map<std::pair<ElementClass, std::int32_t>, std::vector<std::int32_t>> groups_;  // places of elements
    std::vector<bool> tangled_;  // by place: not drawn
    bool has_doubles_ = false;
};

}  // namespace

std::string title_of(const Mesh& mesh, const PictureOptions& options) {
    return options.title.empty() ? std::filesystem::path(mesh.file).filename().string() : options.title;
}

Picture picture_of(const Mesh& mesh, const PictureOptions& options) {
    return Builder(mesh, options).build();
}

}  // namespace brelan::tool
