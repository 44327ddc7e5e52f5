// Boxes by place: all that meet another box, at a cost that goes with their number and not with how they lie.
#pragma once

#include <cstdint>
#include <vector>

#include "analysis/mesh_lists.h"

namespace brelan {

inline bool boxes_meet(const Bounds& a, const Bounds& b) {
    return a.low.x <= b.high.x && b.low.x <= a.high.x && a.low.y <= b.high.y && b.low.y <= a.high.y;
}

class BoxTree {
public:
    explicit BoxTree(std::vector<Bounds> boxes);

    // Calls use(index) for every box that meets this one, edges included. A box for which use returns false
    // is not looked for again.
    template <class Use>
    void meeting(const Bounds& box, Use&& use) {
        if (!nodes_.empty())
            visit(0, box, use);
    }

private:
    struct Node {
        Bounds box;
        std::int32_t first = 0, last = 0;  // of order_
        std::int32_t left = -1, right = -1;
        bool open = true;
    };

    std::int32_t build(std::int32_t first, std::int32_t last);

    template <class Use>
    void visit(std::int32_t at, const Bounds& box, Use& use) {
        Node& node = nodes_[static_cast<std::size_t>(at)];
        if (!node.open || !boxes_meet(node.box, box))
            return;
        if (node.left >= 0) {
            visit(node.left, box, use);
            visit(node.right, box, use);
            node.open = nodes_[static_cast<std::size_t>(node.left)].open ||
                        nodes_[static_cast<std::size_t>(node.right)].open;
            return;
        }
        bool open = false;
        for (std::int32_t k = node.first; k < node.last; ++k) {
            const auto index = static_cast<std::size_t>(order_[static_cast<std::size_t>(k)]);
            if (open_[index] != 0 && boxes_meet(boxes_[index], box) && !use(static_cast<std::int32_t>(index)))
                open_[index] = 0;
            open = open || open_[index] != 0;
        }
        node.open = open;
    }

    std::vector<Bounds> boxes_;
    std::vector<std::uint8_t> open_;  // by box
    std::vector<std::int32_t> order_;
    std::vector<Node> nodes_;  // the root first
};

}  // namespace brelan
