#include "drawing/deck_overlay.h"

#include <fmt/core.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <optional>
#include <utility>

namespace brelan::tool {

namespace {

bool begins_character(char c) {
    return (static_cast<unsigned char>(c) & 0xC0U) != 0x80U;
}

std::string shortened(std::string title, std::size_t most) {
    if (static_cast<std::size_t>(std::count_if(title.begin(), title.end(), begins_character)) <= most)
        return title;
    std::size_t end = 0;
    for (std::size_t characters = 0; characters + 3 < most || !begins_character(title[end]); ++end)
        characters += begins_character(title[end]) ? 1 : 0;
    return title.substr(0, end) + "...";
}

// The part of a side that lies in the area.
std::optional<std::pair<Position, Position>> part_in(const Bounds& area, const Position& a,
                                                     const Position& b) {
    double first = 0.0, last = 1.0;
    const auto cut = [&](double from, double step, double low, double high) {
        if (step == 0.0)
            return from >= low && from <= high;
        const double one = (low - from) / step, other = (high - from) / step;
        first = std::max(first, std::min(one, other));
        last = std::min(last, std::max(one, other));
        return first <= last;
    };
    const double dx = b.x - a.x, dy = b.y - a.y;
    if (!cut(a.x, dx, area.low.x, area.high.x) || !cut(a.y, dy, area.low.y, area.high.y))
        return std::nullopt;
    return std::pair{Position{a.x + first * dx, a.y + first * dy},
                     Position{a.x + last * dx, a.y + last * dy}};
}

using Side = std::pair<Position, Position>;

// What shows of a shape.
std::vector<Side> sides_of(const DeckShape& shape, const Page& page, const Bounds& area) {
    std::vector<Side> sides;
    const auto point = [&](std::size_t k) {
        return page.on_page(Position{shape.points[k].x, shape.points[k].y});
    };
    const std::size_t count = shape.points.size();
    for (std::size_t k = 0; k < (shape.closed || count == 1 ? count : count - 1); ++k)
        if (const auto part = part_in(area, point(k), point((k + 1) % count)))
            sides.push_back(*part);
    return sides;
}

double distance_to(const Side& side, const Position& p) {
    const auto& [a, b] = side;
    const double dx = b.x - a.x, dy = b.y - a.y, square = dx * dx + dy * dy;
    const double t =
        square > 0.0 ? std::clamp(((p.x - a.x) * dx + (p.y - a.y) * dy) / square, 0.0, 1.0) : 0.0;
    return distance(p, {a.x + t * dx, a.y + t * dy});
}

// Points along the sides, some pixels apart, fewer of very many; the middles first, to keep corners in sight.
std::vector<Position> points_along(const std::vector<Side>& sides) {
    constexpr double STEP = 6.0;
    constexpr std::size_t MOST = 150;
    std::vector<Position> some, points;
    const auto add_some = [&] {
        const std::size_t stride = points.size() / MOST + 1;
        for (std::size_t k = 0; k < points.size(); k += stride)
            some.push_back(points[k]);
        points.clear();
    };
    for (const auto& [a, b] : sides)
        points.push_back({(a.x + b.x) / 2.0, (a.y + b.y) / 2.0});
    add_some();
    for (const auto& [a, b] : sides) {
        const int steps = 1 + static_cast<int>(distance(a, b) / STEP);
        for (int k = 0; k <= steps; ++k)
            points.push_back({a.x + (b.x - a.x) * k / steps, a.y + (b.y - a.y) * k / steps});
    }
    add_some();
    return some;
}

bool lies_in(const std::vector<Position>& loop, const Position& p) {
    bool inside = false;
    for (std::size_t i = 0, j = loop.size() - 1; i < loop.size(); j = i++)
        if ((loop[i].y > p.y) != (loop[j].y > p.y) &&
            p.x < loop[i].x + (loop[j].x - loop[i].x) * (p.y - loop[i].y) / (loop[j].y - loop[i].y))
            inside = !inside;
    return inside;
}

// Points inside a closed shape, in rows.
std::vector<Position> points_inside(const DeckShape& shape, const Page& page, const Bounds& area) {
    std::vector<Position> loop, points;
    if (!shape.closed)
        return points;
    Bounds box{area.high, area.low};
    for (const DeckPoint& point : shape.points) {
        const Position p = page.on_page(Position{point.x, point.y});
        loop.push_back(p);
        box.low = {std::min(box.low.x, std::max(p.x, area.low.x)),
                   std::min(box.low.y, std::max(p.y, area.low.y))};
        box.high = {std::max(box.high.x, std::min(p.x, area.high.x)),
                    std::max(box.high.y, std::min(p.y, area.high.y))};
    }
    constexpr int ROWS = 12;
    for (int i = 1; i < ROWS; ++i)
        for (int j = 1; j < ROWS; ++j) {
            const Position p{box.low.x + box.width() * j / ROWS, box.low.y + box.height() * i / ROWS};
            if (lies_in(loop, p))
                points.push_back(p);
        }
    return points;
}

class Marks {
public:
    Marks(const std::vector<DeckShape>& shapes, const Page& page)
        : shapes_(shapes), page_(page), area_(page.area()) {
        for (Position* corner : {&area_.low, &area_.high}) {  // rings are to show whole
            const double inwards = corner == &area_.low ? MARK_RADIUS + 1.0 : -MARK_RADIUS - 1.0;
            corner->x += inwards;
            corner->y += inwards;
        }
        const std::vector<int> numbers = shape_numbers(shapes);
        for (std::size_t k = 0; k < shapes.size(); ++k) {
            sides_.push_back(numbers[k] > 0 ? sides_of(shapes[k], page, area_) : std::vector<Side>());
            if (sides_.back().empty())
                continue;
            marks_.push_back({numbers[k], picture_text(shapes[k].title), {}, {}, false});
            shape_.push_back(k);
        }
    }

