#include "drawing/deck_overlay.h"

#include <fmt/core.h>

#include <algorithm>
#include <utility>

namespace brelan::tool {

namespace {

constexpr double TEXT = 12.0;

std::string shortened(std::string title) {
    constexpr std::size_t MOST = 40;
    if (title.size() <= MOST)
        return title;
    std::size_t end = MOST - 3;
    while (end > 0 && (static_cast<unsigned char>(title[end]) & 0xC0U) == 0x80U)
        --end;  // not within a character of several bytes
    return title.substr(0, end) + "...";
}

// Near a point, within the width of the drawing area, and off the titles that stand there already.
Label place_title(std::string title, const Point& near, const Bounds& a, std::vector<Bounds>& taken) {
    constexpr double LETTER = 0.62, STEP = TEXT + 2.0;  // width of a bold letter over the height
    const double width = LETTER * TEXT * static_cast<double>(title.size());
    const double x = std::max(a.low.x + 4.0, std::min(near.x + 5.0, a.high.x - width - 4.0));
    double y = std::max(near.y - 5.0, a.low.y + STEP);
    const auto covered = [&] {
        return std::any_of(taken.begin(), taken.end(), [&](const Bounds& b) {
            return x < b.high.x && b.low.x < x + width && y - TEXT < b.high.y && b.low.y < y;
        });
    };
    // One step below, one above, two below and so on.
    constexpr int MOST_STEPS = 40;
    for (int k = 1; covered() && k < MOST_STEPS; ++k)
        y += (k % 2 == 1 ? k : -k) * STEP;
    taken.push_back({{x, y - TEXT}, {x + width, y}});
    return {{x, y}, std::move(title)};
}

}  // namespace

Stroke shape_stroke(ShapeRole role) {
    switch (role) {
        case ShapeRole::window:
            return {SHAPE_COLOR, 1.0, {2.0, 4.0}};
        case ShapeRole::block:
            return {SHAPE_COLOR, 1.2, {10.0, 3.0, 2.0, 3.0}};
        case ShapeRole::free_line:
            return {SHAPE_COLOR, 1.8, {6.0, 4.0}};
        case ShapeRole::outline:
        case ShapeRole::line:
        case ShapeRole::joint:
        case ShapeRole::dam:
            break;
    }
    return {SHAPE_COLOR, 1.8};
}

void add_shapes(Scene& scene, const std::vector<DeckShape>& shapes, const Page& page) {
    Labels titles{"deck-titles", {}, TEXT, Anchor::start, SHAPE_COLOR, true, true};
    std::vector<Bounds> taken;
    int number = 0;
    for (const DeckShape& shape : shapes) {
        if (shape.points.empty())
            continue;
        Polylines line;
        for (const DeckPoint& p : shape.points)
            line.points.push_back(page.on_page(Point{p.x, p.y}));
        line.end_line();
        const Point at_start = line.points.front();
        scene.items.emplace_back(Path{fmt::format("deck-{}", ++number), std::move(line), shape.closed,
                                      std::nullopt, shape_stroke(shape.role)});
        if (page.shows(at_start) && shape.role != ShapeRole::block && shape.role != ShapeRole::window)
            titles.labels.push_back(
                place_title(shortened(picture_text(shape.title)), at_start, page.area(), taken));
    }
    scene.items.emplace_back(std::move(titles));
}

}  // namespace brelan::tool
