// What stands for the joints in the .inp dialect.
#pragma once

#include <map>
#include <vector>

#include "formats/inp_elements.h"

namespace brelan::tool {

// Two nodes that move alike in one direction, 1 or 2.
struct InpTie {
    Number dependent = 0, leader = 0;
    int direction = 1;
};

// Springs between two nodes in one direction of an inclined system, all of one stiffness.
struct InpSpring {
    Number number = 0, first = 0, second = 0;
};
struct InpSprings {
    std::size_t system = 0;  // place in the systems
    int direction = 1;       // 1 across the joint, 2 along it
    double stiffness = 0.0;
    std::vector<InpSpring> springs;
};

struct InpJoints {
    std::vector<InpTie> ties;
    std::vector<Position> systems;  // the direction along a joint, of length 1
    std::vector<InpSprings> springs;
    std::map<Number, std::vector<Number>> of_joint;  // the numbers of a joint's springs
    Number next_number = 1;                          // behind all elements and springs
};

// Ties or springs for the joints, the springs' numbers behind those of the elements. Nodes that a code holds
// in a direction stay held and lead the others. Throws Failure where the mesh has joints and none was chosen,
// and where a joint has no midside nodes between sides that have them.
InpJoints inp_joints(const MeshLists& mesh, const InpOptions& options, const SideMiddles& middles);

}  // namespace brelan::tool
