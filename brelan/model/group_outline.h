// The outline of a drawn group as cards give it.
#pragma once

#include <vector>

#include "model/new_group.h"

namespace brelan::tool {

// A part of a circle; angles in degrees.
struct OutlineArc {
    DeckPoint centre;
    double radius = 0.0, begin = 0.0, end = 0.0;
};

struct GroupOutline {
    bool closed = false;
    std::vector<DeckPoint> points;
    std::vector<OutlineArc> arcs;  // one for each segment, or none: all are straight
};

// Throws Failure where the points make nothing of the form.
GroupOutline outline_of(const GroupSketch& drawn);

}  // namespace brelan::tool
