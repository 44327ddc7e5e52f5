#include "analysis/soundness.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "analysis/doubles.h"
#include "analysis/joined_nodes.h"
#include "analysis/soundness_work.h"

namespace brelan {

namespace {

// Where an element stands of which corners may be missing: the middle of those that are there.
Position middle_of_found(const MeshLists& mesh, const CornerPlaces& corners) {
    CornerPlaces found;
    for (int k = 0; k < corners.count; ++k)
        if (corners[k] != MeshLists::NONE)
            found.place[static_cast<std::size_t>(found.count++)] = corners[k];
    return middle(mesh, found);
}

void check_numbers(SoundnessWork& work) {
    const MeshLists& mesh = work.mesh;
    for (std::size_t n = 1; n < mesh.nodes.size(); ++n)
        if (mesh.nodes[n].number == mesh.nodes[n - 1].number)
            work.add(Check::number_used_twice,
                     {0, mesh.nodes[n].number.value, 0, mesh.point(static_cast<std::int32_t>(n))});
    std::vector<std::pair<Number, std::size_t>> numbers;  // with the places of the elements
    for (std::size_t i = 0; i < mesh.elements.size(); ++i)
        numbers.emplace_back(mesh.elements[i].number.value, i);
    std::sort(numbers.begin(), numbers.end());
    for (std::size_t i = 1; i < numbers.size(); ++i)
        if (numbers[i].first == numbers[i - 1].first)
            work.add(Check::number_used_twice,
                     {numbers[i].first, 0, 0, middle_of_found(mesh, work.corners[numbers[i].second])});
    for (std::size_t i = 0; i < work.corners.size(); ++i) {
        const Element& e = mesh.elements[i];
        for (int k = 0; k < work.corners[i].count; ++k)
            if (work.corners[i][k] == MeshLists::NONE)
                work.add(Check::missing_node,
                         {e.number.value, e.corner(k), 0, middle_of_found(mesh, work.corners[i])});
    }
}

void check_concave(SoundnessWork& work, const CornerPlaces& c, double slack, Place here) {
    const MeshLists& mesh = work.mesh;
    for (int k = 0; k < 4; ++k)
        if (cross(mesh.point(c[k]), mesh.point(c[(k + 1) % 4]), mesh.point(c[(k + 2) % 4])) < -slack) {
            here.node = work.node_number(c[(k + 1) % 4]);
            here.at = mesh.point(c[(k + 1) % 4]);
            work.add(Check::concave_element, here);
            return;
        }
}

void check_shapes(SoundnessWork& work) {
    const MeshLists& mesh = work.mesh;
    const double digits = resolution(mesh.bounds());
    for (std::size_t i = 0; i < work.corners.size(); ++i) {
        const Element& e = mesh.elements[i];
        const CornerPlaces& c = work.corners[i];
        if (!c.complete() || e.of == ElementClass::joint)
            continue;
        const Place here{e.number.value, 0, 0, middle(mesh, c)};
        double longest = 0.0;
        bool twice = false;
        for (int k = 0; k < c.count; ++k) {
            longest = std::max(longest, distance(mesh.point(c[k]), mesh.point(c[(k + 1) % c.count])));
            for (int l = 0; l < k; ++l)
                twice = twice || c[k] == c[l];
        }
        const double area = signed_area(mesh, c);
        if (twice || (e.is_line() ? longest <= digits : std::abs(area) <= 0.5 * digits * longest))
            work.add(Check::degenerate_element, here);
        else if (e.is_line())
            continue;
        else if (area < 0.0)
            work.add(Check::inverted_element, here);
        else if (c.count == 4)
            check_concave(work, c, digits * longest, here);
    }
}

// Nodes of solids, and of any element.
void mark_nodes(SoundnessWork& work) {
    const MeshLists& mesh = work.mesh;
    work.of_solid.assign(mesh.nodes.size(), 0);
    std::vector<std::uint8_t> used(mesh.nodes.size(), 0);
    for (std::size_t i = 0; i < work.corners.size(); ++i) {
        const ElementWords& w = mesh.elements[i].words;
        const CornerPlaces& c = work.corners[i];
        for (int k = 0; k < c.count; ++k)
            if (c[k] != MeshLists::NONE) {
                used[work.at(c[k])] = 1;
                if (mesh.elements[i].of == ElementClass::solid)
                    work.of_solid[work.at(c[k])] = 1;
            }
        for (const NodeNumber midside : {w.midside_5, w.midside_6, w.midside_7, w.midside_8})
            if (mesh.node_place(midside.value) != MeshLists::NONE)
                used[work.at(mesh.node_place(midside.value))] = 1;
    }
    for (std::size_t n = 0; n < used.size(); ++n)
        if (used[n] == 0)
            work.add(Check::unused_node,
                     {0, mesh.nodes[n].number.value, 0, mesh.point(static_cast<std::int32_t>(n))});
}

// One solid of each set of doubles goes on to the search for sides.
void find_doubles(SoundnessWork& work) {
    SolidSets sets = solid_sets(work.mesh, work.corners, work.closed);
    work.single = std::move(sets.single);
    for (const auto& [later, earlier] : sets.doubles) {
        const bool same = work.element(later).words.material == work.element(earlier).words.material;
        work.add(
            same ? Check::duplicate_element : Check::double_element,
            {work.number(later), 0, work.number(earlier), middle(work.mesh, work.corners[work.at(later)])});
    }
    for (const auto& [later, first] : sets.further)
        work.add(Check::stacked_double, {work.number(later), 0, work.number(first),
                                         middle(work.mesh, work.corners[work.at(later)])});
}

void count_parts(SoundnessWork& work) {
    UnionFind sets(work.mesh.nodes.size());
    std::vector<std::int32_t> roots;
    for (const CornerPlaces& c : work.corners)
        for (int k = 1; k < c.count; ++k)
            if (c[0] != MeshLists::NONE && c[k] != MeshLists::NONE)
                sets.join(c[0], c[k]);
    for (const CornerPlaces& c : work.corners)
        if (c[0] != MeshLists::NONE)
            roots.push_back(sets.find(c[0]));
    std::sort(roots.begin(), roots.end());
    work.result.parts = static_cast<std::size_t>(std::unique(roots.begin(), roots.end()) - roots.begin());
}

}  // namespace

PlacedNodes SoundnessWork::nodes_of_solids() const {
    PlacedNodes placed;
    for (std::size_t n = 0; n < of_solid.size(); ++n)
        if (of_solid[n] != 0) {
            placed.nodes.push_back(static_cast<std::int32_t>(n));
            placed.points.push_back(mesh.point(placed.nodes.back()));
        }
    return placed;
}

bool SoundnessWork::is_side(std::int32_t a, std::int32_t b) const {
    const std::pair wanted{std::min(a, b), std::max(a, b)};
    const auto found =
        std::lower_bound(sides.begin(), sides.end(), wanted, [](const ClosedSide& side, const auto& ends) {
            return std::pair{side.low, side.high} < ends;
        });
    return found != sides.end() && std::pair{found->low, found->high} == wanted;
}

FreeEdges outline_of(const MeshLists& mesh, const std::vector<CornerPlaces>& corners) {
    SoundnessWork work{mesh, corners, {}};
    work.result.findings = nothing_found();
    work.closed = nodes_with_joints_closed(mesh, corners);
    find_doubles(work);
    find_sides(work);
    return std::move(work.result.free_edges);
}

Soundness check_soundness(const MeshLists& mesh, const std::vector<CornerPlaces>& corners, double tolerance) {
    SoundnessWork work{mesh, corners, {}};
    work.result.findings = nothing_found();
    work.result.tolerance = tolerance > 0.0 ? tolerance : usual_tolerance(mesh.bounds());
    check_numbers(work);
    check_shapes(work);
    work.closed = nodes_with_joints_closed(mesh, corners);
    mark_nodes(work);
    find_doubles(work);
    find_sides(work);
    find_hanging_nodes(work);
    find_coincident_nodes(work);
    find_joint_faults(work);
    find_open_wedges(work);
    find_line_faults(work);
    find_midside_faults(work);
    find_overlaps(work);
    find_loose_parts(work);
    find_odd_codes(work);
    count_parts(work);
    return std::move(work.result);
}

}  // namespace brelan
