// Runs of the group engine over drawn meshes, and what is sound about the mesh that they leave.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "support/group_drawing.h"

namespace brelan::test {

inline constexpr int DUPLICATE = 50;  // material of duplicates, which lie over other elements

// What a class of decks counts.
struct Tally {
    int runs = 0;
    int ended = 0;        // runs that a message ended
    int moved = 0;        // runs that take a node off the border, or a corner of the border along it
    int hanging = 0;      // nodes on a side that one neighbour alone has
    int inverted = 0;     // elements that lie the other way round than the mesh
    int flat = 0;         // elements of no area
    int off_line = 0;     // pieces of a line that are no side of an element
    int compared = 0;     // runs whose area is held against that of the mesh
    int line_pieces = 0;  // pieces of lines in all, so many joints or line elements are there

    bool operator==(const Tally&) const = default;
};

// Loads the mesh and the groups into the tables and runs the engine. The message that ended the run; empty
// when it finished.
std::string run_engine(const DrawnMesh& mesh, const std::vector<DrawnGroup>& groups, float TOLLINE_length);

// Checks the mesh in the tables after a run with the groups and adds to the tally what the rules of the cut
// leave open.
void check_mesh_of_engine(const DrawnMesh& before, const std::vector<DrawnGroup>& groups, Tally& tally);

}  // namespace brelan::test
