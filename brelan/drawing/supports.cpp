#include "drawing/supports.h"

#include <algorithm>
#include <limits>
#include <span>
#include <utility>

namespace brelan::tool {

namespace {

struct CodeMeaning {
    std::size_t code;  // place in the node's codes
    Support symbol;
    std::string_view name;
};

constexpr CodeMeaning COUPLED[] = {{0, Support::fixed_x, "ISX: x fixed"},
                                   {1, Support::fixed_y, "ISY: y fixed"},
                                   {2, Support::fluid, "IFX, IFY: fluid"},
                                   {3, Support::fluid, ""}};
constexpr CodeMeaning SCALAR[] = {{0, Support::value, "ID not 0"}, {1, Support::flow, "IDF not 0"}};
constexpr CodeMeaning DISPLACEMENT[] = {{0, Support::fixed_x, "IDX: x fixed"},
                                        {1, Support::fixed_y, "IDY: y fixed"}};

// By kind.
constexpr std::span<const CodeMeaning> MEANINGS[] = {COUPLED, SCALAR, SCALAR, DISPLACEMENT};

std::span<const CodeMeaning> meanings(LayoutKind kind) {
    return MEANINGS[static_cast<std::size_t>(kind)];
}

bool has(const Node& node, const CodeMeaning& meaning) {
    return node.codes[meaning.code] != 0;
}

constexpr double SIZE = 7.0, SMALLEST = 2.0, SHARE = 0.9;  // the last: of the room that there is

void add_polygon(Polylines& lines, std::initializer_list<Position> points) {
    lines.points.insert(lines.points.end(), points);
    lines.end_line();
}

// Away from the middle of the mesh: -1 to the left or up, 1 to the right or down.
void add_symbol(Polylines& lines, Support symbol, const Position& p, double size, double side) {
    const double s = size * side, half = size / 2.0, square = size * 4.0 / 7.0;
    const int corners = size < 4.0 ? 6 : 12;
    switch (symbol) {
        case Support::fixed_x:
            add_polygon(lines, {p, {p.x + s, p.y - half}, {p.x + s, p.y + half}});
            break;
        case Support::fixed_y:
            add_polygon(lines, {p, {p.x - half, p.y + s}, {p.x + half, p.y + s}});
            break;
        case Support::fluid:
            add_ring(lines, p, half, corners);
            break;
        case Support::value:
            add_ring(lines, p, size / 2.2, corners);
            break;
        case Support::flow:
            add_polygon(lines, {{p.x - square, p.y - square},
                                {p.x + square, p.y - square},
                                {p.x + square, p.y + square},
                                {p.x - square, p.y + square}});
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

std::vector<SupportSample> support_samples(const MeshLists& mesh, const Page& page) {
    const std::span<const CodeMeaning> all = meanings(mesh.kind);
    std::array<bool, 5> shown{};
    for (std::size_t n = 0; n < mesh.nodes.size(); ++n)
        if (page.shows(page.on_page(mesh.point(static_cast<std::int32_t>(n)))))
            for (const CodeMeaning& meaning : all)
                if (has(mesh.nodes[n], meaning))
                    shown[static_cast<std::size_t>(meaning.symbol)] = true;
    std::vector<SupportSample> samples;
    for (const CodeMeaning& meaning : all)
        if (!meaning.name.empty() && shown[static_cast<std::size_t>(meaning.symbol)])
            samples.push_back({meaning.symbol, std::string(meaning.name)});
    return samples;
}

std::vector<double> support_room(const MeshLists& mesh, const std::vector<CornerPlaces>& corners) {
    const std::span<const CodeMeaning> all = meanings(mesh.kind);
    const auto coded = [&](std::int32_t n) {
        return std::any_of(all.begin(), all.end(), [&](const CodeMeaning& meaning) {
            return has(mesh.nodes[static_cast<std::size_t>(n)], meaning);
        });
    };
    std::vector<double> room(mesh.nodes.size(), std::numeric_limits<double>::infinity());
    for (std::size_t i = 0; i < corners.size(); ++i) {
        const CornerPlaces& c = corners[i];
        if (!c.complete() || mesh.elements[i].of == ElementClass::joint)
            continue;
        for (int k = 0; k < c.count; ++k) {
            const std::int32_t a = c[k], b = c[(k + 1) % c.count];
            const double length = distance(mesh.point(a), mesh.point(b));
            if (length > 0.0 && coded(a) && coded(b))
                for (const std::int32_t n : {a, b})
                    room[static_cast<std::size_t>(n)] = std::min(room[static_cast<std::size_t>(n)], length);
        }
    }
    return room;
}

void add_supports(Scene& scene, const MeshLists& mesh, const std::vector<CornerPlaces>& corners,
                  const Page& page) {
    const Bounds bounds = mesh.bounds();
    const Position middle =
        page.on_page(Position{(bounds.low.x + bounds.high.x) / 2.0, (bounds.low.y + bounds.high.y) / 2.0});
    const std::span<const CodeMeaning> all = meanings(mesh.kind);
    const std::vector<double> room = support_room(mesh, corners);
    std::array<Polylines, 5> lines;
    for (std::size_t n = 0; n < mesh.nodes.size(); ++n) {
        const Position p = page.on_page(mesh.point(static_cast<std::int32_t>(n)));
        if (!page.shows(p))
            continue;
        const double size = std::clamp(SHARE * room[n] * page.scale(), SMALLEST, SIZE);
        for (const CodeMeaning& meaning : all) {
            if (!has(mesh.nodes[n], meaning))
                continue;
            const bool to_left = meaning.symbol == Support::fixed_x && p.x < middle.x;
            const bool upwards = meaning.symbol == Support::fixed_y && p.y < middle.y &&
                                 mesh.nodes[n].y >= static_cast<float>(bounds.high.y);
            add_symbol(lines[static_cast<std::size_t>(meaning.symbol)], meaning.symbol, p, size,
                       to_left || upwards ? -1.0 : 1.0);
        }
    }
    for (std::size_t k = 0; k < lines.size(); ++k)
        if (!lines[k].empty())
            scene.items.emplace_back(path_of(static_cast<Support>(k), std::move(lines[k]), true));
}

void add_support_symbol(Scene& scene, Support symbol, const Position& at) {
    Polylines lines;
    add_symbol(lines, symbol, at, SIZE, 1.0);
    scene.items.emplace_back(path_of(symbol, std::move(lines), false));
}

}  // namespace brelan::tool
