// The edit itself: each record of the source mesh is changed as it is read into the tables.
#pragma once

#include <cstdint>

#include "mesh/edit_tables.h"
#include "mesh/mesh_records.h"
#include "mesh/tables.h"
#include "text/channels.h"

namespace brelan {

// The node where IEDIT 0 moves it.
NodeRecord moved(const EditCards& edit, NodeRecord node);

// Reads and edits the nodes; the channel stands at the first node record and is left behind the last.
void edit_nodes(const EditCards& edit, const EditSource& source, Mesh& mesh, const Selection& selection,
                Channel& mesh_file);

// Reads and edits the elements of one type, headings included.
void edit_elements(EditCards& edit, EditSource& source, Mesh& mesh, const Selection& selection,
                   Channel& mesh_file, std::int8_t type);

}  // namespace brelan
