// Which elements of the finished mesh belong to which group: the records behind the output decks.
#pragma once

#include <cstdint>
#include <vector>

#include "channel/channels.h"
#include "mesh/tables.h"

namespace brelan {

// Truss elements of each material above 0, by material.
inline std::vector<std::int32_t> NTRUSM;

// Makes ready for the elements of a written mesh: clears the counts, and notes where each row of the listing
// lies.
void begin_membership();

// Tests an element, just written, against every row of the listing and writes a record for each that it
// belongs to: inside an outline, on a line, in a joint strip. Keeps the highest materials and the counts of
// trusses.
void GROUPMEMBER(Channel& file, std::int32_t element, const ElementWords& words, std::int8_t type);

}  // namespace brelan
