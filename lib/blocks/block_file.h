// The block file "Bmesh.Tmp": what a person reads about the blocks of a base mesh.
#pragma once

#include "blocks/block_plan.h"
#include "mesh/edition.h"
#include "text/channels.h"

namespace brelan {

// Writes the file. `third` is the value of that name on Card 4.2; the kinds whose nodes have one show it.
void write_block_file(LayoutKind kind, const BlockPlan& plan, float third, Channel& file);

// Ends the run, naming the line, where a number of the plan has no room in the file.
void refuse_unwritable(LayoutKind kind, const BlockPlan& plan);

}  // namespace brelan
