#include "mesh/selection.h"

#include <algorithm>

namespace brelan {

namespace {

std::span<const std::int32_t> listed() {
    return EDIT.NSEL > 0 ? std::span(&EDIT.LIST[1], static_cast<std::size_t>(EDIT.NSEL))
                         : std::span<std::int32_t>{};
}

// The window is open: a point on its edge is outside.
bool in_window(float x, float y) {
    return EDIT.XMIN < x && x < EDIT.XMAX && EDIT.YMIN < y && y < EDIT.YMAX;
}

}  // namespace

void PREPARESELECTION() {
    if (EDIT.IEDIT < 1 || EDIT.IEDIT > 3)
        return;
    if (EDIT.IEDIT == 1 && EDIT.ILOC == 2)
        for (const std::int32_t node : listed())
            if (node < 1 || node > MAXNP)
                FAIL(EDIT.list_place + ": expected a polyline of node numbers from 1 to " +
                     std::to_string(MAXNP) + ", found " + std::to_string(node));
    if (EDIT.ILOC != 1)
        return;
    if (EDIT.IEDIT == 1)
        EXPLIST(listed(), NLIST, EDIT.list_place);
    else
        EXPLIST(listed(), ELIST, EDIT.list_place);
}

bool takes_side(bool inside) {
    return (EDIT.ISIDE == 0 && inside) || (EDIT.ISIDE == 1 && !inside);
}

bool node_inside(std::int32_t number, float x, float y) {
    if (EDIT.ILOC == 0)
        return in_window(x, y);
    return (EDIT.ILOC == 1 || EDIT.ILOC == 2) && NLIST[number] == number;
}

bool element_inside(std::int8_t type, const ElementRecord& element) {
    if (EDIT.ILOC == 1)
        return ELIST[element.NEL] == element.NEL;
    if (EDIT.ILOC != 0)
        return false;
    const ElementWords& w = element.words;
    if (type != EL_CONTINUUM)
        return in_window((XC[w.I1] + XC[w.I2]) / 2.0F, (YC[w.I1] + YC[w.I2]) / 2.0F);
    float x = 0.0F;
    float y = 0.0F;
    for (const std::int32_t corner : {w.I1, w.I2, w.I3, w.I4}) {
        if (corner > 0) {
            x = x + XC[corner];
            y = y + YC[corner];
        }
    }
    // A negative I4 is no corner, but the element counts as a quadrilateral.
    const float corners = w.I4 == 0 ? 3.0F : 4.0F;
    return in_window(x / corners, y / corners);
}

bool material_listed(std::int32_t material) {
    const auto list = listed();
    return std::find(list.begin(), list.end(), material) != list.end();
}

}  // namespace brelan
