#include "analysis/box_tree.h"

#include <algorithm>
#include <numeric>
#include <utility>

namespace brelan {

BoxTree::BoxTree(std::vector<Bounds> boxes)
    : boxes_(std::move(boxes)), open_(boxes_.size(), 1), order_(boxes_.size()) {
    std::iota(order_.begin(), order_.end(), 0);
    if (!boxes_.empty())
        build(0, static_cast<std::int32_t>(boxes_.size()));
}

std::int32_t BoxTree::build(std::int32_t first, std::int32_t last) {
    const auto index = static_cast<std::int32_t>(nodes_.size());
    Node node{
        boxes_[static_cast<std::size_t>(order_[static_cast<std::size_t>(first)])], first, last, -1, -1, true};
    for (std::int32_t k = first; k < last; ++k) {
        const Bounds& box = boxes_[static_cast<std::size_t>(order_[static_cast<std::size_t>(k)])];
        node.box.low = {std::min(node.box.low.x, box.low.x), std::min(node.box.low.y, box.low.y)};
        node.box.high = {std::max(node.box.high.x, box.high.x), std::max(node.box.high.y, box.high.y)};
    }
    nodes_.push_back(node);
    constexpr std::int32_t LEAF = 8;
    if (last - first <= LEAF)
        return index;
    // Halves by the middles along the longer direction; equal middles by their number.
    const bool upright = node.box.height() > node.box.width();
    const std::int32_t half = first + (last - first) / 2;
    std::nth_element(order_.begin() + first, order_.begin() + half, order_.begin() + last,
                     [&](std::int32_t a, std::int32_t b) {
                         const Bounds& p = boxes_[static_cast<std::size_t>(a)];
                         const Bounds& q = boxes_[static_cast<std::size_t>(b)];
                         const double at = upright ? p.low.y + p.high.y : p.low.x + p.high.x;
                         const double of = upright ? q.low.y + q.high.y : q.low.x + q.high.x;
                         return at != of ? at < of : a < b;
                     });
    const std::int32_t left = build(first, half), right = build(half, last);
    nodes_[static_cast<std::size_t>(index)].left = left;
    nodes_[static_cast<std::size_t>(index)].right = right;
    return index;
}

}  // namespace brelan
