#include "blocks/base_mesh.h"

#include <numeric>
#include <utility>

#include "mesh/kinds.h"
#include "plane/point_grid.h"
#include "text/as_written.h"
#include "text/run_end.h"

namespace brelan {

namespace {

constexpr float SAME_NODE = 0.0001F;  // nodes at most this far apart become one
constexpr float ON_BOUND = 0.0001F;   // a node at most this far from a bound is set on it

// The code of a fixed node in the temperature kind; the others have 1.
constexpr std::int32_t FIXED_TEMPERATURE = -100;

constexpr float COEFFICIENT_OF_NODE = 1.0F;

// Where the raw list shows the nodes.
void round_places(std::vector<RawNode>& nodes) {
    for (RawNode& node : nodes)
        node = {as_written<"(E13.6)">(node.x), as_written<"(E13.6)">(node.y), node.sides};
}

// The new number of each raw node, counted from 1 in the order of the list; a node that falls on an earlier
// one takes the number of the last such.
struct Merge {
    std::vector<NodeNumber> number;  // by raw node from 0
    std::vector<std::size_t> kept;   // raw node by new number - 1
};

Merge merge_points(const std::vector<RawNode>& points) {
    Merge merge;
    merge.number.resize(points.size());
    PointGrid grid(SAME_NODE, points.size());
    for (std::size_t i = 0; i < points.size(); ++i) {
        const std::int32_t ordinal = static_cast<std::int32_t>(i) + 1;
        const std::int32_t earlier = grid.highest_within_reach(points[i].x, points[i].y);
        grid.add({ordinal, points[i].x, points[i].y});
        if (earlier == 0) {
            merge.kept.push_back(i);
            merge.number[i] = NodeNumber(static_cast<std::int32_t>(merge.kept.size()));
        } else {
            merge.number[i] = merge.number[static_cast<std::size_t>(earlier - 1)];
        }
    }
    return merge;
}

// Nodes of a grid are one by one its own.
Merge keep_all(std::size_t count) {
    Merge merge;
    merge.number.resize(count);
    merge.kept.resize(count);
    std::iota(merge.number.begin(), merge.number.end(), NodeNumber(1));
    std::iota(merge.kept.begin(), merge.kept.end(), std::size_t{0});
    return merge;
}

// The sides of the field that a place lies on by its distance.
FieldSides sides_near(const FieldBounds& field, float x, float y) {
    return {!(x > field.left + ON_BOUND), !(x < field.right - ON_BOUND), !(y > field.bottom + ON_BOUND),
            !(y < field.top - ON_BOUND)};
}

// A node set on the bounds, with what it lies on.
struct BoundNode {
    float x, y;
    bool fixed_x = false, fixed_y = false;         // the codes of Card 4.1's switches
    bool closed_side = false, closed_end = false;  // on a fixed left or right side, on a fixed bottom or top
};

BoundNode set_on_bounds(const BlockCards& block_cards, const RawMesh& raw, const RawNode& point) {
    const FieldBounds& field = raw.field;
    const bool by_grid = raw.placing == NodePlacing::by_grid;
    FieldSides sides = by_grid ? point.sides : sides_near(field, point.x, point.y);
    BoundNode node{point.x, point.y};
    if (sides.left) {
        node.x = field.left;
        node.fixed_x = block_cards.fixes_left == 1;
    } else if (sides.right) {
        node.x = field.right;
        node.fixed_x = block_cards.fixes_right == 1;
    }
    if (sides.bottom) {
        node.y = field.bottom;
        node.fixed_y = block_cards.fixes_bottom == 1;
    } else if (sides.top) {
        node.y = field.top;
        node.fixed_y = block_cards.fixes_top == 1;
    }
    if (!by_grid)  // once more: it has come to the bounds
        sides = sides_near(field, node.x, node.y);
    node.closed_side =
        (sides.left && block_cards.fixes_left == 1) || (sides.right && block_cards.fixes_right == 1);
    node.closed_end =
        (sides.bottom && block_cards.fixes_bottom == 1) || (sides.top && block_cards.fixes_top == 1);
    return node;
}

NodeRecord node_record(LayoutKind kind, const BlockCards& block_cards, NodeNumber number,
                       const BoundNode& node) {
    const std::int32_t code_x = node.fixed_x ? 1 : 0;
    const std::int32_t code_y = node.fixed_y ? 1 : 0;
    NodeRecord record{number, {code_x, code_y, 1}, node.x, node.y};
    if (kind == LayoutKind::coupled) {
        const bool dry = node.y >= block_cards.third + ON_BOUND;
        record.codes = {code_x, code_y, dry || node.closed_side ? 1 : 0, dry || node.closed_end ? 1 : 0, 1};
    } else if (kind == LayoutKind::temperature) {
        record.codes = {code_x * FIXED_TEMPERATURE, code_y * FIXED_TEMPERATURE};
    }
    if (has_node_values(kind)) {
        record.head = block_cards.third;
        record.coefficient = COEFFICIENT_OF_NODE;
    }
    return record;
}

// Gives the words of an element that name nodes the merged numbers.
void renumber(ElementWords& w, const Merge& merge, NodeNumber first_node) {
    for (NodeNumber* word : {&w.corner_1, &w.corner_2, &w.corner_3, &w.corner_4, &w.midside_5, &w.midside_6,
                             &w.midside_7, &w.midside_8})
        if (word->names_one())
            *word = merge.number[static_cast<std::size_t>(*word - first_node)];
}

}  // namespace

BaseMesh make_base_mesh(LayoutKind kind, const BlockCards& block_cards, RawMesh raw) {
    round_places(raw.nodes);
    const Merge merge =
        raw.placing == NodePlacing::by_grid ? keep_all(raw.nodes.size()) : merge_points(raw.nodes);
    BaseMesh mesh{std::move(raw.title), {}, std::move(raw.elements)};
    mesh.nodes.reserve(merge.kept.size());
    NodeNumber number;
    for (const std::size_t node : merge.kept)
        mesh.nodes.push_back(
            node_record(kind, block_cards, ++number, set_on_bounds(block_cards, raw, raw.nodes[node])));
    for (ElementRecord& element : mesh.elements)
        renumber(element.words, merge, raw.first_node);
    return mesh;
}

void refuse_flat(const BaseMesh& mesh) {
    const auto written = [](float value) { return as_written<"(E13.6)">(value); };
    for (const ElementRecord& element : mesh.elements) {
        const ElementWords& w = element.words;
        // Top right and bottom left corner.
        const NodeRecord& high = mesh.nodes[w.corner_1.place() - 1];
        const NodeRecord& low = mesh.nodes[w.corner_3.place() - 1];
        if (written(low.x) < written(high.x) && written(low.y) < written(high.y))
            continue;
        fail("..\\Bmesh.dat: expected the top right corner of element " + to_string(element.number) +
             " above and right of its bottom left one by the six digits of a mesh file, found node " +
             to_string(high.number) + " at (" + std::to_string(written(high.x)) + ", " +
             std::to_string(written(high.y)) + ") and node " + to_string(low.number) + " at (" +
             std::to_string(written(low.x)) + ", " + std::to_string(written(low.y)) +
             "): lengths above 0, larger DX and DY, or a field nearer to 0 part them");
    }
}

void refuse_too_large(const BaseMesh& mesh) {
    constexpr std::size_t first_unreadable = 100000;
    if (mesh.nodes.size() >= first_unreadable || mesh.elements.size() >= first_unreadable)
        fail("..\\Bmesh.dat, line 3: expected fewer than 100000 nodes and elements, found " +
             std::to_string(mesh.nodes.size()) + " and " + std::to_string(mesh.elements.size()) +
             ": the mesh is too large to be read back");
}

}  // namespace brelan
