// What the sound cut leaves behind is made better: a slender element and a neighbour are divided anew.
#pragma once

#include <set>
#include <span>

#include "group/engine.h"
#include "group/sound_ground.h"
#include "mesh/tables.h"

namespace brelan {

// How far the corners of a solid are from closed or flat, as an opening (plane/openings.h); less than 0
// where one is pushed in.
double shape_of(std::span<const Point> corners);

// The solid across a free side of another; none where nothing may be divided together with it.
ElementNumber neighbour_across(const Mesh& mesh, const Engine& engine, const Drawn& drawn, const Solid& solid,
                               const Side& side);

// Divides slender elements at the given nodes anew together with a neighbour, where the side between them is
// free: nothing is drawn on it, no line or joint lies along it, and both are of one kind of ground. Gives the
// nodes of what has changed.
std::set<NodeNumber> divide_anew(Mesh& mesh, Engine& engine, const Drawn& drawn,
                                 const std::set<NodeNumber>& nodes);

}  // namespace brelan
