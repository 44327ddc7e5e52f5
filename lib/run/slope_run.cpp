#include "run/slope_run.h"

#include "dam/slope_models.h"
#include "deck/deck_tables.h"
#include "run/run.h"

namespace brelan {

TextLine slope_template(Run& run) {
    return TextLine(slope_model(run.deck.edit.slope_code).file);
}

std::optional<SlopeSplit> map_slope_nodes(Run& run) {
    require_template(run.deck.edit, run.source, run.mesh);
    const std::optional<SlopeSplit> split = apply_water_level(run.trace, run.deck.edit, run.source, run.mesh);
    map_template_nodes(run.trace, run.deck.edit, run.source, run.mesh);
    return split;
}

void finish_slope_elements(Run& run, const std::optional<SlopeSplit>& split) {
    orient_elements(run.source, run.mesh);
    if (split)
        split_slope_element(run.deck.edit, run.source, run.mesh, *split);
}

}  // namespace brelan
