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
#include "drawing/legend.h"
#include "drawing/numbers.h"
#include "drawing/page.h"
#include "drawing/supports.h"
#include "drawing/tangle.h"

namespace brelan::tool {

namespace {

constexpr double LEFT = 62.0, TOP = 40.0, BOTTOM = 40.0, RIGHT = 16.0, LEGEND = 190.0;  // margins
constexpr double EDGE = 8.0;  // of the page, free of legend
constexpr double TEXT = 12.0;

// Strokes of the middle line of an element, the lower one first.
std::vector<Stroke> line_strokes(ElementClass of, std::int32_t material) {
    const Rgb color = material_color(of, material);
    switch (of) {
        case ElementClass::joint:
            return {{color, 6.0}, {JOINT_CORE, 1.6}};
        case ElementClass::beam:
            return {{color, 3.0}};
        case ElementClass::truss:
            return {{color, 2.2, {9.0, 4.0}}};
        case ElementClass::solid:
            break;
    }
    return {};
}

class Builder {
public:
    Builder(const MeshLists& mesh, const PictureOptions& options)
        : mesh_(mesh),
          options_(options),
          corners_(corners_of(mesh)),
          page_(options.window ? *options.window : whole(), options.axes ? LEFT : RIGHT, TOP,
                options.width - (options.axes ? LEFT : RIGHT) -
                    (options.legend ? LEGEND + room_for_titles(mesh) : RIGHT)) {}

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
            add_supports(scene, mesh_, corners_, page_);
        if (options_.step)
            add_step(scene, *options_.step, page_);
        const std::vector<ShapeMark> marks = place_marks(options_.shapes, page_);
        add_shapes(scene, options_.shapes, marks, page_);
        add_faults();
        add_numbers();
        add_frame(scene, page_, options_.axes);
        if (options_.legend) {
            const double left = scene.area.low.x;
            const double end =
                std::max(add_legend(), add_titles(scene, marks, left, scene.height, scene.area.width()));
            scene.height = end > scene.height ? std::ceil(end + EDGE) : scene.height;
        }
        return std::move(picture_);
    }

private:
    static std::size_t at(std::int32_t place) { return static_cast<std::size_t>(place); }

    Bounds whole() const {
        Bounds b = (options_.step ? *options_.step->whole : mesh_).bounds();
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
                groups_[{mesh_.elements[i].of, mesh_.elements[i].words.material.value}].push_back(
                    static_cast<std::int32_t>(i));
        for (const auto& [key, elements] : groups_)
            if (const auto count =
                    std::count_if(elements.begin(), elements.end(), [&](std::int32_t e) { return shows(e); });
                count > 0)
                shown_[key] = static_cast<std::size_t>(count);
        tangled_ = tangled_elements(mesh_, corners_);
        if (const auto count = std::count(tangled_.begin(), tangled_.end(), true); count > 0)
            picture_.remarks.push_back(fmt::format(
                "{} elements are left out: they reach across the others; see brelan info", count));
    }

