// Runs of the group engine over drawn meshes, and what is sound about the mesh that they leave.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "support/group_drawing.h"

namespace brelan::test {

inline constexpr int DUPLICATE = 50;  // material of duplicates, which lie over other elements

// What a class of decks has seen, so that none of its laws is held of nothing.
struct Tally {
    int runs = 0;
    int ended = 0;        // runs that a message ended
    int compared = 0;     // runs whose area is held against that of the mesh
    int line_pieces = 0;  // pieces of lines in all, so many joints or line elements are there
    int off_line = 0;     // pieces of a line that are no side of an element
};

// Loads the mesh and the groups into the tables and runs the engine. The message that ended the run; empty
// when it finished.
std::string run_engine(const DrawnMesh& mesh, const std::vector<DrawnGroup>& groups, float TOLLINE_length);

// Holds the laws of a cut mesh over the mesh in the tables after a run with the groups.
void check_mesh_of_engine(const DrawnMesh& before, const std::vector<DrawnGroup>& groups, Tally& tally);

}  // namespace brelan::test
