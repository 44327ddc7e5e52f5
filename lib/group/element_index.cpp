#include "group/element_index.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "group/engine.h"
#include "group/engine_mesh.h"

namespace brelan {

namespace {

constexpr std::size_t USUAL_ELEMENTS = 8;  // that a node has at most, but for few

constexpr auto TAKE_ALL = [](const auto& /*placed*/) { return true; };

Extent slanting_sides(const Mesh& mesh, const Corners& corners) {
    Extent slanting;
    const int count = corners.n[3].names_one() ? 4 : 3;
    for (int i = 0; i < count; ++i)
        slanting.include(node_point(mesh, corners.n[i]), node_point(mesh, corners.n[(i + 1) % count]));
    return slanting;
}

// A half of no area contains points of its whole line, wherever they are.
bool is_flat(const Mesh& mesh, const Corners& corners, const Box& box) {
    const auto flat = [&](NodeNumber a, NodeNumber b, NodeNumber c) {
        if (a.is_none() || b.is_none() || c.is_none())
            return true;
        const double area =
            std::abs(2.0 * area_64(node_point(mesh, a), node_point(mesh, b), node_point(mesh, c)));
        const double coordinate = static_cast<double>(
            std::max({std::abs(box.x0), std::abs(box.x1), std::abs(box.y0), std::abs(box.y1)}));
        return !(area > 1.0E-10 * static_cast<double>(box.size()) * coordinate);
    };
    return flat(corners.n[0], corners.n[1], corners.n[2]) ||
           (corners.n[3].names_one() && flat(corners.n[0], corners.n[2], corners.n[3]));
}

}  // namespace

void ElementIndex::build(Mesh& mesh, Engine& engine) {
    cells_.clear();
    met_anywhere_.clear();
    head_.clear();
    links_.clear();
    placed_.clear();
    bounds_ = {0.0F, 0.0F, 0.0F, 0.0F};
    bool first = true;
    std::int32_t elements = 0;
    for (ElementNumber e{1}; e <= engine.highest_element; ++e) {
        if (mesh.type[e] == ELEMENT_DELETED)
            continue;
        ++elements;
        for (const NodeNumber n : corners_of(mesh, e).n) {
            if (n.is_none())
                continue;
            if (first)
                bounds_ = box_of(node_point(mesh, n), node_point(mesh, n));
            first = false;
            bounds_.include(node_point(mesh, n));
        }
    }
    const float side = std::sqrt(static_cast<float>(std::max(elements, 1)));
    count_ = std::clamp(static_cast<std::int32_t>(side), 1, MOST_CELLS);
    const auto per_length = [&](float low, float high) {
        return static_cast<float>(count_) / std::max(high - low, 1.0E-30F);
    };
    cells_per_length_ = {per_length(bounds_.x0, bounds_.x1), per_length(bounds_.y0, bounds_.y1)};
    cells_.resize(static_cast<std::size_t>(count_) * static_cast<std::size_t>(count_));
    for (ElementNumber e{1}; e <= engine.highest_element; ++e)
        if (mesh.type[e] != ELEMENT_DELETED)
            note(mesh, e);
}

void ElementIndex::note(const Mesh& mesh, ElementNumber e) {
    if (cells_.empty())
        return;
    for (const NodeNumber n : corners_of(mesh, e).n)
        if (n.names_one())
            link(n, e);
    place(mesh, e);
}

void ElementIndex::note_node(const Mesh& mesh, NodeNumber n) {
    if (cells_.empty())
        return;
    ++mark_;
    for (std::int32_t i = std::as_const(head_)[n.place()]; i != NONE; i = next(i)) {
        const ElementNumber e = links_[static_cast<std::size_t>(i)].element;
        std::uint32_t& stamp = placed_[e.place()].stamp;
        if (stamp == mark_)
            continue;
        stamp = mark_;
        place(mesh, e);
    }
}

std::span<const ElementNumber> ElementIndex::in(const Engine& engine, const Box& box) {
    if (!is_used(engine))
        return all(engine);
    take_cells(box, TAKE_ALL);
    std::sort(found_.begin(), found_.end());
    return found_;
}

std::span<const ElementNumber> ElementIndex::over(const Engine& engine, const Box& box) {
    if (!is_used(engine))
        return all(engine);
    take_cells(box, [&](const Placed& placed) { return placed.box.meets(box); });
    std::sort(found_.begin(), found_.end());
    return found_;
}

std::span<const ElementNumber> ElementIndex::met_in(const Engine& engine, const Box& box) {
    if (!is_used(engine))
        return all(engine);
    take_cells(box, TAKE_ALL);
    take(met_anywhere_, TAKE_ALL);
    std::sort(found_.begin(), found_.end());
    return found_;
}

std::vector<ElementNumber> ElementIndex::with(const Engine& engine, std::span<const NodeNumber> nodes) const {
    std::vector<ElementNumber> elements;
    if (!is_used(engine)) {
        for (ElementNumber e{1}; e <= engine.highest_element; ++e)
            elements.push_back(e);
        return elements;
    }
    elements.reserve(USUAL_ELEMENTS * nodes.size());
    for (const NodeNumber n : nodes)
        for (std::int32_t i = std::as_const(head_)[n.place()]; i != NONE; i = next(i))
            elements.push_back(links_[static_cast<std::size_t>(i)].element);
    std::sort(elements.begin(), elements.end());
    elements.erase(std::unique(elements.begin(), elements.end()), elements.end());
    return elements;
}

ElementsAt ElementIndex::at(const Engine& engine, NodeNumber node) const {
    ElementsAt elements;
    if (!is_used(engine)) {
        for (ElementNumber e{1}; e <= engine.highest_element; ++e)
            elements.push_back(e);
        return elements;
    }
    for (std::int32_t i = head_[node.place()]; i != NONE; i = next(i))
        elements.push_back(links_[static_cast<std::size_t>(i)].element);
    std::reverse(elements.begin(), elements.end());
    return elements;
}

ElementsAt ElementIndex::at_end_of(const Engine& engine, NodeNumber from, NodeNumber to) const {
    std::int32_t i = head_[from.place()], k = head_[to.place()];
    while (i != NONE && k != NONE) {
        i = next(i);
        k = next(k);
    }
    return at(engine, i == NONE ? from : to);
}

// Most elements come in ascending number, and stand at once where they belong.
void ElementIndex::link(NodeNumber n, ElementNumber e) {
    std::int32_t before = NONE, behind = head_[n.place()];
    while (behind != NONE && links_[static_cast<std::size_t>(behind)].element > e) {
        before = behind;
        behind = next(behind);
    }
    if (behind != NONE && links_[static_cast<std::size_t>(behind)].element == e)
        return;
    links_.push_back({e, behind});
    (before == NONE ? head_[n.place()] : links_[static_cast<std::size_t>(before)].next) =
        static_cast<std::int32_t>(links_.size()) - 1;
}

// Cells at the border reach beyond it without end.
std::int32_t ElementIndex::cell(float v, float low, float per_length) const {
    const float place = (v - low) * per_length;
    return place > 0.0F ? static_cast<std::int32_t>(std::min(place, static_cast<float>(count_ - 1))) : 0;
}

void ElementIndex::place(const Mesh& mesh, ElementNumber e) {
    const Corners corners = corners_of(mesh, e);
    Box box{0.0F, 0.0F, 0.0F, 0.0F};
    bool first = true;
    for (const NodeNumber n : corners.n) {
        if (n.is_none())
            continue;
        if (first)
            box = box_of(node_point(mesh, n), node_point(mesh, n));
        first = false;
        box.include(node_point(mesh, n));
    }
    CellRange& placed = placed_[e.place()].cells;
    if (!placed.met_anywhere && (first || is_flat(mesh, corners, box))) {
        placed.met_anywhere = true;
        met_anywhere_.push_back(e);
    }
    if (first)
        return;
    placed_[e.place()].box = box;
    const Box room = box.with_room(slanting_sides(mesh, corners));
    const CellRange range{cell_x(room.x0), cell_x(room.x1), cell_y(room.y0), cell_y(room.y1),
                          placed.met_anywhere};
    if (placed.holds(range))
        return;  // it stands there already
    placed = range;
    for (std::int32_t c = range.left; c <= range.right; ++c)
        for (std::int32_t r = range.low; r <= range.high; ++r) {
            auto& list = cells_[static_cast<std::size_t>(c) * static_cast<std::size_t>(count_) +
                                static_cast<std::size_t>(r)];
            if (list.empty() || list.back() != e)
                list.push_back(e);
        }
}

bool ElementIndex::is_used(const Engine& engine) const {
    return engine.uses_indexes && !cells_.empty();
}

std::span<const ElementNumber> ElementIndex::all(const Engine& engine) {
    found_.clear();
    for (ElementNumber e{1}; e <= engine.highest_element; ++e)
        found_.push_back(e);
    return found_;
}

template <class Takes>
void ElementIndex::take_cells(const Box& box, const Takes& takes) {
    found_.clear();
    ++mark_;
    for (std::int32_t c = cell_x(box.x0); c <= cell_x(box.x1); ++c)
        for (std::int32_t r = cell_y(box.y0); r <= cell_y(box.y1); ++r)
            take(cells_[static_cast<std::size_t>(c) * static_cast<std::size_t>(count_) +
                        static_cast<std::size_t>(r)],
                 takes);
}

template <class Takes>
void ElementIndex::take(const std::vector<ElementNumber>& elements, const Takes& takes) {
    for (const ElementNumber e : elements) {
        Placed& placed = placed_[e.place()];
        if (placed.stamp == mark_ || !takes(placed))
            continue;
        placed.stamp = mark_;
        found_.push_back(e);
    }
}

}  // namespace brelan
