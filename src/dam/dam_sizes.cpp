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

void SIZEDAM(const DamCards& dam, DamSizes& sizes) {
    DamSizes& s = sizes;
    s = DamSizes{};
    s.rHw = dam.HWATER / dam.HDAM;
    if (dam.shells) {
        const SlopeCodes codes = SLOPECODES(dam.HDAM, dam.RUNL, dam.RUNR);
        s.left_model = codes.left;
        s.right_model = codes.right;
        s.DL = divided(dam.WLEFT, slope_model(codes.left).columns);
        s.DR = divided(dam.WRIGHT, slope_model(codes.right).columns);
        s.DV = divided(dam.HDAM, slope_model(codes.left).rows);
    } else {
        s.DL = s.DR = s.DV = dam.HDAM / DIVISIONS_OF_HEIGHT;
    }
    s.DM = dam.NCREST > 0 ? divided(dam.WMID, dam.NCREST) : s.DL;

    s.crest_left = dam.shells ? dam.WLEFT : dam.RUNL;
    s.crest_right = dam.shells ? dam.WLEFT + dam.WMID : dam.RUNL + dam.crest;
    s.toe = dam.WLEFT + dam.WMID + dam.WRIGHT;
    float ground = 0.0F;
    for (const float thickness : dam.layers)
        ground = ground + thickness;
    s.bottom = -ground;
    s.left = dam.NLAYER > 0 ? -dam.XLEFT : 0.0F;
    s.right = dam.NLAYER > 0 ? s.toe + dam.XRIGHT : s.toe;
}

}  // namespace brelan
