// Record layouts: which notations and arguments compile, and the text that they write.
#include "text/layout.h"

#include "support/state.h"

namespace brelan::test {
namespace {

// --- what is refused when compiled -------------------------------------------------------------------------

static_assert(is_layout("(I5)"));
static_assert(is_layout("(1X,I6,7I5,1X,2(E13.6,1X))"));
static_assert(is_layout("(9(1X,I6),5I5,E11.4)"));
static_assert(is_layout("(2(I5,2(1X,E12.5)))"));
static_assert(is_layout("((I5))"));
static_assert(is_layout("(ES12.5,F10.3,A,A11,'text',3X)"));
static_assert(is_layout("(' requires ',I5,' data entry')"));
static_assert(is_layout("(64I5)"));

static_assert(!is_layout(""));
static_assert(!is_layout("()"));
static_assert(!is_layout("I5"));
static_assert(!is_layout("(I5"));
static_assert(!is_layout("I5)"));
static_assert(!is_layout("(I5))"));
static_assert(!is_layout("(I5) "));
static_assert(!is_layout("(I5,)"));
static_assert(!is_layout("(,I5)"));
static_assert(!is_layout("(I5 ,I5)"));
static_assert(!is_layout("(I5I5)"));
static_assert(!is_layout("(I)"));
static_assert(!is_layout("(I0)"));
static_assert(!is_layout("(i5)"));
static_assert(!is_layout("(-I5)"));
static_assert(!is_layout("(0I5)"));
static_assert(!is_layout("(0(I5))"));
static_assert(!is_layout("(2())"));
static_assert(!is_layout("(X)"));
static_assert(!is_layout("(E)"));
static_assert(!is_layout("(E12)"));
static_assert(!is_layout("(E12,5)"));
static_assert(!is_layout("(E5.5)"));
static_assert(!is_layout("(ES5.6)"));
static_assert(!is_layout("(F3.3)"));
static_assert(!is_layout("(B5)"));
static_assert(!is_layout("(S5.2)"));
static_assert(!is_layout("('text)"));
static_assert(!is_layout("(text')"));
static_assert(!is_layout("(3'text')"));
static_assert(!is_layout("(65I5)"));

using Node = Layout<"(1X,I6,5I5,1X,2(E13.6,1X))">;
static_assert(Node::VALUES == 8);
static_assert(Node::columns() == 61);
static_assert(Node::accepts<int, int, int, int, int, int, float, float>());
static_assert(!Node::accepts<int, int, int, int, int, int, float>());                // too few
static_assert(!Node::accepts<int, int, int, int, int, int, float, float, float>());  // too many
static_assert(!Node::accepts<int, int, int, int, int, int, int, float>());           // an integer for a real
static_assert(!Node::accepts<float, int, int, int, int, int, float, float>());       // a real for an integer
static_assert(!Node::accepts<int, int, int, int, int, int, double, float>());        // 64 bits for 32
static_assert(!Node::accepts<long, int, int, int, int, int, float, float>());
static_assert(!Node::accepts<bool, int, int, int, int, int, float, float>());
static_assert(Node::accepts_front<int, int>());
static_assert(!Node::accepts_front<int, float>());
static_assert(Node::accepts_front<>());
static_assert(!Node::accepts<>());

using Card = Layout<"(' Card ',A11,' has ',I5,1X,A)">;
static_assert(Card::VALUES == 3);
static_assert(Card::accepts<std::string_view, int, const char*>());
static_assert(Card::accepts<std::string, int, std::string>());
static_assert(!Card::accepts<int, int, std::string_view>());
static_assert(!Card::accepts<std::string_view, int, float>());

static_assert(Layout<"('text')">::VALUES == 0);
static_assert(Layout<"('text')">::accepts<>());

// --- what is written ---------------------------------------------------------------------------------------

class LayoutText : public ChannelTest {
protected:
    template <class Write>
    std::string written(Write write) const {
        write(state.channels.open(7, "line.txt", OpenStatus::work));
        state.channels.close(7);
        return directory.read("line.txt");
    }
    template <FixedText NOTATION, class... Values>
    std::string record(const Values&... values) const {
        return written([&](Channel& channel) { Layout<NOTATION>{}.write(channel, values...); });
    }
    template <FixedText NOTATION, class Number>
    std::string list(const std::vector<Number>& values) const {
        return written([&](Channel& channel) {
            Layout<NOTATION>{}.write_list(channel, std::span<const Number>(values));
        });
    }
};

TEST_F(LayoutText, IntegersAreRightJustified) {
    EXPECT_EQ((record<"(3I5)">(1, -20, 99999)), "    1  -2099999\n");
}

TEST_F(LayoutText, WideValueShowsAsAsterisks) {
    EXPECT_EQ((record<"(I5,I5)">(100000, -10000)), "**********\n");
    EXPECT_EQ((record<"(F6.2,1X,E11.4)">(12345.0F, 1.0F)), "******  0.1000E+01\n");
}

TEST_F(LayoutText, RealsShowEachForm) {
    EXPECT_EQ((record<"(E13.6)">(12.3456F)), " 0.123456E+02\n");
    EXPECT_EQ((record<"(ES12.5)">(12.3456F)), " 1.23456E+01\n");
    EXPECT_EQ((record<"(F10.3)">(12.3456F)), "    12.346\n");
}

TEST_F(LayoutText, ZeroHasNoSignInAnyForm) {
    EXPECT_EQ((record<"(E13.6,ES12.5,F6.2)">(-0.0F, -0.0F, -0.0F)), " 0.000000E+00 0.00000E+00  0.00\n");
}

TEST_F(LayoutText, GroupIsRepeatedWithItsBlanks) {
    EXPECT_EQ((record<"(1X,I2,2(3X,I1))">(10, 2, 3)), " 10   2   3\n");
    EXPECT_EQ((record<"(2(I1,2(1X,I2)))">(1, 2, 3, 4, 5, 6)), "1  2  34  5  6\n");
}

TEST_F(LayoutText, LiteralStandsAsItIs) {
    EXPECT_EQ((record<"(' Card: ',I2,', (data) ')">(7)), " Card:  7, (data) \n");
    EXPECT_EQ((record<"('only a text')">()), "only a text\n");
}

TEST_F(LayoutText, TextFieldIsCutOrFilledToItsWidth) {
    EXPECT_EQ((record<"('[',A5,']')">("abc")), "[abc  ]\n");
    EXPECT_EQ((record<"('[',A5,']')">("abcdefgh")), "[abcde]\n");
    EXPECT_EQ((record<"('[',A5,']')">("")), "[     ]\n");
}

TEST_F(LayoutText, TextOfItsOwnLengthIsWhole) {
    EXPECT_EQ((record<"(1X,A,'|')">("abc ")), " abc |\n");
    EXPECT_EQ((record<"(1X,A)">(std::string(200, 'x'))), " " + std::string(200, 'x') + "\n");
    EXPECT_EQ((record<"(1X,A,I3)">("", 5)), "   5\n");
}

TEST_F(LayoutText, BlanksBehindTheLastValueAreWritten) {
    EXPECT_EQ((record<"(I5,1X)">(7)), "    7 \n");
    EXPECT_EQ((record<"(2(E13.6,1X))">(1.0F, 2.0F)), " 0.100000E+01  0.200000E+01 \n");
    EXPECT_EQ((record<"(I1,3X)">(7)), "7   \n");
}

TEST_F(LayoutText, BlanksInFrontOfAValueThatIsNotThereAreNot) {
    const auto front = [&](auto... values) {
        return written(
            [&](Channel& channel) { Layout<"(1X,I5,4(3X,I5))">{}.write_front(channel, values...); });
    };
    EXPECT_EQ(front(1, 2, 3, 4), "     1       2       3       4\n");
    EXPECT_EQ(front(1), "     1\n");
    EXPECT_EQ(front(1, 2, 3, 4, 5), "     1       2       3       4       5\n");
}

TEST_F(LayoutText, FrontOfALayoutKeepsTheBlankBehindItsValue) {
    const auto front = [&](auto... values) {
        return written([&](Channel& channel) { Layout<"(10(I5,1X))">{}.write_front(channel, values...); });
    };
    EXPECT_EQ(front(1, 0), "    1     0 \n");
}

TEST_F(LayoutText, ListGoesOnInTheNextLineBehindTen) {
    EXPECT_EQ((list<"(10(I5,1X))">(std::vector<int>{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12})),
              "    1     2     3     4     5     6     7     8     9    10 \n"
              "   11    12 \n");
}

TEST_F(LayoutText, ListOfTenHasOneLine) {
    EXPECT_EQ((list<"(10(I5,1X))">(std::vector<int>{1, 2, 3, 4, 5, 6, 7, 8, 9, 10})),
              "    1     2     3     4     5     6     7     8     9    10 \n");
}

TEST_F(LayoutText, ListOfTwentyOneHasThreeLines) {
    const std::string ten = "    7     7     7     7     7     7     7     7     7     7 \n";
    EXPECT_EQ((list<"(10(I5,1X))">(std::vector<int>(21, 7))), ten + ten + "    7 \n");
}

TEST_F(LayoutText, EmptyListHasOneEmptyLine) {
    EXPECT_EQ((list<"(10(I5,1X))">(std::vector<int>{})), "\n");
    EXPECT_EQ((list<"(10(E12.5,1X))">(std::vector<float>{})), "\n");
}

TEST_F(LayoutText, LineOfTenRealsHas130Columns) {
    const std::string line = list<"(10(E12.5,1X))">(std::vector<float>(10, -1.5F));
    EXPECT_EQ(line,
              "-0.15000E+01 -0.15000E+01 -0.15000E+01 -0.15000E+01 -0.15000E+01 "
              "-0.15000E+01 -0.15000E+01 -0.15000E+01 -0.15000E+01 -0.15000E+01 \n");
    EXPECT_EQ(line.size(), 131U);
}

TEST_F(LayoutText, FieldsArePutIntoARecordThatIsBeingBuilt) {
    char record[] = "..............";
    EXPECT_EQ((Layout<"(I5,1X)">{}.put(record + 2, 42)), record + 8);
    EXPECT_STREQ(record, "..   42 ......");
}

}  // namespace
}  // namespace brelan::test
