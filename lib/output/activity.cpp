#include "output/activity.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "mesh/by_number.h"
#include "mesh/edition.h"
#include "mesh/group_tables.h"
#include "output/blocks.h"
#include "output/group_text.h"
#include "text/layout.h"
#include "text/real_to_integer.h"
#include "text/trace.h"

namespace brelan {

namespace {

constexpr Layout<"(1X,1(1X,I6),2(2X,I5))"> RANGE_LINE;
constexpr Layout<"(1X,1(1X,I6),3(2X,I5))"> LONG_RANGE_LINE;
constexpr Layout<"('* Number of Elements = ',I5)"> COUNT_LINE;
constexpr std::array<std::string_view, 1> HEADING = {"*    NEL    NAC   NDAC       "};
constexpr std::array<std::string_view, 1> LONG_HEADING = {"*    NEL    NAC   NDAC    MCH"};

constexpr ElementNumber SHOWN_ELEMENT{1261};  // whose new material the trace shows

// Roles of the six pairs of a group.
enum Role : std::size_t { other_continuum, in_material, in_joint_material, line, inner_line, outer_line };

// The words of a group's material line that decide, as integers.
struct DecidingWords {
    std::int32_t group_type;
    MaterialNumber material, joint_material;
    std::int32_t inner_line_type;
    MaterialNumber inner_line_material;
    std::int32_t outer_line_type;
    MaterialNumber outer_line_material;  // LTi and LMi are LTP and LMAT where there is no joint

    DecidingWords(const GroupCards& group_cards, std::int32_t g)
        : group_type(group_cards.rows[g].group_type),
          material(to_integer(group_cards.materials[g].material)),
          joint_material(to_integer(group_cards.materials[g].joint_material)),
          inner_line_type(to_integer(group_cards.materials[g].inner_line_type)),
          inner_line_material(to_integer(group_cards.materials[g].inner_line_material)),
          outer_line_type(to_integer(group_cards.materials[g].outer_line_type)),
          outer_line_material(to_integer(group_cards.materials[g].outer_line_material)) {}
};

bool is_zero(const std::array<std::int32_t, 2>& pair) {
    return pair[0] == 0 && pair[1] == 0;
}

// The elements along a joint's two lines.
ActivityPair along_joint(const DecidingWords& w, std::int8_t type, MaterialNumber m, const auto& pair) {
    if (type == w.inner_line_type && m == w.inner_line_material)
        return pair(inner_line);
    if (type == w.outer_line_type && m == w.outer_line_material)
        return pair(outer_line);
    return {};
}

}  // namespace

ActivityPair activity_of(const GroupCards& group_cards, std::int32_t g, std::int8_t type, MaterialNumber m) {
    const DecidingWords w(group_cards, g);
    const auto& pairs = group_cards.outputs[g].pair;
    const auto pair = [&pairs](Role role) { return ActivityPair{pairs[role][0], pairs[role][1]}; };
    const bool continuum = type == ELEMENT_CONTINUUM;
    const auto along_line = [&] {
        return type == w.inner_line_type && m == w.inner_line_material ? pair(line) : ActivityPair{};
    };
    switch (w.group_type) {
        case 1:
            return continuum ? ActivityPair{} : along_line();
        case 2:
            if (is_zero(pairs[other_continuum]) && is_zero(pairs[inner_line]) && is_zero(pairs[outer_line]))
                return along_line();
            return pair(continuum ? other_continuum : type == ELEMENT_BEAM ? inner_line : outer_line);
        case 3:
            if (!continuum)
                return along_line();
            return w.material.names_one() && m != w.material ? ActivityPair{} : pair(in_material);
        case 4:
            if (!continuum)
                return along_line();
            return pair(m == w.material ? in_material : other_continuum);
        case -2:
            if (!continuum)
                return along_joint(w, type, m, pair);
            return pair(m == w.joint_material ? in_joint_material : other_continuum);
        case -3:
            if (!continuum)
                return along_joint(w, type, m, pair);
            if (w.material == MaterialNumber{})
                return pair(m == w.joint_material ? in_joint_material : in_material);
            return m == w.material         ? pair(in_material)
                   : m == w.joint_material ? pair(in_joint_material)
                                           : ActivityPair{};
        case -4:
            if (!continuum)
                return along_joint(w, type, m, pair);
            return pair(m == w.material         ? in_material
                        : m == w.joint_material ? in_joint_material
                                                : other_continuum);
        default:
            return {};
    }
}

namespace {

bool has_long_lines(LayoutKind kind) {
    return kind == LayoutKind::displacement;
}

void write_range_end(LayoutKind kind, Channel& text, ElementNumber element, const ActivityPair& pair) {
    if (has_long_lines(kind))
        LONG_RANGE_LINE.write(text, element.value, pair.activated, pair.deactivated, ACTIVITY_CODE);
    else
        RANGE_LINE.write(text, element.value, pair.activated, pair.deactivated);
}

// The heads of a group and of a class are written when the first material under them is.
struct OpenBlock {
    bool group = false;
    std::int8_t type = 0;
};

// Highest material of the elements that have activity.
MaterialNumber highest_material(const GroupCards& group_cards, std::int32_t g, const GroupMembers& members) {
    MaterialNumber highest;
    for (const auto& [key, ranges] : members)
        if (activity_of(group_cards, g, key.first, key.second) != ActivityPair{})
            highest = std::max(highest, key.second);
    return highest;
}

// The pairs of elements as the groups give them, a later one over an earlier.
class PairsByElement {
public:
    void set(const ElementRange& range, const ActivityPair& pair, MaterialNumber old_material) {
        for (ElementNumber n = range.first; n <= range.last; ++n) {
            pairs_[n.place()] = pair;
            old_materials_[n.place()] = old_material;
        }
    }

