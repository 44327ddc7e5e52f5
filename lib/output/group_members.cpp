#include "output/group_members.h"

#include <algorithm>

namespace brelan {

namespace {

bool takes_part(const GroupCards& group_cards, const MemberRecord& r) {
    return r.type >= ELEMENT_CONTINUUM && r.type <= ELEMENT_TRUSS && r.element.names_one() &&
           r.material != MaterialNumber{} && r.group >= 1 && r.group <= group_cards.count &&
           group_cards.outputs[r.group].wants_outputs != 0;
}

// An element that two rows of a group claim comes twice.
void add_element_to(ElementRanges& ranges, ElementNumber element) {
    if (!ranges.empty() && element <= ranges.back().last)
        return;
    if (!ranges.empty() && element == ranges.back().last + 1)
        ranges.back().last = element;
    else
        ranges.push_back({element, element});
}

}  // namespace

MemberCollector::MemberCollector(const GroupCards& group_cards)
    : group_cards_(group_cards), last_(static_cast<std::size_t>(std::max(group_cards.count, 0)) + 1) {
    found_.groups.resize(last_.size());
}

void MemberCollector::add(const MemberRecord& record) {
    if (!takes_part(group_cards_, record))
        return;
    const auto g = static_cast<std::size_t>(record.group);
    LastBucket& bucket = last_[g];
    const GroupMembers::key_type key{static_cast<std::int8_t>(record.type), record.material};
    if (bucket.ranges == nullptr || bucket.key != key)
        bucket = {key, &found_.groups[g][key]};
    add_element_to(bucket.ranges->all, record.element);
    if (record.sub_kind != ROW_LINE && record.sub_kind != ROW_JOINT)
        add_element_to(bucket.ranges->inside, record.element);
}

void MemberCollector::add_material(std::int8_t type, MaterialNumber material) {
    if (type == ELEMENT_CONTINUUM)
        found_.highest_material = std::max(found_.highest_material, material);
}

}  // namespace brelan
