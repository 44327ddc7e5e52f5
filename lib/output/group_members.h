// The elements of the groups, as ranges of consecutive numbers: what the records of "GROUP.TMP" come to.
#pragma once

#include <cstdint>
#include <map>
#include <utility>
#include <vector>

#include "mesh/group_tables.h"
#include "text/channels.h"

namespace brelan {

// Consecutive element numbers.
struct ElementRange {
    std::int32_t first = 0, last = 0;

    std::int32_t length() const { return last - first + 1; }
};
using ElementRanges = std::vector<ElementRange>;

// The elements of one class and material in a group, ascending.
struct MemberRanges {
    ElementRanges all;
    ElementRanges
        inside;  // those that lie inside the outline: what a line or a joint strip claims is left out
};

// By class (ELEMENT_CONTINUUM, ELEMENT_BEAM, ELEMENT_TRUSS), then by material.
using GroupMembers = std::map<std::pair<std::int8_t, std::int32_t>, MemberRanges>;

// Reads the records, once, into the members of groups 1 to NGROUP; place 0 stays empty. A group that wants no
// outputs (IGPOST 0) has no members.
std::vector<GroupMembers> read_members(const GroupCards& group_cards, Channel& file);

}  // namespace brelan
