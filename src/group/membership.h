// Which elements of the finished mesh belong to which group: the records behind the output decks.
#pragma once

#include <cstdint>
#include <vector>

#include "channel/channels.h"
#include "mesh/tables.h"

namespace brelan {

// Truss elements of each material above 0, by material.
inline std::vector<std::int32_t> NTRUSM;

// Makes ready for the elements of a finished mesh: clears the counts, and notes where each row of the listing
// lies.
void begin_membership(Tolerances& tolerances, Engine& engine, GroupListing& listing);

// The rows of the listing that an element belongs to, by number: inside an outline, on a line, in a joint
// strip.
std::vector<std::int32_t> listing_rows_of(Mesh& mesh, Tolerances& tolerances, GroupListing& listing, const ElementWords& words, std::int8_t type);

// Writes a record of an element, just written, for each row that it belongs to. Keeps the highest materials
// and the counts of trusses.
void GROUPMEMBER(Mesh& mesh, Tolerances& tolerances, GroupListing& listing, Channel& file, std::int32_t element, const ElementWords& words, std::int8_t type);

}  // namespace brelan
