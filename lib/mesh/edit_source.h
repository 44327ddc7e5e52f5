// The source mesh of an edit: what its working copy holds, and the first numbers of the result.
#pragma once

#include "mesh/edit_tables.h"
#include "mesh/edition.h"
#include "mesh/polyline_selection.h"
#include "text/channels.h"

namespace brelan {

// Reads the counts and finds the range of node numbers; leaves the channel at the first node record.
void scan_nodes(LayoutKind kind, EditSource& source, Channel& mesh_file);

// Reads where all nodes lie and steps back to the first node record.
NodePlaces read_node_places(LayoutKind kind, const EditSource& source, Channel& mesh_file);

// Finds the range of element numbers of each type; leaves the channel where it was.
void scan_elements(LayoutKind kind, EditSource& source, Channel& mesh_file);

// Raises the start numbers of beams and trusses so that the types do not share numbers.
void fix_start_numbers(EditCards& edit, const EditSource& source);

}  // namespace brelan
