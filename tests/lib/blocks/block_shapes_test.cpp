// Shapes of blocks: holes, eight-point blocks, absent middles, blocks of several materials, collapsed sides.

#include "lib/blocks/hand_written.h"

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
HandFile four_blocks(const std::array<int, 4>& materials) {
    HandFile file;
    file.block_columns = file.block_rows = 2;
    for (int column = 0; column <= 4; ++column)
        for (int row = 0; row <= 4; ++row)
            file.points.emplace_back(1 + column, 11 - row);
    for (int p = 0; p < 2; ++p) {
        for (int q = 0; q < 2; ++q) {
            const auto key = [&](int column, int row) { return (2 * p + column) * 5 + 2 * q + row + 1; };
            file.blocks.push_back({{key(2, 0), key(0, 0), key(0, 2), key(2, 2), key(1, 0), key(0, 1),
                                    key(1, 2), key(2, 1), key(1, 1)},
                                   materials[static_cast<std::size_t>(2 * p + q)]});
        }
    }
    return file;
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
    HandFile file;
    file.points = rectangle(0, 4, 0, 2);
    file.blocks = {{RECTANGLE_KEYS, -2, 1, 1}};
    generate(file);
    EXPECT_EQ(elements(), "3 1 2 4:2 ");
}

TEST_F(BlockShapes, TheLastBlockOfAColumnOrRowDecidesItsDivisions) {
    HandFile file = four_blocks({1, 1, 1, 1});
    file.blocks[0].ndx = 5;
    file.blocks[0].ndy = 7;
    file.blocks[1].ndx = 2;  // of the first column
    file.blocks[2].ndy = 2;  // of the first row
    generate(file);
    EXPECT_EQ(places(), "1,11 1,10 1,9 1,7 2,11 2,10 2,9 2,7 3,11 3,10 3,9 3,7 5,11 5,10 5,9 5,7 ");
}

TEST_F(BlockShapes, AttributesComeFromTheBlock) {
    HandFile file;
    file.points = rectangle(0, 4, 0, 2);
    file.blocks = {{RECTANGLE_KEYS, 7, 1, 1, "0.5 1.25"}};
    generate(file);
    EXPECT_EQ(index(),
              "      1      3      1      2      4      0      0      0      0    7 0.5000E+00 0.1250E+01\n");
    EXPECT_EQ(records().at(4),
              "      1      3      1      2      4      0      0      0      0    7 0.5000E+00 0.1250E+01");
    {
        const Edition kind(COUPLED);
        file.blocks[0].attributes = "2 3";
        generate(file);
        EXPECT_EQ(index(),
                  "      1      3      1      2      4      0      0      0      0    7    2    3    2    2 "
                  "0.0000E+00\n");
        EXPECT_EQ(records().at(4),
                  "      1      3      1      2      4      0      0      0      0    7  2  3    2    2 "
                  "0.0000E+00");
    }
    for (const std::int32_t edition : {TEMPERATURE, HEAD}) {
        const Edition kind(edition);
        file.blocks[0].attributes = "-105";
        generate(file);
        EXPECT_EQ(index(), "      1      3      1      2      4    7 -105\n");
        EXPECT_EQ(records().at(4), "      1      3      1      2      4    7 -105");
    }
}

// --- eight points, absent middles ----------------------------------------------------------------

TEST_F(BlockShapes, AShearedBlockOfFourCornersHasItsMiddlesHalfWay) {
    HandFile file;
    file.points = {{5, 2}, {1, 2}, {0, 0}, {4, 0}};
    file.blocks = {{{1, 2, 3, 4, 0, 0, 0, 0, 0}, 6, 2, 2}};
    generate(file);
    EXPECT_EQ(places(), "1,2 0.5,1 0,0 3,2 2.5,1 2,0 5,2 4.5,1 4,0 ");
    EXPECT_EQ(elements(), "4 1 2 5:6 5 2 3 6:6 7 4 5 8:6 8 5 6 9:6 ");
}

TEST_F(BlockShapes, AnEightPointBlockFollowsABulgedSide) {
    HandFile file;
    file.points = {{5, 2}, {1, 2}, {1, 1}, {5, 1}, {3, 2.5}};
    file.blocks = {{{1, 2, 3, 4, 5, 0, 0, 0, 0}, 1, 2, 2}};
    generate(file);
    // Centre: -(2 + 2 + 1 + 1) / 4 + (1.5 + 1.5 + 2.5 + 1) / 2.
    EXPECT_EQ(places(), "1,2 1,1.5 1,1 3,2.5 3,1.75 3,1 5,2 5,1.5 5,1 ");
}

TEST_F(BlockShapes, ANinePointBlockFollowsItsCentre) {
    HandFile file;
    file.points = rectangle(1, 5, 1, 3);
    file.points[4] = {3.5, 2.25};
    file.blocks = {{RECTANGLE_KEYS, 1, 2, 2}};
    generate(file);
    EXPECT_EQ(places(), "1,3 1,2 1,1 3,3 3.5,2.25 3,1 5,3 5,2 5,1 ");
}

