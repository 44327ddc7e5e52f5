#include "mesh/compaction.h"

#include <string>

#include "mesh/edit_tables.h"
#include "mesh/kinds.h"
#include "mesh/mesh_records.h"
#include "mesh/tables.h"

namespace brelan {

namespace {

void require_room(std::int32_t start, std::int32_t count, std::int32_t last, const char* what) {
    if (count > 0 && (start < 1 || start - 1 + count > last))
        FAIL(EDIT.start_place + ": Card 3.2: expected a first " + what + " number that keeps all " +
             std::to_string(count) + " within 1 to " + std::to_string(last) + ", found " +
             std::to_string(start));
}

}  // namespace

std::int32_t PACKELEMENTS() {
    NUSED.fill(0);
    std::int32_t position = 0;
    for (std::int32_t n = 1; n <= MAXEL; ++n) {
        if (ETYPE[n] == EL_DELETED)
            continue;
        ++position;
        const ElementWords from = IEL[n];
        ElementWords& to = IEL[position];
        ETYPE[position] = ETYPE[n];
        to.I1 = from.I1;
        to.I2 = from.I2;
        to.I3 = from.I3;
        to.I4 = from.I4;
        to.MATNO = from.MATNO;
        copy_attributes(n, position);
        for (const std::int32_t corner : {to.I1, to.I2, to.I3, to.I4})
            if (corner > 0)
                NUSED[corner] = corner;
    }
    return position;
}

std::int32_t PACKNODES() {
    // The head kind leaves H and CF where they are, so a gap in the numbers misplaces them: meshes of the
    // head kind get their heads from the solver's deck.
    const bool moves_values = KIND() == LayoutKind::temperature;
    std::int32_t position = 0;
    for (std::int32_t n = 1; n <= MAXNP; ++n) {
        if (NUSED[n] == 0)
            continue;
        ++position;
        NMAP[n] = position;
        IDN[position] = IDN[n];
        NMARK[position] = NMARK[n];
        XC[position] = XC[n];
        YC[position] = YC[n];
        if (moves_values) {
            H[position] = H[n];
            CF[position] = CF[n];
        }
    }
    return position;
}

void RENUMBERCORNERS(std::int32_t elements, std::int32_t NSNODE) {
    for (std::int32_t n = 1; n <= elements; ++n) {
        ElementWords& w = IEL[n];
        for (std::int32_t* corner : {&w.I1, &w.I2, &w.I3, &w.I4})
            if (*corner > 0)
                *corner = NSNODE - 1 + NMAP[*corner];
    }
}

void PLACENODES(std::int32_t nodes, std::int32_t NSNODE) {
    require_room(NSNODE, nodes, MAXNP, "node");
    const std::size_t words = KIND() == LayoutKind::displacement ? 3 : 5;
    // From the last down: a node never lands on one that is still to move.
    for (std::int32_t k = nodes; k >= 1; --k) {
        const std::int32_t n = NSNODE + k - 1;
        NACT1[n] = 1;
        for (std::size_t i = 0; i < words; ++i)
            IDN[n][i] = IDN[k][i];
        if (has_node_values()) {
            H[n] = H[k];
            CF[n] = CF[k];
        }
        NMARK[n] = NMARK[k];
        XC[n] = XC[k];
        YC[n] = YC[k];
    }
}

void PLACEELEMENTS(std::int32_t elements, std::int32_t NSNEL) {
    require_room(NSNEL, elements, MAXEL, "element");
    for (std::int32_t k = elements; k >= 1; --k) {
        const std::int32_t n = NSNEL + k - 1;
        EACT1[n] = static_cast<std::int8_t>(ETYPE[k]);
        IEL[n] = IEL[k];
        copy_attributes(k, n);
    }
}

}  // namespace brelan
