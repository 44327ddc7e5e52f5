// Where the elements lie that the groups work on.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "mesh/by_number.h"
#include "mesh/few.h"
#include "mesh/tables.h"
#include "plane/box.h"

namespace brelan {

struct Engine;

// The elements at a node, in ascending number; some may have left it.
using ElementsAt = Few<ElementNumber, 16>;

// Cells hold the elements whose boxes touch them. An element that changes is noted again where it lies now;
// that it still stands in older cells costs a test and changes nothing.
class ElementIndex {
public:
    void build(Mesh& mesh, Engine& engine);
    void note(const Mesh& mesh, ElementNumber e);

    // The elements of a moved node lie elsewhere now.
    void note_node(const Mesh& mesh, NodeNumber n);

    // The elements that may lie in a box, and those that a line through it may meet: one of no area is on its
    // whole line, wherever it lies.
    std::span<const ElementNumber> in(const Engine& engine, const Box& box);
    std::span<const ElementNumber> met_in(const Engine& engine, const Box& box);

    // The elements whose own boxes meet a box: no room for what tests find beyond them.
    std::span<const ElementNumber> over(const Engine& engine, const Box& box);
    std::vector<ElementNumber> with(const Engine& engine, std::span<const NodeNumber> nodes) const;
    ElementsAt at(const Engine& engine, NodeNumber node) const;

    // Those at one end of a side, of the two the one with fewer.
    ElementsAt at_end_of(const Engine& engine, NodeNumber from, NodeNumber to) const;

private:
    static constexpr std::int32_t NONE = -1;
    struct Link {
        ElementNumber element;
        std::int32_t next;
    };

    // The cells that an element was last placed in.
    struct CellRange {
        std::int32_t left = 0, right = -1, low = 0, high = -1;
        bool met_anywhere = false;

        bool holds(const CellRange& other) const {
            return left <= other.left && right >= other.right && low <= other.low && high >= other.high;
        }
    };

    // Where an element lies, and the search that found it last.
    struct Placed {
        CellRange cells;
        Box box{0.0F, 0.0F, 0.0F, 0.0F};
        std::uint32_t stamp = 0;
    };

    void link(NodeNumber n, ElementNumber e);
    std::int32_t next(std::int32_t link) const { return links_[static_cast<std::size_t>(link)].next; }
    std::int32_t cell(float v, float low, float per_length) const;
    std::int32_t cell_x(float x) const { return cell(x, bounds_.x0, cells_per_length_.x); }
    std::int32_t cell_y(float y) const { return cell(y, bounds_.y0, cells_per_length_.y); }
    void place(const Mesh& mesh, ElementNumber e);
    bool is_used(const Engine& engine) const;
    std::span<const ElementNumber> all(const Engine& engine);
    template <class Takes>
    void take_cells(const Box& box, const Takes& takes);
    template <class Takes>
    void take(const std::vector<ElementNumber>& elements, const Takes& takes);

    Box bounds_{0.0F, 0.0F, 0.0F, 0.0F};
    std::int32_t count_ = 1;
    Point cells_per_length_;  // along x and y
    std::vector<std::vector<ElementNumber>> cells_;
    std::vector<ElementNumber> met_anywhere_;
    ByNumber<std::int32_t> head_{NONE};  // by node: its first link; the others follow in descending number
    std::vector<Link> links_;
    ByNumber<Placed> placed_;  // by element
    std::uint32_t mark_ = 0;
    std::vector<ElementNumber> found_;
};

}  // namespace brelan
