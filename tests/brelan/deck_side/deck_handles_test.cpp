// Handles: numbers on cards follow what is dragged, and nothing else in the deck changes.
#include "model/deck_handles.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <random>
#include <sstream>

#include "cli/exit_status.h"
#include "commands/starter_decks.h"
#include "deck_texts.h"
#include "support/campaign.h"
#include "support/group_drawing.h"

namespace brelan::tool {
namespace {

const DeckHandle& handle_of(const std::vector<DeckHandle>& handles, const std::string& id) {
    for (const DeckHandle& handle : handles)
        if (handle.id == id)
            return handle;
    throw std::out_of_range(id);
}

std::string exchanged(std::string text, const std::string& from, const std::string& to) {
    return text.replace(text.find(from), from.size(), to);
}

std::string moved_text(const std::string& text, const std::string& id, double x, double y) {
    const NotedDeck deck = noted_text(text);
    return edited_text(text, move_handle(deck, id, {x, y}).edits);
}

const std::string GROUPS =
    "  2  0\n  2  1\n  0.0  0.0\n* W  DX  AX\n  4.0  1.0  0.5\n  6.0  1.0  0.5\n  5.0  1.0  0.5\n  1\n"
    "Bmesh.dat\nCut.Mes\n  1  1\n  4\n  0\n  0\n  1\n  0.0  0.0  10.0  5.0\n  1  0\n  1.0  0.5\n"
    "* kind\n  3\n  2  1.9  0  0\n* points, from (1, 0.5) and from (2, 1)\n  4  0  1  2.0  1.0\n"
    "  1   0.0     0.0\n  2   3.0     0.0     \n  3   3.0     2.0\n  4   0.00    2.0\n"
    "  4\n  1 1 0 2\n  2 1 0 2\n  3 1 0 2\n  4 1 0 2\n";

TEST(DeckHandles, a_point_lies_where_group_origin_and_reference_put_it) {
    const std::vector<DeckHandle> handles = handles_of(noted_text(GROUPS));
    const DeckHandle& point = handle_of(handles, "g1.p2");
    EXPECT_DOUBLE_EQ(point.place.x, 3.0 + 2.0 + 1.0);
    EXPECT_DOUBLE_EQ(point.place.y, 0.0 + 1.0 + 0.5);
}

TEST(DeckHandles, only_the_numbers_of_a_point_follow_it_and_keep_their_decimals) {
    EXPECT_EQ(moved_text(GROUPS, "g1.p2", 5.5, 1.25),
              exchanged(GROUPS, "  2   3.0     0.0     \n", "  2   2.5     -0.25   \n"));
    EXPECT_EQ(moved_text(GROUPS, "g1.p4", 3.5, 3.5),
              exchanged(GROUPS, "  4   0.00    2.0", "  4   0.50    2.0"));
}

TEST(DeckHandles, the_origin_of_a_group_moves_all_of_it) {
    const std::string text = moved_text(GROUPS, "g1.origin", 4.0, 2.0);
    EXPECT_EQ(text, exchanged(GROUPS, "  4  0  1  2.0  1.0", "  4  0  1  3.0  1.5"));
    EXPECT_DOUBLE_EQ(handle_of(handles_of(noted_text(text)), "g1.p1").place.x, 4.0);
}

TEST(DeckHandles, a_line_between_two_block_columns_leaves_all_others_where_they_are) {
    EXPECT_EQ(moved_text(GROUPS, "column1", 4.5, 99.0),
              exchanged(exchanged(GROUPS, "  4.0  1.0", "  4.5  1.0"), "  6.0  1.0", "  5.5  1.0"));
    EXPECT_EQ(moved_text(GROUPS, "column0", -1.0, 0.0),
              exchanged(exchanged(GROUPS, "  0.0  0.0\n* W", "  -1.0 0.0\n* W"), "  4.0  1.0", "  5.0  1.0"));
    EXPECT_EQ(moved_text(GROUPS, "column2", 12.0, 0.0), exchanged(GROUPS, "  6.0  1.0", "  8.0  1.0"));
    EXPECT_EQ(moved_text(GROUPS, "row0", 0.0, 6.5), exchanged(GROUPS, "  5.0  1.0", "  6.5  1.0"));
    EXPECT_EQ(moved_text(GROUPS, "row1", 0.0, 1.0),
              exchanged(exchanged(GROUPS, "  0.0  0.0\n* W", "  0.0  1.0\n* W"), "  5.0  1.0", "  4.0  1.0"));
}

TEST(DeckHandles, a_block_line_does_not_pass_its_neighbour) {
    const NotedDeck deck = noted_text(GROUPS);
    EXPECT_THROW(move_handle(deck, "column1", {10.0, 0.0}), Failure);
    EXPECT_THROW(move_handle(deck, "column1", {-0.5, 0.0}), Failure);
    EXPECT_THROW(move_handle(deck, "row0", {0.0, 0.0}), Failure);
}

TEST(DeckHandles, a_window_keeps_an_area) {
    EXPECT_EQ(moved_text(GROUPS, "w1.upper-right", 9.5, 5.0), exchanged(GROUPS, "10.0  5.0", "9.5   5.0"));
    EXPECT_THROW(move_handle(noted_text(GROUPS), "w1.upper-right", {-1.0, 5.0}), Failure);
}

// --- arcs ----------------------------------------------------------------------------------------

// A tunnel: the upper half a circle, the lower one flatter.
const std::string TUNNEL =
    "  1  0\nRow.Mes\nCut.Mes\n  1  1\n  4\n  0\n  0\n  0\n  1  0\n  0.0  0.0\n  1\n  0  0\n"
    "  2  0  0  10.0  5.0\n  1  2.0  0.0\n  2  -2.0  0.0\n  2\n  1 2 0 2\n"
    "  0.0  1.0  2.0  2.0  0.0  180.0\n  2 2 0 2\n  0.0  1.0  2.0  1.5  180.0  360.0\n";

TEST(DeckHandles, arcs_around_one_centre_share_it_and_the_half_axes_that_are_alike) {
    const std::vector<DeckHandle> handles = handles_of(noted_text(TUNNEL));
    std::vector<std::string> ids(handles.size());
    std::transform(handles.begin(), handles.end(), ids.begin(),
                   [](const DeckHandle& handle) { return handle.id; });
    EXPECT_EQ(ids, (std::vector<std::string>{"g1.origin", "g1.a1.centre", "g1.a1.rx", "g1.a2.ry",
                                             "g1.a1.begin", "g1.a2.begin"}));
    EXPECT_NEAR(handle_of(handles, "g1.a1.rx").place.y, 8.0, 1e-5);
    EXPECT_NEAR(handle_of(handles, "g1.a2.ry").place.y, 4.5, 1e-5);
    EXPECT_NEAR(handle_of(handles, "g1.a2.begin").place.x, 8.0, 1e-5);
}

TEST(DeckHandles, a_radius_follows_the_distance_from_the_centre) {
    EXPECT_EQ(moved_text(TUNNEL, "g1.a1.rx", 10.0 + 1.5, 6.0 + 2.0),
              exchanged(exchanged(TUNNEL, "2.0  2.0  0.0 ", "2.5  2.5  0.0 "), "2.0  1.5", "2.5  1.5"));
    EXPECT_EQ(moved_text(TUNNEL, "g1.a2.ry", 0.0, 5.25), exchanged(TUNNEL, "2.0  1.5  ", "2.0  0.75 "));
    EXPECT_THROW(move_handle(noted_text(TUNNEL), "g1.a1.rx", {10.0, 6.0}), Failure);
    EXPECT_THROW(move_handle(noted_text(TUNNEL), "g1.a2.ry", {10.0, 6.5}), Failure);
}

TEST(DeckHandles, a_centre_takes_all_its_arcs_along) {
    EXPECT_EQ(moved_text(TUNNEL, "g1.a1.centre", 10.5, 6.0),
              exchanged(exchanged(TUNNEL, "  0.0  1.0  2.0  2.0", "  0.5  1.0  2.0  2.0"),
                        "  0.0  1.0  2.0  1.5", "  0.5  1.0  2.0  1.5"));
}

// The arcs of a half circle and of a quarter of it.
const std::string BEND =
    "  1  0\nRow.Mes\nCut.Mes\n  1  1\n  4\n  0\n  0\n  0\n  1  0\n  0.0  0.0\n  2\n  2  1\n"
    "  3  0  0  0.0  0.0\n  1  0.0  0.0\n  2  0.0  0.0\n  3  -6.0  -4.0\n  3\n  1 2 0 2\n"
    "  0.0  0.0  2.0  2.0  0.0  90.0\n  2 2 0 2\n  0.0  0.0  2.0  2.0  90.0  180.0\n  3 1 0 2\n";

TEST(DeckHandles, an_angle_follows_the_direction_and_that_of_the_arc_that_goes_on_there_too) {
    EXPECT_EQ(moved_text(BEND, "g1.a2.begin", -3.0, 3.0),
              exchanged(exchanged(BEND, "0.0  90.0", "0.0  135.0"), "90.0  180.0", "135.0 180.0"));
    EXPECT_EQ(moved_text(BEND, "g1.a1.begin", 3.0, -3.0), exchanged(BEND, "0.0  90.0", "-45.0 90.0"));
    // Beyond 180 degrees it goes on counting.
    EXPECT_EQ(moved_text(BEND, "g1.a2.end", -3.0, -3.0), exchanged(BEND, "90.0  180.0", "90.0  225.0"));
    EXPECT_THROW(move_handle(noted_text(BEND), "g1.a1.begin", {0.0, 1.0}), Failure);
}

// --- dam -----------------------------------------------------------------------------------------

std::string dam_text() {
    return starter_text(*starter_deck("dam"), LayoutKind::displacement, "dam.dat");
}

TEST(DeckHandles, the_toes_of_a_dam_stay_where_its_crest_is_moved) {
    const NotedDeck deck = noted_text(moved_text(dam_text(), "dam.crest-left", 39.0, 21.0));
    const DeckCard& profile = *deck.card("5.2");
    EXPECT_EQ(profile.text, "  21.0   15.0    39.0   39.0   9.0     9.0    40.0   40.0");
}

TEST(DeckHandles, a_layer_ends_where_the_next_begins) {
    const std::string text = moved_text(dam_text(), "dam.layer1", 0.0, -5.5);
    EXPECT_EQ(text, exchanged(dam_text(), "  6.0    8.0\n", "  5.5    8.5\n"));
    EXPECT_THROW(move_handle(noted_text(dam_text()), "dam.layer1", {0.0, -14.0}), Failure);
}

// --- any deck ------------------------------------------------------------------------------------

// Every handle of a deck goes a small step to the side and back. Returns how many could be moved.
int push_every_handle(const NotedDeck& deck, std::mt19937& random) {
    int moved_handles = 0;
    for (const DeckHandle& handle : handles_of(deck)) {
        const double step = 0.25 + 0.25 * static_cast<double>(random() % 4);
        DeckPoint to{handle.place.x + step, handle.place.y + step};
        Moved moved;
        try {
            moved = move_handle(deck, handle.id, to);
        } catch (const Failure&) {
            continue;  // what lies beside it is too near
        }
        ++moved_handles;
        DeckSource source = deck;
        source.text = edited_text(deck.text, moved.edits);
        const NotedDeck there = read_deck(source, deck.kind);
        EXPECT_EQ(there.fault.has_value(), deck.fault.has_value()) << handle.id;

        // On a circle it keeps the direction or the distance; else it is where it was asked to be.
        if (handle.polar.empty()) {
            const double reach = 2e-4 * (1.0 + std::abs(to.x) + std::abs(to.y));
            EXPECT_NEAR(moved.place.x, handle.x.empty() ? moved.place.x : to.x, reach) << handle.id << "\n"
                                                                                       << deck.text;
            EXPECT_NEAR(moved.place.y, handle.y.empty() ? moved.place.y : to.y, reach) << handle.id << "\n"
                                                                                       << deck.text;
        }

        // Lines that have none of its numbers stay to the byte.
        std::istringstream before(deck.text), after(source.text);
        std::string was, is;
        int line = 0;
        while (std::getline(before, was) && std::getline(after, is)) {
            ++line;
            const bool edited = std::any_of(moved.edits.begin(), moved.edits.end(),
                                            [&](const TextEdit& edit) { return edit.line == line; });
            EXPECT_EQ(was == is, !edited) << handle.id << " " << was;
        }

        if (handle.polar.empty()) {
            const Moved back = move_handle(there, handle.id, handle.place);
            source.text = edited_text(there.text, back.edits);
            const NotedDeck again = read_deck(source, deck.kind);
            for (std::size_t card = 0; card < deck.cards.size(); ++card)
                for (std::size_t field = 0; field < deck.cards[card].fields.size(); ++field)
                    EXPECT_NEAR(again.cards[card].fields[field].value, deck.cards[card].fields[field].value,
                                2e-4 * (1.0 + std::abs(deck.cards[card].fields[field].value)))
                        << handle.id << "\n"
                        << deck.text;
        }
    }
    return moved_handles;
}

TEST(DeckHandles, every_handle_of_the_examples_goes_where_it_is_moved) {
    std::mt19937 random(17);
    int handles = 0;
    for (const auto& entry : std::filesystem::directory_iterator(BRELAN_EXAMPLES))
        if (entry.path().extension() == ".dat")
            handles += push_every_handle(read_deck(entry.path(), LayoutKind::displacement), random);
    for (const StarterDeck& deck : starter_decks())
        handles += push_every_handle(
            noted_text(starter_text(deck, LayoutKind::coupled, "a.dat"), LayoutKind::coupled), random);
    EXPECT_GT(handles, 150);
}

TEST(DeckHandles, every_handle_of_random_groups_goes_where_it_is_moved) {
    int handles = 0;
    const int decks = test::rounds(12, 1000);
    for (int seed = 1; seed <= decks; ++seed) {
        test::Drawing drawing(static_cast<std::uint32_t>(seed));
        const test::DrawnMesh mesh = test::draw_mesh(drawing);
        std::string text = "  1  0\nA.Mes\nB.Mes\n  1  1\n  4\n  0\n  0\n  0\n  3  0\n  0.0  0.0\n";
        for (const test::DrawnGroup& group :
             {test::draw_line(drawing, mesh, test::Course::any_slope), test::draw_outline(drawing, mesh),
              test::draw_arc(drawing, mesh)})
            for (const std::string& card : test::cards_of(group))
                text += card + "\n";
        const NotedDeck deck = noted_text(text);
        ASSERT_FALSE(deck.fault) << deck.fault->message << text;
        std::mt19937 random(static_cast<std::uint32_t>(seed));
        handles += push_every_handle(deck, random);
    }
    EXPECT_GT(handles, 5 * decks);
}

}  // namespace
}  // namespace brelan::tool
