#include "mesh/selection.h"

#include <algorithm>

namespace brelan {

namespace {

std::span<const std::int32_t> listed(const EditCards& edit) {
    return edit.list_count > 0 ? std::span(&edit.list[1], static_cast<std::size_t>(edit.list_count))
                               : std::span<std::int32_t>{};
}

// The window is open: a point on its edge is outside.
bool in_window(const EditCards& edit, float x, float y) {
    return edit.window_left < x && x < edit.window_right && edit.window_bottom < y && y < edit.window_top;
}

}  // namespace

Selection prepare_selection(const EditCards& edit) {
    Selection selection;
    if (edit.operation < 1 || edit.operation > 3)
        return selection;
    if (edit.operation == 1 && edit.selection_mode == 2)
        for (const std::int32_t node : listed(edit))
            if (node < 1 || node > HIGHEST_NODE_NUMBER)
                fail_at(edit.list_place, "expected a polyline of node numbers from 1 to " +
                                             std::to_string(HIGHEST_NODE_NUMBER) + ", found " +
                                             std::to_string(node));
    if (edit.selection_mode != 1)
        return selection;
    if (edit.operation == 1)
        expand_list(listed(edit), selection.nodes, edit.list_place);
    else
        expand_list(listed(edit), selection.elements, edit.list_place);
    return selection;
}

bool takes_side(const EditCards& edit, bool inside) {
    return (edit.side == 0 && inside) || (edit.side == 1 && !inside);
}

bool node_inside(const EditCards& edit, const Selection& selection, NodeNumber number, float x, float y) {
    if (edit.selection_mode == 0)
        return in_window(edit, x, y);
    return (edit.selection_mode == 1 || edit.selection_mode == 2) && selection.nodes[number] == number;
}

bool element_inside(const EditCards& edit, const Mesh& mesh, const Selection& selection, std::int8_t type,
                    const ElementRecord& element) {
    if (edit.selection_mode == 1)
        return selection.elements[element.number] == element.number;
    if (edit.selection_mode != 0)
        return false;
    const ElementWords& w = element.words;
    if (type != ELEMENT_CONTINUUM)
        return in_window(edit, (mesh.x[w.corner_1] + mesh.x[w.corner_2]) / 2.0F,
                         (mesh.y[w.corner_1] + mesh.y[w.corner_2]) / 2.0F);
    float x = 0.0F;
    float y = 0.0F;
    for (const NodeNumber corner : {w.corner_1, w.corner_2, w.corner_3, w.corner_4}) {
        if (corner.names_one()) {
            x = x + mesh.x[corner];
            y = y + mesh.y[corner];
        }
    }
    // A negative I4 is no corner, but the element counts as a quadrilateral.
    const float corners = w.corner_4 == NodeNumber{} ? 3.0F : 4.0F;
    return in_window(edit, x / corners, y / corners);
}

bool material_listed(const EditCards& edit, MaterialNumber material) {
    const auto list = listed(edit);
    return std::find(list.begin(), list.end(), material.value) != list.end();
}

}  // namespace brelan
