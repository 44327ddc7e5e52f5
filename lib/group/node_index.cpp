#include "group/node_index.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

#include "group/engine.h"
#include "group/engine_mesh.h"

namespace brelan {

namespace {

bool is_within(const Mesh& mesh, NodeNumber n, const Point& point, float reach) {
    return distance(node_point(mesh, n), point) < reach;
}

}  // namespace

void NodeIndex::note(const Mesh& mesh, NodeNumber n) {
    if (cells_.empty())
        return;
    std::vector<NodeNumber>& cell = cells_[place(column(mesh.x[n]), row(mesh.y[n]))];
    const auto at = std::lower_bound(cell.begin(), cell.end(), n);
    if (at == cell.end() || *at != n)
        cell.insert(at, n);
}

NodeNumber NodeIndex::lowest_within(Mesh& mesh, Engine& engine, const Point& point, float reach) {
    if (cells_.empty())
        build(mesh, engine);
    // Distances below the smallest normal number come out as 0.
    const float room_x = reach * 1.001F + std::abs(point.x) * 1.0E-6F + 1.0E-18F;
    const float room_y = reach * 1.001F + std::abs(point.y) * 1.0E-6F + 1.0E-18F;
    NodeNumber lowest(std::numeric_limits<std::int32_t>::max());
    for (std::int32_t c = column(point.x - room_x); c <= column(point.x + room_x); ++c)
        for (std::int32_t r = row(point.y - room_y); r <= row(point.y + room_y); ++r)
            for (const NodeNumber n : cells_[place(c, r)]) {
                if (n >= lowest)
                    break;
                if (is_within(mesh, n, point, reach))
                    lowest = n;
            }
    return lowest <= engine.highest_node ? lowest : NodeNumber{};
}

void NodeIndex::build(Mesh& mesh, Engine& engine) {
    x0_ = x1_ = mesh.x[NodeNumber(1)];
    y0_ = y1_ = mesh.y[NodeNumber(1)];
    for (NodeNumber n{1}; n <= engine.highest_node; ++n) {
        x0_ = std::min(x0_, mesh.x[n]);
        x1_ = std::max(x1_, mesh.x[n]);
        y0_ = std::min(y0_, mesh.y[n]);
        y1_ = std::max(y1_, mesh.y[n]);
    }
    const float side = std::sqrt(static_cast<float>(std::max(engine.highest_node.value, 1)));
    count_ = std::clamp(static_cast<std::int32_t>(side), 1, MOST_CELLS);
    cells_.assign(static_cast<std::size_t>(count_) * static_cast<std::size_t>(count_), {});
    for (NodeNumber n{1}; n <= engine.highest_node; ++n)
        cells_[place(column(mesh.x[n]), row(mesh.y[n]))].push_back(n);
}

// Cells at the border reach beyond it without end.
std::int32_t NodeIndex::cell(float v, float low, float high) const {
    const float at = (v - low) / std::max(high - low, 1.0E-30F) * static_cast<float>(count_);
    return at > 0.0F ? static_cast<std::int32_t>(std::min(at, static_cast<float>(count_ - 1))) : 0;
}

NodeNumber lowest_node_within(Mesh& mesh, Engine& engine, const Point& point, float reach) {
    if (engine.uses_indexes)
        return engine.node_index.lowest_within(mesh, engine, point, reach);
    for (NodeNumber n{1}; n <= engine.highest_node; ++n)
        if (is_within(mesh, n, point, reach))
            return n;
    return {};
}

void note_node_place(Mesh& mesh, Engine& engine, NodeNumber n) {
    engine.node_index.note(mesh, n);
}

void forget_node_places(Engine& engine) {
    engine.node_index.forget();
}

}  // namespace brelan