    std::vector<ElementActivity> found() const {
        std::vector<ElementActivity> found;
        for (ElementNumber n{1}; n.place() < pairs_.size(); ++n)
            if (pairs_[n.place()] != ActivityPair{})
                found.push_back({n, pairs_[n.place()], old_materials_[n.place()]});
        return found;
    }

private:
    ByNumber<ActivityPair> pairs_;
    ByNumber<MaterialNumber> old_materials_;
};

void write_ranges(LayoutKind kind, Channel& text, const ElementRanges& ranges, const ActivityPair& pair) {
    for (const ElementRange& range : ranges) {
        write_range_end(kind, text, range.first, pair);
        if (range.length() > 1)
            write_range_end(kind, text, range.last, pair);
    }
}

// A line for each end of a range.
std::int32_t lines_of(const ElementRanges& ranges) {
    std::int32_t lines = 0;
    for (const ElementRange& range : ranges)
        lines += range.length() > 1 ? 2 : 1;
    return lines;
}

}  // namespace

Activity make_activity(Trace& trace, const GroupCards& group_cards, const FinishedMembers& members) {
    Activity activity;
    activity.new_material.resize(LAST_ELEMENT.place() + 1);
    activity.first_new = members.highest_material + 1;
    MaterialNumber newest = members.highest_material;
    PairsByElement pairs;
    for (std::int32_t g = 1; g <= group_cards.count; ++g) {
        const GroupMembers& own = members.groups[static_cast<std::size_t>(g)];
        const MaterialNumber highest = highest_material(group_cards, g, own);
        for (const auto& [key, ranges] : own) {
            const auto [type, material] = key;
            const ActivityPair pair = activity_of(group_cards, g, type, material);
            if (pair == ActivityPair{})
                continue;
            if (type == ELEMENT_CONTINUUM) {
                activity.materials.push_back({material, pair});
                ++newest;
                for (const ElementRange& range : ranges.all)
                    for (ElementNumber n = range.first; n <= range.last; ++n)
                        activity.new_material[n.place()] = newest;
            }
            for (const ElementRange& range : ranges.all)
                pairs.set(range, pair, type == ELEMENT_CONTINUUM ? material : MaterialNumber{});
            for (const ElementRange& range : ranges.all)
                trace.values(2, " Pass 27.1.2 ", " II = ", static_cast<std::int32_t>(type),
                             " K = ", material.value, " NSS = ", range.first.value,
                             " MAXMC = ", highest.value);
            activity.line_count += lines_of(ranges.all);
        }
    }
    activity.elements = pairs.found();
    trace.values(2, " Pass 27.1.3 ", " NEWMAT(1261) = ", activity.new_material[SHOWN_ELEMENT.place()].value);
    return activity;
}

void write_activity(Channels& channels, LayoutKind kind, const GroupCards& group_cards, Channel& main_file,
                    const std::vector<GroupMembers>& members) {
    for (std::int32_t g = 1; g <= group_cards.count; ++g) {
        Channel& text = begin_group_text(channels);
        OpenBlock open;
        for (const auto& [key, ranges] : members[static_cast<std::size_t>(g)]) {
            const auto [type, material] = key;
            const ActivityPair pair = activity_of(group_cards, g, type, material);
            if (pair == ActivityPair{})
                continue;
            if (!open.group)
                write_group_head(group_cards, text, g);
            if (open.type != type)
                write_class_head(text, type);
            open = {true, type};
            write_material_head(text, material, has_long_lines(kind) ? LONG_HEADING : HEADING);
            write_ranges(kind, text, ranges.all, pair);
            COUNT_LINE.write(text, lines_of(ranges.all));
            write_lines(text, {"*", "*"});
        }
        if (open.group)
            copy_lines(text, main_file);
    }
}

}  // namespace brelan
