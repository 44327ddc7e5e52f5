// What is drawn over a mesh: supports, numbers, marks of a deck's shapes.
#include <gtest/gtest.h>

#include <algorithm>
#include <limits>

#include "drawing/deck_overlay.h"
#include "drawing/numbers.h"
#include "drawing/supports.h"
#include "support/mesh_sample.h"

namespace brelan::tool {
namespace {

using test::Sample;

TEST(ShowsIn, IsNoMatterOfTouchingForSolidsButForLinesAlongTheEdge) {
    const MeshLists mesh = Sample()
                               .nodes({{0, 0}, {2, 0}, {2, 2}, {0, 2}, {4, 0}, {4, 2}})
                               .solid({1, 2, 3, 4})
                               .solid({2, 5, 6, 3})
                               .solid({1, 2, 4})
                               .beam(2, 3)
                               .joint({2, 3, 3, 2})
                               .mesh();
    const std::vector<CornerPlaces> corners = corners_of(mesh);
    const auto shown = [&](const Bounds& window) {
        std::vector<bool> list;
        for (const CornerPlaces& c : corners)
            list.push_back(shows_in(mesh, c, window));
        return list;  // solids, then the joint, then the beam
    };
    const std::vector<bool> places = shown({{2, 0}, {4, 2}});
    const auto at = [&](Number element) { return static_cast<std::size_t>(mesh.element_place(element)); };
    EXPECT_FALSE(places[at(1)]);
    EXPECT_TRUE(places[at(2)]);
    EXPECT_FALSE(places[at(3)]);
    EXPECT_TRUE(places[at(4)]);
    EXPECT_TRUE(places[at(5)]);
    const std::vector<bool> corner =
        shown({{1.5, 1.5}, {1.9, 1.9}});  // in the box of the triangle, not in it
    EXPECT_TRUE(corner[at(1)]);
    EXPECT_FALSE(corner[at(3)]);
    EXPECT_FALSE(corner[at(4)]);
    EXPECT_TRUE(shown({{0.5, 0.5}, {0.6, 0.6}})[at(1)]);  // a window inside an element
}

TEST(SupportRoom, IsTheShortestSideToAnotherNodeWithASymbol) {
    //  4 --- 5 ------ 6     1, 2, 3 and 6 have codes; 2 and 5 lie 0.25 apart, but 5 has none.
    //  |     |        |
    //  1 --- 2 ------ 3
    MeshLists mesh = Sample()
                         .nodes({{0, 0}, {1, 0}, {4, 0}, {0, 0.25}, {1, 0.25}, {4, 0.25}})
                         .solid({1, 2, 5, 4})
                         .solid({2, 3, 6, 5})
                         .mesh();
    for (const std::size_t n : {0U, 1U, 2U, 5U})
        mesh.nodes[n].codes[1] = 1;
    constexpr double NONE = std::numeric_limits<double>::infinity();
    EXPECT_EQ(support_room(mesh, corners_of(mesh)), (std::vector<double>{1, 1, 0.25, NONE, NONE, 0.25}));
    mesh.nodes[5].codes[1] = 0;
    EXPECT_EQ(support_room(mesh, corners_of(mesh)), (std::vector<double>{1, 1, 3, NONE, NONE, NONE}));
}

TEST(NumberPlaces, OfTwinAndLineNodeAreCornersOnTheSidesOfTheirSolids) {
    // An upright joint along x = 1, two elements high: 1 to 6 on its left, 7 to 12 on its right.
    //
    //     5 - 6 | 11 - 12
    //     3 - 4 |  9 - 10
    //     1 - 2 |  7 -  8
    const MeshLists upright = Sample()
                                  .nodes({{0, 0}, {1, 0}, {0, 1}, {1, 1}, {0, 2}, {1, 2}})
                                  .nodes({{1, 0}, {2, 0}, {1, 1}, {2, 1}, {1, 2}, {2, 2}})
                                  .solid({1, 2, 4, 3})
                                  .solid({3, 4, 6, 5})
                                  .solid({7, 8, 10, 9})
                                  .solid({9, 10, 12, 11})
                                  .joint({2, 4, 9, 7})
                                  .joint({4, 6, 11, 9})
                                  .mesh();
    EXPECT_EQ(node_number_places(upright, corners_of(upright)),
              (std::vector<std::int32_t>{0, 2, 0, 1, 0, 1, 0, 0, 0, 0, 3, 0}));
    // A lying one, of some width: 1 to 4 below, 5 to 8 above.
    const MeshLists lying = Sample()
                                .nodes({{0, 0}, {1, 0}, {1, 1}, {0, 1}, {0, 1.1}, {1, 1.1}, {1, 2}, {0, 2}})
                                .solid({1, 2, 3, 4})
                                .solid({5, 6, 7, 8})
                                .joint({4, 3, 6, 5})
                                .mesh();
    EXPECT_EQ(node_number_places(lying, corners_of(lying)),
              (std::vector<std::int32_t>{0, 0, 1, 3, 0, 2, 0, 0}));
}

TEST(NumberPlaces, OfFiveNodesAtOnePlaceAreAllDifferent) {
    // Four squares round the origin, each with a node of its own there, and the end of a beam.
    const MeshLists mesh = Sample()
                               .nodes({{0, 0},
                                       {0, 0},
                                       {0, 0},
                                       {0, 0},
                                       {1, 0},
                                       {1, 1},
                                       {0, 1},
                                       {-1, 1},
                                       {-1, 0},
                                       {-1, -1},
                                       {0, -1},
                                       {1, -1},
                                       {0, 0}})
                               .solid({1, 5, 6, 7})    // above right
                               .solid({2, 7, 8, 9})    // above left
                               .solid({3, 9, 10, 11})  // below left
                               .solid({4, 11, 12, 5})  // below right
                               .beam(13, 6)
                               .mesh();
    const std::vector<std::int32_t> places = node_number_places(mesh, corners_of(mesh));
    EXPECT_EQ((std::vector<std::int32_t>{places.begin(), places.begin() + 4}),
              (std::vector<std::int32_t>{0, 2, 1, 3}));
    EXPECT_EQ(places[12], 4);
    const double width = 20.0, size = 9.0;
    std::vector<Bounds> boxes;
    for (const std::int32_t place : {0, 1, 2, 3, 4}) {
        const Position start = beside({50, 50}, place, width, size);
        boxes.push_back({{start.x, start.y - 0.74 * size}, {start.x + width, start.y}});
    }
    for (std::size_t a = 0; a < boxes.size(); ++a)
        for (std::size_t b = a + 1; b < boxes.size(); ++b)
            EXPECT_TRUE(boxes[a].high.x < boxes[b].low.x || boxes[b].high.x < boxes[a].low.x ||
                        boxes[a].high.y < boxes[b].low.y || boxes[b].high.y < boxes[a].low.y)
                << a << " " << b;
}

TEST(NumberLines, OfABeamOverItsJointAndOfDoublesFollowEachOther) {
    const MeshLists mesh = Sample()
                               .nodes({{0, 0}, {1, 0}, {1, 1}, {0, 1}, {1, 0}, {1, 1}})
                               .solid({1, 2, 3, 4}, 1)
                               .solid({1, 2, 3, 4}, 5)
                               .joint({2, 3, 6, 5})
                               .beam(2, 3)
                               .mesh();
    const std::vector<std::int32_t> lines = element_number_lines(mesh, corners_of(mesh));
    const auto line = [&](Number element) {
        return lines[static_cast<std::size_t>(mesh.element_place(element))];
    };
    EXPECT_EQ(line(1), 0);
    EXPECT_EQ(line(2), 1);
    EXPECT_EQ(line(3), 0);
    EXPECT_EQ(line(4), 1);
}

// --- marks of a deck's shapes --------------------------------------------------------------------

DeckShape outline(int group, std::vector<DeckPoint> points, bool closed = true) {
    return {ShapeRole::outline, "title " + std::to_string(group), group, closed, std::move(points)};
}

void expect_apart(const std::vector<ShapeMark>& marks, const Page& page) {
    for (std::size_t a = 0; a < marks.size(); ++a) {
        EXPECT_TRUE(page.shows(marks[a].at));
        for (std::size_t b = a + 1; b < marks.size(); ++b)
            EXPECT_GT(distance(marks[a].at, marks[b].at), 2.0 * MARK_RADIUS);
    }
}

TEST(ShapeNumbers, AreThoseOfTheGroupsAndNoneForBlocksAndWindows) {
    std::vector<DeckShape> shapes{{ShapeRole::block, "block column 1", 0, true, {{0, 0}}},
                                  outline(2, {{0, 0}}),
                                  {ShapeRole::window, "limits", 0, true, {{0, 0}}},
                                  outline(7, {{0, 0}})};
    EXPECT_EQ(shape_numbers(shapes), (std::vector<int>{0, 2, 0, 7}));
    shapes = {{ShapeRole::dam, "profile of the dam", 0, true, {{0, 0}}},
              {ShapeRole::dam, "core", 0, true, {{0, 0}}}};
    EXPECT_EQ(shape_numbers(shapes), (std::vector<int>{1, 2}));
}

TEST(PlaceMarks, StandOnTheirOwnShapesOffEachOther) {
    const Page page({{0, 0}, {100, 50}}, 0.0, 0.0, 1000.0);  // ten pixels for a unit
    const std::vector<DeckShape> shapes{outline(1, {{10, 10}, {10, 40}}, false),
                                        outline(2, {{10, 10}, {60, 10}}, false),
                                        outline(3, {{10, 10}, {60, 40}}, false)};
    const std::vector<ShapeMark> marks = place_marks(shapes, page);
    ASSERT_EQ(marks.size(), 3U);
    expect_apart(marks, page);
    EXPECT_DOUBLE_EQ(marks[0].at.x, 100.0);
    EXPECT_DOUBLE_EQ(marks[1].at.y, 400.0);
    EXPECT_NEAR(400.0 - marks[2].at.y, (marks[2].at.x - 100.0) * 0.6, 1e-9);
    for (const ShapeMark& mark : marks)
        EXPECT_EQ(distance(mark.at, mark.on), 0.0);
}

TEST(PlaceMarks, StandInsideAShapeWhoseSidesAllBelongToOthersToo) {
    const Page page({{0, 0}, {100, 50}}, 0.0, 0.0, 1000.0);
    const std::vector<DeckShape> shapes{outline(1, {{10, 10}, {30, 10}, {30, 40}, {10, 40}}),
                                        outline(2, {{30, 10}, {50, 10}, {50, 40}, {30, 40}}),
                                        outline(3, {{50, 10}, {70, 10}, {70, 40}, {50, 40}}),
                                        outline(4, {{30, 10}, {50, 10}}, false),
                                        outline(5, {{30, 40}, {50, 40}}, false)};
    const std::vector<ShapeMark> marks = place_marks(shapes, page);
    ASSERT_EQ(marks.size(), 5U);
    expect_apart(marks, page);
    EXPECT_GT(marks[1].at.x, 300.0 + MARK_RADIUS);
    EXPECT_LT(marks[1].at.x, 500.0 - MARK_RADIUS);
    EXPECT_GT(marks[1].at.y, 100.0 + MARK_RADIUS);
    EXPECT_LT(marks[1].at.y, 400.0 - MARK_RADIUS);
}

TEST(PlaceMarks, HaveALeaderWhereShapesCrowd) {
    const Page page({{0, 0}, {100, 50}}, 0.0, 0.0, 1000.0);
    std::vector<DeckShape> shapes;
    for (int group = 1; group <= 20; ++group)
        shapes.push_back(outline(group, {{50, 25}, {51, 25}}, false));  // ten pixels long
    const std::vector<ShapeMark> marks = place_marks(shapes, page);
    ASSERT_EQ(marks.size(), 20U);
    expect_apart(marks, page);
    for (const ShapeMark& mark : marks) {
        EXPECT_TRUE(mark.drawn);
        EXPECT_NEAR(mark.on.x, 505.0, 5.0);
        EXPECT_NEAR(mark.on.y, 250.0, 1e-9);
    }
}

TEST(PlaceMarks, AreOfTheShapesThatShow) {
    const Page page({{0, 0}, {100, 50}}, 0.0, 0.0, 1000.0);
    const std::vector<ShapeMark> marks = place_marks(
        {outline(1, {{200, 10}, {300, 40}}, false), outline(2, {{-1e38, 25}, {1e38, 25}}, false)}, page);
    ASSERT_EQ(marks.size(), 1U);
    EXPECT_EQ(marks[0].number, 2);
    EXPECT_NEAR(marks[0].at.y, 250.0, 1e-9);
    expect_apart(marks, page);
}

TEST(AddTitles, ListEveryTitleWholeAndUnderTheDrawing) {
    std::vector<ShapeMark> marks;
    for (int k = 1; k <= 7; ++k)
        marks.push_back({k, std::string(10, static_cast<char>('a' + k)), {}, {}, false});
    Scene scene;
    const double end = add_titles(scene, marks, 60.0, 300.0, 700.0);
    const auto& titles = std::get<Labels>(scene.items.back());
    ASSERT_EQ(titles.labels.size(), 7U);
    for (std::size_t k = 0; k < 7; ++k) {
        EXPECT_EQ(titles.labels[k].text, marks[k].title);
        EXPECT_GT(titles.labels[k].at.y, 300.0 + 9.0);
        EXPECT_LT(titles.labels[k].at.y, end);
        EXPECT_LT(titles.labels[k].at.x + 10 * 0.6 * 12.0, 760.0);
    }
    EXPECT_LT(end, 300.0 + 7 * 20.0);  // in columns
    marks = {{1, std::string(200, 'w'), {}, {}, false}};
    add_titles(scene, marks, 60.0, 300.0, 700.0);
    const std::string text = std::get<Labels>(scene.items.back()).labels.front().text;
    EXPECT_TRUE(text.ends_with("w..."));
    EXPECT_LT(static_cast<double>(text.size()) * 0.6 * 12.0, 700.0);
}

}  // namespace
}  // namespace brelan::tool
