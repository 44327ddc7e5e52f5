// The base mesh file from raw lists written by hand: merged nodes, nodes near the bounds, codes by kind.

#include "blocks/base_file.h"

#include "lib/blocks/hand_written.h"

namespace brelan::test {
namespace {

struct RawNode {
    const char* x;
    const char* y;
};

class BaseFile : public BlockMeshTest {
protected:
    // Writes both raw lists and the base mesh file from them. The elements are whole lines.
    BaseCounts make(const std::vector<RawNode>& nodes, const std::vector<std::string>& elements = {},
                    std::int32_t first_node = 1) {
        const std::size_t codes = state.settings.kind() == LayoutKind::coupled        ? 4
                                  : state.settings.kind() == LayoutKind::displacement ? 3
                                                                                      : 2;
        std::string coord_text, index_text;
        for (std::int32_t n = 1; n < first_node; ++n)
            coord_text += "this line is not read\n";
        std::int32_t number = first_node;
        for (const RawNode& node : nodes) {
            coord_text += std::to_string(number++);
            for (std::size_t k = 0; k < codes; ++k)
                coord_text += " 0";
            coord_text.append(" ").append(node.x).append(" ").append(node.y).append("\n");
        }
        for (const std::string& element : elements)
            index_text += element + "\n";
        RawMesh raw;
        raw.title = "raw lists";
        raw.first_node = first_node;
        raw.last_node = number - 1;
        raw.last_element = static_cast<std::int32_t>(elements.size());
        directory().write("work/Coord.dat", coord_text);
        directory().write("work/Index.dat", index_text);
        const BaseCounts counts =
            write_base_file(state.settings.kind(), state.deck.blocks, state.field,
                            state.channels.open(31, "Coord.dat", OpenStatus::old),
                            state.channels.open(32, "Index.dat", OpenStatus::old),
                            state.channels.open(33, "..\\Bmesh.dat", OpenStatus::result), raw);
        for (const int channel_number : {31, 32, 33})
            state.channels.close(channel_number);
        return counts;
    }

