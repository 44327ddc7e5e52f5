// What the cards of an earth dam must keep, beyond their form.
#pragma once

#include "dam/dam_tables.h"

namespace brelan {

// Sets the sizes of the dam. Ends the run at a profile, core or wall that cannot be, naming the card.
void check_dam(DamCards& dam, DamSizes& sizes);

}  // namespace brelan