    bool shows(std::int32_t e) const { return shows_in(mesh_, corners_[at(e)], page_.window()); }

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
                const Rgb color = material_color(key.first, key.second);
                constexpr double SPACING = 8.0, WIDTH = 3.2;
                if (!doubles)
                    add({fmt::format("material-{}", key.second), std::move(rim), true, color});
                else
                    add({fmt::format("material-{}-doubles", key.second), hatch(rim, SPACING, page_.area()),
                         false, std::nullopt, Stroke{color, WIDTH}});
                has_doubles_ =
                    has_doubles_ || (doubles && std::any_of(part.begin(), part.end(),
                                                            [&](std::int32_t e) { return shows(e); }));
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
                const CornerPlaces& c = corners_[at(e)];
                const JointPairs pairs = joint_pairs(mesh_, c);
                for (const auto& pair : pairs.pair) {
                    const Position a = mesh_.point(c[pair[0]]), b = mesh_.point(c[pair[1]]);
                    middles.points.push_back(page_.on_page(Position{(a.x + b.x) / 2.0, (a.y + b.y) / 2.0}));
                }
                middles.end_line();
                for (int k = 0; k < c.count; ++k)
                    areas.points.push_back(page_.on_page(mesh_.point(c[k])));
                areas.end_line();
            }
            const std::string id = fmt::format("joint-{}", key.second);
            const std::vector<Stroke> strokes = line_strokes(key.first, key.second);
            add({id + "-area", std::move(areas), true, strokes.front().color});
            add({id, middles, false, std::nullopt, strokes.front()});
            add({id + "-middle", std::move(middles), false, std::nullopt, strokes.back()});
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
                    const Position p = page_.on_page(mesh_.point(corners_[at(e)][k]));
                    lines.points.push_back(p);
                    ends.points.push_back(p);
                    ends.end_line();
                    if (k == 1)
                        lines.end_line();
                }
            const std::string id = fmt::format("{}-{}", name_of(key.first), key.second);
            const Stroke stroke = line_strokes(key.first, key.second).front();
            add({id, std::move(lines), false, std::nullopt, stroke});
            constexpr double DOT = 5.0;
            if (!beam)
                add({id + "-ends", std::move(ends), false, std::nullopt, Stroke{stroke.color, DOT}});
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
                const Position p = page_.on_page(place.at);
                if (!taken.insert({std::llround(p.x / CELL), std::llround(p.y / CELL)}).second)
                    continue;
                add_ring(rings, p, RADIUS, CORNERS);
            }
        add({"faults", std::move(rings), true, std::nullopt, Stroke{FAULT_COLOR, 2.2}});
    }

    void add_numbers() {
        constexpr std::size_t MOST = 4000;
        constexpr double SIZE = 9.0, DIGIT = 0.556 * SIZE;  // the width of a digit
        Labels nodes{.id = "node-numbers", .labels = {}, .size = SIZE, .halo = true};
        const std::vector<std::int32_t> places =
            options_.node_numbers ? node_number_places(mesh_, corners_) : std::vector<std::int32_t>();
        for (std::size_t n = 0; n < places.size(); ++n) {
            const Position p = page_.on_page(mesh_.point(static_cast<std::int32_t>(n)));
            if (!page_.shows(p))
                continue;
            std::string text = std::to_string(mesh_.nodes[n].number.value);
            const double width = DIGIT * static_cast<double>(text.size());
            nodes.labels.push_back({beside(p, places[n], width, SIZE), std::move(text)});
        }
        Labels elements{.id = "element-numbers",
                        .labels = {},
                        .size = SIZE,
                        .anchor = Anchor::middle,
                        .color = ELEMENT_NUMBER,
                        .bold = true,
                        .halo = true};
        const std::vector<std::int32_t> lines =
            options_.element_numbers ? element_number_lines(mesh_, corners_) : std::vector<std::int32_t>();
        for (std::size_t i = 0; i < lines.size(); ++i) {
            if (!corners_[i].complete())
                continue;
            const Position p = page_.on_page(middle(mesh_, corners_[i]));
            if (page_.shows(p))
                elements.labels.push_back(
                    {{p.x, p.y + 3.0 + SIZE * lines[i]}, std::to_string(mesh_.elements[i].number.value)});
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

    // What shows on the page, beside the drawing. The y under it.
    double add_legend() {
        constexpr double STEP = 19.0, SAMPLE = 26.0;
        constexpr std::size_t MOST = 300;
        const double x = page_.area().high.x + 16.0;
        double y = TOP + 8.0;
        Labels names{"legend", {}, TEXT, Anchor::start};
        names.clipped = false;
        const auto name_it = [&](double indent, std::string text) {
            names.labels.push_back({{x + indent, y + 4.0}, std::move(text)});
            y += STEP;
        };
        for (const auto& [key, count] : shown_) {
            if (names.labels.size() == MOST)
                break;
            const std::string name = legend_text(mesh_.group_title(key.first, key.second));
            add_sample(key.first, key.second, {x, y}, SAMPLE);
            name_it(SAMPLE + 8.0, fmt::format("{} ({})", name, count));
        }
        if (shown_.size() > MOST)
            name_it(0.0, fmt::format("and {} more", shown_.size() - MOST));
        if (options_.codes)
            for (const SupportSample& sample : support_samples(mesh_, page_)) {
                add_support_symbol(picture_.scene, sample.symbol, {x + SAMPLE / 2.0, y});
                name_it(SAMPLE + 8.0, sample.name);
            }
        if (!options_.shapes.empty()) {
            add_legend_line({x, y}, SAMPLE, shape_stroke(ShapeRole::outline));
            name_it(SAMPLE + 8.0, "outline of the deck");
        }
        if (has_doubles_)
            name_it(0.0, "hatched: doubles (stages)");
        if (options_.step)
            for (const StepSample& sample : step_samples(*options_.step)) {
                if (sample.stroke)
                    add_legend_line({x, y}, SAMPLE, *sample.stroke);
                name_it(sample.stroke ? SAMPLE + 8.0 : 0.0, sample.text);
            }
        add(std::move(names));
        return y - STEP / 2.0;
    }

    void add_sample(ElementClass of, std::int32_t material, const Position& p, double length) {
        if (of == ElementClass::solid) {
            Path box{"", {}, true, material_color(of, material), Stroke{REGION_LINE, 0.8}, false};
            box.lines.points = {
                {p.x, p.y - 6.0}, {p.x + length, p.y - 6.0}, {p.x + length, p.y + 6.0}, {p.x, p.y + 6.0}};
            box.lines.end_line();
            add(std::move(box));
        }
        for (const Stroke& stroke : line_strokes(of, material))
            add_legend_line(p, length, stroke);
    }

    void add_legend_line(const Position& p, double length, const Stroke& stroke) {
        Path line{"", {}, false, std::nullopt, stroke, false};
        line.lines.points = {p, {p.x + length, p.y}};
        line.lines.end_line();
        add(std::move(line));
    }

    const MeshLists& mesh_;
    const PictureOptions& options_;
    std::vector<CornerPlaces> corners_;
    Page page_;
    Picture picture_;
    std::map<std::pair<ElementClass, std::int32_t>, std::vector<std::int32_t>> groups_;  // places of elements
    std::map<std::pair<ElementClass, std::int32_t>, std::size_t> shown_;  // elements on the page
    std::vector<bool> tangled_;                                           // by place: not drawn
    bool has_doubles_ = false;
};

}  // namespace

std::string title_of(const MeshLists& mesh, const PictureOptions& options) {
    return options.title.empty() ? std::filesystem::path(mesh.file).filename().string() : options.title;
}

Picture picture_of(const MeshLists& mesh, const PictureOptions& options) {
    return Builder(mesh, options).build();
}

}  // namespace brelan::tool
