#include "run/slope_run.h"

#include "dam/phreatic_line.h"
#include "dam/slope_models.h"
#include "deck/deck_tables.h"
#include "run/run.h"

namespace brelan {

TextLine slope_template(Run& run) {
    return TextLine(slope_model(run.deck.edit.slope_code).file);
}

void map_slope_nodes(Run& run) {
    require_template(run.deck.edit, run.source, run.mesh);
    apply_water_level(run.trace, run.deck.edit, run.source, run.mesh, run.slope_split);
    map_template_nodes(run.trace, run.deck.edit, run.source, run.mesh);
}

void finish_slope_elements(Run& run) {
    orient_elements(run.source, run.mesh);
    split_slope_element(run.deck.edit, run.source, run.mesh, run.slope_split);
}

}  // namespace brelan
