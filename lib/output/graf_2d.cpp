#include "output/graf_2d.h"

#include <algorithm>
#include <iterator>
#include <string>

#include "mesh/edition.h"
#include "mesh/group_tables.h"
#include "output/blocks.h"
#include "output/graf_2d_texts.h"
#include "output/group_text.h"
#include "output/node_lists.h"
#include "output/unit_table.h"
#include "text/layout.h"

namespace brelan {

namespace {

constexpr Layout<"(1X,4(2X,I5))"> ELEMENT_RANGE;
constexpr Layout<"(1X,2(2X,I5))"> TWO_VALUES;
constexpr Layout<"(1X,5(2X,I5))"> DISPLACEMENT_RANGE;
constexpr Layout<"(1X,1(2X,I5))"> ONE_VALUE;
constexpr Layout<"('* Number of Element Groups = ',I3)"> RANGE_COUNT;
constexpr Layout<"(1X,1X,I6)"> MESH_COUNT;
constexpr Layout<"(3X,I5,3X,I1,5X,I1,7X,I1,6X,I1)"> CONTOUR_COUNT_LINE;
constexpr Layout<"(3X,I5)"> COUNT;
constexpr Layout<"(3X,F6.2,2X,I1,5X,I1,5X,I1,5X,F6.2,2X,F6.2)"> RESULT_SETTINGS_LINE;
constexpr Layout<"('* Card 11.',I1,'.',I1)"> CARD;
constexpr Layout<"('    ',I1,'        ')"> PLOT_TYPE_LINE;
constexpr Layout<"('*  ',A30)"> CHOICE_NAME;

// --- what the sections list ----------------------------------------------------------------------

void write_element_range(Channel& text, const ElementRange& range) {
    constexpr std::int32_t increment = 1, node_increment = 1;
    ELEMENT_RANGE.write(text, range.first.value, range.length(), increment, node_increment);
}

void write_displacements(Channel& text, std::int32_t start, std::int32_t count) {
    constexpr std::int32_t column_increment = 1, row_increment = 1, row_count = 1;
    for (const std::int32_t displacement : {0, 1, 2}) {
        TWO_VALUES.write(text, 1, displacement);
        DISPLACEMENT_RANGE.write(text, start, column_increment, count, row_increment, row_count);
    }
}

void write_displacement_range(Channel& text, const ElementRange& range) {
    write_displacements(text, -range.first.value, range.length());
}

void write_line_range(Channel& text, const ElementRange& range) {
    ONE_VALUE.write(text, 0);
    TWO_VALUES.write(text, range.first.value, range.last.value);
}

// The elements that a section lists, and how.
struct SectionRow {
    std::int32_t plot_type;
    bool inside_only;  // without the elements of lines and joint strips
    std::int8_t first_type, last_type;
    TextLines heading;
    void (*write_range)(Channel& text, const ElementRange& range);

