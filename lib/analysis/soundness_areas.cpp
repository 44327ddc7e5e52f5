// Solids that lie over each other. Where elements share their sides, one on each, two can only cover one
// place if the outline of the mesh or of a fold runs over one of them: so the solids at free sides, and those
// on one hand of a side that they share, are held against all.
#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

#include "analysis/box_tree.h"
#include "analysis/soundness_work.h"

namespace brelan {

namespace {

using Polygon = std::vector<Position>;

Polygon polygon_of(const MeshLists& mesh, const CornerPlaces& c) {
    Polygon polygon;
    for (int k = 0; k < c.count; ++k)
        polygon.push_back(mesh.point(c[k]));
    return polygon;
}

double area_of(const Polygon& p) {
    double twice = 0.0;
    for (std::size_t k = 1; k + 1 < p.size(); ++k)
        twice += cross(p[0], p[k], p[k + 1]);
    return twice / 2.0;
}

// Corners run anti-clockwise and none is pushed in.
bool is_convex(const Polygon& p) {
    for (std::size_t k = 0; k < p.size(); ++k)
        if (cross(p[k], p[(k + 1) % p.size()], p[(k + 2) % p.size()]) < 0.0)
            return false;
    return area_of(p) > 0.0;
}

// What two convex polygons have in common: the first, cut off along each side of the second.
double common_area(Polygon rest, const Polygon& by) {
    for (std::size_t k = 0; k < by.size() && rest.size() > 2; ++k) {
        const Position &from = by[k], &to = by[(k + 1) % by.size()];
        Polygon kept;
        for (std::size_t i = 0; i < rest.size(); ++i) {
            const Position &a = rest[i], &b = rest[(i + 1) % rest.size()];
            const double at_a = cross(from, to, a), at_b = cross(from, to, b);
            if (at_a >= 0.0)
                kept.push_back(a);
            if ((at_a > 0.0 && at_b < 0.0) || (at_a < 0.0 && at_b > 0.0)) {
                const double share = at_a / (at_a - at_b);
                kept.push_back({a.x + share * (b.x - a.x), a.y + share * (b.y - a.y)});
            }
        }
        rest = std::move(kept);
    }
    return rest.size() > 2 ? area_of(rest) : 0.0;
}

// What is held against the solids: a solid at a free side or a fold, or a joint of a width.
struct Probe {
    std::int32_t element = 0;  // its place
    Polygon polygon;
    int found = 0;
};

class OverlapSearch {
public:
    explicit OverlapSearch(SoundnessWork& work) : work_(work) {}

    void find() {
        take_solids_at_edges();
        take_wide_joints();
        doubled_.assign(work_.mesh.elements.size(), 0);
        for (const Place& place : work_.places(Check::double_element))
            for (const Number number : {place.element, place.other})
                if (const std::int32_t e = work_.mesh.element_place(number); e != MeshLists::NONE)
                    doubled_[work_.at(e)] = 1;
        if (probes_.empty())
            return;
        std::vector<Bounds> boxes;
        boxes.reserve(probes_.size());
        for (const Probe& probe : probes_)
            boxes.push_back(box_of(work_.mesh, work_.corners[work_.at(probe.element)]));
        BoxTree tree(std::move(boxes));
        for (const std::int32_t e : work_.single) {
            const Bounds box = box_of(work_.mesh, work_.corners[work_.at(e)]);
            tree.meeting(box, [&](std::int32_t k) { return hold(probes_[work_.at(k)], e); });
        }
        for (const Check check : {Check::overlapping_solid, Check::overlapped_joint}) {
            auto& places = work_.places(check);
            std::sort(places.begin(), places.end(), [](const Place& a, const Place& b) {
                return std::pair{a.element, a.other} < std::pair{b.element, b.other};
            });
        }
    }

private:
    void take_solids_at_edges() {
        at_edge_.assign(work_.mesh.elements.size(), 0);
        for (const ClosedSide& side : work_.free)
            take_at_edge(side);
        work_.each_side([&](std::size_t i, std::size_t end) {
            const auto start = [&](std::size_t k) { return work_.closed[work_.at(work_.sides[k].from)]; };
            const bool is_fold = end - i > 2 || (end - i == 2 && start(i) == start(i + 1));
            for (std::size_t k = i; is_fold && k < end; ++k)
                take_at_edge(work_.sides[k]);
        });
    }

    void take_at_edge(const ClosedSide& side) {
        if (std::exchange(at_edge_[work_.at(side.element)], std::uint8_t{1}) == 0)
            add(side.element);
    }

    void take_wide_joints() {
        for (std::size_t i = 0; i < work_.corners.size(); ++i) {
            const CornerPlaces& c = work_.corners[i];
            if (work_.mesh.elements[i].of != ElementClass::joint || !c.complete() || c.count != 4)
                continue;
            double longest = 0.0;
            for (int k = 0; k < 4; ++k)
                longest =
                    std::max(longest, distance(work_.mesh.point(c[k]), work_.mesh.point(c[(k + 1) % 4])));
            if (std::abs(signed_area(work_.mesh, c)) > work_.tolerance() * longest)
                add(static_cast<std::int32_t>(i));
        }
    }

    void add(std::int32_t element) {
        Polygon polygon = polygon_of(work_.mesh, work_.corners[work_.at(element)]);
        if (work_.element(element).of == ElementClass::joint && area_of(polygon) < 0.0)
            std::reverse(polygon.begin(), polygon.end());
        if (is_convex(polygon))
            probes_.push_back({element, std::move(polygon), 0});
    }

    // False when the probe has met enough: more says no more.
    bool hold(Probe& probe, std::int32_t solid) {
        constexpr int ENOUGH = 8;
        const bool joint = work_.element(probe.element).of == ElementClass::joint;
        // A stage behind a joint leaves the joint the room of its width, and the element before it does not.
        if (joint && doubled_[work_.at(solid)] != 0)
            return true;
        // Two solids at edges meet twice.
        if (probe.element == solid || (!joint && at_edge_[work_.at(solid)] != 0 && solid > probe.element))
            return true;
        const Polygon other = polygon_of(work_.mesh, work_.corners[work_.at(solid)]);
        if (!is_convex(other))
            return true;  // told already
        const double area = common_area(probe.polygon, other);
        double longest = 0.0;
        for (std::size_t k = 0; k < probe.polygon.size(); ++k)
            longest =
                std::max(longest, distance(probe.polygon[k], probe.polygon[(k + 1) % probe.polygon.size()]));
        // Two rounded sides along each other have a sliver in common.
        constexpr double SLIVERS = 2.0, SHARE_OF_JOINT = 0.05;
        const double nothing = SLIVERS * work_.tolerance() * longest;
        if (area <= (joint ? std::max(nothing, SHARE_OF_JOINT * area_of(probe.polygon)) : nothing))
            return true;
        work_.add(joint ? Check::overlapped_joint : Check::overlapping_solid,
                  {work_.number(probe.element), 0, work_.number(solid),
                   middle(work_.mesh, work_.corners[work_.at(probe.element)]), area});
        return ++probe.found < (joint ? 1 : ENOUGH);
    }

    SoundnessWork& work_;
    std::vector<Probe> probes_;
    std::vector<std::uint8_t> at_edge_, doubled_;  // by element place; one of a stage's doubles
};

}  // namespace

void find_overlaps(SoundnessWork& work) {
    OverlapSearch(work).find();
}

}  // namespace brelan
