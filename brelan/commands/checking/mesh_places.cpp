#include "commands/checking/mesh_places.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace brelan::tool {

namespace {

constexpr double NOTHING = 1e-5;  // of the mesh's extent; coordinates have six digits

double squared(double value) {
    return value * value;
}

}  // namespace

double distance_to_segment(const DeckPoint& point, const DeckPoint& from, const DeckPoint& to) {
    const double dx = to.x - from.x, dy = to.y - from.y;
    const double length = squared(dx) + squared(dy);
    const double share =
        length > 0.0 ? std::clamp(((point.x - from.x) * dx + (point.y - from.y) * dy) / length, 0.0, 1.0)
                     : 0.0;
    return std::hypot(point.x - from.x - share * dx, point.y - from.y - share * dy);
}

MeshPlaces::MeshPlaces(const MeshLists& mesh)
    : mesh_(mesh), corners_(corners_of(mesh)), bounds_(mesh.bounds()) {
    nothing_ = NOTHING * std::max(bounds_.extent(), std::numeric_limits<double>::min());
    const double area = std::max(bounds_.width(), nothing_) * std::max(bounds_.height(), nothing_);
    cell_ = std::max(std::sqrt(area / static_cast<double>(std::max<std::size_t>(mesh.elements.size(), 1))),
                     bounds_.extent() / 1000.0);
    if (!(cell_ > 0.0))
        cell_ = 1.0;
    columns_ = static_cast<std::int64_t>(bounds_.width() / cell_) + 1;
    rows_ = static_cast<std::int64_t>(bounds_.height() / cell_) + 1;
    solids_.resize(static_cast<std::size_t>(columns_ * rows_));
    nodes_.resize(solids_.size());
    const auto index = [&](std::int64_t column, std::int64_t row) {
        return static_cast<std::size_t>(column * rows_ + row);
    };
    for (std::size_t n = 0; n < mesh.nodes.size(); ++n) {
        const Position p = mesh.point(static_cast<std::int32_t>(n));
        const Cell cell = cell_of(p.x, p.y);
        nodes_[index(cell.column, cell.row)].push_back(static_cast<std::int32_t>(n));
    }
    for (std::size_t e = 0; e < mesh.elements.size(); ++e) {
        if (mesh.elements[e].of != ElementClass::solid || !corners_[e].complete())
            continue;
        const Bounds box = box_of(mesh, corners_[e]);
        const Cell low = cell_of(box.low.x - nothing_, box.low.y - nothing_);
        const Cell high = cell_of(box.high.x + nothing_, box.high.y + nothing_);
        for (std::int64_t column = low.column; column <= high.column; ++column)
            for (std::int64_t row = low.row; row <= high.row; ++row)
                solids_[index(column, row)].push_back(static_cast<std::int32_t>(e));
    }
}

MeshPlaces::Cell MeshPlaces::cell_of(double x, double y) const {
    const auto place = [&](double offset, std::int64_t count) {
        // Places at the ends of the range give no number; they are in no element either.
        const double cells = std::floor(offset / cell_);
        return cells > 0.0 ? static_cast<std::int64_t>(std::min(cells, static_cast<double>(count - 1))) : 0;
    };
    return {place(x - bounds_.low.x, columns_), place(y - bounds_.low.y, rows_)};
}

const std::vector<std::int32_t>& MeshPlaces::solids_at(const DeckPoint& point) const {
    const Cell cell = cell_of(point.x, point.y);
    return solids_[static_cast<std::size_t>(cell.column * rows_ + cell.row)];
}

double MeshPlaces::distance_to_sides(std::int32_t solid, const DeckPoint& point) const {
    const CornerPlaces& corners = corners_[static_cast<std::size_t>(solid)];
    double least = std::numeric_limits<double>::infinity();
    for (int k = 0; k < corners.count; ++k) {
        const Position a = mesh_.point(corners[k]);
        const Position b = mesh_.point(corners[(k + 1) % corners.count]);
        least = std::min(least, distance_to_segment(point, {a.x, a.y}, {b.x, b.y}));
    }
    return least;
}

// By the crossings of a ray; the sides count as inside.
bool MeshPlaces::contains(std::int32_t solid, const DeckPoint& point) const {
    if (distance_to_sides(solid, point) <= nothing_)
        return true;
    const CornerPlaces& corners = corners_[static_cast<std::size_t>(solid)];
    bool in = false;
    for (int k = 0; k < corners.count; ++k) {
        const Position a = mesh_.point(corners[k]);
        const Position b = mesh_.point(corners[(k + 1) % corners.count]);
        if ((a.y > point.y) != (b.y > point.y) && point.x < a.x + (point.y - a.y) / (b.y - a.y) * (b.x - a.x))
            in = !in;
    }
    return in;
}

bool MeshPlaces::inside(const DeckPoint& point) const {
    const std::vector<std::int32_t>& solids = solids_at(point);
    return std::any_of(solids.begin(), solids.end(), [&](std::int32_t e) { return contains(e, point); });
}

bool MeshPlaces::on_side(const DeckPoint& point) const {
    const std::vector<std::int32_t>& solids = solids_at(point);
    return std::any_of(solids.begin(), solids.end(),
                       [&](std::int32_t e) { return distance_to_sides(e, point) <= nothing_; });
}

bool MeshPlaces::at_node(const DeckPoint& point, double tolerance) const {
    const Cell low = cell_of(point.x - tolerance, point.y - tolerance);
    const Cell high = cell_of(point.x + tolerance, point.y + tolerance);
    for (std::int64_t column = low.column; column <= high.column; ++column)
        for (std::int64_t row = low.row; row <= high.row; ++row)
            for (const std::int32_t n : nodes_[static_cast<std::size_t>(column * rows_ + row)]) {
                const Position p = mesh_.point(n);
                if (std::hypot(p.x - point.x, p.y - point.y) <= tolerance)
                    return true;
            }
    return false;
}

std::size_t MeshPlaces::nodes_between(const DeckPoint& from, const DeckPoint& to) const {
    std::size_t count = 0;
    for (std::size_t n = 0; n < mesh_.nodes.size(); ++n) {
        const Position p = mesh_.point(static_cast<std::int32_t>(n));
        const DeckPoint point{p.x, p.y};
        const double ends =
            std::min(std::hypot(p.x - from.x, p.y - from.y), std::hypot(p.x - to.x, p.y - to.y));
        if (ends > nothing_ && distance_to_segment(point, from, to) <= nothing_)
            ++count;
    }
    return count;
}

std::optional<double> MeshPlaces::shortest_side_at(const DeckPoint& point) const {
    std::optional<double> least;
    for (const std::int32_t e : solids_at(point)) {
        if (!contains(e, point))
            continue;
        const CornerPlaces& corners = corners_[static_cast<std::size_t>(e)];
        for (int k = 0; k < corners.count; ++k) {
            const Position a = mesh_.point(corners[k]);
            const Position b = mesh_.point(corners[(k + 1) % corners.count]);
            const double side = std::hypot(b.x - a.x, b.y - a.y);
            least = least ? std::min(*least, side) : side;
        }
    }
    return least;
}

}  // namespace brelan::tool
