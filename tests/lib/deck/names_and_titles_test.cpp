// File name fields and title lines.
#include <string>

#include "deck/card_stream.h"
#include "deck/normalised_deck.h"
#include "support/state.h"

namespace brelan::test {
namespace {

std::string blank_columns(std::size_t count) {
    return std::string(count, ' ');
}

// Columns 1 to 123 with a letter each, "a" in column 1.
std::string letters(std::size_t count) {
    std::string text;
    for (std::size_t i = 0; i < count; ++i)
        text += static_cast<char>('a' + i % 26);
    return text;
}

class NameField : public ::testing::Test {
protected:
    // Nothing that an earlier name left is in the way.
    void SetUp() override { trimmed("x"); }

    static std::string trimmed(std::string_view name) {
        return std::string(name_from_parent(state.card_memory.name_field, TextLine(name)).trimmed());
    }
    static std::string whole(std::string_view name) {
        return std::string(name_from_parent(state.card_memory.name_field, TextLine(name)).view());
    }
};

TEST_F(NameField, BareNameIsTakenFromTheParentDirectory) {
    EXPECT_EQ(whole("mesh.Mes"), "..\\mesh.Mes" + blank_columns(115));
}

TEST_F(NameField, LeadingBlanksOfABareNameGo) {
    EXPECT_EQ(trimmed("   mesh.Mes"), "..\\mesh.Mes");
}

TEST_F(NameField, NameWithABackslashStaysAsItStands) {
    EXPECT_EQ(trimmed("sub\\mesh.Mes"), "sub\\mesh.Mes");
    EXPECT_EQ(trimmed("  sub\\mesh.Mes"), "  sub\\mesh.Mes");
    EXPECT_EQ(trimmed("..\\mesh.Mes"), "..\\mesh.Mes");
    EXPECT_EQ(trimmed(".\\mesh.Mes"), ".\\mesh.Mes");
}

TEST_F(NameField, BackslashInColumn30IsSeen) {
    const std::string name = letters(29) + "\\m";
    EXPECT_EQ(trimmed(name), name);
}

TEST_F(NameField, BackslashInColumn31IsNotSeen) {
    const std::string name = letters(30) + "\\m";
    EXPECT_EQ(trimmed(name), "..\\" + name);
}

TEST_F(NameField, OtherPathCharactersMakeNoPath) {
    EXPECT_EQ(trimmed("C:/dir/mesh.Mes"), "..\\C:/dir/mesh.Mes");
}

TEST_F(NameField, NameOf123ColumnsLosesNothing) {
    EXPECT_EQ(whole(letters(123)), "..\\" + letters(123));
}

TEST_F(NameField, ColumnsBehind123OfABareNameAreCut) {
    EXPECT_EQ(whole(letters(123) + "XYZ"), "..\\" + letters(123));
}

TEST_F(NameField, ColumnsBehind123CountWhereThePathIsGiven) {
    const std::string name = "sub\\" + letters(119) + "XYZ";
    ASSERT_EQ(name.size(), 126U);
    EXPECT_EQ(whole(name), name);
}

TEST_F(NameField, BlanksInsideANameStay) {
    EXPECT_EQ(trimmed("  my mesh.Mes"), "..\\my mesh.Mes");
}

TEST_F(NameField, ShortenedNameKeepsTheLastColumnsOfALongerOneBeforeIt) {
    // With k leading blanks columns k + 1 to 123 move to the front; the last k columns of the field keep what
    // the name before left there.
    trimmed(letters(123));
    EXPECT_EQ(whole("   mesh.Mes"), "..\\mesh.Mes" + blank_columns(112) + letters(123).substr(120));
    EXPECT_EQ(whole("  mesh.Mes"), "..\\mesh.Mes" + blank_columns(113) + letters(123).substr(121));
    EXPECT_EQ(whole(" mesh.Mes"), "..\\mesh.Mes" + blank_columns(114) + letters(123).substr(122));
    EXPECT_EQ(whole("mesh.Mes"), "..\\mesh.Mes" + blank_columns(115));
    EXPECT_EQ(whole("   mesh.Mes"), "..\\mesh.Mes" + blank_columns(115));
}

TEST_F(NameField, NameWithAPathLeavesTheWorkFieldAlone) {
    trimmed(letters(123));
    trimmed("sub\\mesh.Mes");
    EXPECT_EQ(whole(" mesh.Mes"), "..\\mesh.Mes" + blank_columns(114) + letters(123).substr(122));
}

TEST_F(NameField, TextThatBeginsInTheLastColumnCopiedIsOneCharacter) {
    EXPECT_EQ(trimmed(blank_columns(122) + "abc"), "..\\a");
}

// --- titles ------------------------------------------------------------------------------------------------

std::int32_t title_length(std::string_view line) {
    return last_title_column(TextLine(line));
}

TEST(Title, EndsWithItsLastWord) {
    EXPECT_EQ(title_length("SAND"), 4);
    EXPECT_EQ(title_length("SAND FILL, STAGE 2"), 18);
    EXPECT_EQ(title_length("   SAND   "), 7);
    EXPECT_EQ(title_length("x"), 1);
}

TEST(Title, IsEmptyOnABlankLine) {
    EXPECT_EQ(title_length(""), 0);
}

TEST(Title, TakesCommasForText) {
    EXPECT_EQ(title_length("SAND,"), 5);
    EXPECT_EQ(title_length(", ,"), 3);
}

TEST(Title, HasAtMost80Columns) {
    EXPECT_EQ(title_length(blank_columns(75) + "abcd"), 79);
    EXPECT_EQ(title_length(blank_columns(75) + "abcde"), 80);
    EXPECT_EQ(title_length(blank_columns(75) + "abcdef"), 80);
    EXPECT_EQ(title_length("short" + blank_columns(100) + "far"), 80);
}

TEST(Title, Has80ColumnsWhenAWordEndsInColumn125) {
    EXPECT_EQ(title_length("short" + blank_columns(115) + "abcde"), 80);
    EXPECT_EQ(title_length(std::string(125, 'x')), 80);
}

TEST(Title, IgnoresAWordThatReachesColumn126BehindAShorterOne) {
    EXPECT_EQ(title_length("short" + blank_columns(115) + "abcdef"), 5);
}

TEST(Title, IsEmptyWhenItsOnlyWordReachesColumn126) {
    EXPECT_EQ(title_length(std::string(126, 'x')), 0);
    EXPECT_EQ(title_length(blank_columns(125) + "x"), 0);
}

// Five columns, of which a sign takes one.
TEST(ShownInteger, HasFiveColumns) {
    EXPECT_TRUE(fits_shown_integer(99999));
    EXPECT_FALSE(fits_shown_integer(100000));
    EXPECT_TRUE(fits_shown_integer(-9999));
    EXPECT_FALSE(fits_shown_integer(-10000));
}

}  // namespace
}  // namespace brelan::test
