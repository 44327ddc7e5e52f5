#include "dam/shell_decks.h"

#include <string_view>
#include <vector>

#include "dam/dam_deck.h"
#include "dam/dam_outlines.h"
#include "dam/dam_tables.h"
#include "dam/slope_models.h"
#include "deck/deck_tables.h"
#include "text/channel_numbers.h"
#include "text/layout.h"

namespace brelan {

namespace {

constexpr Layout<"(2X,I2,4X,I2)"> MODE;
constexpr Layout<"(2X,I3,6X,ES12.5,2X,ES12.5)"> WATER;
constexpr Layout<"(6(E12.5,1X))"> TRIANGLE;

constexpr std::int32_t SHELL_MATERIAL = 1;

constexpr std::string_view LEFT_MESH = "Shell_Left.Mes", RIGHT_MESH = "Shell_Right.Mes",
                           SHELL_MESH = "Dam_Shell.Mes", BODY_MESH = "EarthDam.Mes",
                           DAM_MESH = "Earth_Dam.Mes";

// Opens a deck of the list and writes its Card 1.1.
DeckWriter open_deck(Channels& channels, LayoutKind kind, DeckList& decks, std::int32_t place,
                     std::string_view name, std::int32_t mode) {
    decks.names[place] = TextLine(name);
    DeckWriter deck(channels.open(CHANNEL_DATA, name, OpenStatus::work), decks.made[place]);
    deck.line("* Card 1.1");
    deck.line("* IMOD  JK     ");
    deck.card(MODE, mode, kind_of_decks(kind));
    return deck;
}

void close_deck(Channels& channels, DeckWriter& deck) {
    deck.line("* END OF DATA ");
    channels.close(CHANNEL_DATA);
}

void write_name(DeckWriter& deck, std::string_view card, std::string_view field, std::string_view name) {
    deck.line(card);
    deck.line(field);
    deck.name(name);
}

// A template onto the triangle crest, toe, foot below the crest.
void write_shell_deck(Channels& channels, LayoutKind kind, DeckList& decks, const DamCards& dam,
                      const DamSizes& sizes, std::int32_t place, std::string_view name, std::string_view mesh,
                      std::int32_t first_element, std::int32_t slope_code, float crest, float toe) {
    DeckWriter deck = open_deck(channels, kind, decks, place, name, 1);
    write_name(deck, "* Card 3.1-1", "* FILEA", "Dummy.dat");
    write_name(deck, "* Card 3.1-2", "* FILEM", mesh);
    write_start_numbers(deck, first_element, 1);
    deck.line("* Card 3.3");
    deck.line("* IEDIT");
    deck.card(ONE_NUMBER, 5);
    deck.line("* Card 3.3.6.1");
    deck.line("* MODEL");
    deck.card(ONE_NUMBER, slope_code);
    deck.line("* Card 3.3.6.2");
    deck.line("* MATNO_T    rHw           Hi");
    deck.card(WATER, SHELL_MATERIAL, sizes.water_share, dam.initial_head);
    deck.line("* Card 3.3.6.3");
    deck.line("* X1           Y1           X2           Y2           X3           Y3");
    deck.card(TRIANGLE, crest, dam.height, toe, 0.0F, crest, 0.0F);
    close_deck(channels, deck);
}

void write_combination_deck(Channels& channels, LayoutKind kind, DeckList& decks, std::int32_t place,
                            std::string_view name, std::string_view mesh_a, std::string_view mesh_b,
                            std::string_view result) {
    DeckWriter deck = open_deck(channels, kind, decks, place, name, 0);
    write_name(deck, "* Card 2.1-1", "* FILEA", mesh_a);
    write_name(deck, "* Card 2.1-2", "* FILEB", mesh_b);
    write_name(deck, "* Card 2.1-3", "* FILEC", result);
    deck.line("* Card 2.2");
    deck.line("* INTERFACE");
    deck.card(ONE_NUMBER, 0);
    close_deck(channels, deck);
}

}  // namespace

void write_shell_decks(Channels& channels, LayoutKind kind, DeckList& decks, DamCards& dam, DamSizes& sizes,
                       CutMethod cut) {
    const DamSizes& s = sizes;
    write_shell_deck(channels, kind, decks, dam, sizes, 2, "Shell_Left.dat", LEFT_MESH, 1, s.left_model,
                     s.crest_left, 0.0F);
    write_shell_deck(channels, kind, decks, dam, sizes, 3, "Shell_Right.dat", RIGHT_MESH,
                     slope_model(s.left_model).elements + 1, s.right_model, s.crest_right, s.toe);
    write_combination_deck(channels, kind, decks, 4, "Combine_Shell.dat", LEFT_MESH, RIGHT_MESH, SHELL_MESH);
    const std::vector<DamGroup> zones =
        cut == CutMethod::sound ? zones_over_shells(dam, sizes) : std::vector<DamGroup>{};
    write_combination_deck(channels, kind, decks, 5, "Combine_All.dat", SHELL_MESH, BODY_MESH,
                           zones.empty() ? DAM_MESH : JOINED_MESH);
    decks.count = 5;
    if (zones.empty())
        return;
    DeckWriter deck = open_deck(channels, kind, decks, 6, "Dam_Zones.dat", 1);
    write_dam_edit(kind, deck, dam, sizes, {JOINED_MESH, DAM_MESH}, zones);
    close_deck(channels, deck);
    decks.count = 6;
}

}  // namespace brelan
