// Cards and drawings of a deck, as brelan check, run and plot see them.
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "cli/exit_status.h"
#include "commands/starter_decks.h"
#include "model/deck.h"

namespace brelan::tool {
namespace {

namespace fs = std::filesystem;

class DeckFile {
public:
    explicit DeckFile(const std::string& text)
        : path_(fs::temp_directory_path() / ("brelan-deck-" + std::to_string(getpid()) + ".dat")) {
        std::ofstream(path_, std::ios::binary) << text;
    }
    ~DeckFile() { fs::remove(path_); }
    DeckFile(const DeckFile&) = delete;
    DeckFile& operator=(const DeckFile&) = delete;

    NotedDeck read(LayoutKind kind = LayoutKind::displacement) const { return read_deck(path_, kind); }

private:
    fs::path path_;
};

NotedDeck deck_of(const std::string& text, LayoutKind kind = LayoutKind::displacement) {
    return DeckFile(text).read(kind);
}

const std::string EDIT =
    "* a comment\n  1  0\r\nRow.Mes\n  New.Mes\n 1, 1\n*\n 3\n 1\n 3\n 2 -3\n 7\n 1\n 7 0 4\n";

TEST(NotedDeck, its_comments_give_materials_their_names) {
    const NotedDeck deck =
        deck_of("* material 5: Back-fill\r\n* beam 1: Wall\n" + EDIT + "* Material 5: Sand");
    EXPECT_EQ(deck.names.of(ElementClass::solid, 5), "Sand");
    EXPECT_EQ(deck.names.of(ElementClass::beam, 1), "Wall");
    EXPECT_EQ(deck.names.size(), 2U);
}

TEST(WholeNumber, is_cut_and_has_an_opposite) {
    EXPECT_EQ(whole_number(2.9F), 2);
    EXPECT_EQ(whole_number(-2.9F), -2);
    EXPECT_EQ(whole_number(-2147483648.0F), -2147483647);
}

// A file may begin with two marks, of which only the first is passed over.
TEST(NotedDeck, a_second_byte_order_mark_is_its_fault) {
    const NotedDeck deck = deck_of("\xEF\xBB\xBF\xEF\xBB\xBF" + EDIT);
    EXPECT_TRUE(deck.byte_order_mark);
    ASSERT_TRUE(deck.fault);
    EXPECT_EQ(deck.fault->line, 1U);
    EXPECT_NE(deck.fault->message.find("found a byte order mark in front of it"), std::string::npos)
        << deck.fault->message;
    EXPECT_TRUE(deck.cards.empty());
}

TEST(NotedDeck, cards_have_the_line_of_the_file_and_their_fields_by_name) {
    const NotedDeck deck = deck_of(EDIT);
    EXPECT_FALSE(deck.fault) << deck.fault->message;
    ASSERT_EQ(deck.cards.size(), 10U);
    const DeckCard* start = deck.card("3.2");
    ASSERT_NE(start, nullptr);
    EXPECT_EQ(start->line, 5);
    EXPECT_EQ(start->integer("NSNODE"), 1);
    EXPECT_TRUE(start->field("NSNODE")->given);
    EXPECT_EQ(start->field("NSNODE")->first_column, 5);
    EXPECT_FALSE(start->field("NSBEAM")->given);
    EXPECT_EQ(start->integer("NSTRUS"), 0);
    EXPECT_EQ(deck.card("3.3")->line, 7);
    EXPECT_EQ(deck.first_mesh, "Row.Mes");
    EXPECT_EQ(deck.result, "New.Mes");
}

TEST(NotedDeck, a_list_runs_over_as_many_lines_as_its_count_asks_for) {
    const NotedDeck deck = deck_of(EDIT);
    const auto list = std::find_if(deck.cards.begin(), deck.cards.end(),
                                   [](const DeckCard& card) { return card.type == CardType::list; });
    ASSERT_NE(list, deck.cards.end());
    EXPECT_EQ(list->line, 10);
    EXPECT_EQ(list->last_line, 11);
    EXPECT_EQ(list->list, (std::vector<float>{2, -3, 7}));
    EXPECT_EQ(list->text, " 2 -3\n 7");
    EXPECT_EQ(list->number, "3.3.4.2.2");
    EXPECT_EQ(deck.card("3.3.4.3")->line, 12);
}

TEST(NotedDeck, a_byte_order_mark_is_passed_over) {
    const NotedDeck deck = deck_of("\xEF\xBB\xBF" + EDIT);
    EXPECT_TRUE(deck.byte_order_mark);
    EXPECT_FALSE(deck.fault);
    EXPECT_EQ(deck.card("3.2")->line, 5);
    EXPECT_FALSE(deck_of(EDIT).byte_order_mark);
}

TEST(NotedDeck, values_behind_the_one_that_is_no_number_are_not_known) {
    const NotedDeck deck = deck_of("1 0\nA\nB\n1 1\n0\n 5 8.O 7 8\n 1 1\n");
    ASSERT_TRUE(deck.fault && deck.fault->card);
    const DeckCard& card = deck.cards[*deck.fault->card];
    EXPECT_EQ(deck.fault->field, 1U);
    EXPECT_TRUE(card.fields[0].known);
    EXPECT_EQ(card.fields[0].value, 5.0F);
    for (const std::size_t i : {1U, 2U, 3U})
        EXPECT_FALSE(card.fields[i].known) << i;
    EXPECT_EQ(card.fields[1].text, "8.O");
}

TEST(NotedDeck, names_in_the_working_directory) {
    for (const char* name : {"old\\Row.Mes", ".\\Row.Mes", "a/b\\Row.Mes"})
        EXPECT_TRUE(in_working_directory(name)) << name;
    for (const char* name :
         {"Row.Mes", "old/Row.Mes", "..\\Row.Mes", "..\\old\\Row.Mes", "C:\\Row.Mes", "\\Row.Mes", ""})
        EXPECT_FALSE(in_working_directory(name)) << name;
    const fs::path place = fs::temp_directory_path();
    EXPECT_EQ(file_of_card(place, "..\\no-such\\Row.Mes"), place / "no-such" / "Row.Mes");
    EXPECT_EQ(file_of_card(place, "old\\Row.Mes"), fs::path());
    EXPECT_EQ(file_of_card("/none", "old\\Row.Mes", place), place / "old" / "Row.Mes");
}

TEST(NotedDeck, values_that_a_card_leaves_out_between_commas_stay_as_they_stood) {
    const NotedDeck deck = deck_of("1 0\nA\nB\n1 1\n0\n 5 6 7 8\n , 4\n");
    // Card 3.3.1.2 counts one value only: two are wanted.
    ASSERT_TRUE(deck.fault);
    EXPECT_TRUE(deck.fault->wrong_count);
    EXPECT_EQ(deck.fault->found, 1);
    const NotedDeck other = deck_of("1 0\nA\nB\n1 1\n0\n 5 6 7 8\n ,4 3\n");
    ASSERT_FALSE(other.fault);
    EXPECT_EQ(other.card("3.3.1.2")->real("SCX"), 5.0F);
    EXPECT_EQ(other.card("3.3.1.2")->real("SCY"), 4.0F);
}

TEST(NotedDeck, a_wrong_count_names_the_card_and_the_first_field_that_is_missing_or_too_many) {
    const NotedDeck few = deck_of("1 0\nA\nB\n1 1\n0\n 5 6 7\n");
    ASSERT_TRUE(few.fault);
    EXPECT_TRUE(few.fault->wrong_count);
    EXPECT_EQ(few.fault->line, 6);
    EXPECT_EQ(few.fault->field, 3U);
    EXPECT_EQ(few.fault->message, "expected 4 values on Card 3.3.1.1 (XO, YO, XN, YN), found 3");
    const NotedDeck many = deck_of("1 0 0 0\n");
    EXPECT_EQ(many.fault->field, 2U);
    EXPECT_EQ(many.fault->message, "expected 1 to 2 values on Card 1.1 (IMOD, JK), found 4");
    const NotedDeck blank = deck_of("\n");
    EXPECT_EQ(blank.fault->message,
              "expected 1 to 2 values on Card 1.1 (IMOD, JK), found none: a blank line");
}

TEST(NotedDeck, text_in_place_of_a_number_is_the_field_in_question) {
    const NotedDeck deck = deck_of("1 0\nA\nB\n1 1\n0\n 5 6 seven 8\n");
    ASSERT_TRUE(deck.fault);
    EXPECT_FALSE(deck.fault->wrong_count);
    EXPECT_EQ(deck.fault->line, 6);
    EXPECT_EQ(deck.fault->field, 2U);
    EXPECT_NE(deck.fault->message.find("found \"seven\""), std::string::npos);
    EXPECT_EQ(deck.fault->message.find("/dev/null"), std::string::npos);
}

TEST(NotedDeck, lines_behind_the_last_card_are_known) {
    EXPECT_EQ(deck_of("1 0\nA\nB\n1 1\n0\n0 0 0 0\n1 1\n* c\n\n").surplus_line, 9);
    EXPECT_EQ(deck_of("1 0\nA\nB\n1 1\n0\n0 0 0 0\n1 1\n* c\n").surplus_line, 0);
}

TEST(NotedDeck, fields_that_differ_by_kind_have_the_names_of_the_kind) {
    const std::string text = "2 0\n1 1\n0 0 3\n1 1 .5\n1 1 .5\n0\n";
    EXPECT_EQ(deck_of(text, LayoutKind::coupled).card("4.2")->real("Ywater"), 3.0F);
    EXPECT_EQ(deck_of(text, LayoutKind::temperature).card("4.2")->real("T"), 3.0F);
    EXPECT_EQ(deck_of(text, LayoutKind::head).card("4.2")->real("H"), 3.0F);
    const NotedDeck displacement = deck_of(text);
    ASSERT_TRUE(displacement.fault);
    EXPECT_EQ(displacement.fault->message, "expected 2 values on Card 4.2 (Xo, Yo), found 3");
}

TEST(NotedDeck, what_is_no_file_of_text_is_a_failure) {
    EXPECT_THROW(read_deck("/nowhere/deck.dat", LayoutKind::head), Failure);
    EXPECT_THROW(read_deck("/tmp", LayoutKind::head), Failure);
    EXPECT_THROW(deck_of(""), Failure);
    EXPECT_THROW(deck_of(std::string("1 0\n\0", 5)), Failure);
}

// --- drawings ------------------------------------------------------------------------------------

std::string groups_deck(const std::string& count, const std::string& groups) {
    return "1 0\nA\nB\n1 1\n4\n0\n0\n1\n-1 -2 30 40\n" + count + "\n10 20\n" + groups;
}

void expect_points(const std::vector<DeckPoint>& found, const std::vector<DeckPoint>& expected) {
    ASSERT_EQ(found.size(), expected.size());
    for (std::size_t i = 0; i < found.size(); ++i) {
        EXPECT_NEAR(found[i].x, expected[i].x, 1e-5) << "point " << i;
        EXPECT_NEAR(found[i].y, expected[i].y, 1e-5) << "point " << i;
    }
}

// The comment in front of a card of a starter deck heads its columns, or those of the rows behind it.
TEST(StarterDecks, head_their_cards_with_the_names_of_the_fields) {
    for (const LayoutKind kind :
         {LayoutKind::coupled, LayoutKind::temperature, LayoutKind::head, LayoutKind::displacement})
        for (const StarterDeck& starter : starter_decks()) {
            const NotedDeck deck = deck_of(starter_text(starter, kind, "deck.dat"), kind);
            ASSERT_FALSE(deck.fault) << deck.fault->message;
            std::vector<std::string> lines(1);
            std::istringstream text(deck.text);
            for (std::string line; std::getline(text, line);)
                lines.push_back(line);
            int headed = 0;
            for (const DeckCard& card : deck.cards) {
                if (card.type != CardType::values ||
                    lines[static_cast<std::size_t>(card.line) - 1].front() != '*')
                    continue;
                std::istringstream heading(lines[static_cast<std::size_t>(card.line) - 1].substr(1));
                std::size_t named = 0;
                for (std::string name; heading >> name; ++named)
                    EXPECT_TRUE(named < card.fields.size() && name == card.fields[named].name)
                        << starter.name << ", Card " << card.number << ": " << name;
                headed += named > 0 ? 1 : 0;
            }
            EXPECT_GT(headed, 0) << starter.name;
        }
}

TEST(DeckShapes, a_closed_outline_with_its_origin_and_the_reference_point) {
    const NotedDeck deck = deck_of(groups_deck(
        "1 1", "A pit\n3\n5 1.9 0 0\n3 1 1 1 2\n3 4 4\n1 0 0\n2 4 0\n3\n1 1 0 2\n2 1 0 2\n3 1 0 2\n"));
    ASSERT_FALSE(deck.fault) << deck.fault->message;
    ASSERT_EQ(deck.groups.size(), 1U);
    EXPECT_EQ(deck.groups[0].title, "A pit");
    EXPECT_TRUE(deck.groups[0].closed);
    expect_points(deck.groups[0].path, {{11, 22}, {15, 22}, {15, 26}});
    const std::vector<DeckShape> shapes = shapes_of(deck);
    ASSERT_EQ(shapes.size(), 2U);
    EXPECT_EQ(shapes[0].role, ShapeRole::window);
    expect_points(shapes[0].points, {{-1, -2}, {30, -2}, {30, 40}, {-1, 40}});
    EXPECT_EQ(shapes[1].role, ShapeRole::outline);
    EXPECT_EQ(shapes[1].title, "A pit");
}

TEST(DeckShapes, lines_free_lines_and_joints_are_told_apart) {
    const std::string line = "2 0 0 0 0\n1 0 0\n2 4 0\n1\n1 1 4 2\n";
    const NotedDeck deck =
        deck_of(groups_deck("3", "2\n2 1\n" + line + "2 0 1\n3 1\n" + line + "-2\n7 0 0 2 1 0 0\n" + line));
    ASSERT_FALSE(deck.fault) << deck.fault->message;
    const std::vector<DeckShape> shapes = shapes_of(deck);
    ASSERT_EQ(shapes.size(), 4U);
    EXPECT_EQ(shapes[1].role, ShapeRole::line);
    EXPECT_EQ(shapes[2].role, ShapeRole::free_line);
    EXPECT_EQ(shapes[3].role, ShapeRole::joint);
    EXPECT_EQ(shapes[2].title, "group 2");
    EXPECT_FALSE(shapes[1].closed);
    expect_points(shapes[1].points, {{0, 0}, {1, 0}, {2, 0}, {3, 0}, {4, 0}});
}

TEST(DeckShapes, arcs_take_the_place_of_the_points_on_the_cards) {
    // A half circle of radius 2 round (5, 0) in four parts, closed by a straight line.
    const NotedDeck deck = deck_of(groups_deck("1",
                                               "3\n5 1.9 0 0\n2 0 0 5 0\n1 9 9\n2 9 9\n2\n1 2 -4 2\n"
                                               "0 0 2 2 0 180\n2 1 0 2\n"));
    ASSERT_FALSE(deck.fault) << deck.fault->message;
    const double r = std::sqrt(2.0);
    expect_points(deck.groups[0].path, {{7, 0}, {5 + r, r}, {5, 2}, {5 - r, r}, {3, 0}});
}

TEST(DeckShapes, an_ellipse_is_divided_into_parts_of_equal_length) {
    const NotedDeck deck =
        deck_of(groups_deck("1", "2\n2 1\n2 0 0 0 0\n1 0 0\n2 0 0\n1\n1 2 8 2\n0 0 4 1 0 180\n"));
    const std::vector<DeckPoint>& path = deck.groups[0].path;
    ASSERT_EQ(path.size(), 9U);
    double longest = 0.0, shortest = 1e9;
    for (std::size_t i = 1; i < path.size(); ++i) {
        const double length = std::hypot(path[i].x - path[i - 1].x, path[i].y - path[i - 1].y);
        longest = std::max(longest, length);
        shortest = std::min(shortest, length);
        EXPECT_NEAR(path[i].x * path[i].x / 16.0 + path[i].y * path[i].y, 1.0, 1e-4);
    }
    EXPECT_LT(longest / shortest, 1.2);
}

TEST(DeckShapes, an_open_line_that_ends_where_it_began_is_closed) {
    const NotedDeck deck = deck_of(
        groups_deck("1", "2\n2 1\n4 0 0 0 0\n1 0 0\n2 4 0\n3 4 4\n4 0 0\n3\n1 1 0 2\n2 1 0 2\n3 1 0 2\n"));
    EXPECT_TRUE(deck.groups[0].closed);
    expect_points(deck.groups[0].path, {{0, 0}, {4, 0}, {4, 4}});
}

TEST(DeckShapes, block_columns_and_rows_of_a_base_mesh) {
    const std::vector<DeckShape> shapes = shapes_of(deck_of("2 0\n2 1\n1 2\n3 1 .5\n4 1 .5\n5 1 .5\n0\n"));
    ASSERT_EQ(shapes.size(), 3U);
    expect_points(shapes[0].points, {{1, 2}, {4, 2}, {4, 7}, {1, 7}});
    expect_points(shapes[1].points, {{4, 2}, {8, 2}, {8, 7}, {4, 7}});
    expect_points(shapes[2].points, {{1, 2}, {8, 2}, {8, 7}, {1, 7}});
    EXPECT_EQ(shapes[2].role, ShapeRole::block);
}

TEST(DeckShapes, profile_core_wall_and_layers_of_a_dam) {
    const std::vector<DeckShape> shapes = shapes_of(deck_of(
        "3 0\n2 1 1 0\n20 15 40 40 8 8 50 50\n36 0 42 18 46 18 52 0\n30 25\n6 8\n42 0 42 -11 46 -11 46 0\n"));
    ASSERT_EQ(shapes.size(), 5U);
    expect_points(shapes[0].points, {{0, 0}, {40, 20}, {48, 20}, {98, 0}});
    expect_points(shapes[1].points, {{36, 0}, {42, 18}, {46, 18}, {52, 0}});
    expect_points(shapes[3].points, {{-30, -14}, {123, -14}, {123, -6}, {-30, -6}});
    EXPECT_EQ(shapes[4].title, "cut-off wall");
}

// --- names ---------------------------------------------------------------------------------------

TEST(DeckNames, files_of_the_project_are_found_whatever_the_case_of_their_letters) {
    const fs::path project = fs::temp_directory_path() / ("brelan-names-" + std::to_string(getpid()));
    fs::create_directories(project / "Old");
    std::ofstream(project / "Quay.Mes") << "x";
    std::ofstream(project / "Old/Row.Mes") << "x";
    const fs::path before = fs::current_path();
    EXPECT_EQ(file_of_card(project, "quay.mes"), project / "Quay.Mes");
    EXPECT_EQ(file_of_card(project, "..\\QUAY.mes"), project / "Quay.Mes");
    EXPECT_EQ(file_of_card(project, "  quay.mes"), project / "Quay.Mes");
    EXPECT_EQ(file_of_card(project, "..\\old\\row.mes"), project / "Old/Row.Mes");
    EXPECT_EQ(file_of_card(project, "new.mes"), project / "new.mes");
    EXPECT_EQ(file_of_card(project, "old\\Row.Mes"), fs::path{}) << "a file of the working directory";
    EXPECT_EQ(file_of_card(project, ""), fs::path{});
    std::ofstream(project / "QUAY.MES") << "x";
    EXPECT_EQ(file_of_card(project, "quay.mes"), fs::path{}) << "two files go by the name";
    EXPECT_EQ(fs::current_path(), before);
    fs::remove_all(project);
}

}  // namespace
}  // namespace brelan::tool
