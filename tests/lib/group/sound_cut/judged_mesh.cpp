#include "lib/group/sound_cut/judged_mesh.h"

#include <algorithm>
#include <cmath>

namespace brelan::test {

Side side_of(int a, int b) {
    return {std::min(a, b), std::max(a, b)};
}

double cross(const Spot& a, const Spot& b, const Spot& c) {
    return (b.x - a.x) * (c.y - a.y) - (b.y - a.y) * (c.x - a.x);
}

double distance(const Spot& a, const Spot& b) {
    return std::hypot(a.x - b.x, a.y - b.y);
}

double share_along(const Spot& p, const Spot& a, const Spot& b) {
    const double dx = b.x - a.x, dy = b.y - a.y, square = dx * dx + dy * dy;
    return square > 0.0 ? ((p.x - a.x) * dx + (p.y - a.y) * dy) / square : 0.0;
}

double distance_to(const Spot& p, const Spot& a, const Spot& b) {
    const double t = std::clamp(share_along(p, a, b), 0.0, 1.0);
    return distance(p, {a.x + t * (b.x - a.x), a.y + t * (b.y - a.y)});
}

std::string words(const Spot& p) {
    std::array<char, 80> buffer{};
    std::snprintf(buffer.data(), buffer.size(), "(%.7g, %.7g)", p.x, p.y);
    return buffer.data();
}

JudgedMesh::JudgedMesh(const CutMesh& given) : mesh(given) {
    for (const CutNode& node : mesh.nodes)
        places_[node.number] = node.at;
    for (const CutJoint& joint : mesh.joints)
        for (const auto& [line, twin] : {std::pair{0, 3}, std::pair{1, 2}}) {
            const int a = root(joint.corners[static_cast<std::size_t>(line)]);
            const int b = root(joint.corners[static_cast<std::size_t>(twin)]);
            if (a != b)
                joined_[std::max(a, b)] = std::min(a, b);
        }
    std::set<std::vector<int>> seen;
    std::set<int> used;
    double largest = 0.0;
    for (std::size_t s = 0; s < mesh.solids.size(); ++s) {
        const std::vector<int>& n = mesh.solids[s].corners;
        used.insert(n.begin(), n.end());
        std::vector<int> set;
        for (const int corner : n)
            set.push_back(root(corner));
        std::sort(set.begin(), set.end());
        if (!seen.insert(set).second) {
            doubles.push_back(s);
            continue;
        }
        originals.push_back(s);
        for (std::size_t i = 0; i < n.size(); ++i) {
            const int a = n[i], b = n[(i + 1) % n.size()];
            raw_sides[side_of(a, b)].push_back(s);
            sides[side_of(root(a), root(b))].push_back(s);
            if (has(a) && has(b))
                largest = std::max(largest, distance(at(a), at(b)));
        }
    }
    solid_nodes.assign(used.begin(), used.end());
    cell_ = std::max(largest, 1.0E-6);
    for (const std::size_t s : originals) {
        std::set<std::pair<int, int>> touched;
        double low_x = 1.0E30, low_y = 1.0E30, high_x = -1.0E30, high_y = -1.0E30;
        for (const int n : mesh.solids[s].corners) {
            if (!has(n))
                continue;
            low_x = std::min(low_x, at(n).x), low_y = std::min(low_y, at(n).y);
            high_x = std::max(high_x, at(n).x), high_y = std::max(high_y, at(n).y);
        }
        if (low_x > high_x)
            continue;
        for (int i = static_cast<int>(std::floor(low_x / cell_)); i <= std::floor(high_x / cell_); ++i)
            for (int k = static_cast<int>(std::floor(low_y / cell_)); k <= std::floor(high_y / cell_); ++k)
                cells_[{i, k}].push_back(s);
    }
}

int JudgedMesh::root(int node) const {
    for (auto at = joined_.find(node); at != joined_.end(); at = joined_.find(node))
        node = at->second;
    return node;
}

const CutSolid* JudgedMesh::solid_at(const Spot& p) const {
    const auto cell =
        cells_.find({static_cast<int>(std::floor(p.x / cell_)), static_cast<int>(std::floor(p.y / cell_))});
    if (cell == cells_.end())
        return nullptr;
    const auto found = std::find_if(cell->second.begin(), cell->second.end(), [&](std::size_t s) {
        const std::vector<int>& n = mesh.solids[s].corners;
        bool inside = false;  // even-odd: also of an element that is no good
        for (std::size_t i = 0; i < n.size(); ++i) {
            const Spot &a = at(n[i]), &b = at(n[(i + 1) % n.size()]);
            if ((a.y > p.y) != (b.y > p.y) && p.x < a.x + (p.y - a.y) / (b.y - a.y) * (b.x - a.x))
                inside = !inside;
        }
        return inside;
    });
    return found == cell->second.end() ? nullptr : &mesh.solids[*found];
}

bool Judgement::on_border(const Spot& p) const {
    const auto near = [&](double a, double b) { return std::abs(a - b) <= rounding; };
    return near(p.x, deck.low.x) || near(p.x, deck.high.x) || near(p.y, deck.low.y) || near(p.y, deck.high.y);
}

bool Judgement::on_border(const Spot& a, const Spot& b) const {
    const auto near = [&](double u, double v, double w) {
        return std::abs(u - w) <= rounding && std::abs(v - w) <= rounding;
    };
    return near(a.x, b.x, deck.low.x) || near(a.x, b.x, deck.high.x) || near(a.y, b.y, deck.low.y) ||
           near(a.y, b.y, deck.high.y);
}

}  // namespace brelan::test
