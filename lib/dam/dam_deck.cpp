#include "dam/dam_deck.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <string>
#include <vector>

#include "dam/dam_checks.h"
#include "dam/dam_tables.h"
#include "dam/shell_decks.h"
#include "dam/slope_models.h"
#include "deck/deck_tables.h"
#include "mesh/edition.h"
#include "text/channel_numbers.h"
#include "text/layout.h"

namespace brelan {

namespace {

constexpr std::string_view MAIN_DECK = "..\\EarthDam.Meg";

constexpr Layout<"(2X,I2,4X,I2,4X,I2,7X,I2,8X,I2,6X,I2)"> SWITCHES;
constexpr Layout<"(1X,3(1X,ES12.5,1X))"> REALS;
constexpr Layout<"(I4,3X,I4)"> NUMBERS_4;
constexpr Layout<"(I5,2X,I4)"> NUMBERS_5;
constexpr Layout<"(I6,1X,I4)"> NUMBERS_6;
constexpr Layout<"(10(ES12.5,1X))"> LIMITS_LINE;
constexpr Layout<"(2X,I3,5X,I2)"> GROUPS_LINE;

// What the base mesh gives each group that has a material line of its own.
constexpr std::int32_t FLUID_OF_ZONE = 1, ATTRIBUTE_OF_ZONE = 0;
constexpr float DENSITY_OF_ZONE = 2.3F;

constexpr std::array<std::string_view, 4> HEADS_4_2 = {
    "*    Xo            Yo          Ywater", "*    Xo            Yo          Temperature",
    "*    Xo            Yo          Total Head  ", "*    Xo            Yo "};

// The third value of Card 4.2; none in the displacement kind.
void write_origin(LayoutKind kind, const DamCards& dam, const DamSizes& sizes, DeckWriter& deck) {
    deck.line("* Card 4.2");
    deck.line(HEADS_4_2[static_cast<std::size_t>(kind)]);
    const float x = sizes.left, y = sizes.bottom;
    if (kind == LayoutKind::displacement)
        deck.card(REALS, x, y);
    else
        deck.card(REALS, x, y, kind == LayoutKind::coupled ? dam.water_height : dam.initial_head);
}

void write_block_columns(const DamCards& dam, const DamSizes& sizes, DeckWriter& deck) {
    const DamSizes& s = sizes;
    deck.line("* Card 4.3");
    deck.line("*    W             DX            AX");
    if (dam.layer_count > 0)
        deck.card(REALS, dam.left_margin, s.left_size, -MARGIN);
    deck.card(REALS, dam.left_width, s.left_size, EVEN);
    deck.card(REALS, dam.middle_width, s.middle_size, EVEN);
    deck.card(REALS, dam.right_width, s.right_size, EVEN);
    if (dam.layer_count > 0)
        deck.card(REALS, dam.right_margin, s.right_size, MARGIN);
}

void write_block_rows(const DamCards& dam, const DamSizes& sizes, DeckWriter& deck) {
    deck.line("* Card 4.4");
    deck.line("*    H             DY            AY");
    deck.card(REALS, dam.height, sizes.vertical_size, EVEN);
    for (std::size_t layer = 0; layer < dam.layers.size(); ++layer)
        deck.card(REALS, dam.layers[layer], sizes.vertical_size,
                  layer + 1 == dam.layers.size() ? LAST_LAYER : EVEN);
}

// Cards 1.1 and 4.1 to 4.5.
void write_base_mesh(LayoutKind kind, const DamCards& dam, const DamSizes& sizes, DeckWriter& deck) {
    deck.line("* Card 1.1");
    deck.line("* IMOD  JK     ");
    deck.card(SWITCHES, 2, kind_of_decks(kind));
    deck.line("* Card 4.1");
    deck.line("* NBX   NBY   IB_LEFT  IB_RIGHT  IB_TOP  IB_BOTTOM");
    deck.card(SWITCHES, dam.layer_count > 0 ? 5 : 3, dam.layer_count + 1, 1, 1, 0, 1);
    write_origin(kind, dam, sizes, deck);
    write_block_columns(dam, sizes, deck);
    write_block_rows(dam, sizes, deck);
    deck.line("* Card 4.5");
    deck.line("* IGMOD ");
    deck.card(ONE_NUMBER, 1);
}

// Cards 3.1-1 to 3.3 and 3.3.5.1 to 3.3.5.4-2.
void write_edit_head(DeckWriter& deck, const DamCards& dam, const DamSizes& sizes, const DamEdit& edit,
                     std::int32_t group_count) {
    const DamSizes& s = sizes;
    deck.line("* Card 3.1-1");
    deck.line("* FILEA");
    deck.name(edit.source);
    deck.line("* Card 3.1-2");
    deck.line("* FILEM");
    deck.name(edit.result);
    write_start_numbers(deck, edit.first_element, 1);
    deck.line("* Card 3.3");
    deck.line("* IEDIT");
    deck.card(ONE_NUMBER, 4);
    deck.line("* Card 3.3.5.1");
    deck.line("* NODE");
    deck.card(ONE_NUMBER, 0);
    deck.line("* Card 3.3.5.2");
    deck.line("* NOEL");
    deck.card(ONE_NUMBER, 0);
    // The border of the field stays where it is.
    deck.line("* Card 3.3.5.3");
    deck.line("* IBOUND");
    deck.card(ONE_NUMBER, 1);
    deck.card(LIMITS_LINE, s.left, s.bottom, s.right, dam.height);
    deck.line("* Card 3.3.5.4-1");
    deck.line("* NGROUP  IGTITL");
    deck.card(GROUPS_LINE, group_count, 1);
    deck.line("* Card 3.3.5.4-2");
    deck.line("*    Xref          Yref          Hi");
    deck.card(REALS, 0.0F, 0.0F, dam.initial_head);
}

// --- one group -------------------------------------------------------------------------------------

constexpr Layout<"(2X,I3,4X,I2,6X,I2,6X,I2,6X,I2,5X,I2,5X,I2)"> GROUP_LINE;
constexpr Layout<"(2X,I3,3X,I3,3X,I3,3X,I3)"> MATERIAL_LINE;
constexpr Layout<"(2X,I3,3X,ES12.5,3X,I3,3X,I3)"> MATERIAL_LINE_WITH_DENSITY;
constexpr Layout<"(2X,I3,3X,I3)"> LINE_LINE;
constexpr Layout<"(2X,I3,6X,I2,4X,I2,4X,ES12.5,1X,ES12.5)"> POINTS_LINE;
constexpr Layout<"(2X,I3,2X,ES12.5,1X,ES12.5)"> POINT_LINE;
constexpr Layout<"(2X,I3,7X,ES12.5,1X,ES12.5)"> SEGMENTS_LINE;
constexpr Layout<"(2X,I3,4X,I2,5X,I2,5X,I2)"> SEGMENT_LINE;
constexpr Layout<"('* Group No = ',I3,A)"> GROUP_TITLE;

constexpr std::string_view DOUBLE_LINE = "*=================================================";

constexpr std::array<std::string_view, 4> HEADS_MATERIAL = {
    "* MAT   KF    LTP   LMAT", "* MAT   IH    LTP   LFUN", "* MAT   IH    LTP   LFUN",
    "* MAT   DEN            LTP   LMAT"};

void write_zone_material(LayoutKind kind, DeckWriter& deck, std::int32_t material) {
    deck.line(HEADS_MATERIAL[static_cast<std::size_t>(kind)]);
    if (kind == LayoutKind::displacement)
        deck.card(MATERIAL_LINE_WITH_DENSITY, material, DENSITY_OF_ZONE, 0, 0);
    else
        deck.card(MATERIAL_LINE, material, kind == LayoutKind::coupled ? FLUID_OF_ZONE : ATTRIBUTE_OF_ZONE, 0,
                  0);
}

// Groups that only keep or close an outline have no material line.
void write_material(LayoutKind kind, DeckWriter& deck, const DamGroup& cards) {
    if (cards.group_type != 2 && cards.group_type != 3)
        return;
    deck.line("* Card 3.3.5.4.1-1");
    if (cards.group_type == 3) {
        write_zone_material(kind, deck, cards.material);
        return;
    }
    deck.line(kind == LayoutKind::head ? "* LTP   LFUN" : "* LTP   LMAT");
    deck.card(LINE_LINE, cards.line_type, cards.line_material);
}

// Writes the cards of one group, its number being `group`.
void write_dam_group(LayoutKind kind, DeckWriter& deck, std::int32_t group, const DamGroup& cards) {
    deck.line("*");
    deck.line(DOUBLE_LINE);
    deck.heading(GROUP_TITLE, group, cards.title);
    deck.line(DOUBLE_LINE);
    deck.line("*");
    deck.line(cards.title);
    deck.line("* Card 3.3.5.4.1");
    deck.line("* MTYPE IGPOST OVERLAY GCOLOR GLTYPE GLTHIC GHIDE");
    deck.card(GROUP_LINE, cards.group_type, 0, 0, 0, 0, 0, 0);
    if (cards.group_type == 0)
        return;
    write_material(kind, deck, cards);
    deck.line("* Card 3.3.5.4.2");
    deck.line("* NPOINT  MOVE  IREF  XLo          YLo");
    deck.card(POINTS_LINE, static_cast<std::int32_t>(cards.points.size()), 0, 0, 0.0F, 0.0F);
    deck.line("* Card 3.3.5.4.2-1");
    deck.line("* NP     X            Y");
    std::int32_t point = 0;
    for (const Point& p : cards.points)
        deck.card(POINT_LINE, ++point, p.x, p.y);
    deck.line("* Card 3.3.5.4.3");
    deck.line("* NSEGMENT   GNODX        GNODY");
    deck.card(SEGMENTS_LINE, static_cast<std::int32_t>(cards.end_rules.size()), 0.0F, 0.0F);
    deck.line("* Card 3.3.5.4.3.1");
    deck.line("* SEGNO  LTYPE  NDIV   IEND");
    std::int32_t segment = 0;
    for (const std::int32_t end_rule : cards.end_rules)
        deck.card(SEGMENT_LINE, ++segment, 1, cards.divisions, end_rule);
}

}  // namespace

std::int32_t kind_of_decks(LayoutKind kind) {
    constexpr std::array<std::int32_t, 4> kind_codes = {3, 1, 9, 2};
    return kind_codes[static_cast<std::size_t>(kind)];
}

void write_start_numbers(DeckWriter& deck, std::int32_t first_element, std::int32_t first_node) {
    deck.line("* Card 3.2");
    deck.line("* NSNEL  NSNODE");
    if (first_element <= 9999)
        deck.card(NUMBERS_4, first_element, first_node);
    else if (first_element <= 99999)
        deck.card(NUMBERS_5, first_element, first_node);
    else
        deck.card(NUMBERS_6, first_element, first_node);
}

void write_dam_edit(LayoutKind kind, DeckWriter& deck, const DamCards& dam, const DamSizes& sizes,
                    const DamEdit& edit, const std::vector<DamGroup>& groups) {
    write_edit_head(deck, dam, sizes, edit, static_cast<std::int32_t>(groups.size()));
    std::int32_t number = 0;
    for (const DamGroup& group : groups)
        write_dam_group(kind, deck, ++number, group);
}

void write_dam_decks(Channels& channels, LayoutKind kind, CutMethod cut, CardMemory& memory, DeckList& decks,
                     DamCards& dam, DamSizes& sizes) {
    check_dam(dam, sizes);
    memory.prepared_kind_code = kind_of_decks(kind);
    DeckWriter deck(channels.open(CHANNEL_DATA, MAIN_DECK, OpenStatus::setting), decks.made[1]);
    write_base_mesh(kind, dam, sizes, deck);
    // The numbers of the shells' elements stay free.
    const std::int32_t shell_elements =
        dam.shells ? slope_model(sizes.left_model).elements + slope_model(sizes.right_model).elements : 0;
    write_dam_edit(kind, deck, dam, sizes, {"Bmesh.dat", "EarthDam.Mes", shell_elements + 1},
                   dam_groups(kind, dam, sizes, cut));
    deck.line("* END OF DATA ");
    channels.close(CHANNEL_DATA);
    decks.count = 1;
    decks.names[1] = TextLine(MAIN_DECK);
    if (dam.shells)
        write_shell_decks(channels, kind, decks, dam, sizes, cut);
}

}  // namespace brelan
