// What the sound cut leaves behind is made better: slender elements and their neighbours are divided anew
// with a node among them, so that sides grow from short to long step by step.
#pragma once

#include <set>

#include "group/engine.h"
#include "group/sound_drawing.h"
#include "group/sound_ground.h"
#include "mesh/tables.h"

namespace brelan {

// Inserts nodes beside short sides at the given nodes, where nothing drawn is in the way. Points that are
// drawn one beside another stay as close as they are: along arcs of many parts nothing is inserted. Gives the
// nodes of what has changed.
std::set<NodeNumber> insert_nodes(Mesh& mesh, Engine& engine, const Drawn& drawn, const Drawing& drawing,
                                  const std::set<NodeNumber>& nodes, double width);

}  // namespace brelan
