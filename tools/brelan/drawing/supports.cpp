#include "drawing/supports.h"

#include <cmath>
#include <set>
#include <utility>

namespace brelan::tool {

namespace {

struct CodeMeaning {
    std::size_t code;  // place in the node's codes
    Support symbol;
    std::string_view name;
};

std::vector<CodeMeaning> meanings(LayoutKind kind) {
    switch (kind) {
        case LayoutKind::coupled:
            return {{0, Support::fixed_x, "ISX: x fixed"},
                    {1, Support::fixed_y, "ISY: y fixed"},
                    {2, Support::fluid, "IFX, IFY: fluid"},
                    {3, Support::fluid, ""}};
        case LayoutKind::temperature:
            return {{0, Support::value, "ID not 0"}, {1, Support::flow, "IDF not 0"}};
        case LayoutKind::head:
            return {{0, Support::value, "ID not 0"}, {1, Support::flow, "IDF not 0"}};
        case LayoutKind::displacement:
            break;
    }
    return {{0, Support::fixed_x, "IDX: x fixed"}, {1, Support::fixed_y, "IDY: y fixed"}};
}

constexpr double SIZE = 7.0;

void add_polygon(Polylines& lines, std::initializer_list<Point> points) {
    lines.points.insert(lines.points.end(), points);
    lines.end_line();
}

void add_ring(Polylines& lines, const Point& p, double radius) {
    constexpr int CORNERS = 12;
    for (int k = 0; k < CORNERS; ++k) {
        const double angle = 2.0 * 3.14159265358979 * k / CORNERS;
        lines.points.push_back({p.x + radius * std::cos(angle), p.y + radius * std::sin(angle)});
    }
    lines.end_line();
}

// Away from the middle of the mesh: -1 to the left or up, 1 to the right or down.
void add_symbol(Polylines& lines, Support symbol, const Point& p, double side) {
    const double s = SIZE * side;
    switch (symbol) {
        case Support::fixed_x:
            add_polygon(lines, {p, {p.x + s, p.y - SIZE / 2.0}, {p.x + s, p.y + SIZE / 2.0}});
            break;
        case Support::fixed_y:
            add_polygon(lines, {p, {p.x - SIZE / 2.0, p.y + s}, {p.x + SIZE / 2.0, p.y + s}});
            break;
        case Support::fluid:
            add_ring(lines, p, SIZE / 2.0);
            break;
        case Support::value:
            add_ring(lines, p, SIZE / 2.2);
            break;
        case Support::flow:
            add_polygon(lines, {{p.x - 4.0, p.y - 4.0},
                                {p.x + 4.0, p.y - 4.0},
                                {p.x + 4.0, p.y + 4.0},
                                {p.x - 4.0, p.y + 4.0}});
            break;
    }
}

Path path_of(Support symbol, Polylines lines, bool clipped) {
    static constexpr std::array<const char*, 5> IDS{"fixed-x", "fixed-y", "fluid", "given-value", "flow"};
    const bool filled = symbol == Support::fixed_x || symbol == Support::fixed_y || symbol == Support::value;
    const Rgb color = symbol == Support::fluid || symbol == Support::flow ? SECOND_CODE_COLOR : CODE_COLOR;
    return {clipped ? IDS[static_cast<std::size_t>(symbol)] : "",
            std::move(lines),
            true,
            filled ? std::optional(color) : std::nullopt,
            Stroke{color, filled ? 0.5 : 1.4},
            clipped};
}

}  // namespace

std::vector<SupportSample> support_samples(const Mesh& mesh) {
    std::vector<SupportSample> samples;
    for (const CodeMeaning& meaning : meanings(mesh.kind)) {
        if (meaning.name.empty())
            continue;
        for (const Node& node : mesh.nodes)
            if (node.ID[meaning.code] != 0 ||
                (meaning.symbol == Support::fluid && node.ID[meaning.code + 1] != 0)) {
                samples.push_back({meaning.symbol, std::string(meaning.name)});
                break;
            }
    }
    return samples;
}

void add_supports(Scene& scene, const Mesh& mesh, const Page& page) {
    const Bounds bounds = mesh.bounds();
    const Point middle =
        page.on_page(Point{(bounds.low.x + bounds.high.x) / 2.0, (bounds.low.y + bounds.high.y) / 2.0});
    const std::vector<CodeMeaning> all = meanings(mesh.kind);
    std::array<Polylines, 5> lines;
    std::set<std::pair<std::size_t, std::pair<std::int64_t, std::int64_t>>> taken;
    constexpr double CELL = 6.0;  // one symbol of a sort in a square so large
    for (std::size_t n = 0; n < mesh.nodes.size(); ++n) {
        const Point p = page.on_page(mesh.point(static_cast<std::int32_t>(n)));
        if (!page.shows(p))
            continue;
        for (const CodeMeaning& meaning : all) {
            const auto place = static_cast<std::size_t>(meaning.symbol);
            if (mesh.nodes[n].ID[meaning.code] == 0 ||
                !taken.insert({place, {std::llround(p.x / CELL), std::llround(p.y / CELL)}}).second)
                continue;
            const bool to_left = meaning.symbol == Support::fixed_x && p.x < middle.x;
            const bool upwards = meaning.symbol == Support::fixed_y && p.y < middle.y &&
                                 mesh.nodes[n].YC >= static_cast<float>(bounds.high.y);
            add_symbol(lines[place], meaning.symbol, p, to_left || upwards ? -1.0 : 1.0);
        }
    }
    for (std::size_t k = 0; k < lines.size(); ++k)
        if (!lines[k].empty())
            scene.items.emplace_back(path_of(static_cast<Support>(k), std::move(lines[k]), true));
}

void add_support_symbol(Scene& scene, Support symbol, const Point& at) {
    Polylines lines;
    add_symbol(lines, symbol, at, 1.0);
    scene.items.emplace_back(path_of(symbol, std::move(lines), false));
}

}  // namespace brelan::tool
