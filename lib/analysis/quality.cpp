#include "analysis/quality.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

namespace brelan {

namespace {

constexpr double INFINITE = std::numeric_limits<double>::infinity();

// The angle at b inside an element that runs anti-clockwise from a to c, 0 to 360 degrees.
double inner_angle(const Position& a, const Position& b, const Position& c) {
    const double angle = std::atan2(cross(b, c, a), (c.x - b.x) * (a.x - b.x) + (c.y - b.y) * (a.y - b.y)) *
                         180.0 / std::numbers::pi;
    return angle < 0.0 ? angle + 360.0 : angle;
}

enum class BadEnd { low, high };

// Gathers a measure element by element.
class Gatherer {
public:
    Gatherer(BadEnd end, std::size_t worst) : end_(end), worst_(worst) {}

    void add(Number element, double value) {
        measure_.smallest = count_ == 0 ? value : std::min(measure_.smallest, value);
        measure_.largest = count_ == 0 ? value : std::max(measure_.largest, value);
        sum_ += value;
        ++count_;
        auto& list = measure_.worst;
        if (list.size() == worst_ && (list.empty() || !worse(value, list.back().value)))
            return;
        const auto place = std::find_if(list.begin(), list.end(),
                                        [&](const Measure::Worst& w) { return worse(value, w.value); });
        list.insert(place, {element, value});
        if (list.size() > worst_)
            list.pop_back();
    }

    Measure result() {
        measure_.mean = count_ == 0 ? 0.0 : sum_ / static_cast<double>(count_);
        return measure_;
    }

private:
    bool worse(double a, double b) const { return end_ == BadEnd::low ? a < b : a > b; }

    BadEnd end_;
    std::size_t worst_;
    Measure measure_;
    double sum_ = 0.0;
    std::size_t count_ = 0;
};

}  // namespace

Shape shape_of(const MeshLists& mesh, const CornerPlaces& c) {
    Shape shape;
    const double area = signed_area(mesh, c);
    shape.area = std::abs(area);
    shape.smallest_angle = 360.0;
    shape.shortest_side = INFINITE;
    double around = 0.0;
    for (int k = 0; k < c.count; ++k) {
        Position before = mesh.point(c[(k + c.count - 1) % c.count]);
        Position behind = mesh.point(c[(k + 1) % c.count]);
        const Position here = mesh.point(c[k]);
        const double side = distance(here, behind);
        shape.shortest_side = std::min(shape.shortest_side, side);
        shape.longest_side = std::max(shape.longest_side, side);
        around += side;
        if (area < 0.0)
            std::swap(before, behind);
        const double angle = inner_angle(before, here, behind);
        shape.smallest_angle = std::min(shape.smallest_angle, angle);
        shape.largest_angle = std::max(shape.largest_angle, angle);
    }
    const double ideal = c.count == 3 ? 4.0 * std::numbers::sqrt3 : 4.0;
    shape.aspect_ratio = shape.area > 0.0 ? shape.longest_side * around / (ideal * shape.area) : INFINITE;
    return shape;
}

Quality measure_quality(const MeshLists& mesh, const std::vector<CornerPlaces>& corners, std::size_t worst) {
    Gatherer smallest_angle(BadEnd::low, worst), largest_angle(BadEnd::high, worst);
    Gatherer aspect_ratio(BadEnd::high, worst), area(BadEnd::low, worst), side(BadEnd::low, worst);
    Quality quality;
    for (std::size_t i = 0; i < corners.size(); ++i) {
        const Element& e = mesh.elements[i];
        if (e.of != ElementClass::solid || !corners[i].complete())
            continue;
        const Shape shape = shape_of(mesh, corners[i]);
        ++quality.solids;
        smallest_angle.add(e.number.value, shape.smallest_angle);
        largest_angle.add(e.number.value, shape.largest_angle);
        aspect_ratio.add(e.number.value, shape.aspect_ratio);
        area.add(e.number.value, shape.area);
        side.add(e.number.value, shape.shortest_side);
        const auto bin = std::upper_bound(ANGLE_LIMITS.begin(), ANGLE_LIMITS.end(), shape.smallest_angle);
        ++quality.by_angle[static_cast<std::size_t>(bin - ANGLE_LIMITS.begin())];
    }
    quality.smallest_angle = smallest_angle.result();
    quality.largest_angle = largest_angle.result();
    quality.aspect_ratio = aspect_ratio.result();
    quality.area = area.result();
    quality.side = side.result();
    return quality;
}

}  // namespace brelan
