// The base mesh from raw lists written by hand: merged nodes, nodes near the bounds, codes by kind.

#include "blocks/base_file.h"

#include "lib/blocks/hand_written.h"

namespace brelan::test {
namespace {

class BaseFile : public BlockMeshTest {
protected:
    // Writes the base mesh file of raw nodes and elements. The elements are lines of a displacement mesh.
    BaseMesh make(std::vector<RawNode> nodes, const std::vector<std::string>& elements = {},
                  std::int32_t first_node = 1) {
        RawMesh raw{"raw lists", field, NodeNumber(first_node), ElementNumber(1), std::move(nodes), {}};
        for (const std::string& line : elements) {
            ElementRecord e;
            ElementWords& w = e.words;
            std::istringstream(line) >> e.number.value >> w.corner_1.value >> w.corner_2.value >>
                w.corner_3.value >> w.corner_4.value >> w.midside_5.value >> w.midside_6.value >>
                w.midside_7.value >> w.midside_8.value >> w.material.value >> e.thickness >> e.density;
            raw.elements.push_back(e);
        }
        const BaseMesh mesh = make_base_mesh(state.settings.kind(), state.deck.blocks, std::move(raw));
        write_base_file(state.settings.kind(), mesh,
                        state.channels.open(33, "..\\Bmesh.dat", OpenStatus::result));
        state.channels.take_results();
        return mesh;
    }

    FieldBounds field{-1000.0F, 1000.0F, -1000.0F, 1000.0F};  // out of reach

