#include "dam/dam_sizes.h"

#include "dam/dam_tables.h"
#include "dam/slope_models.h"

namespace brelan {

namespace {

constexpr float DIVISIONS_OF_HEIGHT = 20.0F;  // of a dam without shells

// Keeps the division of a block from falling one short by rounding.
constexpr float NOT_ONE_SHORT = 0.9999F;

// Lowest ratios of height and run of the slope codes 1 to 4.
constexpr float STEEPEST = 0.8333F, STEEP = 0.5833F, FLAT = 0.45F, FLATTER = 0.3667F;

std::int32_t slope_code(double ratio) {
    if (ratio >= static_cast<double>(STEEPEST))
        return 1;
    if (ratio >= static_cast<double>(STEEP))
        return 2;
    if (ratio >= static_cast<double>(FLAT))
        return 3;
    return ratio >= static_cast<double>(FLATTER) ? 4 : 5;
}

float divided(float length, std::int32_t parts) {
    return length / static_cast<float>(parts) * NOT_ONE_SHORT;
}

}  // namespace

SlopeCodes SLOPECODES(float HDAM, float RUNL, float RUNR) {
    const auto r = static_cast<double>(HDAM / RUNL);
    const auto r2 = static_cast<double>(HDAM / RUNR);
    const auto limit = static_cast<double>(STEEP);
    SlopeCodes codes{slope_code(r), slope_code(r2)};
    if (r <= limit && r2 > limit)
        codes.right = 3;
    else if (r > limit && r2 <= limit)
        codes.right = 2;
    return codes;
}

void SIZEDAM() {
    DamSizes& s = DAMSIZES;
    s = DamSizes{};
    s.rHw = DAM.HWATER / DAM.HDAM;
    if (DAM.shells) {
        const SlopeCodes codes = SLOPECODES(DAM.HDAM, DAM.RUNL, DAM.RUNR);
        s.left_model = codes.left;
        s.right_model = codes.right;
        s.DL = divided(DAM.WLEFT, slope_model(codes.left).columns);
        s.DR = divided(DAM.WRIGHT, slope_model(codes.right).columns);
        s.DV = divided(DAM.HDAM, slope_model(codes.left).rows);
    } else {
        s.DL = s.DR = s.DV = DAM.HDAM / DIVISIONS_OF_HEIGHT;
    }
    s.DM = DAM.NCREST > 0 ? divided(DAM.WMID, DAM.NCREST) : s.DL;

    s.crest_left = DAM.shells ? DAM.WLEFT : DAM.RUNL;
    s.crest_right = DAM.shells ? DAM.WLEFT + DAM.WMID : DAM.RUNL + DAM.crest;
    s.toe = DAM.WLEFT + DAM.WMID + DAM.WRIGHT;
    float ground = 0.0F;
    for (const float thickness : DAM.layers)
        ground = ground + thickness;
    s.bottom = -ground;
    s.left = DAM.NLAYER > 0 ? -DAM.XLEFT : 0.0F;
    s.right = DAM.NLAYER > 0 ? s.toe + DAM.XRIGHT : s.toe;
}

}  // namespace brelan
