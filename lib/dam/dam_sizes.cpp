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

SlopeCodes slope_codes(float height, float left_run, float right_run) {
    const auto r = static_cast<double>(height / left_run);
    const auto r2 = static_cast<double>(height / right_run);
    const auto limit = static_cast<double>(STEEP);
    SlopeCodes codes{slope_code(r), slope_code(r2)};
    if (r <= limit && r2 > limit)
        codes.right = 3;
    else if (r > limit && r2 <= limit)
        codes.right = 2;
    return codes;
}

DamSizes size_dam(const DamCards& dam) {
    DamSizes s;
    s.water_share = dam.water_height / dam.height;
    if (dam.shells) {
        const SlopeCodes codes = slope_codes(dam.height, dam.left_run, dam.right_run);
        s.left_model = codes.left;
        s.right_model = codes.right;
        s.left_size = divided(dam.left_width, slope_model(codes.left).columns);
        s.right_size = divided(dam.right_width, slope_model(codes.right).columns);
        s.vertical_size = divided(dam.height, slope_model(codes.left).rows);
    } else {
        s.left_size = s.right_size = s.vertical_size = dam.height / DIVISIONS_OF_HEIGHT;
    }
    s.middle_size = dam.crest_divisions > 0 ? divided(dam.middle_width, dam.crest_divisions) : s.left_size;

    s.crest_left = dam.shells ? dam.left_width : dam.left_run;
    s.crest_right = dam.shells ? dam.left_width + dam.middle_width : dam.left_run + dam.crest;
    s.toe = dam.left_width + dam.middle_width + dam.right_width;
    float ground = 0.0F;
    for (const float thickness : dam.layers)
        ground = ground + thickness;
    s.bottom = -ground;
    s.left = dam.layer_count > 0 ? -dam.left_margin : 0.0F;
    s.right = dam.layer_count > 0 ? s.toe + dam.right_margin : s.toe;
    return s;
}

}  // namespace brelan
