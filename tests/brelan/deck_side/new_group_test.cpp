// A drawn group becomes cards that run.
#include "model/new_group.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <random>

#include "cli/exit_status.h"
#include "commands/checking/deck_check.h"
#include "commands/starter_decks.h"
#include "deck_texts.h"
#include "run/run_deck.h"
#include "support/campaign.h"

namespace brelan::tool {
namespace {

std::string with_group(const NotedDeck& deck, int line, const GroupSketch& drawn) {
    return edited_text(deck.text, draw_group(deck, line, drawn).edits);
}

int line_with(const std::string& text, const std::string& part) {
    const std::size_t at = text.find(part);
    return 1 +
           static_cast<int>(std::count(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(at), '\n'));
}

const GroupSketch SQUARE{DrawnForm::outline, {{1.0, 1.0}, {2.0, 1.0}, {2.0, 2.0}, {1.0, 2.0}}, 9, "Fill"};

const std::string PLAIN =
    "1 0\nA.Mes\nB.Mes\n1 1\n4\n0\n0\n0\n1 0\n0.0 0.0\n2\n 2 4\n  2   0  0  0.0     0.0\n"
    "  1   0.25    0.0\n  2   3.0     0.0\n1\n1 1 0 2";

TEST(NewGroup, it_takes_the_layout_of_the_group_beside_it) {
    EXPECT_EQ(
        with_group(noted_text(PLAIN), 100, SQUARE),
        "1 0\nA.Mes\nB.Mes\n1 1\n4\n0\n0\n0\n2 0\n0.0 0.0\n2\n 2 4\n  2   0  0  0.0     0.0\n"
        "  1   0.25    0.0\n  2   3.0     0.0\n1\n1 1 0 2\n* Group No = 2: Fill\n3  0  0\n"
        " 9 2.3  0  0\n  4   1  0  0.0     0.0\n  1   1.0     1.0\n  2   2.0     1.0\n  3   2.0     2.0\n"
        "  4   1.0     2.0\n4\n1 1 0 2\n2 1 0 2\n3 1 0 2\n4 1 0 2");
}

TEST(NewGroup, it_follows_the_group_at_the_cursor_and_later_groups_count_on) {
    const std::string deck = starter_text(*starter_deck("groups"), LayoutKind::displacement, "a.dat");
    const NotedDeck pit = noted_text(deck);
    const NewGroup made = draw_group(pit, line_with(deck, "* Group No = 2"), SQUARE);
    const std::string text = edited_text(deck, made.edits);
    EXPECT_EQ(made.line, line_with(text, "Fill"));
    EXPECT_NE(text.find("* NGROUP  IGTITL\n  5       1\n"), std::string::npos);
    EXPECT_NE(text.find("* Group No = 2\nFill\n* MTYPE  IGPOST  OVERLAY\n  3      0       0\n"),
              std::string::npos);
    for (const char* later : {"* Group No = 3\nStage 1", "* Group No = 4\nStage 2", "* Group No = 5\nStrut"})
        EXPECT_NE(text.find(later), std::string::npos) << later;
    const NotedDeck read = noted_text(text);
    ASSERT_EQ(read.groups.size(), 5U);
    EXPECT_EQ(read.groups[1].title, "Fill");
}

TEST(NewGroup, what_is_drawn_next_follows_what_was_drawn_before) {
    const std::string deck = starter_text(*starter_deck("groups"), LayoutKind::displacement, "a.dat");
    const auto place_of_fill = [&](int line) {
        const std::vector<DeckGroup> groups = noted_text(with_group(noted_text(deck), line, SQUARE)).groups;
        return std::find_if(groups.begin(), groups.end(),
                            [](const DeckGroup& g) { return g.title == "Fill"; }) -
               groups.begin();
    };
    EXPECT_EQ(place_of_fill(line_with(deck, "Stage 1")), 2);
    EXPECT_EQ(place_of_fill(line_with(deck, "* Group No = 1")), 0);
    EXPECT_EQ(place_of_fill(1), 4);
    EXPECT_EQ(place_of_fill(9999), 4);
}

TEST(NewGroup, a_base_mesh_without_an_edit_gets_one) {
    const std::string deck = starter_text(*starter_deck("base-mesh"), LayoutKind::displacement, "a.dat");
    const NotedDeck read = noted_text(with_group(noted_text(deck), 1, SQUARE));
    ASSERT_FALSE(read.fault);
    EXPECT_EQ(read.first_mesh, BASE_MESH);
    EXPECT_EQ(read.result, "pit.Mes");
    ASSERT_EQ(read.groups.size(), 1U);
    EXPECT_EQ(read.groups[0].title, "Fill");
}

TEST(NewGroup, decks_that_draw_no_groups_say_what_to_do) {
    for (const char* name : {"edit-0", "edit-3", "combination", "dam"}) {
        const NotedDeck deck =
            noted_text(starter_text(*starter_deck(name), LayoutKind::displacement, "a.dat"));
        EXPECT_THROW(draw_group(deck, 1, SQUARE), Failure) << name;
    }
}

TEST(NewGroup, nothing_is_drawn_of_points_that_make_no_form) {
    const NotedDeck deck = noted_text(PLAIN);
    const auto refused = [&](DrawnForm form, std::vector<DeckPoint> points, std::string title = "") {
        EXPECT_THROW(draw_group(deck, 1, {form, std::move(points), 1, std::move(title)}), Failure);
    };
    refused(DrawnForm::outline, {{0.0, 0.0}, {1.0, 0.0}});
    refused(DrawnForm::outline, {{0.0, 0.0}, {1.0, 1.0}, {2.0, 2.0}});
    refused(DrawnForm::outline, {{0.0, 0.0}, {1.0, 0.0}, {1.0, 1.0}, {0.0, 0.0}});
    refused(DrawnForm::line, {{0.0, 0.0}});
    refused(DrawnForm::line, {{0.0, 0.0}, {std::nan(""), 0.0}});
    refused(DrawnForm::line, std::vector<DeckPoint>(2000, {0.0, 0.0}));
    refused(DrawnForm::arc, {{0.0, 0.0}, {1.0, 1.0}, {2.0, 2.0}});
    refused(DrawnForm::arc, {{0.0, 0.0}, {0.0, 0.0}});
    refused(DrawnForm::line, {{0.0, 0.0}, {1.0, 0.0}}, "* a comment");
    refused(DrawnForm::line, {{0.0, 0.0}, {1.0, 0.0}}, "two\nlines");
}

TEST(NewGroup, an_arc_goes_through_its_three_points_either_way_round) {
    for (const double side : {1.0, -1.0}) {
        const std::string text = with_group(
            noted_text(PLAIN), 100, {DrawnForm::arc, {{0.0, 0.0}, {2.0, 2.0 * side}, {4.0, 0.0}}, 1, ""});
        const NotedDeck deck = noted_text(text);
        ASSERT_FALSE(deck.fault) << deck.fault->message << text;
        const std::vector<DeckPoint>& path = deck.groups.back().path;
        EXPECT_NEAR(path.front().x, 0.0, 1e-5);
        EXPECT_NEAR(path.back().x, 4.0, 1e-5);
        const DeckPoint middle = path[path.size() / 2];
        EXPECT_NEAR(std::hypot(middle.x - 2.0, middle.y), 2.0, 1e-5);
        EXPECT_GT(middle.y * side, 1.5);
    }
}

// --- runs ----------------------------------------------------------------------------------------

// A square of 10 by 10 with an edit that draws nothing yet.
std::string ground(LayoutKind kind) {
    const std::string corner = kind == LayoutKind::displacement ? "0.0 0.0" : "0.0 0.0 5.0";
    return "2 0\n1 1\n" + corner + "\n10.0 1.0 0.5\n10.0 1.0 0.5\n1\nBmesh.dat\nA.Mes\n1 1\n4\n0\n0\n1\n" +
           "0.0 0.0 10.0 10.0\n0 0\n0.0 0.0\n";
}

GroupSketch random_group(std::mt19937& random) {
    const auto between = [&](double low, double high) {
        return low + (high - low) * static_cast<double>(random() % 1000) / 1000.0;
    };
    GroupSketch group;
    group.material = 2 + static_cast<int>(random() % 5);
    const DeckPoint centre{between(4.0, 6.0), between(4.0, 6.0)};
    const double size = between(1.0, 3.5);
    switch (random() % 4) {
        case 0: {
            const int corners = 3 + static_cast<int>(random() % 5);
            for (int i = 0; i < corners; ++i)
                group.points.push_back({centre.x + size * std::cos(6.283 * i / corners),
                                        centre.y + size * std::sin(6.283 * i / corners)});
            break;
        }
        case 1:
            group.form = DrawnForm::line;
            group.points = {{centre.x - size, centre.y}, centre, {centre.x, centre.y + size}};
            break;
        case 2:
            group.form = DrawnForm::arc;
            group.points = {centre, {centre.x + size, centre.y}};
            break;
        default:
            group.form = DrawnForm::arc;
            group.points = {
                {centre.x - size, centre.y}, {centre.x, centre.y + 0.6 * size}, {centre.x + size, centre.y}};
    }
    return group;
}

TEST(NewGroup, what_is_drawn_is_accepted_runs_and_lies_where_it_was_drawn) {
    constexpr std::array kinds{LayoutKind::displacement, LayoutKind::coupled, LayoutKind::temperature,
                               LayoutKind::head};
    for (int seed = 1; seed <= test::rounds(24, 2000); ++seed) {
        std::mt19937 random(static_cast<std::uint32_t>(seed));
        const LayoutKind kind = kinds[static_cast<std::size_t>(seed) % kinds.size()];
        Edition edition;
        edition.kind = kind;
        for (edition.number = 1; kind_of(edition.number) != kind;)
            ++edition.number;
        const GroupSketch drawn = random_group(random);
        const NotedDeck deck = noted_text(with_group(noted_text(ground(kind), kind), 100, drawn), kind);
        ASSERT_FALSE(deck.fault) << deck.fault->message << deck.text;
        const DeckCheck check = text_check_of(deck, edition);
        EXPECT_TRUE(check.accepted()) << deck.text;
        for (const Doubt& doubt : check.doubts)
            ADD_FAILURE() << doubt.message << "\n" << deck.text;

        // Every drawn point lies on the path, but the centre of a circle.
        for (std::size_t i = drawn.form == DrawnForm::arc && drawn.points.size() == 2 ? 1 : 0;
             i < drawn.points.size(); ++i) {
            double nearest = 1e9;
            const std::vector<DeckPoint>& path = deck.groups.at(0).path;
            for (const DeckPoint& point : path)
                nearest =
                    std::min(nearest, std::hypot(point.x - drawn.points[i].x, point.y - drawn.points[i].y));
            EXPECT_LT(nearest, drawn.form == DrawnForm::arc ? 0.1 : 1e-3) << deck.text;
        }

        RunInput input;
        input.edition = edition.number;
        input.cut = CutMethod::sound;
        input.files[input.deck_name] = deck.text;
        input.files["..\\DV-BRELAN.dat"] = "1 0.001 0.01 0.001\n0 0.0 0 0 0 0 0 0\n0\n";
        input.files["C:\\Vork\\Qx\\Qxdata\\UNIT.DAT"] = std::string(15, '\n') + "2 2 4 1 1\n";
        EXPECT_EQ(run_deck(input).end.status, 0) << deck.text;
    }
}

}  // namespace
}  // namespace brelan::tool
