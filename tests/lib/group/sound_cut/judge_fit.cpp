// Whether elements fit together: the sides that no neighbour shares are the border, faces of joints, or bound
// a hole that the deck asks for.
#include <algorithm>
#include <cmath>

#include "lib/group/sound_cut/judged_mesh.h"

namespace brelan::test {

namespace {

// A deletion by whole elements leaves a border that no polygon tells.
bool deletes_whole_elements(const CutRun& run) {
    return std::any_of(run.paths.begin(), run.paths.end(),
                       [](const DrawnPath& path) { return std::abs(path.type) == 1 && !path.exact; });
}

bool lies_on_deletion(const Judgement& j, const Spot& a, const Spot& b) {
    for (const DrawnPath& path : j.run.paths) {
        if (std::abs(path.type) != 1)
            continue;
        const Spot middle{(a.x + b.x) / 2.0, (a.y + b.y) / 2.0};
        for (std::size_t i = 0; i < path.polygon.size(); ++i)
            if (distance_to(middle, path.polygon[i], path.polygon[(i + 1) % path.polygon.size()]) <= j.same)
                return true;
    }
    return false;
}

// The nodes by cells, to find those near a side.
class NodeCells {
public:
    NodeCells(const JudgedMesh& mesh, double cell) : cell_(cell) {
        for (const int n : mesh.solid_nodes)
            if (mesh.has(n))
                cells_[key(mesh.at(n))].push_back(n);
    }
    template <class Use>
    void near(const Spot& a, const Spot& b, double reach, Use use) const {
        const auto low = key({std::min(a.x, b.x) - reach, std::min(a.y, b.y) - reach});
        const auto high = key({std::max(a.x, b.x) + reach, std::max(a.y, b.y) + reach});
        for (long i = low.first; i <= high.first; ++i)
            for (long k = low.second; k <= high.second; ++k)
                if (const auto found = cells_.find({i, k}); found != cells_.end())
                    for (const int n : found->second)
                        use(n);
    }

private:
    std::pair<long, long> key(const Spot& p) const {
        return {std::lround(std::floor(p.x / cell_)), std::lround(std::floor(p.y / cell_))};
    }
    double cell_;
    std::map<std::pair<long, long>, std::vector<int>> cells_;
};

// A side that one element alone has.
void judge_free_side(const Judgement& j, const NodeCells& cells, int a, int b) {
    const Spot &from = j.mesh.at(a), &to = j.mesh.at(b);
    bool hangs = false;
    cells.near(from, to, j.rounding, [&](int n) {
        const Spot& p = j.mesh.at(n);
        const double t = share_along(p, from, to), length = distance(from, to);
        if (hangs || j.mesh.root(n) == j.mesh.root(a) || j.mesh.root(n) == j.mesh.root(b) ||
            t * length <= j.rounding || (1.0 - t) * length <= j.rounding ||
            distance_to(p, from, to) > 4.0 * j.rounding)
            return;
        hangs = true;
        j.add(Law::fit, "node " + std::to_string(n) + " hangs on the side from node " + std::to_string(a) +
                            " " + words(from) + " to " + std::to_string(b) + " " + words(to) + " at " +
                            words(p));
    });
    if (!hangs && !j.on_border(from, to) && !deletes_whole_elements(j.run) && !lies_on_deletion(j, from, to))
        j.add(Law::fit, "no neighbour at the side from node " + std::to_string(a) + " " + words(from) +
                            " to " + std::to_string(b) + " " + words(to));
}

// Sides with twins apart: a joint's faces are sides of solids, and nothing else is open.
void judge_open_sides(const Judgement& j) {
    std::set<Side> faces;
    bool lies_over = false;  // joints of a width over soil that stays
    for (const DrawnPath& path : j.run.paths)
        lies_over = lies_over || ((path.type == -2 || path.type == -3) && path.thickness > 0.0);
    for (const CutJoint& joint : j.run.after.joints)
        for (const std::size_t k : {0U, 2U}) {
            const int a = joint.corners[k], b = joint.corners[k + 1];
            faces.insert(side_of(a, b));
            if (!lies_over && !j.mesh.raw_sides.contains(side_of(a, b)) &&
                !j.on_border(j.mesh.at(a), j.mesh.at(b)))
                j.add(Law::fit, "no element at the face of joint " + std::to_string(joint.number) +
                                    " from node " + std::to_string(a) + " to " + std::to_string(b) + " at " +
                                    words(j.mesh.at(a)));
        }
    if (j.run.after.joints.empty() || lies_over)
        return;
    for (const auto& [side, elements] : j.mesh.raw_sides) {
        const auto merged = j.mesh.sides.find(side_of(j.mesh.root(side.first), j.mesh.root(side.second)));
        if (elements.size() == 1 && merged->second.size() == 2 && !faces.contains(side))
            j.add(Law::fit, "the ground is open, without a joint, at the side from node " +
                                std::to_string(side.first) + " " + words(j.mesh.at(side.first)) + " to " +
                                std::to_string(side.second) + " " + words(j.mesh.at(side.second)));
    }
}

}  // namespace

void judge_fit(const Judgement& j) {
    double longest = 0.0;
    for (const auto& [side, elements] : j.mesh.sides)
        longest = std::max(longest, distance(j.mesh.at(side.first), j.mesh.at(side.second)));
    const NodeCells cells(j.mesh, std::max(longest, 1.0E-6));
    for (const auto& [side, elements] : j.mesh.sides) {
        if (elements.size() > 2)
            j.add(Law::fit, std::to_string(elements.size()) + " elements at the side from node " +
                                std::to_string(side.first) + " " + words(j.mesh.at(side.first)) + " to " +
                                std::to_string(side.second));
        if (elements.size() == 1)
            judge_free_side(j, cells, side.first, side.second);
    }
    judge_open_sides(j);
    for (const int n : j.mesh.solid_nodes)
        cells.near(j.mesh.at(n), j.mesh.at(n), j.rounding, [&](int other) {
            if (other < n && j.mesh.root(other) != j.mesh.root(n) &&
                distance(j.mesh.at(n), j.mesh.at(other)) <= j.rounding)
                j.add(Law::fit, "nodes " + std::to_string(other) + " and " + std::to_string(n) +
                                    " are at one place, unconnected: " + words(j.mesh.at(n)));
        });
}

}  // namespace brelan::test