    std::vector<ShapeMark> place() {
        for (std::size_t k = 0; k < marks_.size(); ++k)
            place_on_shape(marks_[k], shape_[k]);
        return std::move(marks_);
    }

private:
    bool is_free(const Position& p) const {
        return std::none_of(marks_.begin(), marks_.end(), [&](const ShapeMark& other) {
            return other.drawn && distance(other.at, p) < 2.0 * MARK_RADIUS + 2.0;
        });
    }

    // How far a point is off the shapes but one, as far as that matters: up to `ENOUGH`, and not below
    // `least`.
    static constexpr double ENOUGH = 1.5 * MARK_RADIUS;
    double room_at(const Position& p, std::size_t own, double least) const {
        double room = ENOUGH;
        for (std::size_t other = 0; other < sides_.size(); ++other)
            if (other != own)
                for (std::size_t k = 0; k < sides_[other].size() && room > least; ++k)
                    room = std::min(room, distance_to(sides_[other][k], p));
        return room;
    }

    // On the shape; inside it where others run along all of it.
    void place_on_shape(ShapeMark& mark, std::size_t shape) {
        double best = -1.0;
        const auto try_at = [&](const std::vector<Position>& points, std::size_t own) {
            for (const Position& p : points) {
                if (best >= ENOUGH || !is_free(p))
                    continue;
                if (const double room = room_at(p, own, best); room > best) {
                    best = room;
                    mark.at = mark.on = p;
                }
            }
        };
        const std::vector<Position> along = points_along(sides_[shape]);
        try_at(along, shape);
        if (best < MARK_RADIUS)
            try_at(points_inside(shapes_[shape], page_, area_), shapes_.size());
        mark.drawn = best >= 0.0;
        if (!mark.drawn)
            place_beside(mark, along[along.size() / 2]);
    }

    // In growing rings round a point of the shape.
    void place_beside(ShapeMark& mark, const Position& on) {
        constexpr int RINGS = 40, DIRECTIONS = 16;
        for (int ring = 1; ring <= RINGS; ++ring)
            for (int k = 0; k < DIRECTIONS; ++k) {
                const double angle = 2.0 * std::numbers::pi * (k + 0.5) / DIRECTIONS;
                const double radius = 2.0 * MARK_RADIUS * ring;
                const Position p{on.x + radius * std::cos(angle), on.y - radius * std::sin(angle)};
                if (part_in(area_, p, p) && is_free(p)) {
                    mark.at = p;
                    mark.on = on;
                    mark.drawn = true;
                    return;
                }
            }
    }

