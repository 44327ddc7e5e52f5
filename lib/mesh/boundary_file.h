// "..\Boundary.Man": pipes, convection lines and flow sections as cards of the solver's main deck.
#pragma once

#include "mesh/edit_tables.h"
#include "mesh/group_tables.h"
#include "mesh/result_file.h"
#include "mesh/tables.h"
#include "text/channels.h"

namespace brelan {

// Temperature kind: writes the cards of pipes and of convection lines from the node codes that the group
// engine left, when it has counted any, and clears the codes it has used.
void write_pipes(Channels& channels, Mesh& mesh, GroupListing& listing, const ResultMesh& result);

// Flow sections of the head kind: the trusses of the result, in the order of their numbers, cut into runs.
// Does nothing when the group engine has counted no flow section.
void write_flow_sections(Channels& channels, const Mesh& mesh, const GroupCards& group_cards,
                         const GroupListing& listing, const ResultMesh& result);

}  // namespace brelan
