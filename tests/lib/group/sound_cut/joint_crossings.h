// Where a joint of a width crosses or meets itself: there it takes room from its own line.
#pragma once

#include <vector>

#include "lib/group/sound_cut/cut_deck.h"

namespace brelan::test {

struct JointCrossing {
    Spot at;
    double room = 0.0;  // along both lines
};

// None for a path without a joint of a width.
std::vector<JointCrossing> crossings_of_joint(const DrawnPath& path, double same);

}  // namespace brelan::test