    bool lists(std::int8_t type) const { return type >= first_type && type <= last_type; }
};

constexpr SectionRow SECTIONS[] = {
    {1, true, ELEMENT_CONTINUUM, ELEMENT_TRUSS, ELEMENT_HEADING, write_element_range},
    {2, true, ELEMENT_CONTINUUM, ELEMENT_CONTINUUM, ELEMENT_HEADING, write_element_range},
    {3, false, ELEMENT_CONTINUUM, ELEMENT_TRUSS, DISPLACEMENT_HEADING, write_displacement_range},
    {4, false, ELEMENT_BEAM, ELEMENT_BEAM, BEAM_HEADING, write_line_range},
    {5, false, ELEMENT_TRUSS, ELEMENT_TRUSS, TRUSS_HEADING, write_line_range},
    {6, true, ELEMENT_CONTINUUM, ELEMENT_CONTINUUM, ELEMENT_HEADING, write_element_range},
};

constexpr const SectionRow& section(std::int32_t plot_type) {
    return SECTIONS[plot_type - 1];
}

std::int32_t switch_of(const GroupCards& group_cards, std::int32_t g, std::int32_t plot_type) {
    return group_cards.outputs[g].toggle[static_cast<std::size_t>(plot_type - 1)];
}

// Beams and trusses of all groups are listed when no group asks for them.
bool lists_all_groups(const GroupCards& group_cards, std::int32_t plot_type) {
    if (plot_type != section(4).plot_type && plot_type != section(5).plot_type)
        return false;
    for (std::int32_t g = 1; g <= group_cards.count; ++g)
        if (switch_of(group_cards, g, plot_type) > 0)
            return false;
    return true;
}

// The elements of a group's class and material that a section lists.
const ElementRanges& listed(const SectionRow& row, const GroupMembers::value_type& member) {
    static const ElementRanges none;
    if (!row.lists(member.first.first))
        return none;
    return row.inside_only ? member.second.inside : member.second.all;
}

bool lists_group(const GroupCards& group_cards, std::int32_t g, std::int32_t NPTYPE) {
    return switch_of(group_cards, g, NPTYPE) != 0 || lists_all_groups(group_cards, NPTYPE);
}

// The groups that a section lists, in their order.
std::vector<std::int32_t> listed_groups(const GroupCards& group_cards, std::int32_t plot_type) {
    std::vector<std::int32_t> groups;
    for (std::int32_t g = 1; g <= group_cards.count; ++g)
        if (lists_group(group_cards, g, plot_type))
            groups.push_back(g);
    return groups;
}

std::int32_t count_ranges(const GroupCards& group_cards, const SectionRow& row,
                          const std::vector<GroupMembers>& members) {
    std::size_t range_count = 0;
    for (const std::int32_t g : listed_groups(group_cards, row.plot_type))
        for (const auto& member : members[static_cast<std::size_t>(g)])
            range_count += listed(row, member).size();
    return static_cast<std::int32_t>(range_count);
}

// False when the group has nothing to list.
bool write_block(const GroupCards& group_cards, Channel& text, const SectionRow& row, std::int32_t g,
                 const GroupMembers& members) {
    bool group_open = false;
    std::int8_t open_type = 0;
    for (const auto& member : members) {
        const auto [type, material] = member.first;
        const ElementRanges& ranges = listed(row, member);
        if (ranges.empty())
            continue;
        if (!group_open)
            write_group_head(group_cards, text, g);
        if (open_type != type)
            write_class_head(text, type);
        group_open = true;
        open_type = type;
        write_material_head(text, material, row.heading);
        for (const ElementRange& range : ranges)
            row.write_range(text, range);
        RANGE_COUNT.write(text, static_cast<std::int32_t>(ranges.size()));
        write_lines(text, {"*", "*"});
    }
    return group_open;
}

// The blocks of a section, one group after the other.
void write_blocks(Channels& channels, const GroupCards& group_cards, Channel& post, const SectionRow& row,
                  const std::vector<GroupMembers>& members) {
    for (const std::int32_t g : listed_groups(group_cards, row.plot_type)) {
        Channel& text = begin_group_text(channels);
        if (write_block(group_cards, text, row, g, members[static_cast<std::size_t>(g)]))
            copy_lines(text, post);
    }
}

// --- heads ---------------------------------------------------------------------------------------

void write_section_banner(Channel& post, std::int32_t plot_type) {
    const std::string type = std::to_string(plot_type), card = std::to_string(plot_type + 1);
    write_banner(post, "*         POST FILE: GRAF-2D PLOT                *",
                 "*         NPTYPE = " + type + " (CARD 11." + card + ")                 *");
}

// The head of a section with results, to the times of its plots.
void write_head(const UnitLabels& units, Channel& post, std::int32_t plot_type) {
    const std::int32_t cards = plot_type + 1;
    write_lines(post, {"* Card 11.1  ", "*  NPTYPE    "});
    PLOT_TYPE_LINE.write(post, plot_type);
    CARD.write(post, cards, 1);
    write_lines(post, {"*  TITLE     ", units.title});
    CARD.write(post, cards, 2);
    write_lines(post, {"*  IUNIT     ", "    4        "});
    CARD.write(post, cards, 4);
    write_lines(post, TIME_SETTINGS);
}

void write_count(Channel& post, TextLines lines, std::int32_t range_count) {
    write_lines(post, lines);
    COUNT.write(post, range_count);
}

// --- the sections --------------------------------------------------------------------------------

void write_mesh_section(Channels& channels, const GroupCards& group_cards, const UnitLabels& units,
                        Channel& post, const std::vector<GroupMembers>& members) {
    const std::int32_t range_count = count_ranges(group_cards, section(1), members);
    write_section_banner(post, 1);
    write_lines(post, MESH_HEAD);
    post.write_line(units.title);
    write_lines(post, MESH_SETTINGS);
    MESH_COUNT.write(post, range_count);
    post.write_line("*");
    write_blocks(channels, group_cards, post, section(1), members);
}

void write_contour_section(Channels& channels, const GroupCards& group_cards, const GroupListing& listing,
                           const UnitLabels& units, Channel& post, const std::vector<GroupMembers>& members) {
    constexpr std::int32_t averaging = 1, screen_input = 0, mesh_drawing = 0, principal_stresses = 0;
    const std::int32_t range_count = count_ranges(group_cards, section(2), members);
    write_section_banner(post, 2);
    write_head(units, post, 2);
    write_lines(post, CONTOUR_COUNT);
    CONTOUR_COUNT_LINE.write(post, range_count, averaging, screen_input, mesh_drawing, principal_stresses);
    post.write_line("*");
    write_blocks(channels, group_cards, post, section(2), members);
    write_node_lists(group_cards, listing, post, "* Card 11.3.7", "* Card 11.3.8");
}

// Without groups the whole mesh is listed; elements are taken to be numbered from 1, type after type.
void write_whole_mesh(Channel& post, const MeshCounts& counts) {
    std::int32_t before = 0;
    for (const std::int8_t type : {ELEMENT_CONTINUUM, ELEMENT_BEAM, ELEMENT_TRUSS}) {
        if (counts.of(type) > 0) {
            post.write_line(CLASS_LINES[type - 1]);
            write_displacements(post, -(before + 1), counts.of(type));
        }
        before += counts.of(type);
    }
}

void write_displacement_section(Channels& channels, const GroupCards& group_cards, const UnitLabels& units,
                                Channel& post, const std::vector<GroupMembers>& members,
                                const MeshCounts& counts) {
    const std::int32_t range_count = count_ranges(group_cards, section(3), members);
    write_section_banner(post, 3);
    write_head(units, post, 3);
    post.write_line("*");
    if (range_count == 0)
        write_whole_mesh(post, counts);
    write_blocks(channels, group_cards, post, section(3), members);
    write_lines(post, END_OF_PLOT);
}

void write_line_section(Channels& channels, const GroupCards& group_cards, const GroupListing& listing,
                        const UnitLabels& units, Channel& post, const std::vector<GroupMembers>& members,
                        std::int32_t plot_type, TextLines choices, TextLines count,
                        std::string_view list_card, std::string_view nodes_card) {
    const std::int32_t range_count = count_ranges(group_cards, section(plot_type), members);
    write_section_banner(post, plot_type);
    write_head(units, post, plot_type);
    write_lines(post, choices);
    write_count(post, count, range_count);
    write_blocks(channels, group_cards, post, section(plot_type), members);
    write_node_lists(group_cards, listing, post, list_card, nodes_card);
}

void write_result_choices(Channel& post) {
    write_lines(post, RESULT_CHOICES_HEAD);
    for (const ResultChoice& choice : RESULT_CHOICES) {
        CHOICE_NAME.write(post, choice.name);
        const std::string_view front = choice.number == ACTIVE_RESULT ? "    " : "*   ";
        post.write_line(std::string(front) + std::to_string(choice.number));
    }
}

void write_result_section(Channels& channels, LayoutKind kind, const GroupCards& group_cards,
                          const GroupListing& listing, const UnitLabels& units, Channel& post,
                          const std::vector<GroupMembers>& members) {
    constexpr float delta = 0.0F, ratio_x = 0.0F, ratio_y = 0.0F;
    constexpr std::int32_t result_switch = 0, group_switch = 0, enlargement = 0;
    const std::int32_t range_count = count_ranges(group_cards, section(6), members);
    write_section_banner(post, 6);
    if (kind == LayoutKind::temperature) {
        write_head(units, post, 2);
        write_lines(post, TEMPERATURE_CHOICE);
    } else {
        write_head(units, post, 6);
        write_result_choices(post);
    }
    write_lines(post, RESULT_SETTINGS);
    RESULT_SETTINGS_LINE.write(post, delta, result_switch, group_switch, enlargement, ratio_x, ratio_y);
    write_count(post, RESULT_COUNT, range_count);
    write_blocks(channels, group_cards, post, section(6), members);
    write_node_lists(group_cards, listing, post, "* Card 11.7.9", "* Card 11.7.10");
}

// Temperature decks have the sections of the mesh and of results only.
bool has_section(LayoutKind kind, std::int32_t NPTYPE) {
    return kind != LayoutKind::temperature || NPTYPE == 1 || NPTYPE == 6;
}

}  // namespace

void write_graf_2d(Channels& channels, LayoutKind kind, const GroupCards& group_cards,
                   const GroupListing& listing, UnitLabels& units, Channel& post,
                   const std::vector<GroupMembers>& members, const MeshCounts& counts) {
    write_mesh_section(channels, group_cards, units, post, members);
    if (has_section(kind, 2)) {  // and 3 to 5 with it
        write_contour_section(channels, group_cards, listing, units, post, members);
        write_displacement_section(channels, group_cards, units, post, members, counts);
        write_line_section(channels, group_cards, listing, units, post, members, 4, BEAM_CHOICES, BEAM_COUNT,
                           "* Card 11.5.8", "* Card 11.5.9");
        write_line_section(channels, group_cards, listing, units, post, members, 5, TRUSS_CHOICES,
                           TRUSS_COUNT, "* Card 11.6.8", "* Card 11.6.9");
    }
    write_result_section(channels, kind, group_cards, listing, units, post, members);
    write_lines(post, END_OF_GRAF_2D);
}

bool plots_list(LayoutKind kind, const GroupCards& group_cards, std::int32_t g, std::int8_t type,
                std::int32_t sub_kind) {
    return std::any_of(std::begin(SECTIONS), std::end(SECTIONS), [&](const SectionRow& row) {
        return has_section(kind, row.plot_type) && row.lists(type) &&
               (!row.inside_only || sub_kind == ROW_OUTLINE) && lists_group(group_cards, g, row.plot_type);
    });
}

}  // namespace brelan