TEST_F(BlockShapes, AMiddleAtZeroCountsAsAbsentAndTheCentreDoesNot) {
    HandFile file;
    // From -1 to 3 with all middle points of the column at 0, from 10 down to -2 with those of the row at 0.
    file.points = {{-1, 10}, {-1, 0}, {-1, -2}, {0, 10}, {0, 0}, {0, -2}, {3, 10}, {3, 0}, {3, -2}};
    file.blocks = {{RECTANGLE_KEYS, 1, 2, 2}};
    generate(file);
    EXPECT_EQ(places(), "-1,10 -1,4 -1,-2 1,10 0,0 1,-2 3,10 3,4 3,-2 ");
}

TEST_F(BlockShapes, AbsenceEndsAtTheSmallestMagnitude) {
    HandFile file;
    file.points = {{-1, 5}, {-1, 4}, {-1, 3}, {1.0E-15, 5}, {0, 4}, {1.1E-15, 3}, {3, 5}, {3, 4}, {3, 3}};
    file.blocks = {{RECTANGLE_KEYS, 1, 2, 2}};
    generate(file);
    EXPECT_EQ(places(), "-1,5 -1,4 -1,3 1,5 0,4 1.1e-15,3 3,5 3,4 3,3 ");
}

TEST_F(BlockShapes, MiddlesAreFilledAfterTheScale) {
    HandFile file;
    file.points = {{5, 2}, {1, 2}, {1, 1}, {5, 1}};
    file.blocks = {{{1, 2, 3, 4, 0, 0, 0, 0, 0}, 1, 2, 1}};
    file.scale = 2.0;
    generate(file);
    EXPECT_EQ(places(), "2,4 2,2 6,4 6,2 10,4 10,2 ");
}

// --- sides without length ------------------------------------------------------------------------

TEST_F(BlockShapes, ASideCollapsedOntoAPointLeavesOneNode) {
    HandFile file;
    file.points = {{4, 3}, {1, 2}, {1, 2}, {4, 1}, {2.5, 2.5}, {1, 2}, {2.5, 1.5}, {4, 2}, {2.5, 2}};
    file.blocks = {{{1, 2, 3, 4, 5, 6, 7, 8, 9}, 1, 1, 2}};
    generate(file);
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
    HandFile file = four_blocks({1, 0, 0, 1});
    for (HandBlock& block : file.blocks)
        block.ndx = block.ndy = 1500;
    write_blocks(file);
    EXPECT_EQ(stop_of([] {
                  make_block_mesh(state.channels, state.settings.kind(), state.deck.blocks, state.field);
              }),
              "100");
    state.channels.close_all();
    // 1 + 50 + 4 + 176 + 7 * 3001^2 + 3 * 3000^2 + 8 * 1501 + 2 * 1501^2
    EXPECT_EQ(coord(), " PROGRAM DIMENSION =    60000000\nREQUIRED DIMENSION =    94560248\n");
    EXPECT_EQ(base(), "an earlier base mesh\n");
}

TEST_F(BlockShapes, TheRequiredSizeCountsDoubledDivisions) {
    HandFile file;
    file.points = rectangle(0, 4, 0, 2);
    file.blocks = {{RECTANGLE_KEYS, 1, 1200, 1100}};
    file.double_x = file.double_y = 1;
    write_blocks(file);
    EXPECT_EQ(stop_of([] {
                  make_block_mesh(state.channels, state.settings.kind(), state.deck.blocks, state.field);
              }),
              "100");
    state.channels.close_all();
    // 2400 by 2200: 1 + 18 + 2 + 44 + 7 * 2401 * 2201 + 3 * 2400 * 2200 + 8 * 2401 + 2 * 2401 * 2201
    EXPECT_EQ(coord(), " PROGRAM DIMENSION =    60000000\nREQUIRED DIMENSION =    63420682\n");
}

// --- faulty block files --------------------------------------------------------------------------

TEST_F(BlockShapes, AFileThatIsCutOffIsNamed) {
    const std::string text = four_blocks({1, 2, 3, 4}).text();
    std::size_t lines = 0;
    for (std::size_t end = 0; end < text.size(); end = text.find('\n', end) + 1, ++lines) {
        directory().write("work/Bmesh.Tmp", text.substr(0, end));
        EXPECT_EQ(failure_of([] {
                      make_block_mesh(state.channels, state.settings.kind(), state.deck.blocks, state.field);
                  }).rfind("Bmesh.Tmp, line ", 0),
                  0U)
            << lines << " lines";
        state.channels.close_all();
    }
    EXPECT_GT(lines, 50U);
}

TEST_F(BlockShapes, NumbersThatLeaveTheirTablesAreRefused) {
    std::vector<HandFile> files(6, four_blocks({1, 2, 3, 4}));
    files[0].blocks[1].keys[3] = 26;
    files[1].blocks[3].keys[8] = -1;
    files[2].blocks[2].ndx = 0;
    files[3].blocks[2].ndy = -3;
    files[4].block_columns = 3;
    files[5].block_rows = 0;
    for (const HandFile& file : files) {
        write_blocks(file);
        EXPECT_EQ(failure_of([] {
                      make_block_mesh(state.channels, state.settings.kind(), state.deck.blocks, state.field);
                  }).rfind("Bmesh.Tmp, line ", 0),
                  0U);
        state.channels.close_all();
    }
}

}  // namespace
}  // namespace brelan::test
