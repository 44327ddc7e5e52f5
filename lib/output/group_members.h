// The elements of the groups, as ranges of consecutive numbers.
#pragma once

#include <cstdint>
#include <map>
#include <utility>
#include <vector>

#include "mesh/group_tables.h"

namespace brelan {

// Consecutive element numbers.
struct ElementRange {
    ElementNumber first, last;

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
using GroupMembers = std::map<std::pair<std::int8_t, MaterialNumber>, MemberRanges>;

// What the elements of the finished mesh come to.
struct FinishedMembers {
    std::vector<GroupMembers> groups;  // from 1; place 0 stays empty
    MaterialNumber highest_material;   // of the continuum elements
};

// Takes the records of a mesh, which come in ascending number within a class. A group that wants no outputs
// (IGPOST 0) has no members.
class MemberCollector {
public:
    explicit MemberCollector(const GroupCards& group_cards);

    void add(const MemberRecord& record);
    void add_material(std::int8_t type, MaterialNumber material);
    const FinishedMembers& found() const { return found_; }

private:
    // The bucket that a group's record went to last: most records of a group follow one of the same bucket.
    struct LastBucket {
        GroupMembers::key_type key;
        MemberRanges* ranges = nullptr;
    };

    const GroupCards& group_cards_;
    FinishedMembers found_;
    std::vector<LastBucket> last_;
};

}  // namespace brelan
