// Combination of two meshes along an interface, stage by stage.
#pragma once

#include <cstdint>

#include "mesh/combine_tables.h"
#include "mesh/edition.h"
#include "mesh/result_file.h"
#include "mesh/tables.h"
#include "text/channels.h"

namespace brelan {

// Finds the ranges of element numbers of a region and rewinds its file.
void scan_region(LayoutKind kind, Channel& mesh_file, Region& region);

// Gives each type of each region its first new number: the numbers stay where they rise from second to first
// region and from type to type, else all count from 1 in that order.
void fix_region_numbers(Combination& combination);

// Reads the head of a region's file and finds the range of its node numbers; leaves the channel at the first
// node.
void read_region_head(LayoutKind kind, Channel& mesh_file, Region& region);

// Reads the nodes of the first region beside the mesh, and those of the second into it, each at its own
// number.
void read_first_nodes(const Combination& combination, const Mesh& mesh, RegionTables& first,
                      Channel& mesh_file);
void read_second_nodes(const Combination& combination, Mesh& mesh, Channel& mesh_file);

// Reads the elements of one type at their new numbers and notes the type there.
void read_region_elements(Mesh& mesh, ElementTypes& types, Channel& mesh_file, Region& region,
                          std::int8_t type);

// True when the lowest new element numbers of the regions are equal: the one collision that is looked for.
bool regions_collide(const Combination& combination);

// Smallest distance between two nodes of the first and of the second region.
float smallest_spacing(const Combination& combination, const Mesh& mesh, const RegionTables& first);

// The second-region node that each first-region node falls on: by the listed pairs, or within half the
// smallest spacing, where the highest-numbered match wins.
NodeNumbers match_listed_nodes(const CombinationCards& cards, const Mesh& mesh, const RegionTables& first);
NodeNumbers match_nearest_nodes(const Combination& combination, const Mesh& mesh, const RegionTables& first,
                                float spacing);

// First-region nodes that fall on none are appended to the second region's. Returns the new number of each
// first-region node; a number that no node has stays.
NodeNumbers merge_nodes(const Combination& combination, Mesh& mesh, const RegionTables& first,
                        const NodeNumbers& matches);

// First-region elements get the new node numbers.
void renumber_first_elements(const Combination& combination, Mesh& mesh, const RegionTables& first,
                             const NodeNumbers& new_numbers);

// Counts and ranges of the combined mesh.
ResultMesh count_combined(const Mesh& mesh, const RegionTables& first);

// The element records of the combined mesh, as the edit writes them.
void write_combined_elements(const Mesh& mesh, const RegionTables& first, Channel& mesh_file,
                             const ResultMesh& result, std::int8_t type);

}  // namespace brelan
