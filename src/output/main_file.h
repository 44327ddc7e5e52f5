// Fragments of the solver's main deck: the materials that the groups got, and element activity.
#pragma once

#include "channel/channels.h"
#include "output/activity.h"

namespace brelan {

// Writes "..\MatAD.Man": the new materials and their activity.
void WRITEMATERIALS(const Activity& activity);

// Writes "..\Group.Man": the activity of the groups' elements, from the text with their blocks.
void WRITEGROUPACTIVITY(const Activity& activity, Channel& text);

}  // namespace brelan
