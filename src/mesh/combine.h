// Combination of two meshes along an interface, stage by stage.
#pragma once

#include <cstdint>

#include "channel/channels.h"
#include "mesh/combine_tables.h"
#include "mesh/result_file.h"

namespace brelan {

// Finds the ranges of element numbers of a region and rewinds its file.
void SCANREGION(Channel& mesh, Region& region);

// Gives each type of each region its first new number: the numbers stay where they rise from second to first
// region and from type to type, else all count from 1 in that order.
void FIXREGIONNUMBERS();

// Reads the head of a region's file and finds the range of its node numbers; leaves the channel at the first
// node.
void READREGIONHEAD(Channel& mesh, Region& region);

// Reads nodes into the first or the second set of tables, each at its own number.
void READFIRSTNODES(Channel& mesh);
void READSECONDNODES(Channel& mesh);

// Reads the elements of one type at their new numbers.
void READREGIONELEMENTS(Channel& mesh, Region& region, std::int8_t type);

// True when the lowest new element numbers of the regions are equal: the one collision that is looked for.
bool regions_collide();

// Smallest distance between two nodes of the first and of the second region.
float SMALLESTSPACING();

// NMAP of a first-region node becomes the negative number of the second-region node that it falls on: by the
// listed pairs, or within half the smallest spacing, where the highest-numbered match wins.
void MATCHLISTED();
void MATCHNEAREST(float DMIN);

// First-region nodes that fall on none are appended to the second region's.
void MERGENODES();

// First-region elements get the new node numbers.
void RENUMBERFIRST();

// Counts and ranges of the combined mesh.
void COUNTCOMBINED(ResultMesh& result);

// The records of the combined mesh, as the edit writes them.
void WRITECOMBINEDNODES(Channel& mesh, const ResultMesh& result);
void WRITECOMBINEDELEMENTS(Channel& mesh, const ResultMesh& result, std::int8_t type);

}  // namespace brelan
