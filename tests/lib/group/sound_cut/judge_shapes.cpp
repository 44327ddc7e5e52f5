// Shapes: each element by itself, in the run's 32 bits and with the digits of the mesh file.
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <numbers>

#include "lib/group/sound_cut/judged_mesh.h"

namespace brelan::test {

namespace {

constexpr double FLAT_ANGLE = 0.01;  // degrees: below it, and as near to 180, a corner is none

double as_in_file(double value) {
    std::array<char, 40> buffer{};
    std::snprintf(buffer.data(), buffer.size(), "%.5e", value);
    return std::strtod(buffer.data(), nullptr);
}

Spot as_in_file(const Spot& p) {
    return {as_in_file(p.x), as_in_file(p.y)};
}

double area_of(const std::vector<Spot>& corners) {
    double twice = 0.0;
    for (std::size_t i = 1; i + 1 < corners.size(); ++i)
        twice += cross(corners[0], corners[i], corners[i + 1]);
    return twice / 2.0;
}

// Empty for a good element; else what it is.
std::string fault_of(const std::vector<Spot>& corners, double& smallest_angle) {
    if (area_of(corners) <= 0.0)
        return "inverted";
    for (std::size_t i = 0; i < corners.size(); ++i) {
        const Spot &before = corners[(i + corners.size() - 1) % corners.size()], &here = corners[i];
        const Spot& next = corners[(i + 1) % corners.size()];
        const double turn = cross(here, next, before);
        const double along =
            (next.x - here.x) * (before.x - here.x) + (next.y - here.y) * (before.y - here.y);
        const double angle = std::atan2(turn, along) * 180.0 / std::numbers::pi;
        if (turn <= 0.0)
            return "concave";
        if (angle < FLAT_ANGLE || angle > 180.0 - FLAT_ANGLE)
            return "flat";
        smallest_angle = std::min(smallest_angle, angle);
    }
    return "";
}

std::string element_text(const CutSolid& solid, const Spot& at) {
    std::string text = "element " + std::to_string(solid.number) + " (";
    for (const int n : solid.corners)
        text += std::to_string(n) + " ";
    text.back() = ')';
    return text + " at " + words(at);
}

void judge_element(const Judgement& j, const CutSolid& solid) {
    std::vector<Spot> corners, written;
    for (const int n : solid.corners) {
        corners.push_back(j.mesh.at(n));
        written.push_back(as_in_file(corners.back()));
    }
    for (std::size_t i = 0; i < corners.size(); ++i)
        for (std::size_t k = 0; k < i; ++k)
            if (solid.corners[i] == solid.corners[k]) {
                j.add(Law::shape, element_text(solid, corners[i]) + " has a corner twice");
                return;
            }
    double angle_in_file = 180.0;
    const double smallest_before = j.verdict.smallest_angle;
    if (const std::string fault = fault_of(corners, j.verdict.smallest_angle); !fault.empty())
        j.add(Law::shape, element_text(solid, corners[0]) + " is " + fault);
    else if (const std::string there = fault_of(written, angle_in_file); !there.empty())
        j.add(Law::shape, element_text(solid, corners[0]) + " is " + there + " by the digits of the file");
    if (j.verdict.smallest_angle < smallest_before)
        j.verdict.smallest_at = element_text(solid, corners[0]);
}

bool doubles_elements(const DrawnPath& path) {
    return std::abs(path.type) == 4 || (std::abs(path.type) == 3 && path.overlay != 0);
}

// How many groups ask for doubles at a spot.
std::ptrdiff_t doublings_at(const Judgement& j, const Spot& p) {
    return std::count_if(j.run.paths.begin(), j.run.paths.end(), [&](const DrawnPath& path) {
        bool inside = false;
        for (std::size_t i = 0; doubles_elements(path) && i < path.polygon.size(); ++i) {
            const Spot &a = path.polygon[i], &b = path.polygon[(i + 1) % path.polygon.size()];
            if ((a.y > p.y) != (b.y > p.y) && p.x < a.x + (p.y - a.y) / (b.y - a.y) * (b.x - a.x))
                inside = !inside;
        }
        return inside;
    });
}

// Doubles are asked for, and of one material only where a stage doubles those of another.
void judge_doubles(const Judgement& j) {
    std::set<std::pair<std::vector<int>, int>> seen;
    for (const CutSolid& solid : j.run.after.solids) {
        std::vector<int> set;
        Spot middle;
        for (const int n : solid.corners) {
            set.push_back(j.mesh.root(n));
            middle.x += j.mesh.at(n).x / static_cast<double>(solid.corners.size());
            middle.y += j.mesh.at(n).y / static_cast<double>(solid.corners.size());
        }
        std::sort(set.begin(), set.end());
        if (!seen.emplace(set, solid.material).second && doublings_at(j, middle) < 2)
            j.add(Law::shape, element_text(solid, j.mesh.at(solid.corners[0])) +
                                  " is there twice with material " + std::to_string(solid.material));
    }
    if (!j.mesh.doubles.empty() && std::none_of(j.run.paths.begin(), j.run.paths.end(), doubles_elements))
        j.add(Law::shape, std::to_string(j.mesh.doubles.size()) + " elements lie over others");
}

}  // namespace

bool judge_names(const Judgement& j) {
    bool all_there = true;
    const auto look = [&](const char* what, int number, int node) {
        if (j.mesh.has(node))
            return;
        all_there = false;
        j.add(Law::shape, std::string(what) + " " + std::to_string(number) + " names node " +
                              std::to_string(node) + ", which is not there");
    };
    for (const CutSolid& solid : j.run.after.solids)
        for (const int n : solid.corners)
            look("element", solid.number, n);
    for (const CutJoint& joint : j.run.after.joints)
        for (const int n : joint.corners)
            look("joint", joint.number, n);
    for (const CutLine& line : j.run.after.lines)
        for (const int n : {line.from, line.to})
            look("line element", line.number, n);
    return all_there;
}

void judge_shapes(const Judgement& j) {
    for (const CutNode& node : j.run.after.nodes)
        if (!std::isfinite(node.at.x) || !std::isfinite(node.at.y))
            j.add(Law::shape, "node " + std::to_string(node.number) + " has a coordinate that is no number");
    for (const CutSolid& solid : j.run.after.solids) {
        ++j.verdict.solids;
        j.verdict.triangles += solid.corners.size() == 3 ? 1 : 0;
        judge_element(j, solid);
    }
    judge_doubles(j);
    for (const CutLine& line : j.run.after.lines)
        if (line.from == line.to)
            j.add(Law::shape, "line element " + std::to_string(line.number) + " runs from node " +
                                  std::to_string(line.from) + " to itself");
    // The toe of a joint is one node: the last joint element of a line closes on it.
    std::map<int, int> joints_at;
    for (const CutJoint& joint : j.run.after.joints)
        for (const int corner : std::set<int>(joint.corners.begin(), joint.corners.end()))
            ++joints_at[corner];
    for (const CutJoint& joint : j.run.after.joints)
        for (std::size_t i = 0; i < 4; ++i) {
            const bool is_toe = (i == 1 || i == 3) && joint.corners[i] == joint.corners[(i + 1) % 4] &&
                                joint.corners[(i + 2) % 4] != joint.corners[(i + 3) % 4];
            if (is_toe && joints_at[joint.corners[i]] == 1)
                continue;
            if (joint.corners[i] == joint.corners[(i + 1) % 4])
                j.add(Law::shape, "joint " + std::to_string(joint.number) + " is collapsed at node " +
                                      std::to_string(joint.corners[i]));
        }
}

}  // namespace brelan::test
