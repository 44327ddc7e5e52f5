// The mesh file comment stripper.
#pragma once

#include "mesh/edition.h"
#include "mesh/mesh_records.h"
#include "text/channels.h"
#include "text/watch.h"

namespace brelan {

// Copies the mesh on the source channel to the target without its comment lines ("*" in column 1) and without
// the elements that are marked as deleted by a negative number, so that a reader can go by the counts in the
// header. Element records come out in the fixed layouts of a mesh file, all other lines as text. The source
// is closed, the target rewound.
//
// Ends the run at a byte order mark, where a record cannot be read, or where a node or element number is
// outside 1 to 99,990.
StrippedMesh strip_mesh(Channels& channels, LayoutKind kind, int source, int target, Watch& watch);

}  // namespace brelan
