#include "run/slope_run.h"

#include "dam/phreatic_line.h"
#include "dam/slope_models.h"
#include "deck/deck_tables.h"
#include "run/run.h"

namespace brelan {

TextLine slope_template(Run& run) {
    return TextLine(slope_model(run.checker.slope_model).file);
}

void map_slope_nodes(Run& run) {
    require_template(run.edit, run.source, run.mesh);
    apply_water_level(run.trace, run.edit, run.source, run.mesh, run.slope_split);
    map_template_nodes(run.trace, run.edit, run.source, run.mesh);
}

void finish_slope_elements(Run& run) {
    orient_elements(run.source, run.mesh);
    split_slope_element(run.edit, run.source, run.mesh, run.slope_split);
}

}  // namespace brelan
