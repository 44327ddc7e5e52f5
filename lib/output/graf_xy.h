// The GRAF-XY deck of the post file: templates of time histories, in which the user puts the numbers of
// elements and nodes.
#pragma once

#include "mesh/edition.h"
#include "output/unit_table.h"
#include "text/channels.h"

namespace brelan {

// Writes the templates of element histories, then those of node histories, by kind, and the end of the deck.
void write_graf_xy(LayoutKind kind, const UnitLabels& units, Channel& post);

}  // namespace brelan