    // Node lines from x on, where the kind has no further values.
    std::vector<std::string> node_lines() const {
        std::vector<std::string> lines = records();
        lines.resize(lines.size() - 2);
        return lines;
    }
};

// --- merging -------------------------------------------------------------------------------------

TEST_F(BaseFile, NodesAtMostATenthOfAMillimetreApartBecomeOne) {
    const BaseMesh mesh =
        make({{1, 1}, {1, 1}, {1.0001F, 1}, {1.00011F, 2}, {1, 2}}, {"1 1 2 3 4 5 0 -7 1 1 1.0 2.0"});
    // 1.0001 - 1 is 0.00010002 in 32 bits and too far; 1.00011 at the other height is further still.
    EXPECT_EQ(mesh.nodes.size(), 4U);
    EXPECT_EQ(records().at(4),
              "      1      1      1      2      3      4      0     -7      1    1 0.1000E+01 0.2000E+01");
}

TEST_F(BaseFile, TheToleranceItselfIsInside) {
    EXPECT_EQ(make({{0, 0}, {0.0001F, 0}, {0, -0.0001F}}).nodes.size(), 1U);
    EXPECT_EQ(make({{0, 0}, {0.00010001F, 0}}).nodes.size(), 2U);
    // 0.00008 across and 0.00006 up are 0.0001; 0.00007 up are too far.
    EXPECT_EQ(make({{0, 0}, {0.00008F, 0.000059F}}).nodes.size(), 1U);
    EXPECT_EQ(make({{0, 0}, {0.00008F, 0.00007F}}).nodes.size(), 2U);
}

TEST_F(BaseFile, AMergedNodeTakesItsNeighboursAlong) {
    // Each is within reach of the one before it alone.
    const BaseMesh mesh =
        make({{0, 5}, {0.00008F, 5}, {0.00016F, 5}, {0.00024F, 5}, {1, 5}}, {"1 1 2 3 4 5 0 0 0 1 1.0 2.0"});
    EXPECT_EQ(mesh.nodes.size(), 2U);
    EXPECT_EQ(records().at(0), "      1    0    0    1    1    1  0.000000E+00  0.500000E+01 ");
    EXPECT_EQ(records().at(2),
              "      1      1      1      1      1      2      0      0      0    1 0.1000E+01 0.2000E+01");
}

TEST_F(BaseFile, TheLastOfSeveralMatchesWins) {
    // The third lies between the first two, which are too far apart to be one.
    make({{0, 5}, {0.00015F, 5}, {0.00008F, 5}}, {"1 1 2 3 0 0 0 0 0 1 1.0 2.0"});
    EXPECT_EQ(records().at(2),
              "      1      1      2      2      0      0      0      0      0    1 0.1000E+01 0.2000E+01");
}

TEST_F(BaseFile, NewNumbersCloseUp) {
    make({{0, 5}, {0, 5}, {2, 5}, {2, 5}, {4, 5}}, {"3 5 4 3 2 1 0 0 0 1 1.0 2.0"});
    EXPECT_EQ(records().at(2), "      3    0    0    1    1    1  0.400000E+01  0.500000E+01 ");
    EXPECT_EQ(records().at(3),
              "      3      3      2      2      1      1      0      0      0    1 0.1000E+01 0.2000E+01");
}

TEST_F(BaseFile, RawNumbersMayBeginAboveOne) {
    make({{0, 5}, {2, 5}}, {"1 11 10 10 11 0 0 0 0 1 1.0 2.0"}, 10);
    EXPECT_EQ(records().at(0), "      1    0    0    1    1    1  0.000000E+00  0.500000E+01 ");
    EXPECT_EQ(records().at(2),
              "      1      2      1      1      2      0      0      0      0    1 0.1000E+01 0.2000E+01");
}

// --- bounds --------------------------------------------------------------------------------------

class BaseFileBounds : public BaseFile {
protected:
    BaseFileBounds() {
        field = {0.0F, 8.0F, 0.0F, 4.0F};
        state.deck.blocks.fixes_left = state.deck.blocks.fixes_right = state.deck.blocks.fixes_top =
            state.deck.blocks.fixes_bottom = 1;
    }
};

TEST_F(BaseFileBounds, NodesNearABoundAreSetOnIt) {
    make({{0.00009F, 1},
          {0.0001F, 2},
          {-3, 3},
          {7.99995F, 1},
          {8.25F, 2},
          {1, 0.00005F},
          {2, -0.00005F},
          {1, 3.99995F},
          {2, 4.5F}});
    EXPECT_EQ(node_lines(), listing(R"(
      1    1    0    1    1    1  0.000000E+00  0.100000E+01 |
      2    1    0    1    1    1  0.000000E+00  0.200000E+01 |
      3    1    0    1    1    1  0.000000E+00  0.300000E+01 |
      4    1    0    1    1    1  0.800000E+01  0.100000E+01 |
      5    1    0    1    1    1  0.800000E+01  0.200000E+01 |
      6    0    1    1    1    1  0.100000E+01  0.000000E+00 |
      7    0    1    1    1    1  0.200000E+01  0.000000E+00 |
      8    0    1    1    1    1  0.100000E+01  0.400000E+01 |
      9    0    1    1    1    1  0.200000E+01  0.400000E+01 |
)"));
}

TEST_F(BaseFileBounds, NodesFurtherInsideAreFree) {
    make({{0.00011F, 1}, {7.9998F, 2}, {1, 0.00011F}, {2, 3.9998F}});
    EXPECT_EQ(node_lines(), listing(R"(
      1    0    0    1    1    1  0.110000E-03  0.100000E+01 |
      2    0    0    1    1    1  0.799980E+01  0.200000E+01 |
      3    0    0    1    1    1  0.100000E+01  0.110000E-03 |
      4    0    0    1    1    1  0.200000E+01  0.399980E+01 |
)"));
}

TEST_F(BaseFileBounds, CornersTakeTheSwitchesOfBothSides) {
    state.deck.blocks.fixes_top = 0;
    state.deck.blocks.fixes_right = 0;
    make({{0, 4}, {0, 0}, {8, 4}, {8, 0}});
    EXPECT_EQ(node_lines(), listing(R"(
      1    1    0    1    1    1  0.000000E+00  0.400000E+01 |
      2    1    1    1    1    1  0.000000E+00  0.000000E+00 |
      3    0    0    1    1    1  0.800000E+01  0.400000E+01 |
      4    0    1    1    1    1  0.800000E+01  0.000000E+00 |
)"));
}

TEST_F(BaseFileBounds, AFieldWithoutWidthLiesOnItsLeft) {
    field = {2.0F, 2.0F, 0.0F, 4.0F};
    state.deck.blocks.fixes_left = 0;
    make({{2, 3}});
    EXPECT_EQ(node_lines(), listing(R"(
      1    0    0    1    1    1  0.200000E+01  0.300000E+01 |
)"));
}

TEST_F(BaseFileBounds, TemperatureAndHeadNodesCarryTheThirdValue) {
    state.deck.blocks.third = -3.5F;
    {
        const Edition kind(TEMPERATURE);
        make({{0, 4}, {3, 0}, {3, 2}});
        EXPECT_EQ(node_lines(), listing(R"(
      1 -100 -100  0.000000E+00  0.400000E+01 -0.350000E+01  0.100000E+01 |
      2    0 -100  0.300000E+01  0.000000E+00 -0.350000E+01  0.100000E+01 |
      3    0    0  0.300000E+01  0.200000E+01 -0.350000E+01  0.100000E+01 |
)"));
    }
    const Edition kind(HEAD);
    make({{0, 4}, {3, 0}, {3, 2}});
    EXPECT_EQ(node_lines(), listing(R"(
      1    1    1  0.000000E+00  0.400000E+01 -0.350000E+01  0.100000E+01 |
      2    0    1  0.300000E+01  0.000000E+00 -0.350000E+01  0.100000E+01 |
      3    0    0  0.300000E+01  0.200000E+01 -0.350000E+01  0.100000E+01 |
)"));
}

// --- the fluid -----------------------------------------------------------------------------------

TEST_F(BaseFileBounds, WetNodesHaveFluidCodesOnFixedSidesOnly) {
    const Edition kind(COUPLED);
    state.deck.blocks.third = 3.0F;
    state.deck.blocks.fixes_right = 0;
    make({{0, 2}, {8, 2}, {4, 0}, {4, 2}, {4, 3}, {5, 3.0001F}, {6, 3.00005F}, {8, 3.5F}, {0, 0}});
    // 3.0001 is 3 + 0.0001 in 32 bits: dry.
    EXPECT_EQ(node_lines(), listing(R"(
      1    1    0    1    0    1    1    1  0.000000E+00  0.200000E+01 |
      2    0    0    0    0    1    1    1  0.800000E+01  0.200000E+01 |
      3    0    1    0    1    1    1    1  0.400000E+01  0.000000E+00 |
      4    0    0    0    0    1    1    1  0.400000E+01  0.200000E+01 |
      5    0    0    0    0    1    1    1  0.400000E+01  0.300000E+01 |
      6    0    0    1    1    1    1    1  0.500000E+01  0.300010E+01 |
      7    0    0    0    0    1    1    1  0.600000E+01  0.300005E+01 |
      8    0    0    1    1    1    1    1  0.800000E+01  0.350000E+01 |
      9    1    1    1    1    1    1    1  0.000000E+00  0.000000E+00 |
)"));
}

TEST_F(BaseFileBounds, TheFluidSeesANodeWhereItIsSet) {
    const Edition kind(COUPLED);
    state.deck.blocks.third = 3.9999F;  // plus 0.0001 gives 4
    state.deck.blocks.fixes_top = 0;
    make({{4, 3.99995F}});
    EXPECT_EQ(node_lines(), listing(R"(
      1    0    0    1    1    1    1    1  0.400000E+01  0.400000E+01 |
)"));
    // A fixed top alone does not make the node dry: one level higher it is wet, but closed upwards.
    state.deck.blocks.third = 4.0F;
    state.deck.blocks.fixes_top = 1;
    make({{4, 3.99995F}});
    EXPECT_EQ(node_lines(), listing(R"(
      1    0    1    0    1    1    1    1  0.400000E+01  0.400000E+01 |
)"));
}

}  // namespace
}  // namespace brelan::test
