// The road of IEDIT 4 in a mode 1 deck.
#pragma once

#include <cstdint>

#include "group/membership.h"
#include "mesh/compaction.h"
#include "mesh/result_file.h"
#include "output/group_members.h"
#include "text/channels.h"

namespace brelan {

struct Run;

// Passes 14.1 to 14.4: group cards, defaults, the engine, the listing.
void run_groups(Run& run);

// Passes 14.5 and 14.6: the line-up of truss lines. Its switch is read in every deck, and used with IEDIT 4.
void run_line_up(Run& run);

// Collapse and moves of the defaults file, before the numbering closes up.
void run_collapse_and_moves(Run& run);

// The lines of the groups follow their nodes through the compaction, between Passes 17 and 18; a node that no
// element has becomes 0.
void renumber_lines(Run& run, const PackedNodes& nodes, NodeNumber first_node);

// Makes ready for the members of the groups in the finished mesh. Ends the run, with the card that asks for
// outputs, when they would list an element whose material is below 0: their tables count materials from 1.
// Comes before any result is written, so that what an earlier run left stays.
Membership prepare_members(Run& run, const NumberRange<ElementNumber>& elements);

// Writes the elements of one type, tests each against the group listing and collects those of the groups.
void write_group_elements(Run& run, Channel& mesh_file, const ResultMesh& result, std::int8_t type,
                          const Membership& membership, MemberCollector& members);

}  // namespace brelan