    // Node lines from x on, where the kind has no further values.
    std::vector<std::string> node_lines() const {
        std::vector<std::string> lines = records();
        lines.resize(lines.size() - 2);
        return lines;
    }
};

// --- merging -------------------------------------------------------------------------------------

TEST_F(BaseFile, NodesAtMostATenthOfAMillimetreApartBecomeOne) {
    const BaseCounts counts = make({{"1", "1"}, {"1", "1"}, {"1.0001", "1"}, {"1.00011", "2"}, {"1", "2"}},
                                   {"1 1 2 3 4 5 0 -7 1 1 1.0 2.0"});
    // 1.0001 - 1 is 0.00010002 in 32 bits and too far; 1.00011 at the other height is further still.
    EXPECT_EQ(counts.nodes, 4);
    EXPECT_EQ(records().at(4),
              "      1      1      1      2      3      4      0     -7      1    1 0.1000E+01 0.2000E+01");
}

TEST_F(BaseFile, TheToleranceItselfIsInside) {
    EXPECT_EQ(make({{"0", "0"}, {"0.0001", "0"}, {"0", "-0.0001"}}).nodes, 1);
    EXPECT_EQ(make({{"0", "0"}, {"0.00010001", "0"}}).nodes, 2);
    // 0.00008 across and 0.00006 up are 0.0001; 0.00007 up are too far.
    EXPECT_EQ(make({{"0", "0"}, {"0.00008", "0.000059"}}).nodes, 1);
    EXPECT_EQ(make({{"0", "0"}, {"0.00008", "0.00007"}}).nodes, 2);
}

TEST_F(BaseFile, AMergedNodeTakesItsNeighboursAlong) {
    // Each is within reach of the one before it alone.
    const BaseCounts counts =
        make({{"0", "5"}, {"0.00008", "5"}, {"0.00016", "5"}, {"0.00024", "5"}, {"1", "5"}},
             {"1 1 2 3 4 5 0 0 0 1 1.0 2.0"});
    EXPECT_EQ(counts.nodes, 2);
    EXPECT_EQ(records().at(0), "      1    0    0    1    1    1  0.000000E+00  0.500000E+01 ");
    EXPECT_EQ(records().at(2),
              "      1      1      1      1      1      2      0      0      0    1 0.1000E+01 0.2000E+01");
}

TEST_F(BaseFile, TheLastOfSeveralMatchesWins) {
    // The third lies between the first two, which are too far apart to be one.
    make({{"0", "5"}, {"0.00015", "5"}, {"0.00008", "5"}}, {"1 1 2 3 0 0 0 0 0 1 1.0 2.0"});
    EXPECT_EQ(records().at(2),
              "      1      1      2      2      0      0      0      0      0    1 0.1000E+01 0.2000E+01");
}

TEST_F(BaseFile, NewNumbersCloseUp) {
    make({{"0", "5"}, {"0", "5"}, {"2", "5"}, {"2", "5"}, {"4", "5"}}, {"3 5 4 3 2 1 0 0 0 1 1.0 2.0"});
    EXPECT_EQ(records().at(2), "      3    0    0    1    1    1  0.400000E+01  0.500000E+01 ");
    EXPECT_EQ(records().at(3),
              "      3      3      2      2      1      1      0      0      0    1 0.1000E+01 0.2000E+01");
}

TEST_F(BaseFile, RawNumbersMayBeginAboveOne) {
    make({{"0", "5"}, {"2", "5"}}, {"1 11 10 10 11 0 0 0 0 1 1.0 2.0"}, 10);
    EXPECT_EQ(records().at(0), "      1    0    0    1    1    1  0.000000E+00  0.500000E+01 ");
    EXPECT_EQ(records().at(2),
              "      1      2      1      1      2      0      0      0      0    1 0.1000E+01 0.2000E+01");
}

// --- bounds --------------------------------------------------------------------------------------

class BaseFileBounds : public BaseFile {
protected:
    BaseFileBounds() {
        state.field = {0.0F, 8.0F, 0.0F, 4.0F};
        state.deck.blocks.fixes_left = state.deck.blocks.fixes_right = state.deck.blocks.fixes_top =
            state.deck.blocks.fixes_bottom = 1;
    }
};

TEST_F(BaseFileBounds, NodesNearABoundAreSetOnIt) {
    make({{"0.00009", "1"},
          {"0.0001", "2"},
          {"-3", "3"},
          {"7.99995", "1"},
          {"8.25", "2"},
          {"1", "0.00005"},
          {"2", "-0.00005"},
          {"1", "3.99995"},
          {"2", "4.5"}});
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
    make({{"0.00011", "1"}, {"7.9998", "2"}, {"1", "0.00011"}, {"2", "3.9998"}});
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
    make({{"0", "4"}, {"0", "0"}, {"8", "4"}, {"8", "0"}});
    EXPECT_EQ(node_lines(), listing(R"(
      1    1    0    1    1    1  0.000000E+00  0.400000E+01 |
      2    1    1    1    1    1  0.000000E+00  0.000000E+00 |
      3    0    0    1    1    1  0.800000E+01  0.400000E+01 |
      4    0    1    1    1    1  0.800000E+01  0.000000E+00 |
)"));
}

TEST_F(BaseFileBounds, AFieldWithoutWidthLiesOnItsLeft) {
    state.field = {2.0F, 2.0F, 0.0F, 4.0F};
    state.deck.blocks.fixes_left = 0;
    make({{"2", "3"}});
    EXPECT_EQ(node_lines(), listing(R"(
      1    0    0    1    1    1  0.200000E+01  0.300000E+01 |
)"));
}

TEST_F(BaseFileBounds, TemperatureAndHeadNodesCarryTheThirdValue) {
    state.deck.blocks.third = -3.5F;
    {
        const Edition kind(TEMPERATURE);
        make({{"0", "4"}, {"3", "0"}, {"3", "2"}});
        EXPECT_EQ(node_lines(), listing(R"(
      1 -100 -100  0.000000E+00  0.400000E+01 -0.350000E+01  0.100000E+01 |
      2    0 -100  0.300000E+01  0.000000E+00 -0.350000E+01  0.100000E+01 |
      3    0    0  0.300000E+01  0.200000E+01 -0.350000E+01  0.100000E+01 |
)"));
    }
    const Edition kind(HEAD);
    make({{"0", "4"}, {"3", "0"}, {"3", "2"}});
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
    make({{"0", "2"},
          {"8", "2"},
          {"4", "0"},
          {"4", "2"},
          {"4", "3"},
          {"5", "3.0001"},
          {"6", "3.00005"},
          {"8", "3.5"},
          {"0", "0"}});
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
    make({{"4", "3.99995"}});
    EXPECT_EQ(node_lines(), listing(R"(
      1    0    0    1    1    1    1    1  0.400000E+01  0.400000E+01 |
)"));
    // A fixed top alone does not make the node dry: one level higher it is wet, but closed upwards.
    state.deck.blocks.third = 4.0F;
    state.deck.blocks.fixes_top = 1;
    make({{"4", "3.99995"}});
    EXPECT_EQ(node_lines(), listing(R"(
      1    0    1    0    1    1    1    1  0.400000E+01  0.400000E+01 |
)"));
}

}  // namespace
}  // namespace brelan::test
