// Decks that show one difficulty each, over 8 by 6 squares of a metre:
//
//   y = 6 +--+--+--+--+--+--+--+--+   left and right: x fixed; bottom: y fixed; top: free.
//         |  |  |  |  |  |  |  |  |   Card 3.3.5.3 has the limits of the mesh.
//   y = 0 +--+--+--+--+--+--+--+--+
//       x = 0                     8

#include <algorithm>

#include "lib/group/sound_cut/deck_classes.h"

namespace brelan::test {

namespace {

CutDeck deck(std::string shows, std::vector<DrawnGroup> groups) {
    CutDeck made = deck_over_squares(std::move(shows), Kind::displacement, 8, 6);
    made.groups = std::move(groups);
    return made;
}

DrawnGroup joint_along(std::vector<Point> points, int material, float THICj = 0.0F) {
    DrawnGroup group = beams_along(std::move(points), 20 + material);
    group.MTYPE = -2;
    group.MATj = 40 + material;
    group.THICj = THICj;
    return group;
}

DrawnGroup deletion_of(std::vector<Point> points) {
    DrawnGroup group = region_of(std::move(points), 0);
    group.MTYPE = 1;
    return group;
}

DrawnGroup stage_of(std::vector<Point> points, int material) {
    DrawnGroup group = region_of(std::move(points), material);
    group.MTYPE = 4;
    group.MATold = material + 50;
    return group;
}

DrawnGroup with_ends(DrawnGroup group, std::initializer_list<int> rules) {
    std::size_t k = 0;
    for (const int IEND : rules)
        group.segments[k++].IEND = IEND;
    return group;
}

CutDeck with_same(CutDeck made, float same) {
    made.same = same;
    return made;
}

CutDeck in_two_decks(CutDeck made, std::size_t first) {
    made.groups_of_first_deck = first;
    return made;
}

CutDeck with_listed(CutDeck made, std::vector<int> elements) {
    made.listed = std::move(elements);
    return made;
}

// The same groups over triangles, a mirrored and a second-order mesh.
CutDeck over_triangles(std::string shows, std::vector<DrawnGroup> groups) {
    CutDeck made = deck_over(std::move(shows), Kind::displacement, mesh_of_squares(8, 6, true));
    made.groups = std::move(groups);
    return made;
}

CutDeck over_second_order(std::string shows, std::vector<DrawnGroup> groups) {
    CutDeck made = deck_over(std::move(shows), Kind::coupled, mesh_of_squares(8, 6, false));
    make_second_order(made);
    made.groups = std::move(groups);
    return made;
}

void add_points(std::vector<CutDeck>& decks) {
    decks.push_back(deck("outline corners on nodes", {region_of({{2, 1}, {6, 2}, {5, 5}, {1, 4}}, 2)}));
    decks.push_back(
        deck("outline corners on sides", {region_of({{2.4F, 1}, {6, 2.3F}, {4.7F, 5}, {1, 3.6F}}, 2)}));
    decks.push_back(
        deck("outline corners on the border", {region_of({{0, 1.4F}, {3.3F, 0}, {8, 3.6F}, {4.2F, 6}}, 2)}));
    decks.push_back(deck("outline corners beyond the border",
                         {region_of({{-1.2F, 1.4F}, {3.3F, -0.8F}, {9.1F, 3.6F}, {4.2F, 7}}, 2)}));
    decks.push_back(
        deck("an outline round all of the ground", {region_of({{-1, -1}, {9, -1}, {9, 7}, {-1, 7}}, 2)}));
    decks.push_back(deck("an outline that is the border", {region_of({{0, 0}, {8, 0}, {8, 6}, {0, 6}}, 2)}));
    decks.push_back(deck("an outline inside one element",
                         {region_of({{3.2F, 2.3F}, {3.8F, 2.2F}, {3.7F, 2.8F}, {3.3F, 2.7F}}, 2)}));
    decks.push_back(
        deck("a spike of five degrees", {region_of({{1.5F, 2.5F}, {7.3F, 2.2F}, {7.3F, 2.75F}}, 2)}));
    decks.push_back(deck("an outline that crosses itself",
                         {region_of({{1.3F, 1.2F}, {6.4F, 4.7F}, {6.6F, 1.4F}, {1.6F, 4.6F}}, 2)}));
    decks.push_back(
        deck("points a hair off nodes", {region_of({{2.0004F, 1.0003F}, {6, 1.9996F}, {4.9995F, 5}}, 2)}));
    decks.push_back(
        deck("points a little off nodes", {region_of({{2.004F, 1.003F}, {6, 1.995F}, {4.993F, 5}}, 2)}));
    decks.push_back(with_same(
        deck("a wide TOLSAME", {region_of({{2.04F, 1.03F}, {6.02F, 2.3F}, {4.95F, 5}}, 2)}), 0.08F));
    decks.push_back(with_same(
        deck("a TOLSAME that is too wide", {region_of({{2.4F, 1.3F}, {6, 2.3F}, {4.5F, 5}}, 2)}), 0.3F));
}

void add_lines(std::vector<CutDeck>& decks) {
    decks.push_back(deck("a line along sides", {beams_along({{3, 1}, {3, 5}}, 21)}));
    decks.push_back(deck("a line through many nodes", {beams_along({{1, 1}, {5, 5}}, 21)}));
    decks.push_back(deck("a line along the border", {beams_along({{0, 6}, {8, 6}}, 21)}));
    decks.push_back(
        deck("a line that begins and ends on the border", {beams_along({{2.4F, 6}, {8, 1.7F}}, 21)}));
    decks.push_back(deck("a line that leaves the mesh and comes back",
                         {beams_along({{2.3F, 4.6F}, {4.1F, 7.5F}, {6.2F, 4.4F}}, 21)}));
    decks.push_back(deck("a line that misses the mesh", {beams_along({{-2, 7}, {10, 6.4F}}, 21)}));
    decks.push_back(deck("a slit inside one element", {beams_along({{3.3F, 2.3F}, {3.7F, 2.6F}}, 21)}));
    decks.push_back(
        deck("a slit whose ends lie in elements", {beams_along({{1.4F, 1.6F}, {5.3F, 3.7F}}, 21)}));
    decks.push_back(deck("a path backwards over itself",
                         {beams_along({{1.3F, 1.2F}, {5.2F, 3.15F}, {2.6F, 1.85F}}, 21)}));
    decks.push_back(
        deck("a bend inside one element", {beams_along({{1.4F, 2.6F}, {3.5F, 2.4F}, {3.6F, 5.4F}}, 21)}));
    decks.push_back(
        deck("two lines that cross in one element",
             {beams_along({{1.2F, 1.3F}, {6.4F, 4.4F}}, 21), beams_along({{1.4F, 4.7F}, {6.3F, 1.2F}}, 22)}));
    decks.push_back(deck("two lines that cross at a node",
                         {beams_along({{1, 1.5F}, {7, 4.5F}}, 21), beams_along({{2, 5}, {6, 1}}, 22)}));
    decks.push_back(deck("two lines that cross on a side",
                         {beams_along({{1.5F, 2}, {6.5F, 5}}, 21), beams_along({{4, 0.5F}, {4, 5.5F}}, 22)}));
    decks.push_back(
        deck("a line that ends on an earlier one inside an element",
             {beams_along({{1, 1.25F}, {7, 4.25F}}, 21), beams_along({{4.5F, 3}, {2.3F, 5.4F}}, 22)}));
    decks.push_back(deck("a line drawn twice", {beams_along({{1.2F, 1.3F}, {6.4F, 4.4F}}, 21),
                                                beams_along({{1.2F, 1.3F}, {6.4F, 4.4F}}, 22)}));
    decks.push_back(
        deck("two lines nearer than TOLSAME", {beams_along({{1.2F, 1.3F}, {6.4F, 4.4F}}, 21),
                                               beams_along({{1.2F, 1.3005F}, {6.4F, 4.4005F}}, 22)}));
    decks.push_back(deck("two lines of a small angle", {beams_along({{1.2F, 1.3F}, {6.4F, 4.4F}}, 21),
                                                        beams_along({{1.2F, 1.4F}, {6.4F, 4.3F}}, 22)}));
    decks.push_back(deck("all end rules", {with_ends(beams_along({{0.4F, 3.5F},
                                                                  {1.6F, 4.4F},
                                                                  {2.7F, 3.3F},
                                                                  {3.6F, 4.6F},
                                                                  {4.7F, 3.4F},
                                                                  {5.6F, 4.7F},
                                                                  {6.8F, 3.3F}},
                                                                 21),
                                                     {2, 1, -1, 7, 0, 3})}));
    decks.push_back(deck("an end rule that moves only",
                         {with_ends(beams_along({{2.1F, 1.1F}, {2.2F, 4.9F}}, 21), {-2})}));
    DrawnGroup parts = beams_along({{1.2F, 1.3F}, {6.4F, 4.4F}}, 21);
    parts.segments[0].NDIV = 9;
    decks.push_back(deck("a line in nine parts", {parts}));
    decks.push_back(over_triangles("lines over triangles", {beams_along({{1.2F, 1.3F}, {6.4F, 4.4F}}, 21),
                                                            beams_along({{1.4F, 4.7F}, {6.3F, 1.2F}}, 22)}));
    decks.push_back(over_second_order(
        "lines over a mesh of second order",
        {beams_along({{1.2F, 1.3F}, {6.4F, 4.4F}}, 21), region_of({{2.4F, 1}, {6, 2.3F}, {4.7F, 5}}, 2)}));
}

void add_arcs(std::vector<CutDeck>& decks) {
    const auto circle = [](Point centre, float radius, int NDIV, int material) {
        DrawnGroup group = region_of({{centre.x + radius, centre.y}}, material);
        group.segments = {arc_with(centre, {radius, radius}, 0.0F, 360.0F, NDIV)};
        return group;
    };
    decks.push_back(deck("a circle that touches sides", {circle({4, 3}, 2.0F, -24, 2)}));
    decks.push_back(deck("a circle that touches the border", {circle({4.5F, 4}, 2.0F, -20, 2)}));
    decks.push_back(deck("a circle inside one element", {circle({4.5F, 3.5F}, 0.3F, -8, 2)}));
    decks.push_back(deck("a circle of many parts", {circle({4.3F, 3.2F}, 1.7F, 0, 2)}));
}

void add_earlier(std::vector<CutDeck>& decks) {
    // The wall's foot lies on the side of the stage that is drawn through it.
    const DrawnGroup wall = beams_along({{4.3F, 6}, {4.3F, 2.5F}}, 21);
    const DrawnGroup stage = stage_of({{4.3F, 6}, {4.3F, 4.2F}, {7.2F, 4.2F}, {7.2F, 6}}, 2);
    const DrawnGroup through_foot = stage_of({{1.4F, 6}, {1.4F, 2.5F}, {6.7F, 2.5F}, {6.7F, 6}}, 2);
    decks.push_back(deck("a stage through the foot of a wall", {wall, through_foot}));
    decks.push_back(
        in_two_decks(deck("a stage through the foot of a wall of an earlier deck", {wall, through_foot}), 1));
    decks.push_back(deck("a stage whose corner lies on a wall", {wall, stage}));
    decks.push_back(
        in_two_decks(deck("a stage whose corner lies on a wall of an earlier deck", {wall, stage}), 1));
    decks.push_back(in_two_decks(deck("a stage whose corner lies on a wall with a joint of an earlier deck",
                                      {joint_along({{4.3F, 6}, {4.3F, 2.5F}}, 1), stage}),
                                 1));
    decks.push_back(in_two_decks(deck("a line over a region of an earlier deck that another has covered",
                                      {region_of({{1.3F, 1.2F}, {5.2F, 1.4F}, {4.7F, 4.4F}, {1.6F, 4.1F}}, 2),
                                       region_of({{0.7F, 0.6F}, {3.4F, 0.6F}, {3.4F, 5.3F}, {0.7F, 5.3F}}, 3),
                                       beams_along({{0.4F, 1.9F}, {7.3F, 2.6F}}, 21)}),
                                 1));
    decks.push_back(
        deck("two stages that overlap", {stage_of({{1.3F, 6}, {1.3F, 3.4F}, {5.2F, 3.4F}, {5.2F, 6}}, 2),
                                         stage_of({{3.3F, 6}, {3.3F, 1.6F}, {6.8F, 1.6F}, {6.8F, 6}}, 3)}));
    decks.push_back(
        deck("a cut with two slopes that end at the surface",
             {deletion_of({{1.2451F, 6}, {3.0918F, 3.5764F}, {5.0764F, 3.5764F}, {6.7853F, 6}})}));
    decks.push_back(deck("a line through deleted ground",
                         {deletion_of({{2.3F, 6}, {2.3F, 3.4F}, {5.6F, 3.4F}, {5.6F, 6}}),
                          beams_along({{1.2F, 4.6F}, {7.1F, 4.2F}}, 21)}));
    decks.push_back(deck("an outline partly in deleted ground",
                         {deletion_of({{2.3F, 6}, {2.3F, 3.4F}, {5.6F, 3.4F}, {5.6F, 6}}),
                          region_of({{1.2F, 2.3F}, {6.7F, 2.2F}, {6.5F, 4.4F}, {1.3F, 4.6F}}, 2)}));
    decks.push_back(with_listed(
        deck("a line through listed elements", {beams_along({{1.4F, 3.4F}, {6.6F, 3.7F}}, 21)}), {21, 27}));
    decks.push_back(
        with_listed(deck("an outline over listed elements",
                         {region_of({{1.4F, 1.4F}, {6.6F, 1.7F}, {6.2F, 4.6F}, {1.7F, 4.3F}}, 2)}),
                    {21, 27}));
    decks.push_back(with_listed(
        deck("an outline along listed elements", {region_of({{1, 1}, {4, 1}, {4, 4}, {1, 4}}, 2)}),
        {25, 26}));
    decks.push_back(deck("an outline that selects",
                         {with_ends(region_of({{1.4F, 1.4F}, {6.6F, 1.7F}, {6.2F, 4.6F}}, 2), {3, 3, 3})}));
}

// A toe on the line of a later joint opens with it.
void add_toes(std::vector<CutDeck>& decks) {
    const DrawnGroup across = joint_along({{1.4F, 2.4F}, {7.3F, 2.4F}}, 2);
    decks.push_back(
        deck("a joint across the toe of another", {joint_along({{4.3F, 6}, {4.3F, 2.4F}}, 1), across}));
    decks.push_back(deck("a joint across the toe of another that begins there",
                         {joint_along({{4.3F, 2.4F}, {4.3F, 6}}, 1), across}));
    decks.push_back(deck("a joint across the toe of another on its right",
                         {joint_along({{4.3F, 0}, {4.3F, 2.4F}}, 1), across}));
}

void add_joints(std::vector<CutDeck>& decks) {
    const DrawnGroup upright = joint_along({{4.3F, 6}, {4.3F, 2.5F}}, 1);
    decks.push_back(deck("the toe of a joint inside an element", {upright}));
    decks.push_back(deck("the toe of a joint at a node", {joint_along({{4, 6}, {4, 2}}, 1)}));
    decks.push_back(deck("a joint from border to border", {joint_along({{4.3F, 6}, {4.3F, 0}}, 1)}));
    decks.push_back(deck("a joint inside the ground", {joint_along({{2.3F, 1.5F}, {6.3F, 4.5F}}, 1)}));
    decks.push_back(deck("a bent joint", {joint_along({{2.3F, 5.5F}, {2.6F, 2.4F}, {6.3F, 1.5F}}, 1)}));
    decks.push_back(deck("a line through a joint", {upright, beams_along({{1.4F, 4.3F}, {7.3F, 3.6F}}, 22)}));
    decks.push_back(
        deck("a line that ends at a joint", {upright, beams_along({{4.3F, 4.25F}, {7.3F, 3.6F}}, 22)}));
    decks.push_back(deck("an outline over a joint",
                         {upright, region_of({{2.4F, 1.6F}, {6.6F, 1.7F}, {6.2F, 4.6F}, {2.7F, 4.3F}}, 2)}));
    DrawnGroup closed = region_of({{2.4F, 1.6F}, {6.6F, 1.7F}, {6.2F, 4.6F}, {2.7F, 4.3F}}, 2);
    make_joint(closed, 0.0F);
    closed.MATj = 41;
    decks.push_back(deck("a closed joint", {closed}));
    decks.push_back(deck("a joint over a joint", {upright, joint_along({{4.3F, 6}, {4.3F, 2.5F}}, 2)}));
    decks.push_back(deck("a joint across a joint", {upright, joint_along({{1.4F, 4.3F}, {7.3F, 3.6F}}, 2)}));
    decks.push_back(deck("a joint from a joint", {upright, joint_along({{4.3F, 4.25F}, {7.3F, 3.6F}}, 2)}));
    decks.push_back(deck("a joint that takes width", {joint_along({{4.3F, 6}, {4.3F, 2.5F}}, 1, -0.05F)}));
    decks.push_back(deck("a joint of a width that bends at the border",
                         {joint_along({{1.3F, 2.2F}, {3.2F, 0}, {6.4F, 2.4F}}, 1, -0.05F)}));
    decks.push_back(
        deck("a joint forth and back", {joint_along({{1.3F, 2.2F}, {1.7F, 2.3F}, {1.3F, 2.2F}}, 1)}));
    decks.push_back(
        deck("a joint that branches",
             {joint_along({{1.3F, 2.2F}, {4.4F, 2.6F}, {5.3F, 5.2F}, {4.4F, 2.6F}, {7.2F, 1.4F}}, 1)}));
    decks.push_back(deck("a joint that crosses itself",
                         {joint_along({{1.3F, 1.2F}, {6.4F, 4.7F}, {6.6F, 1.4F}, {1.6F, 4.6F}}, 1)}));
    decks.push_back(deck("a joint of a width that crosses itself",
                         {joint_along({{1.3F, 1.2F}, {6.4F, 4.7F}, {6.6F, 1.4F}, {1.6F, 4.6F}}, 1, -0.03F)}));
    decks.push_back(deck("a joint over the soil that crosses itself",
                         {joint_along({{1.3F, 1.2F}, {6.4F, 4.7F}, {6.6F, 1.4F}, {1.6F, 4.6F}}, 1, 0.03F)}));
    decks.push_back(
        deck("a joint that ends on itself",
             {joint_along({{1.3F, 2.2F}, {6.4F, 2.7F}, {6.6F, 4.4F}, {3.2F, 4.6F}, {3.85F, 2.45F}}, 1)}));
    decks.push_back(deck("a joint that comes back to where it begins",
                         {joint_along({{2.4F, 1.6F}, {6.6F, 1.7F}, {6.2F, 4.6F}, {2.4F, 1.6F}}, 1)}));
    decks.push_back(deck("a joint that crosses itself on the border",
                         {joint_along({{1.3F, 2.2F}, {3.2F, 0}, {6.4F, 2.4F}, {5.2F, 4.1F}, {3.2F, 0}}, 1)}));
    DrawnGroup knot = region_of({{1.3F, 1.2F}, {6.4F, 4.7F}, {6.6F, 1.4F}, {1.6F, 4.6F}}, 2);
    make_joint(knot, 0.0F);
    knot.MATj = 41;
    decks.push_back(deck("a closed joint that crosses itself", {knot}));
    decks.push_back(with_listed(
        deck("a joint through listed elements", {joint_along({{1.4F, 3.4F}, {6.6F, 3.7F}}, 1)}), {21, 27}));
    decks.push_back(deck("two joints that end at one node",
                         {joint_along({{4, 6}, {4, 3}}, 1), joint_along({{7.3F, 1.4F}, {4, 3}}, 2)}));
    decks.push_back(deck("a joint over the soil", {joint_along({{4.3F, 6}, {4.3F, 2.5F}}, 1, 0.05F)}));
    decks.push_back(deck("a stage beside a joint",
                         {upright, stage_of({{4.3F, 6}, {4.3F, 3.4F}, {7.2F, 3.4F}, {7.2F, 6}}, 2)}));
}

// A node that lies on two lines slides along the one whose sides are there.
void add_nodes_of_two_lines(std::vector<CutDeck>& decks) {
    const DrawnGroup outline = region_of({{1.3F, 1.4F}, {6.6F, 1.9F}, {6.2F, 3.4F}, {1.7F, 3.3F}}, 2);
    const DrawnGroup across = with_ends(beams_along({{2.4F, 2.98F}, {2.05F, 3.79F}}, 22), {7});
    decks.push_back(deck("a line that ends in the elements on both sides of an outline", {outline, across}));
    decks.push_back(
        in_two_decks(deck("a line that ends in the elements on both sides of a region of an earlier deck",
                          {outline, across}),
                     1));
    decks.push_back(
        deck("a line beside a pit through the open ends of an outline",
             {with_ends(region_of({{2.9F, 6}, {3.6F, 2.9F}, {4.9F, 2.9F}, {5.7F, 6}}, 2), {-1, 3, 1, 2}),
              deletion_of({{2.3F, 6}, {2.3F, 3}, {6.6F, 3}, {6.6F, 6}}),
              beams_along({{4.32F, 2.96F}, {4.59F, 2.47F}}, 22)}));
}

}  // namespace

std::vector<CutDeck> nasty_decks() {
    std::vector<CutDeck> decks;
    add_points(decks);
    add_lines(decks);
    add_arcs(decks);
    add_earlier(decks);
    add_joints(decks);
    add_toes(decks);
    add_nodes_of_two_lines(decks);
    // The kinds take turns where a deck leaves it open.
    int number = 0;
    for (CutDeck& made : decks)
        if (!made.blocks.empty()) {
            CutDeck turned =
                deck_over_squares(made.name, ALL_KINDS[static_cast<std::size_t>(number++ % 4)], 8, 6);
            made.kind = turned.kind;
            made.blocks = turned.blocks;
        }
    return decks;
}

}  // namespace brelan::test
