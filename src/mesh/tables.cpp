#include "mesh/tables.h"

#include <cmath>

namespace brelan {

void RESETMESH() {
    NACT1.fill(0);
    NACT2.fill(0);
    IDN.fill(NodeCodes{});
    IDN1.fill(NodeCodes{});
    XC.fill(0.0F);
    YC.fill(0.0F);
    XC1.fill(0.0F);
    YC1.fill(0.0F);
    for (std::int32_t n = 1; n <= MAXNP; ++n)
        NMAP[n] = n;
    EACT1.fill(EL_UNUSED);
    EACT2.fill(EL_UNUSED);
    NLIST.fill(0);
    ELIST.fill(0);
    NUSED.fill(0);
    ETYPE.fill(EL_DELETED);
}

float DIST2D(float x1, float y1, float x2, float y2) {
    const float dx = x2 - x1;
    const float dy = y2 - y1;
    return std::sqrt(dx * dx + dy * dy);
}

}  // namespace brelan
