// The files of a base mesh: the raw lists for the eye, and the mesh file.
#pragma once

#include "blocks/base_mesh.h"
#include "blocks/raw_mesh.h"
#include "mesh/edition.h"
#include "text/channels.h"

namespace brelan {

// "Coord.dat" and "Index.dat". A first number above 1 has a placeholder line for each number below it.
void write_raw_nodes(LayoutKind kind, const RawMesh& raw, Channel& coordinates);
void write_raw_elements(LayoutKind kind, const RawMesh& raw, Channel& index);

// Ends the run, naming the line, where a node has no room in "Coord.dat".
void refuse_unwritable(const RawMesh& raw);

// The two lines that stand in "Coord.dat" when a mesh is too large for the work space.
void write_work_space(std::int64_t required, Channel& coordinates);

// Rounds the nodes' reals to the digits of "..\Bmesh.dat", so that the mesh is as one that is read from it.
// False where the file cannot be read back: it tells what is wrong.
bool round_as_file(BaseMesh& mesh);

// "..\Bmesh.dat".
void write_base_file(LayoutKind kind, const BaseMesh& mesh, Channel& base);

}  // namespace brelan
