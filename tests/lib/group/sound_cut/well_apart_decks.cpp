// Drawings for which the sound cut promises angles of ten degrees: elements of 45 to 135 degrees and side
// ratios up to 3, nodes that may move, no angle of the drawing below 20 degrees, nothing nearer to anything
// else than a third of an element.

#include <algorithm>
#include <cmath>
#include <numbers>

#include "lib/group/sound_cut/deck_classes.h"

namespace brelan::test {

namespace {

struct Stroke {
    Point from, to;
};

Point minus(const Point& a, const Point& b) {
    return {a.x - b.x, a.y - b.y};
}
float cross(const Point& a, const Point& b) {
    return a.x * b.y - a.y * b.x;
}
float dot(const Point& a, const Point& b) {
    return a.x * b.x + a.y * b.y;
}
float length(const Point& a) {
    return std::hypot(a.x, a.y);
}
float degrees_between(const Point& a, const Point& b) {
    return std::atan2(std::abs(cross(a, b)), dot(a, b)) * 180.0F / std::numbers::pi_v<float>;
}
float distance_to(const Point& p, const Stroke& s) {
    const Point along = minus(s.to, s.from);
    const float t = std::clamp(dot(minus(p, s.from), along) / dot(along, along), 0.0F, 1.0F);
    return length(minus(p, {s.from.x + t * along.x, s.from.y + t * along.y}));
}

// Where two strokes cross, within both.
bool crossing_of(const Stroke& a, const Stroke& b, Point& at) {
    const Point u = minus(a.to, a.from), v = minus(b.to, b.from), w = minus(b.from, a.from);
    const float area = cross(u, v);
    if (std::abs(area) < 1.0E-6F)
        return false;
    const float t = cross(w, v) / area, s = cross(w, u) / area;
    at = {a.from.x + t * u.x, a.from.y + t * u.y};
    return t > 0.0F && t < 1.0F && s > 0.0F && s < 1.0F;
}

constexpr float SMALLEST_ANGLE = 20.0F;

class Sketch {
public:
    Sketch(const DrawnMesh& mesh, float apart) : apart_(apart) {
        const Point a{0.0F, 0.0F}, b{mesh.width, 0.0F}, c{mesh.width, mesh.height}, d{0.0F, mesh.height};
        border_ = {{a, b}, {b, c}, {c, d}, {d, a}};
    }
    void add(const DrawnGroup& group) {
        const std::size_t count = group.points.size();
        for (std::size_t i = 0; i < group.segments.size(); ++i)
            strokes_.push_back({group.points[i], group.points[(i + 1) % count]});
    }

    bool is_well_apart() const {
        for (std::size_t i = 0; i < strokes_.size(); ++i) {
            if (length(minus(strokes_[i].to, strokes_[i].from)) < apart_)
                return false;
            for (std::size_t k = 0; k < i; ++k)
                if (!are_apart(strokes_[i], strokes_[k]))
                    return false;
            for (const Stroke& side : border_)
                if (!are_apart(strokes_[i], side))
                    return false;
        }
        return are_crossings_apart();
    }

private:
    bool are_apart(const Stroke& a, const Stroke& b) const {
        const auto same = [](const Point& p, const Point& q) { return p.x == q.x && p.y == q.y; };
        for (const auto& [p, from_a] : {std::pair{a.from, a.to}, std::pair{a.to, a.from}})
            for (const auto& [q, from_b] : {std::pair{b.from, b.to}, std::pair{b.to, b.from}})
                if (same(p, q))
                    return degrees_between(minus(from_a, p), minus(from_b, p)) >= SMALLEST_ANGLE &&
                           distance_to(from_a, b) >= apart_ && distance_to(from_b, a) >= apart_;
        Point at;
        if (crossing_of(a, b, at)) {
            const float angle = degrees_between(minus(a.to, a.from), minus(b.to, b.from));
            if (std::min(angle, 180.0F - angle) < SMALLEST_ANGLE)
                return false;
        }
        return std::min({distance_to(a.from, b), distance_to(a.to, b), distance_to(b.from, a),
                         distance_to(b.to, a)}) >= apart_;
    }

    // Crossings of strokes with each other and with the border.
    bool are_crossings_apart() const {
        std::vector<Stroke> all = strokes_;
        all.insert(all.end(), border_.begin(), border_.end());
        std::vector<Point> crossings;
        for (std::size_t i = 0; i < all.size(); ++i)
            for (std::size_t k = 0; k < i; ++k)
                if (Point at; crossing_of(all[i], all[k], at))
                    crossings.push_back(at);
        for (std::size_t i = 0; i < crossings.size(); ++i)
            for (std::size_t k = 0; k < i; ++k)
                if (length(minus(crossings[i], crossings[k])) < apart_)
                    return false;
        return true;
    }

    float apart_;
    std::vector<Stroke> strokes_, border_;
};

// Quadrilaterals between 1 by 1 and 1 by 2.2 with shifted inner nodes, or triangles of 45 degrees.
DrawnMesh well_shaped_mesh(Drawing& drawing) {
    const bool triangles = drawing.one_in(4);
    DrawnMesh mesh;
    mesh.columns = 4 + drawing.below(6);
    mesh.rows = 4 + drawing.below(6);
    const float dx =
        triangles || drawing.one_in(2) ? 1.0F : std::round(drawing.between(1.0F, 2.2F) * 100.0F) / 100.0F;
    const float shift = triangles || drawing.one_in(3) ? 0.0F : drawing.between(0.0F, 0.12F);
    mesh.width = static_cast<float>(mesh.columns) * dx;
    mesh.height = static_cast<float>(mesh.rows);
    for (int row = 0; row <= mesh.rows; ++row)
        for (int column = 0; column <= mesh.columns; ++column) {
            Point p{column == mesh.columns ? mesh.width : static_cast<float>(column) * dx,
                    static_cast<float>(row)};
            if (row > 0 && row < mesh.rows && column > 0 && column < mesh.columns)
                p = {p.x + drawing.between(-shift, shift), p.y + drawing.between(-shift, shift)};
            mesh.nodes.push_back(p);
        }
    add_grid_elements(mesh, triangles);
    return mesh;
}

DrawnGroup any_drawing(Drawing& drawing, const DrawnMesh& mesh, int material) {
    const auto point = [&] {
        return Point{std::round(drawing.between(-1.0F, mesh.width + 1.0F) * 1.0E4F) / 1.0E4F,
                     std::round(drawing.between(-1.0F, mesh.height + 1.0F) * 1.0E4F) / 1.0E4F};
    };
    std::vector<Point> points(static_cast<std::size_t>(2 + drawing.below(4)));
    std::generate(points.begin(), points.end(), point);
    return points.size() > 2 && drawing.one_in(2) ? region_of(std::move(points), 10 + material)
                                                  : beams_along(std::move(points), 20 + material);
}

}  // namespace

CutDeck well_apart_deck(Drawing& drawing, Kind kind) {
    const DrawnMesh mesh = well_shaped_mesh(drawing);
    const float longest = mesh.width / static_cast<float>(mesh.columns) + 0.25F;
    CutDeck deck = deck_over("", kind, mesh);
    for (;;) {
        Sketch sketch(mesh, longest / 3.0F);
        deck.groups = {any_drawing(drawing, mesh, 1)};
        if (drawing.one_in(3))
            deck.groups.push_back(any_drawing(drawing, mesh, 2));
        for (const DrawnGroup& group : deck.groups)
            sketch.add(group);
        if (sketch.is_well_apart())
            return deck;
    }
}

}  // namespace brelan::test
