// Shapes of blocks: holes, eight-point blocks, absent middles, blocks of several materials, collapsed sides.

#include <limits>

#include "lib/blocks/hand_written.h"
#include "support/project.h"

namespace brelan::test {
namespace {

class BlockShapes : public BlockMeshTest {
protected:
    // Coordinates of the raw nodes, as "x,y" each.
    std::string places() const {
        std::istringstream in(coord());
        std::ostringstream out;
        int number = 0, a = 0, b = 0, c = 0;
        float x = 0.0F, y = 0.0F;
        while (in >> number >> a >> b >> c >> x >> y)
            out << x << "," << y << " ";
        return out.str();
    }
    // Corners and material of the raw elements, as "i j k l:m" each.
    std::string elements() const {
        std::istringstream in(index());
        std::ostringstream out;
        int n[10] = {};
        float thickness = 0.0F, density = 0.0F;
        while (in >> n[0] >> n[1] >> n[2] >> n[3] >> n[4] >> n[5] >> n[6] >> n[7] >> n[8] >> n[9] >>
               thickness >> density)
            out << n[1] << " " << n[2] << " " << n[3] << " " << n[4] << ":" << n[9] << " ";
        return out.str();
    }
};

// Two columns and two rows of blocks of 2 by 2, by columns from the top: materials 1 to 4 or as given.
BlockPlan four_blocks(const std::array<int, 4>& materials) {
    BlockPlan plan = hand_plan({}, {});
    plan.block_columns = plan.block_rows = 2;
    for (int column = 0; column <= 4; ++column)
        for (int row = 0; row <= 4; ++row)
            plan.key_points.push_back({static_cast<float>(1 + column), static_cast<float>(11 - row)});
    for (int p = 0; p < 2; ++p) {
        for (int q = 0; q < 2; ++q) {
            const auto key = [&](int column, int row) { return (2 * p + column) * 5 + 2 * q + row + 1; };
            plan.blocks.push_back(hand_block({key(2, 0), key(0, 0), key(0, 2), key(2, 2), key(1, 0),
                                              key(0, 1), key(1, 2), key(2, 1), key(1, 1)},
                                             materials[static_cast<std::size_t>(2 * p + q)]));
        }
    }
    return plan;
}

TEST_F(BlockShapes, EachBlockGivesItsMaterial) {
    generate(four_blocks({1, 2, 3, 4}));
    EXPECT_EQ(places(), "1,11 1,9 1,7 3,11 3,9 3,7 5,11 5,9 5,7 ");
    EXPECT_EQ(elements(), "4 1 2 5:1 5 2 3 6:2 7 4 5 8:3 8 5 6 9:4 ");
}

TEST_F(BlockShapes, AHoleMakesNoElementsAndNoNodesOfItsOwn) {
    generate(four_blocks({0, 2, 3, 4}));
    EXPECT_EQ(places(), "1,9 1,7 3,11 3,9 3,7 5,11 5,9 5,7 ");
    EXPECT_EQ(elements(), "4 1 2 5:2 6 3 4 7:3 7 4 5 8:4 ");
}

TEST_F(BlockShapes, HolesInOppositeCornersLeaveTheMiddleNode) {
    generate(four_blocks({1, 0, 0, 4}));
    EXPECT_EQ(places(), "1,11 1,9 3,11 3,9 3,7 5,9 5,7 ");
    EXPECT_EQ(elements(), "3 1 2 4:1 6 4 5 7:4 ");
}

TEST_F(BlockShapes, NothingButHolesIsAMeshOfNothing) {
    generate(four_blocks({0, 0, 0, 0}));
    EXPECT_EQ(coord(), "");
    EXPECT_EQ(index(), "");
    EXPECT_EQ(base().substr(61 + 33, 34), "     0       0       0       0   \n");
}

TEST_F(BlockShapes, ANegativeMaterialOfAnEightPointBlockShowsPositive) {
    // The sign is the reader's: a block of -2 with a centre becomes 2, which is taken as one of eight points.
    BlockPlan plan = hand_plan(rectangle(0, 4, 0, 2), {hand_block(RECTANGLE_KEYS, -2, 1, 1)});
    generate(plan);
    EXPECT_EQ(elements(), "3 1 2 4:2 ");
}

TEST_F(BlockShapes, TheLastBlockOfAColumnOrRowDecidesItsDivisions) {
    BlockPlan plan = four_blocks({1, 1, 1, 1});
    plan.blocks[0].column_divisions = 5;
    plan.blocks[0].row_divisions = 7;
    plan.blocks[1].column_divisions = 2;  // of the first column
    plan.blocks[2].row_divisions = 2;     // of the first row
    generate(plan);
    EXPECT_EQ(places(), "1,11 1,10 1,9 1,7 2,11 2,10 2,9 2,7 3,11 3,10 3,9 3,7 5,11 5,10 5,9 5,7 ");
}

TEST_F(BlockShapes, AttributesComeFromTheBlock) {
    BlockPlan plan = hand_plan(rectangle(0, 4, 0, 2), {hand_block(RECTANGLE_KEYS, 7)});
    ElementAttributes& given = plan.blocks[0].attributes;
    given.thickness = 0.5F;
    given.density = 1.25F;
    generate(plan);
    EXPECT_EQ(index(),
              "      1      3      1      2      4      0      0      0      0    7 0.5000E+00 0.1250E+01\n");
    EXPECT_EQ(records().at(4),
              "      1      3      1      2      4      0      0      0      0    7 0.5000E+00 0.1250E+01");
    {
        const Edition kind(COUPLED);
        given.skeleton = 2;
        given.fluid = 3;
        generate(plan);
        EXPECT_EQ(index(),
                  "      1      3      1      2      4      0      0      0      0    7    2    3    2    2 "
                  "0.0000E+00\n");
        EXPECT_EQ(records().at(4),
                  "      1      3      1      2      4      0      0      0      0    7  2  3    2    2 "
                  "0.0000E+00");
    }
    for (const std::int32_t edition : {TEMPERATURE, HEAD}) {
        const Edition kind(edition);
        given.attribute = -105;
        generate(plan);
        EXPECT_EQ(index(), "      1      3      1      2      4    7 -105\n");
        EXPECT_EQ(records().at(4), "      1      3      1      2      4    7 -105");
    }
}

// --- eight points, absent middles ----------------------------------------------------------------

TEST_F(BlockShapes, AShearedBlockOfFourCornersHasItsMiddlesHalfWay) {
    BlockPlan plan =
        hand_plan({{5, 2}, {1, 2}, {0, 0}, {4, 0}}, {hand_block({1, 2, 3, 4, 0, 0, 0, 0, 0}, 6, 2, 2)});
    generate(plan);
    EXPECT_EQ(places(), "1,2 0.5,1 0,0 3,2 2.5,1 2,0 5,2 4.5,1 4,0 ");
    EXPECT_EQ(elements(), "4 1 2 5:6 5 2 3 6:6 7 4 5 8:6 8 5 6 9:6 ");
}

TEST_F(BlockShapes, AnEightPointBlockFollowsABulgedSide) {
    BlockPlan plan = hand_plan({{5, 2}, {1, 2}, {1, 1}, {5, 1}, {3, 2.5}},
                               {hand_block({1, 2, 3, 4, 5, 0, 0, 0, 0}, 1, 2, 2)});
    generate(plan);
    // Centre: -(2 + 2 + 1 + 1) / 4 + (1.5 + 1.5 + 2.5 + 1) / 2.
    EXPECT_EQ(places(), "1,2 1,1.5 1,1 3,2.5 3,1.75 3,1 5,2 5,1.5 5,1 ");
}

TEST_F(BlockShapes, ANinePointBlockFollowsItsCentre) {
    BlockPlan plan = hand_plan(rectangle(1, 5, 1, 3), {hand_block(RECTANGLE_KEYS, 1, 2, 2)});
    plan.key_points[4] = {3.5, 2.25};
    generate(plan);
    EXPECT_EQ(places(), "1,3 1,2 1,1 3,3 3.5,2.25 3,1 5,3 5,2 5,1 ");
}

TEST_F(BlockShapes, AMiddleAtZeroCountsAsAbsentAndTheCentreDoesNot) {
    // From -1 to 3 with all middle points of the column at 0, from 10 down to -2 with those of the row at 0.
    BlockPlan plan =
        hand_plan({{-1, 10}, {-1, 0}, {-1, -2}, {0, 10}, {0, 0}, {0, -2}, {3, 10}, {3, 0}, {3, -2}},
                  {hand_block(RECTANGLE_KEYS, 1, 2, 2)});
    generate(plan);
    EXPECT_EQ(places(), "-1,10 -1,4 -1,-2 1,10 0,0 1,-2 3,10 3,4 3,-2 ");
}

TEST_F(BlockShapes, AbsenceEndsAtTheSmallestMagnitude) {
    BlockPlan plan =
        hand_plan({{-1, 5}, {-1, 4}, {-1, 3}, {1.0E-15F, 5}, {0, 4}, {1.1E-15F, 3}, {3, 5}, {3, 4}, {3, 3}},
                  {hand_block(RECTANGLE_KEYS, 1, 2, 2)});
    generate(plan);
    EXPECT_EQ(places(), "-1,5 -1,4 -1,3 1,5 0,4 1.1e-15,3 3,5 3,4 3,3 ");
}

TEST_F(BlockShapes, MiddlesAreFilledAfterTheScale) {
    BlockPlan plan =
        hand_plan({{5, 2}, {1, 2}, {1, 1}, {5, 1}}, {hand_block({1, 2, 3, 4, 0, 0, 0, 0, 0}, 1, 2, 1)});
    plan.scale = 2.0F;
    generate(plan);
    EXPECT_EQ(places(), "2,4 2,2 6,4 6,2 10,4 10,2 ");
}

// --- sides without length ------------------------------------------------------------------------

TEST_F(BlockShapes, ASideCollapsedOntoAPointLeavesOneNode) {
    BlockPlan plan =
        hand_plan({{4, 3}, {1, 2}, {1, 2}, {4, 1}, {2.5, 2.5}, {1, 2}, {2.5, 1.5}, {4, 2}, {2.5, 2}},
                  {hand_block({1, 2, 3, 4, 5, 6, 7, 8, 9}, 1, 1, 2)});
    generate(plan);
    EXPECT_EQ(places(), "1,2 1,2 1,2 4,3 4,2 4,1 ");
    EXPECT_EQ(elements(), "4 1 2 5:1 5 2 3 6:1 ");
    EXPECT_EQ(records(), listing(R"(
      1    0    0    1    1    1  0.100000E+01  0.200000E+01 |
      2    0    0    1    1    1  0.400000E+01  0.300000E+01 |
      3    0    0    1    1    1  0.400000E+01  0.200000E+01 |
      4    0    0    1    1    1  0.400000E+01  0.100000E+01 |
      1      2      1      1      3      0      0      0      0    1 0.1000E+01 0.2300E+01|
      2      3      1      1      4      0      0      0      0    1 0.1000E+01 0.2300E+01|
     0|
     0|
)"));
    EXPECT_NE(base().find("\n     4       2       0       0   \n"), std::string::npos);
}

// --- size ----------------------------------------------------------------------------------------

TEST_F(BlockShapes, AMeshAboveTheWorkSpaceStopsAndTheEarlierBaseMeshStays) {
    directory().write("Bmesh.dat", "an earlier base mesh\n");
    BlockPlan plan = four_blocks({1, 0, 0, 1});
    for (PlannedBlock& block : plan.blocks)
        block.column_divisions = block.row_divisions = 1500;
    EXPECT_EQ(stop_of([&] { generate(plan); }), "100");
    state.channels.close_all();
    // 1 + 50 + 4 + 176 + 7 * 3001^2 + 3 * 3000^2 + 8 * 1501 + 2 * 1501^2
    EXPECT_EQ(coord(), " PROGRAM DIMENSION =    60000000\nREQUIRED DIMENSION =    94560248\n");
    EXPECT_EQ(base(), "an earlier base mesh\n");
}

TEST_F(BlockShapes, TheRequiredSizeCountsDoubledDivisions) {
    BlockPlan plan = hand_plan(rectangle(0, 4, 0, 2), {hand_block(RECTANGLE_KEYS, 1, 1200, 1100)});
    plan.double_x = plan.double_y = true;
    EXPECT_EQ(stop_of([&] { generate(plan); }), "100");
    state.channels.close_all();
    // 2400 by 2200: 1 + 18 + 2 + 44 + 7 * 2401 * 2201 + 3 * 2400 * 2200 + 8 * 2401 + 2 * 2401 * 2201
    EXPECT_EQ(coord(), " PROGRAM DIMENSION =    60000000\nREQUIRED DIMENSION =    63420682\n");
}

// --- numbers without room ------------------------------------------------------------------------

TEST_F(BlockShapes, ANumberThatItsFileHasNoRoomForIsNamedWithItsLine) {
    BlockPlan plan = four_blocks({1, 2, 3, 4});
    plan.blocks[2].row_divisions = 100000;
    const std::pair<std::int32_t, std::string> cases[] = {
        {COUPLED,
         "Bmesh.Tmp, line 46: expected an integer in a block (material, ndx, ndy, KS, KF), found \"*****\""},
        {HEAD,
         "Bmesh.Tmp, line 43: expected an integer in a block (material, ndx, ndy, IDH), found \"*****\""}};
    for (const auto& [edition, message] : cases) {
        const Edition kind(edition);
        EXPECT_EQ(failure_of([&] { generate(plan); }), message);
        state.channels.close_all();
        const std::vector<std::string> lines = lines_of(directory().read("work/Bmesh.Tmp"));
        EXPECT_EQ(lines.at(edition == COUPLED ? 45 : 42),
                  "    3     1 ***** " + std::string(edition == COUPLED ? "    0     1 " : "    0 "));
    }
    // Displacement meshes have room for them there.
    EXPECT_EQ(failure_of([&] { generate(plan); }).rfind("..\\Bmesh.dat, line 3: ", 0), 0U);
    state.channels.close_all();
    plan = four_blocks({1, 2, 3, 4});
    plan.blocks[1].column_divisions = 100000;
    {
        const Edition kind(HEAD);
        EXPECT_EQ(failure_of([&] { generate(plan); }).rfind("Bmesh.Tmp, line 38: ", 0), 0U);
        state.channels.close_all();
    }
    plan = four_blocks({1, 2, 3, 4});
    plan.key_points[6].y = std::numeric_limits<float>::infinity();
    EXPECT_EQ(
        failure_of([&] { generate(plan); }),
        "Bmesh.Tmp, line 11: expected a number in a key point (number, x, y), found \"****************\"");
    state.channels.close_all();
}

TEST_F(BlockShapes, ANodeThatIsNowhereIsNamedWithItsLine) {
    directory().write("Bmesh.dat", "an earlier base mesh\n");
    BlockPlan plan = four_blocks({1, 2, 3, 4});
    plan.key_points[24].x = 3.0E38F;
    plan.scale = 10.0F;
    EXPECT_EQ(failure_of([&] { generate(plan); }),
              "Coord.dat, line 9: expected a number in a raw node line, found \"*************\"");
    state.channels.close_all();
    EXPECT_EQ(lines_of(coord()).at(8), "      9     0     0     0 *************  0.700000E+02 ");
    EXPECT_EQ(base(), "an earlier base mesh\n");
    plan = four_blocks({1, 2, 3, 4});
    plan.key_points[24].y = 3.0E38F;
    plan.scale = 10.0F;
    EXPECT_EQ(failure_of([&] { generate(plan); }),
              "Coord.dat, line 9: expected a number in a raw node line, found \"*************\"");
    state.channels.close_all();
}

}  // namespace
}  // namespace brelan::test
