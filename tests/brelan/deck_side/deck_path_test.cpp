// The paths that a deck is drawn with are those that the engine lists in a run, point for point.
#include <gtest/gtest.h>

#include <cmath>
#include <memory>

#include "model/deck.h"
#include "run/driver.h"
#include "run/run.h"
#include "support/group_drawing.h"
#include "support/mesh.h"
#include "text/run_end.h"

namespace brelan::tool {
namespace {

using test::Drawing;
using test::DrawnGroup;
using test::Project;

// With few digits, which the normalised deck keeps all.
float rounded(float value) {
    return std::round(value * 16.0F) / 16.0F;
}

// Any outline or line that does not touch the mesh.
DrawnGroup any_group(Drawing& drawing, const test::DrawnMesh& mesh) {
    DrawnGroup group;
    switch (drawing.below(3)) {
        case 0:
            group = draw_line(drawing, mesh, test::Course::any_slope);
            group.OVERLAY = drawing.below(2);
            break;
        case 1:
            group = draw_outline(drawing, mesh);
            break;
        default:
            group = draw_arc(drawing, mesh);
    }
    for (Point& p : group.points)
        p = {rounded(p.x), rounded(p.y)};
    if (group.points.size() > 2 && group.is_open() && drawing.one_in(3))
        group.points.back() = group.points.front();
    if (drawing.one_in(6))
        group.segments.clear();
    for (test::DrawnSegment& s : group.segments) {
        s.Xo = rounded(s.Xo);
        s.Yo = rounded(s.Yo);
        s.Rx = rounded(s.Rx);
        s.Ry = rounded(s.Ry);
        s.IEND = 3;
        s.NDIV = drawing.below(3) * (drawing.below(25) - 12);
        if (s.LTYPE == 1 && drawing.one_in(8))
            s.LTYPE = 3;
    }
    return group;
}

// A triangle whose last side is an arc of one angle: its ends stand instead of the points on the cards, the
// last one on the circle of the upper half axis.
DrawnGroup with_arc_of_one_angle() {
    DrawnGroup group;
    group.MTYPE = 3;
    group.points = {{0.5F, 0.5F}, {1.5F, 0.5F}, {1.0F, 1.5F}};
    group.segments = {{1, 2, 3}, {1, 3, 3}, {2, 4, 3, 1.0F, 0.5F, 0.75F, 0.5F, 30.0F, 30.0F}};
    return group;
}

void hold_against_the_engine(const std::vector<DrawnGroup>& groups) {
    const Project project(test::Kind::displacement);
    project.write("mesh.Mes", test::sample_mesh(test::Kind::displacement).text());
    project.write("DV-BRELAN.dat", "0 0.01 0.01 0.001\n0 0.01 0 0 0 0 0 0\n0\n");
    std::string text =
        "1 0\nmesh.Mes\nout.Mes\n1 1\n4\n0\n0\n0\n" + std::to_string(groups.size()) + "\n0 0 0\n";
    for (const DrawnGroup& group : groups)
        for (const std::string& card : cards_of(group))
            text += card + "\n";
    project.deck(text);

    KeptConsole console;
    const auto run = std::make_unique<Run>(Directories{project.work_file(""), project.drive()}, console);
    try {
        run_program(*run);
    } catch (const RunEnd& end) {
        GTEST_FAIL() << end.text << "\n" << text;
    }
    const NotedDeck deck = read_deck(project.file("deck.dat"), LayoutKind::displacement);
    ASSERT_FALSE(deck.fault) << deck.fault->message;
    ASSERT_EQ(deck.groups.size(), groups.size());
    std::size_t compared = 0;
    for (const ListingRow& row : run->listing.rows) {
        if (row.sub_kind != ROW_OUTLINE)
            continue;
        const DeckGroup& group = deck.groups[static_cast<std::size_t>(row.group) - 1];
        ++compared;
        ASSERT_EQ(group.path.size(), row.points.size()) << text;
        for (std::size_t k = 0; k < row.points.size(); ++k) {
            EXPECT_NEAR(group.path[k].x, row.points[k].x, 2e-6) << "point " << k << " of\n" << text;
            EXPECT_NEAR(group.path[k].y, row.points[k].y, 2e-6) << "point " << k << " of\n" << text;
        }
        if (std::abs(group.group_type) == 2) {
            EXPECT_EQ(group.closed, row.closed == 1) << text;
        }
    }
    EXPECT_EQ(compared, groups.size());
}

TEST(DeckPaths, AreThoseOfTheEngine) {
    for (std::uint32_t seed = 1; seed <= 40 && !testing::Test::HasFailure(); ++seed) {
        Drawing drawing(seed);
        const test::DrawnMesh mesh = draw_mesh(drawing, 4);
        std::vector<DrawnGroup> groups;
        for (int g = 0; g < 8; ++g)
            groups.push_back(any_group(drawing, mesh));
        hold_against_the_engine(groups);
    }
}

TEST(DeckPaths, ArcOfOneAngleAsTheEngineTakesIt) {
    hold_against_the_engine({with_arc_of_one_angle()});
}

}  // namespace
}  // namespace brelan::tool
