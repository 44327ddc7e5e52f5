// The border, the area within it, and nodes that the deck holds.
#include <algorithm>
#include <cmath>

#include "lib/group/sound_cut/judged_mesh.h"

namespace brelan::test {

namespace {

bool deletes(const CutRun& run) {
    return std::any_of(run.paths.begin(), run.paths.end(),
                       [](const DrawnPath& path) { return std::abs(path.type) == 1; });
}

template <class Corners>
double area_of(const JudgedMesh& mesh, const Corners& corners) {
    double twice = 0.0;
    for (std::size_t i = 1; i + 1 < corners.size(); ++i)
        twice += cross(mesh.at(corners[0]), mesh.at(corners[i]), mesh.at(corners[i + 1]));
    return twice / 2.0;
}

// Joints of a width take the place of the soil beside them, or lie over it.
void judge_area(const Judgement& j) {
    const double ground = (j.deck.high.x - j.deck.low.x) * (j.deck.high.y - j.deck.low.y);
    double area = 0.0, room = 1.0E-6 * ground;
    for (const std::size_t s : j.mesh.originals)
        area += area_of(j.mesh, j.run.after.solids[s].corners);
    double longest = 0.0;
    for (const auto& [side, elements] : j.mesh.sides)
        longest = std::max(longest, distance(j.mesh.at(side.first), j.mesh.at(side.second)));
    bool lies_over = false;
    for (const DrawnPath& path : j.run.paths) {
        lies_over = lies_over || ((path.type == -2 || path.type == -3) && path.thickness > 0.0);
        // At an end the width runs out along one side, and bends have mitres.
        room += std::abs(path.thickness) * longest + 8.0 * path.thickness * path.thickness;
    }
    if (!lies_over)
        for (const CutJoint& joint : j.run.after.joints)
            area += area_of(j.mesh, joint.corners);
    if (std::abs(area - ground) > room)
        j.add(Law::border, "the elements have an area of " + std::to_string(area) + ", the ground " +
                               std::to_string(ground));
}

// Deleted ground has none of its nodes.
bool has_ground_round(const Spot& p, const Judgement& j) {
    const double reach = 16.0 * j.rounding;
    for (const double x : {-reach, reach})
        for (const double y : {-reach, reach})
            if (j.mesh.covers({p.x + x, p.y + y}))
                return true;
    return false;
}

void judge_corners(const Judgement& j) {
    std::set<std::pair<double, double>> places;
    for (const int n : j.mesh.solid_nodes)
        places.emplace(j.mesh.at(n).x, j.mesh.at(n).y);
    for (const double x : {j.deck.low.x, j.deck.high.x})
        for (const double y : {j.deck.low.y, j.deck.high.y})
            if (!places.contains({x, y}) && has_ground_round({x, y}, j))
                j.add(Law::border, "no node at the corner " + words({x, y}));
}

void judge_outline(const Judgement& j) {
    double length = 0.0;
    for (const auto& [side, elements] : j.mesh.sides)
        if (elements.size() == 1 && j.on_border(j.mesh.at(side.first), j.mesh.at(side.second)))
            length += distance(j.mesh.at(side.first), j.mesh.at(side.second));
    const double drawn = 2.0 * (j.deck.high.x - j.deck.low.x + j.deck.high.y - j.deck.low.y);
    double room = 8.0 * j.rounding;
    for (const DrawnPath& path : j.run.paths)
        room += 4.0 * std::abs(path.thickness);
    if (std::abs(length - drawn) > room)
        j.add(Law::border,
              "the border has a length of " + std::to_string(length) + ", was " + std::to_string(drawn));
}

// Nodes that their codes or a list hold keep their bits from one mesh to the next.
void judge_frozen(const Judgement& j, const CutMesh& before, const std::vector<int>& by_codes,
                  const CutMesh& after) {
    std::set<int> frozen(by_codes.begin(), by_codes.end());
    frozen.insert(j.deck.frozen.begin(), j.deck.frozen.end());
    std::set<std::pair<float, float>> places;
    for (const CutNode& node : after.nodes)
        places.emplace(static_cast<float>(node.at.x), static_cast<float>(node.at.y));
    std::set<int> corners;  // a midside node stays on its side, or goes with it
    for (const CutSolid& solid : before.solids)
        corners.insert(solid.corners.begin(), solid.corners.end());
    for (const CutNode& node : before.nodes) {
        if (!corners.contains(node.number))
            continue;
        const bool on_limits = j.deck.limits && j.on_border(node.at);
        if ((frozen.contains(node.number) || on_limits) &&
            !places.contains({static_cast<float>(node.at.x), static_cast<float>(node.at.y)}) &&
            has_ground_round(node.at, j))
            j.add(Law::pinned,
                  "the frozen node " + std::to_string(node.number) + " has left " + words(node.at));
    }
}

}  // namespace

void judge_border(const Judgement& j) {
    judge_corners(j);
    if (j.run.reread.nodes.empty()) {
        judge_frozen(j, j.run.before, j.run.frozen_codes, j.run.after);
    } else {
        judge_frozen(j, j.run.before, j.run.frozen_codes, j.run.between);
        judge_frozen(j, j.run.reread, j.run.still_frozen, j.run.after);
    }
    if (deletes(j.run))
        return;  // the areas of regions tell
    judge_area(j);
    judge_outline(j);
}

}  // namespace brelan::test
