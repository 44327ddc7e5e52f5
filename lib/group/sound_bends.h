// Sides that bend: a point that is drawn close beside a side becomes a node of it, so that no sliver comes to
// lie between the two.
#pragma once

#include <span>
#include <vector>

#include "group/sound_drawing.h"
#include "group/sound_ground.h"

namespace brelan {

// A side bends to a point that lies this much of its way to the nearer end beside it.
inline constexpr double LARGEST_BEND = 0.25;

// True for a side that must keep its line: of the border, a change of material, a line, a joint or a drawing.
bool is_kept(const Mesh& mesh, const Engine& engine, const Drawn& drawn, const Side& side);

// True where a side may leave its line to run by points, in their order from its lower node: nothing else
// that is drawn comes to lie beyond it, and the other sides of its elements are clear.
bool may_bend(const Mesh& mesh, const Engine& engine, const Drawn& drawn, const Drawing& drawing,
              const Side& side, std::span<const Point> run);

// Sides that an arc touches: two or more of its points lie close beside each, one after the other.
struct Bend {
    Side side;
    std::vector<Point> run;  // from its lower node
};
std::vector<Bend> bends_along(const Mesh& mesh, Engine& engine, const Drawn& drawn, const Drawing& drawing);

}  // namespace brelan
