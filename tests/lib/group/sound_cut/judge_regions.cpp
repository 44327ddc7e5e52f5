// Areas by material: what the outlines draw, cell by cell between all their sides, against the elements.
#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "lib/group/sound_cut/judged_mesh.h"

namespace brelan::test {

namespace {

struct OutlineEdge {
    Spot low, high;
    std::size_t polygon = 0;

    double at(double y) const { return low.x + (high.x - low.x) * ((y - low.y) / (high.y - low.y)); }
};

// The elements over one spot.
struct Layer {
    int material = 0;
    bool workable = true;  // doubles of an overlay take no part in later groups
};

class Regions {
public:
    explicit Regions(const Judgement& judgement) : j_(judgement) {
        const Spot &low = j_.deck.low, &high = j_.deck.high;
        add({low, {high.x, low.y}, high, {low.x, high.y}});
        for (const CutSolid& solid : j_.run.before.solids)
            if (std::find(j_.deck.listed.begin(), j_.deck.listed.end(), solid.number) !=
                j_.deck.listed.end()) {
                std::vector<Spot> corners;
                for (const int n : solid.corners)
                    for (const CutNode& node : j_.run.before.nodes)
                        if (node.number == n)
                            corners.push_back(node.at);
                add(corners);
                ++listed_;
            }
        for (const DrawnPath& path : j_.run.paths)
            if (path.exact && acts(path)) {
                add(path.polygon);
                paths_.push_back(&path);
            }
    }
    static bool acts(const DrawnPath& path) {
        const int type = std::abs(path.type);
        return type == 1 || type == 3 || type == 4;
    }

    std::map<int, double> areas() {
        std::vector<double> levels = all_levels();
        std::map<int, double> sums;
        for (std::size_t i = 0; i + 1 < levels.size(); ++i)
            if (levels[i + 1] > levels[i])
                add_slab(levels[i], levels[i + 1], sums);
        return sums;
    }

private:
    void add(const std::vector<Spot>& polygon) {
        for (std::size_t i = 0; i < polygon.size(); ++i) {
            const Spot &a = polygon[i], &b = polygon[(i + 1) % polygon.size()];
            if (a.y != b.y)
                edges_.push_back({a.y < b.y ? a : b, a.y < b.y ? b : a, polygons_});
        }
        ++polygons_;
    }

    std::vector<double> all_levels() const {
        std::vector<double> levels{j_.deck.low.y, j_.deck.high.y};
        for (std::size_t i = 0; i < edges_.size(); ++i) {
            levels.push_back(edges_[i].low.y);
            levels.push_back(edges_[i].high.y);
            for (std::size_t k = 0; k < i; ++k) {
                const OutlineEdge &u = edges_[i], &v = edges_[k];
                const double low = std::max(u.low.y, v.low.y), high = std::min(u.high.y, v.high.y);
                if (low >= high)
                    continue;
                const double below = u.at(low) - v.at(low), above = u.at(high) - v.at(high);
                if ((below < 0.0) != (above < 0.0))
                    levels.push_back(low + (high - low) * (below / (below - above)));
            }
        }
        std::sort(levels.begin(), levels.end());
        return levels;
    }

    void add_slab(double low, double high, std::map<int, double>& sums) const {
        const double middle = (low + high) / 2.0;
        std::vector<std::pair<double, std::size_t>> crossings;
        for (const OutlineEdge& edge : edges_)
            if (edge.low.y < middle && edge.high.y > middle)
                crossings.emplace_back(edge.at(middle), edge.polygon);
        std::sort(crossings.begin(), crossings.end());
        std::vector<bool> inside(polygons_);
        for (std::size_t i = 0; i + 1 < crossings.size(); ++i) {
            inside[crossings[i].second] = !inside[crossings[i].second];
            const double area = (crossings[i + 1].first - crossings[i].first) * (high - low);
            if (inside[0] && area > 0.0)
                for (const Layer& layer : layers(inside))
                    sums[layer.material] += area;
        }
    }

