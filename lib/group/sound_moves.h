// First step of the sound cut: nodes move onto what is drawn, wherever the elements round them stay well
// shaped.
#pragma once

#include <set>
#include <span>
#include <vector>

#include "group/engine.h"
#include "group/sound_drawing.h"
#include "group/sound_ground.h"
#include "mesh/tables.h"

namespace brelan {

// The cuttable solids that a segment meets, in ascending number, and those that hold a point.
Solids solids_met_by(const Mesh& mesh, Engine& engine, const Drawing& drawing, const DrawnSegment& segment);
Solids solids_holding(const Mesh& mesh, Engine& engine, const Drawing& drawing, const Point& point);

// True when a segment crosses a side between its ends, both of them clear of it.
bool crosses(const Mesh& mesh, const Drawing& drawing, const DrawnSegment& segment, const Side& side);

// True for a node that lies on a segment.
bool is_on(const Mesh& mesh, const Drawing& drawing, const DrawnSegment& segment, NodeNumber node);

// Gives the nodes that lie on the drawing now, ascending. `met` are the solids that each segment meets.
std::set<NodeNumber> move_onto(Mesh& mesh, Engine& engine, const Drawn& drawn, const Drawing& drawing,
                               std::span<const Solids> met);

}  // namespace brelan