    const std::vector<DeckShape>& shapes_;
    const Page& page_;
    Bounds area_;
    std::vector<std::vector<Side>> sides_;  // by shape; none of those without a title
    std::vector<ShapeMark> marks_;
    std::vector<std::size_t> shape_;  // of each mark
};

// Rings with numbers in them.
void add_rings(Scene& scene, const std::vector<ShapeMark>& marks, const std::string& id, bool clipped) {
    constexpr int CORNERS = 20;
    Path rings{id.empty() ? "" : id + "-rings", {},     true, Rgb{0xff, 0xff, 0xff},
               Stroke{SHAPE_COLOR, 1.4},        clipped};
    Labels numbers{id, {}, 10.0, Anchor::middle, SHAPE_COLOR, true};
    numbers.clipped = clipped;
    for (const ShapeMark& mark : marks) {
        add_ring(rings.lines, mark.at, MARK_RADIUS, CORNERS);
        numbers.labels.push_back({{mark.at.x, mark.at.y + 3.6}, std::to_string(mark.number)});
    }
    scene.items.emplace_back(std::move(rings));
    scene.items.emplace_back(std::move(numbers));
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

std::vector<int> shape_numbers(const std::vector<DeckShape>& shapes) {
    std::vector<int> numbers;
    numbers.reserve(shapes.size());
    int others = 0;
    for (const DeckShape& shape : shapes)
        numbers.push_back(shape.role == ShapeRole::block || shape.role == ShapeRole::window ? 0
                          : shape.group > 0                                                 ? shape.group
                                                                                            : ++others);
    return numbers;
}

std::vector<ShapeMark> place_marks(const std::vector<DeckShape>& shapes, const Page& page) {
    return Marks(shapes, page).place();
}

void add_shapes(Scene& scene, const std::vector<DeckShape>& shapes, const std::vector<ShapeMark>& marks,
                const Page& page) {
    int number = 0;
    for (const DeckShape& shape : shapes) {
        if (shape.points.empty())
            continue;
        Polylines line;
        for (const DeckPoint& p : shape.points)
            line.points.push_back(page.on_page(Position{p.x, p.y}));
        line.end_line();
        scene.items.emplace_back(Path{fmt::format("deck-{}", ++number), std::move(line), shape.closed,
                                      std::nullopt, shape_stroke(shape.role)});
    }
    Path leaders{"deck-leaders", {}, false, std::nullopt, Stroke{SHAPE_COLOR, 1.0}};
    std::vector<ShapeMark> drawn;
    for (const ShapeMark& mark : marks) {
        if (!mark.drawn)
            continue;
        drawn.push_back(mark);
        if (distance(mark.on, mark.at) > 0.0) {
            leaders.lines.points.insert(leaders.lines.points.end(), {mark.on, mark.at});
            leaders.lines.end_line();
        }
    }
    scene.items.emplace_back(std::move(leaders));
    add_rings(scene, drawn, "deck-numbers", true);
}

double add_titles(Scene& scene, const std::vector<ShapeMark>& marks, double x, double y, double width) {
    if (marks.empty())
        return y;
    constexpr double TEXT = 12.0, LETTER = 0.6 * TEXT;  // a width that most letters keep below
    constexpr double STEP = 20.0, INDENT = 2.0 * MARK_RADIUS + 8.0, GAP = 16.0;
    const auto most = static_cast<std::size_t>(std::max(4.0, (width - INDENT) / LETTER));
    std::size_t longest = 0;
    std::vector<std::string> titles;
    for (const ShapeMark& mark : marks) {
        titles.push_back(shortened(mark.title, most));
        longest = std::max(longest, titles.back().size());
    }
    const double column = INDENT + LETTER * static_cast<double>(longest) + GAP;
    const auto columns = static_cast<std::size_t>(std::max(1.0, std::floor((width + GAP) / column)));
    const std::size_t rows = (marks.size() + columns - 1) / columns;
    Labels texts{"deck-titles", {}, TEXT, Anchor::start};
    texts.clipped = false;
    std::vector<ShapeMark> listed = marks;
    for (std::size_t k = 0; k < marks.size(); ++k) {
        const std::size_t place = k / rows, row = k % rows;
        const double left = x + column * static_cast<double>(place);
        const double middle = y + STEP * (static_cast<double>(row) + 0.5);
        listed[k].at = {left + MARK_RADIUS, middle};
        texts.labels.push_back({{left + INDENT, middle + 4.0}, std::move(titles[k])});
    }
    add_rings(scene, listed, "", false);
    scene.items.emplace_back(std::move(texts));
    return y + STEP * static_cast<double>(rows);
}

}  // namespace brelan::tool
