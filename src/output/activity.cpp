#include "output/activity.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "channel/layout.h"
#include "channel/real_to_integer.h"
#include "group/tables.h"
#include "output/blocks.h"
#include "output/group_text.h"
#include "mesh/edition.h"
#include "channel/trace.h"

namespace brelan {

namespace {

constexpr Layout<"(1X,1(1X,I6),2(2X,I5))"> RANGE_LINE;
constexpr Layout<"(1X,1(1X,I6),3(2X,I5))"> RANGE_LINE_MCH;
constexpr Layout<"('* Number of Elements = ',I5)"> COUNT_LINE;
constexpr std::array<std::string_view, 1> HEADING = {"*    NEL    NAC   NDAC       "};
constexpr std::array<std::string_view, 1> HEADING_MCH = {"*    NEL    NAC   NDAC    MCH"};

constexpr std::int32_t MCH = 0;
constexpr std::int32_t SHOWN_ELEMENT = 1261;  // whose new material the trace shows

// Roles of the six pairs of a group.
enum Role : std::size_t { other_continuum, in_MAT, in_MATj, line, inner_line, outer_line };

// The words of a group's material line that decide, as integers.
struct DecidingWords {
    std::int32_t MTYPE, MAT, MATj, LTi, LMi, LTo,
        LMo;  // LTi and LMi are LTP and LMAT where there is no joint

    DecidingWords(const GroupCards& group_cards, std::int32_t g)
        : MTYPE(group_cards.rows[g].MTYPE),
          MAT(TRUNCATE(group_cards.materials[g].MAT)),
          MATj(TRUNCATE(group_cards.materials[g].MATj)),
          LTi(TRUNCATE(group_cards.materials[g].LTi)),
          LMi(TRUNCATE(group_cards.materials[g].LMi)),
          LTo(TRUNCATE(group_cards.materials[g].LTo)),
          LMo(TRUNCATE(group_cards.materials[g].LMo)) {}
};

bool is_zero(const std::array<std::int32_t, 2>& pair) {
    return pair[0] == 0 && pair[1] == 0;
}

// The elements along a joint's two lines.
ActivityPair along_joint(const DecidingWords& w, std::int8_t type, std::int32_t m, const auto& pair) {
    if (type == w.LTi && m == w.LMi)
        return pair(inner_line);
    if (type == w.LTo && m == w.LMo)
        return pair(outer_line);
    return {};
}

}  // namespace

ActivityPair activity_of(const GroupCards& group_cards, std::int32_t g, std::int8_t type, std::int32_t m) {
    const DecidingWords w(group_cards, g);
    const auto& pairs = group_cards.outputs[g].pair;
    const auto pair = [&pairs](Role role) { return ActivityPair{pairs[role][0], pairs[role][1]}; };
    const bool continuum = type == EL_CONTINUUM;
    const auto along_line = [&] { return type == w.LTi && m == w.LMi ? pair(line) : ActivityPair{}; };
    switch (w.MTYPE) {
        case 1:
            return continuum ? ActivityPair{} : along_line();
        case 2:
            if (is_zero(pairs[other_continuum]) && is_zero(pairs[inner_line]) && is_zero(pairs[outer_line]))
                return along_line();
            return pair(continuum ? other_continuum : type == EL_BEAM ? inner_line : outer_line);
        case 3:
            if (!continuum)
                return along_line();
            return w.MAT > 0 && m != w.MAT ? ActivityPair{} : pair(in_MAT);
        case 4:
            if (!continuum)
                return along_line();
            return pair(m == w.MAT ? in_MAT : other_continuum);
        case -2:
            if (!continuum)
                return along_joint(w, type, m, pair);
            return pair(m == w.MATj ? in_MATj : other_continuum);
        case -3:
            if (!continuum)
                return along_joint(w, type, m, pair);
            if (w.MAT == 0)
                return pair(m == w.MATj ? in_MATj : in_MAT);
            return m == w.MAT ? pair(in_MAT) : m == w.MATj ? pair(in_MATj) : ActivityPair{};
        case -4:
            if (!continuum)
                return along_joint(w, type, m, pair);
            return pair(m == w.MAT ? in_MAT : m == w.MATj ? in_MATj : other_continuum);
        default:
            return {};
    }
}

namespace {

bool has_MCH(LayoutKind kind) {
    return kind == LayoutKind::displacement;
}

void write_range_end(LayoutKind kind, Channel& text, std::int32_t element, const ActivityPair& pair) {
    if (has_MCH(kind))
        RANGE_LINE_MCH.write(text, element, pair.NAC, pair.NDAC, MCH);
    else
        RANGE_LINE.write(text, element, pair.NAC, pair.NDAC);
}

// The heads of a group and of a class are written when the first material under them is.
struct OpenBlock {
    bool group = false;
    std::int8_t type = 0;
};

// Highest material of the elements that have activity.
std::int32_t highest_material(const GroupCards& group_cards, std::int32_t g, const GroupMembers& members) {
    std::int32_t highest = 0;
    for (const auto& [key, ranges] : members)
        if (activity_of(group_cards, g, key.first, key.second) != ActivityPair{})
            highest = std::max(highest, key.second);
    return highest;
}

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

Activity MAKEACTIVITY(Trace& trace, const GroupCards& group_cards, GroupListing& listing, const std::vector<GroupMembers>& members) {
    Activity activity;
    activity.NEWMAT.resize(static_cast<std::size_t>(MAXEL) + 1, 0);
    activity.first_new = listing.highest_material + 1;
    for (std::int32_t g = 1; g <= group_cards.count; ++g) {
        const std::int32_t MAXMC = highest_material(group_cards, g, members[static_cast<std::size_t>(g)]);
        for (const auto& [key, ranges] : members[static_cast<std::size_t>(g)]) {
            const auto [type, material] = key;
            const ActivityPair pair = activity_of(group_cards, g, type, material);
            if (pair == ActivityPair{})
                continue;
            if (type == EL_CONTINUUM) {
                activity.materials.push_back({material, pair});
                ++listing.highest_material;
                for (const ElementRange& range : ranges.all)
                    for (std::int32_t n = range.first; n <= range.last; ++n)
                        activity.NEWMAT[static_cast<std::size_t>(n)] = listing.highest_material;
            }
            for (const ElementRange& range : ranges.all)
                trace.values(2, " Pass 27.1.2 ", " II = ", static_cast<std::int32_t>(type), " K = ", material,
                             " NSS = ", range.first, " MAXMC = ", MAXMC);
            activity.NFAD += lines_of(ranges.all);
        }
    }
    trace.values(2, " Pass 27.1.3 ", " NEWMAT(1261) = ", activity.NEWMAT[SHOWN_ELEMENT]);
    return activity;
}

void WRITEACTIVITY(Channels& channels, LayoutKind kind, const GroupCards& group_cards, Channel& man, const std::vector<GroupMembers>& members) {
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
            write_material_head(text, material, has_MCH(kind) ? HEADING_MCH : HEADING);
            write_ranges(kind, text, ranges.all, pair);
            COUNT_LINE.write(text, lines_of(ranges.all));
            write_lines(text, {"*", "*"});
        }
        if (open.group)
            copy_lines(text, man);
    }
}

}  // namespace brelan
