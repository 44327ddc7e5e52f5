// The columns of free-field lines.
#include <string>

#include "support/state.h"
#include "text/free_field.h"

namespace brelan::test {
namespace {

class FreeFieldWrite : public ChannelTest {
protected:
    template <class... Items>
    std::string written(const Items&... items) const {
        Channel& channel = state.channels.open(7, "line.txt", OpenStatus::work);
        write_free(channel, items...);
        state.channels.close(7);
        return directory.read("line.txt");
    }
};

TEST_F(FreeFieldWrite, IntegerTakesABlankAndElevenColumns) {
    EXPECT_EQ(written(0), "           0\n");
    EXPECT_EQ(written(-7), "          -7\n");
    EXPECT_EQ(written(99990), "       99990\n");
}

TEST_F(FreeFieldWrite, ElevenColumnsHoldEveryInteger) {
    EXPECT_EQ(written(2147483647), "  2147483647\n");
    EXPECT_EQ(written(-2147483647 - 1), " -2147483648\n");
}

TEST_F(FreeFieldWrite, RealTakesABlankAndSixteenColumnsOfNineDigits) {
    EXPECT_EQ(written(1.0F), "  0.100000000E+01\n");
    EXPECT_EQ(written(-0.25F), " -0.250000000E+00\n");
    EXPECT_EQ(written(1234.5F), "  0.123450000E+04\n");
}

TEST_F(FreeFieldWrite, RealShowsTheDigitsOfItsStoredValue) {
    // The 32-bit neighbour of 0.1 is 0.100000001490116...
    EXPECT_EQ(written(0.1F), "  0.100000001E+00\n");
    EXPECT_EQ(written(3.0E-38F), "  0.300000009E-37\n");
}

TEST_F(FreeFieldWrite, ZeroHasNoSign) {
    EXPECT_EQ(written(0.0F), "  0.000000000E+00\n");
    EXPECT_EQ(written(-0.0F), "  0.000000000E+00\n");
}

TEST_F(FreeFieldWrite, FirstTextStandsBehindOneBlank) {
    EXPECT_EQ(written("    0"), "     0\n");
    EXPECT_EQ(written(" Pass 1 "), "  Pass 1 \n");
}

TEST_F(FreeFieldWrite, TextFollowsTextWithoutABlank) {
    EXPECT_EQ(written("   NODE", "  ISX"), "    NODE  ISX\n");
}

TEST_F(FreeFieldWrite, NumberBehindATextBringsItsOwnBlank) {
    EXPECT_EQ(written(" Pass 14.7  NMOVE = ", 0), "  Pass 14.7  NMOVE =            0\n");
}

TEST_F(FreeFieldWrite, TextBehindANumberStandsBehindOneBlank) {
    EXPECT_EQ(written(5, "nodes"), "           5 nodes\n");
}

TEST_F(FreeFieldWrite, ValuesShareOneLineHoweverMany) {
    EXPECT_EQ(written(5, 2, 1, 1), "           5           2           1           1\n");
    EXPECT_EQ(written(1, 2.0F, 3), "           1  0.200000000E+01           3\n");
}

TEST_F(FreeFieldWrite, LineBuiltStepByStepIsTheSame) {
    Channel& channel = state.channels.open(7, "line.txt", OpenStatus::work);
    FreeFieldLine line;
    line.add(" K   = ").add(3).add(0.5F).add("!");
    line.write(channel);
    state.channels.close(7);
    EXPECT_EQ(directory.read("line.txt"), "  K   =            3  0.500000000E+00 !\n");
}

}  // namespace
}  // namespace brelan::test
