// What the group engine starts from: numbers in use, frozen nodes, limits and tolerances of the mesh.
#pragma once

#include <cstdint>

#include "group/engine.h"
#include "mesh/group_tables.h"
#include "mesh/tables.h"

namespace brelan {

// Sets highest_node and highest_element to the highest numbers in use, workable to the elements' own numbers
// but 0 for those that Card 3.3.5.2 names, and frozen for the nodes that must not be moved: fixed by their
// first or second code word, named by Card 3.3.5.1, of elements that Card 3.3.5.2 names, or on or beyond the
// limits of Card 3.3.5.3. Finds the limits.
void load_engine(Mesh& mesh, const GroupCards& group_cards, Engine& engine, NodeNumber last_used_node,
                 ElementNumber last_used_element);

// TOLMOVE and TOLLINE from the mode of the defaults file and the shortest distance between two corners of a
// continuum element that is no joint, diagonals included.
void set_tolerances(const Mesh& mesh, Tolerances& tolerances, const Engine& engine);

}  // namespace brelan
