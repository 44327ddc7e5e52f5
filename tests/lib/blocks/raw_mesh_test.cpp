// Meshes that only a plan written by hand can ask for: holes, eight-point blocks, quadratic elements,
// rows before columns, other first numbers, a scale, sides without length.

#include "lib/blocks/hand_written.h"

namespace brelan::test {
namespace {

class BlockMesh : public BlockMeshTest {};

// One block of 4 by 2, in two columns of one element, or in other divisions.
BlockPlan one_block(int across, int down) {
    return hand_plan(rectangle(0, 4, 0, 2), {hand_block(RECTANGLE_KEYS, 1, across, down)});
}

TEST_F(BlockMesh, NumbersNodesAndElementsByColumnsFromTheTop) {
    generate(one_block(2, 2));
    EXPECT_EQ(coord(), listing_text(R"(
      1     0     0     0  0.000000E+00  0.200000E+01 |
      2     0     0     0  0.000000E+00  0.100000E+01 |
      3     0     0     0  0.000000E+00  0.000000E+00 |
      4     0     0     0  0.200000E+01  0.200000E+01 |
      5     0     0     0  0.200000E+01  0.100000E+01 |
      6     0     0     0  0.200000E+01  0.000000E+00 |
      7     0     0     0  0.400000E+01  0.200000E+01 |
      8     0     0     0  0.400000E+01  0.100000E+01 |
      9     0     0     0  0.400000E+01  0.000000E+00 |
)"));
    EXPECT_EQ(index(), listing_text(R"(
      1      4      1      2      5      0      0      0      0    1 0.1000E+01 0.2300E+01|
      2      5      2      3      6      0      0      0      0    1 0.1000E+01 0.2300E+01|
      3      7      4      5      8      0      0      0      0    1 0.1000E+01 0.2300E+01|
      4      8      5      6      9      0      0      0      0    1 0.1000E+01 0.2300E+01|
)"));
}

TEST_F(BlockMesh, NumbersByRowsWithTheOrderFlagAndSetsTheOutermostGridLinesOnTheBounds) {
    BlockPlan plan = one_block(2, 2);
    plan.rows_first = true;
    plan.field = {-0.5F, 4.5F, -0.25F, 2.25F};
    generate(plan);
    EXPECT_EQ(coord(), listing_text(R"(
      1     0     0     0 -0.500000E+00  0.225000E+01 |
      2     0     0     0  0.200000E+01  0.225000E+01 |
      3     0     0     0  0.450000E+01  0.225000E+01 |
      4     0     0     0 -0.500000E+00  0.100000E+01 |
      5     0     0     0  0.200000E+01  0.100000E+01 |
      6     0     0     0  0.450000E+01  0.100000E+01 |
      7     0     0     0 -0.500000E+00 -0.250000E+00 |
      8     0     0     0  0.200000E+01 -0.250000E+00 |
      9     0     0     0  0.450000E+01 -0.250000E+00 |
)"));
    EXPECT_EQ(index(), listing_text(R"(
      1      2      1      4      5      0      0      0      0    1 0.1000E+01 0.2300E+01|
      2      3      2      5      6      0      0      0      0    1 0.1000E+01 0.2300E+01|
      3      5      4      7      8      0      0      0      0    1 0.1000E+01 0.2300E+01|
      4      6      5      8      9      0      0      0      0    1 0.1000E+01 0.2300E+01|
)"));
}

TEST_F(BlockMesh, ScalesTheKeyPoints) {
    BlockPlan plan = one_block(1, 1);
    plan.scale = 2.5F;
    generate(plan);
    EXPECT_EQ(coord(), listing_text(R"(
      1     0     0     0  0.000000E+00  0.500000E+01 |
      2     0     0     0  0.000000E+00  0.000000E+00 |
      3     0     0     0  0.100000E+02  0.500000E+01 |
      4     0     0     0  0.100000E+02  0.000000E+00 |
)"));
}

TEST_F(BlockMesh, PutsPlaceholdersInFrontOfHigherFirstNumbers) {
    BlockPlan plan = one_block(1, 1);
    plan.first_node = NodeNumber(3);
    plan.first_element = ElementNumber(4);
    generate(plan);
    EXPECT_EQ(coord(), listing_text(R"(
      0     0     0     0  0.000000E+00  0.000000E+00 |
      0     0     0     0  0.000000E+00  0.000000E+00 |
      3     0     0     0  0.000000E+00  0.200000E+01 |
      4     0     0     0  0.000000E+00  0.000000E+00 |
      5     0     0     0  0.400000E+01  0.200000E+01 |
      6     0     0     0  0.400000E+01  0.000000E+00 |
)"));
    EXPECT_EQ(index(), listing_text(R"(
      0      0      0      0      0      0      0      0      0    0 0.0000E+00 0.0000E+00|
      0      0      0      0      0      0      0      0      0    0 0.0000E+00 0.0000E+00|
      0      0      0      0      0      0      0      0      0    0 0.0000E+00 0.0000E+00|
      4      5      3      4      6      0      0      0      0    1 0.1000E+01 0.2300E+01|
)"));
    // In the base mesh file nodes count from 1; the element keeps its number.
    EXPECT_EQ(base(), listing_text(R"(
by hand                                                     |
  NUMNP   NCONT   NBEAM   NTRUS |
     4       1       0       0   |
    NODAL COORDINATES |
    NODE  IDX  IDY  IDT  IEX  IEY       XC            YC |
      1    0    0    1    1    1  0.000000E+00  0.200000E+01 |
      2    0    0    1    1    1  0.000000E+00  0.000000E+00 |
      3    0    0    1    1    1  0.400000E+01  0.200000E+01 |
      4    0    0    1    1    1  0.400000E+01  0.000000E+00 |
    ELEMENT INDEX |
   NEL     I1     I2     I3     I4     M5     M6     M7     M8  MATC   THIC        DEN|
      4      3      1      2      4      0      0      0      0    1 0.1000E+01 0.2300E+01|
     0|
     0|
)"));
}

TEST_F(BlockMesh, PlaceholdersOfElementsHoldZerosInEveryKind) {
    BlockPlan plan = one_block(1, 1);
    plan.first_element = ElementNumber(2);
    const std::pair<std::int32_t, const char*> cases[] = {
        {COUPLED,
         "      0      0      0      0      0      0      0      0      0    0    0    0    0    0 "
         "0.0000E+00"},
        {TEMPERATURE, "      0      0      0      0      0    0    0"},
        {HEAD, "      0      0      0      0      0    0    0"}};
    for (const auto& [edition, expected] : cases) {
        const Edition kind(edition);
        generate(plan);
        const std::string text = index();
        EXPECT_EQ(text.substr(0, text.find('\n')), expected) << edition;
    }
}

TEST_F(BlockMesh, CutsALongTitleAtSixtyColumns) {
    BlockPlan plan = one_block(1, 1);
    plan.title = "  a title of exactly sixty columns, the rest of it is not seen here";
    generate(plan);
    EXPECT_EQ(base().substr(0, 61), "  a title of exactly sixty columns, the rest of it is not se\n");
}

// --- quadratic elements --------------------------------------------------------------------------

TEST_F(BlockMesh, DoublesAcrossWithMiddlesOfTopAndBottomSides) {
    BlockPlan plan = one_block(1, 1);
    plan.double_x = true;
    generate(plan);
    EXPECT_EQ(coord(), listing_text(R"(
      1     0     0     0  0.000000E+00  0.200000E+01 |
      2     0     0     0  0.000000E+00  0.000000E+00 |
      3     0     0     0  0.200000E+01  0.200000E+01 |
      4     0     0     0  0.200000E+01  0.000000E+00 |
      5     0     0     0  0.400000E+01  0.200000E+01 |
      6     0     0     0  0.400000E+01  0.000000E+00 |
)"));
    EXPECT_EQ(index(), listing_text(R"(
      1      5      1      2      6      3      0      4      0    1 0.1000E+01 0.2300E+01|
)"));
}

TEST_F(BlockMesh, DoublesUpwardsWithMiddlesOfLeftAndRightSides) {
    BlockPlan plan = one_block(1, 1);
    plan.double_y = true;
    generate(plan);
    EXPECT_EQ(coord(), listing_text(R"(
      1     0     0     0  0.000000E+00  0.200000E+01 |
      2     0     0     0  0.000000E+00  0.100000E+01 |
      3     0     0     0  0.000000E+00  0.000000E+00 |
      4     0     0     0  0.400000E+01  0.200000E+01 |
      5     0     0     0  0.400000E+01  0.100000E+01 |
      6     0     0     0  0.400000E+01  0.000000E+00 |
)"));
    EXPECT_EQ(index(), listing_text(R"(
      1      4      1      3      6      0      2      0      5    1 0.1000E+01 0.2300E+01|
)"));
}

TEST_F(BlockMesh, DoublesBothWaysWithoutNodesInTheCentres) {
    BlockPlan plan = one_block(2, 1);
    plan.double_x = plan.double_y = true;
    generate(plan);
    EXPECT_EQ(coord(), listing_text(R"(
      1     0     0     0  0.000000E+00  0.200000E+01 |
      2     0     0     0  0.000000E+00  0.100000E+01 |
      3     0     0     0  0.000000E+00  0.000000E+00 |
      4     0     0     0  0.100000E+01  0.200000E+01 |
      5     0     0     0  0.100000E+01  0.000000E+00 |
      6     0     0     0  0.200000E+01  0.200000E+01 |
      7     0     0     0  0.200000E+01  0.100000E+01 |
      8     0     0     0  0.200000E+01  0.000000E+00 |
      9     0     0     0  0.300000E+01  0.200000E+01 |
     10     0     0     0  0.300000E+01  0.000000E+00 |
     11     0     0     0  0.400000E+01  0.200000E+01 |
     12     0     0     0  0.400000E+01  0.100000E+01 |
     13     0     0     0  0.400000E+01  0.000000E+00 |
)"));
    EXPECT_EQ(index(), listing_text(R"(
      1      6      1      3      8      4      2      5      7    1 0.1000E+01 0.2300E+01|
      2     11      6      8     13      9      7     10     12    1 0.1000E+01 0.2300E+01|
)"));
    // The base mesh file has the middles too.
    EXPECT_EQ(records().at(13),
              "      1      6      1      3      8      4      2      5      7    1 0.1000E+01 0.2300E+01");
}

TEST_F(BlockMesh, QuadraticElementsByRows) {
    BlockPlan plan = one_block(1, 2);
    plan.double_x = plan.double_y = plan.rows_first = true;
    plan.field = {0.0F, 4.0F, 0.0F, 2.0F};
    generate(plan);
    // Rows of 3, 2, 3, 2 and 3 nodes.
    EXPECT_EQ(index(), listing_text(R"(
      1      3      1      6      8      2      4      7      5    1 0.1000E+01 0.2300E+01|
      2      8      6     11     13      7      9     12     10    1 0.1000E+01 0.2300E+01|
)"));
}

TEST_F(BlockMesh, KindsWithFourNodesWriteTheCornersOfQuadraticElements) {
    const Edition kind(HEAD);
    BlockPlan plan = one_block(1, 1);
    plan.double_x = plan.double_y = true;
    generate(plan);
    EXPECT_EQ(index(), listing_text(R"(
      1      6      1      3      8    1    0|
)"));
    EXPECT_EQ(coord().substr(0, 49), "      1     0     0  0.000000E+00  0.200000E+01 \n");
}

}  // namespace
}  // namespace brelan::test
