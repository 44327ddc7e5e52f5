#include "run/slope_run.h"

#include "dam/phreatic_line.h"
#include "dam/slope_models.h"
#include "deck/deck_tables.h"

namespace brelan {

TextLine slope_template() {
    return TextLine(slope_model(MODEL).file);
}

void map_slope_nodes() {
    REQUIRETEMPLATE();
    SLOPESTAGE();
    MAPNODES();
}

void finish_slope_elements() {
    ORIENTELEMENTS();
    SPLITSLOPEELEMENT();
}

}  // namespace brelan
