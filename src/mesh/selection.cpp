#include "mesh/selection.h"

#include <algorithm>

namespace brelan {

namespace {

std::span<const std::int32_t> listed(const EditCards& edit) {
    return edit.NSEL > 0 ? std::span(&edit.LIST[1], static_cast<std::size_t>(edit.NSEL))
                         : std::span<std::int32_t>{};
}

// The window is open: a point on its edge is outside.
bool in_window(const EditCards& edit, float x, float y) {
    return edit.XMIN < x && x < edit.XMAX && edit.YMIN < y && y < edit.YMAX;
}

}  // namespace

void PREPARESELECTION(const EditCards& edit, Selection& selection) {
    if (edit.IEDIT < 1 || edit.IEDIT > 3)
        return;
    if (edit.IEDIT == 1 && edit.ILOC == 2)
        for (const std::int32_t node : listed(edit))
            if (node < 1 || node > MAXNP)
                FAIL(edit.list_place + ": expected a polyline of node numbers from 1 to " +
                     std::to_string(MAXNP) + ", found " + std::to_string(node));
    if (edit.ILOC != 1)
        return;
    if (edit.IEDIT == 1)
        EXPLIST(listed(edit), selection.nodes, edit.list_place);
    else
        EXPLIST(listed(edit), selection.elements, edit.list_place);
}

bool takes_side(const EditCards& edit, bool inside) {
    return (edit.ISIDE == 0 && inside) || (edit.ISIDE == 1 && !inside);
}

bool node_inside(const EditCards& edit, const Selection& selection, std::int32_t number, float x, float y) {
    if (edit.ILOC == 0)
        return in_window(edit, x, y);
    return (edit.ILOC == 1 || edit.ILOC == 2) && selection.nodes[number] == number;
}

bool element_inside(const EditCards& edit, const Mesh& mesh, const Selection& selection, std::int8_t type, const ElementRecord& element) {
    if (edit.ILOC == 1)
        return selection.elements[element.NEL] == element.NEL;
    if (edit.ILOC != 0)
        return false;
    const ElementWords& w = element.words;
    if (type != EL_CONTINUUM)
        return in_window(edit, (mesh.x[w.I1] + mesh.x[w.I2]) / 2.0F, (mesh.y[w.I1] + mesh.y[w.I2]) / 2.0F);
    float x = 0.0F;
    float y = 0.0F;
    for (const std::int32_t corner : {w.I1, w.I2, w.I3, w.I4}) {
        if (corner > 0) {
            x = x + mesh.x[corner];
            y = y + mesh.y[corner];
        }
    }
    // A negative I4 is no corner, but the element counts as a quadrilateral.
    const float corners = w.I4 == 0 ? 3.0F : 4.0F;
    return in_window(edit, x / corners, y / corners);
}

bool material_listed(const EditCards& edit, std::int32_t material) {
    const auto list = listed(edit);
    return std::find(list.begin(), list.end(), material) != list.end();
}

}  // namespace brelan
