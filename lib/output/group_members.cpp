#include "output/group_members.h"

#include "mesh/group_tables.h"
#include "text/free_field.h"

namespace brelan {

namespace {

// A record of "GROUP.TMP".
struct MemberRecord {
    std::int32_t group = 0, material = 0, element = 0, type = 0, sub_kind = 0;

    bool takes_part(const GroupCards& group_cards) const {
        return type >= ELEMENT_CONTINUUM && type <= ELEMENT_TRUSS && element > 0 && material != 0 &&
               group >= 1 && group <= group_cards.count && group_cards.outputs[group].wants_outputs != 0;
    }
};

// Records come in ascending number within a class; an element that two rows of a group claim comes twice.
void add_element_to(ElementRanges& ranges, std::int32_t element) {
    if (!ranges.empty() && element <= ranges.back().last)
        return;
    if (!ranges.empty() && element == ranges.back().last + 1)
        ranges.back().last = element;
    else
        ranges.push_back({element, element});
}

// The bucket that a group's record went to last: most records of a group follow one of the same bucket.
struct LastBucket {
    GroupMembers::key_type key;
    MemberRanges* ranges = nullptr;
};

}  // namespace

std::vector<GroupMembers> read_members(const GroupCards& group_cards, Channel& file) {
    const auto places = static_cast<std::size_t>(group_cards.count > 0 ? group_cards.count : 0) + 1;
    std::vector<GroupMembers> members(places);
    std::vector<LastBucket> last(places);
    MemberRecord r;
    while (file.more()) {
        read_free(file, "a record of an element (group, material, element, class, kind of row)", r.group,
                  r.material, r.element, r.type, r.sub_kind);
        if (!r.takes_part(group_cards))
            continue;
        const auto g = static_cast<std::size_t>(r.group);
        LastBucket& bucket = last[g];
        const GroupMembers::key_type key{static_cast<std::int8_t>(r.type), r.material};
        if (bucket.ranges == nullptr || bucket.key != key)
            bucket = {key, &members[g][key]};
        add_element_to(bucket.ranges->all, r.element);
        if (r.sub_kind != ROW_LINE && r.sub_kind != ROW_JOINT)
            add_element_to(bucket.ranges->inside, r.element);
    }
    return members;
}

}  // namespace brelan