    std::vector<Layer> layers(const std::vector<bool>& inside) const {
        std::vector<Layer> layers{{1, true}};
        for (std::size_t k = 1; k <= listed_; ++k)
            if (inside[k])
                return layers;
        for (std::size_t p = 0; p < paths_.size(); ++p)
            act(*paths_[p], inside[1 + listed_ + p], layers);
        return layers;
    }

    static void act(const DrawnPath& path, bool inside, std::vector<Layer>& layers) {
        if (std::abs(path.type) == 1) {
            if (inside == (path.type == 1))
                std::erase_if(layers, [](const Layer& layer) { return layer.workable; });
            return;
        }
        if (!inside)
            return;
        const std::size_t count = layers.size();
        for (std::size_t i = 0; i < count; ++i) {
            if (!layers[i].workable)
                continue;
            if (std::abs(path.type) == 4) {
                layers.push_back({std::abs(path.material), true});
                if (path.material >= 0)
                    layers[i].material = path.old_material != 0 ? path.old_material : path.material + 1;
            } else if (path.overlay != 0) {
                layers.push_back({std::abs(path.material), false});
            } else if (path.material > 0) {
                layers[i].material = path.material;
            }
        }
    }

    const Judgement& j_;
    std::vector<OutlineEdge> edges_;
    std::size_t polygons_ = 0, listed_ = 0;
    std::vector<const DrawnPath*> paths_;
};

// Whether a corner of an outline is nearer than TOLSAME to another side, and not on it: they may become one.
bool things_nearly_meet(const Judgement& j) {
    const auto nearly = [&](double off) { return off > j.rounding && off <= 1.01 * j.same; };
    const Spot low = j.deck.low, high = j.deck.high;
    for (const DrawnPath& path : j.run.paths)
        for (const Spot& p : path.polygon) {
            for (const double off : {p.x - low.x, high.x - p.x, p.y - low.y, high.y - p.y})
                if (nearly(std::abs(off)))
                    return true;
            for (const DrawnPath& other : j.run.paths)
                for (std::size_t i = 0; i < other.polygon.size(); ++i)
                    if (nearly(
                            distance_to(p, other.polygon[i], other.polygon[(i + 1) % other.polygon.size()])))
                        return true;
        }
    return false;
}

}  // namespace

void judge_regions(const Judgement& j) {
    bool any = false;
    for (const DrawnPath& path : j.run.paths) {
        if (Regions::acts(path) && !path.exact)
            return;  // whole elements, as their middles lie
        if (path.thickness != 0.0)
            return;  // soil gives up the width
        any = any || Regions::acts(path);
    }
    if (!any)
        return;
    std::map<int, double> drawn = Regions(j).areas(), found;
    for (const CutSolid& solid : j.run.after.solids)
        for (std::size_t i = 1; i + 1 < solid.corners.size(); ++i)
            found[solid.material] += cross(j.mesh.at(solid.corners[0]), j.mesh.at(solid.corners[i]),
                                           j.mesh.at(solid.corners[i + 1])) /
                                     2.0;
    const double width = j.deck.high.x - j.deck.low.x, height = j.deck.high.y - j.deck.low.y;
    double length = width + height;
    for (const DrawnPath& path : j.run.paths)
        for (std::size_t i = 0; i < path.polygon.size(); ++i)
            length += distance(path.polygon[i], path.polygon[(i + 1) % path.polygon.size()]);
    const double room = 1.0E-6 * width * height + 4.0 * j.rounding * length +
                        (j.verdict.gave_way || things_nearly_meet(j) ? j.same * length : 0.0);
    for (const auto& [material, area] : drawn)
        found.try_emplace(material, 0.0);
    for (const auto& [material, area] : found)
        if (std::abs(area - drawn[material]) > room)
            j.add(Law::region, "material " + std::to_string(material) + " has an area of " +
                                   std::to_string(area) + ", its outlines " +
                                   std::to_string(drawn[material]));
}

}  // namespace brelan::test
