// How a deck is read: what a card is, what is counted, what stands in the normalised deck. Front ends look
// into the normalised deck and the rest of the program reads nothing else, so it is held to the last blank.

#include "support/mesh.h"
#include "support/project.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>
#include <vector>

namespace brelan::test {
namespace {

// Cards of a run that copies mesh.Mes to out.Mes as it stands.
std::vector<std::string> copy_cards() {
    return {"1 0", "mesh.Mes", "out.Mes", "1 1 1 1", "0", "0 0 0 0", "1 1"};
}

std::vector<std::string> copy_cards_with(std::size_t card, const std::string& text) {
    std::vector<std::string> cards = copy_cards();
    cards.at(card - 1) = text;
    return cards;
}

// The normalised form of those cards.
const std::vector<std::string> COPY_NORMALISED = {"    1     0 ",
                                                  padded("..\\mesh.Mes"),
                                                  padded("..\\out.Mes"),
                                                  "    1     1     1     1 ",
                                                  "    0     0     0     0     0     0 ",
                                                  " 0.00000E+00  0.00000E+00  0.00000E+00  0.00000E+00 ",
                                                  " 0.10000E+01  0.10000E+01 "};

std::vector<std::string> normalised_with(std::size_t line, const std::string& text) {
    std::vector<std::string> lines = COPY_NORMALISED;
    lines.at(line - 1) = text;
    return lines;
}

// Runs a deck over the sample mesh of the kind.
RunResult run_deck(const Project& project, Kind kind, const std::vector<std::string>& cards) {
    project.write("mesh.Mes", sample_mesh(kind).text());
    project.deck(text_of(cards));
    return project.run();
}

// Some modes have no stage behind the checker yet and end as failures there; what the checker wrote is
// complete all the same.
void expect_normalised(Kind kind, const std::vector<std::string>& cards,
                       const std::vector<std::string>& normalised) {
    SCOPED_TRACE(name_of(kind));
    const Project project(kind);
    const RunResult result = run_deck(project, kind, cards);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.signal, 0);
    EXPECT_NE(result.status, 1);
    expect_work_file(project, "BRELAN.TMP", normalised);
    EXPECT_EQ(project.read_work("T7.TMP"), "");
}

// ---------------------------------------------------------------------------------------------------------
// The stream of cards
// ---------------------------------------------------------------------------------------------------------

TEST(CardStream, CopyHoldsTheDeckInFullLinesWithoutItsComments) {
    const Project project;
    project.write("mesh.Mes", sample_mesh(Kind::displacement).text());
    project.deck(
        "* a comment\n1 0\n*\n*another\nmesh.Mes\nout.Mes\n1 1 1 1   right of it\n0\n0 0 0 0\n1 1\n"
        "behind the last card\n\n * no comment\n");
    project.run();
    expect_work_file(project, "TT55.TMP",
                     {padded("1 0"), padded("mesh.Mes"), padded("out.Mes"), padded("1 1 1 1   right of it"),
                      padded("0"), padded("0 0 0 0"), padded("1 1"), padded("behind the last card"),
                      padded(""), padded(" * no comment")});
}

TEST(CardStream, CopyHoldsOnlyColumns1To126) {
    const std::string beyond = padded("0 0 0 0") + "9 9 9";
    const Project project;
    expect_finished(run_deck(project, Kind::displacement, copy_cards_with(6, beyond)));
    const auto copy = lines_of(project.read_work("TT55.TMP"));
    ASSERT_EQ(copy.size(), 7U);
    EXPECT_EQ(copy[5], padded("0 0 0 0"));
}

TEST(CardStream, CopyKeepsForeignCharactersAndTabs) {
    const Project project;
    expect_finished(run_deck(project, Kind::displacement, copy_cards_with(3, "out\t\xC3\xA4.Mes")));
    EXPECT_EQ(lines_of(project.read_work("TT55.TMP")).at(2), padded("out\t\xC3\xA4.Mes"));
    EXPECT_TRUE(project.exists("out\t\xC3\xA4.Mes"));
}

TEST(CardStream, LineEndsOfBothSystemsAndAMissingLastOneAreOneDeck) {
    const Project project;
    project.write("mesh.Mes", sample_mesh(Kind::displacement).text());
    std::string deck;
    for (const auto& card : copy_cards())
        deck += card + "\r\n";
    deck.resize(deck.size() - 2);
    project.deck(deck);
    expect_finished(project.run());
    expect_work_file(project, "BRELAN.TMP", COPY_NORMALISED);
    EXPECT_EQ(lines_of(project.read_work("TT55.TMP")).at(0), padded("1 0"));
}

TEST(CardStream, ByteOrderMarkInFrontOfADeckIsNamed) {
    for (const char* start : {"* comment\n", ""}) {
        const Project project;
        project.write("mesh.Mes", sample_mesh(Kind::displacement).text());
        project.deck(std::string("\xEF\xBB\xBF") + start + text_of(copy_cards()));
        expect_failed(project.run(), {"deck.dat, line 1: ", "byte order mark"});
    }
}

TEST(CardStream, CommentOfAnyLengthIsLeftOut) {
    const Project project;
    project.write("mesh.Mes", sample_mesh(Kind::displacement).text());
    project.deck("*" + std::string(10'000'000, 'x') + "\n" + commented_deck(copy_cards()));
    expect_finished(project.run());
    expect_work_file(project, "BRELAN.TMP", COPY_NORMALISED);
}

TEST(CardStream, ErrorLinesCountTheCommentsOfTheUser) {
    const Project project;
    project.write("mesh.Mes", sample_mesh(Kind::displacement).text());
    project.deck(commented_deck(copy_cards_with(6, "0 0 zero 0")));
    expect_failed(project.run(), {"deck.dat, line 12: "});
}

TEST(CardStream, EmptyValueEndsTheReadAtThatValue) {
    // "1,2,,3" counts three values; the read takes 1 and 2, the third value is empty and leaves the default,
    // and the 3 is never reached. So NSTRUS keeps its default as well as NSBEAM does.
    expect_normalised(Kind::displacement, copy_cards_with(4, "1,2,,3"),
                      normalised_with(4, "    1     2     0     0 "));
}

TEST(CardStream, EmptyValueLeavesTheDefaultOfItsField) {
    // IB_LEFT has the default 1; the 0 behind the empty value is not read.
    expect_normalised(
        Kind::displacement, {"2", "1,1,,0", "0 0", "1 1 1", "1 1 1", "0"},
        {"    2     0 ", "    1     1     1     1     0     1 ", " 0.00000E+00  0.00000E+00 ",
         " 0.10000E+01  0.10000E+01  0.10000E+01 ", " 0.10000E+01  0.10000E+01  0.10000E+01 ", "    0 "});
}

TEST(CardStream, EmptyFirstValueKeepsWhatAnEarlierCardLeft) {
    // ",0" counts one value and reads an empty one: ILOC is the 1 that IEDIT left in its place, so a list
    // follows.
    const Project project;
    expect_finished(run_deck(project, Kind::displacement,
                             {"1", "mesh.Mes", "out.Mes", "1 1", "1", ",0", "2", "1 2", "0", "7 8 9"}));
    const auto lines = lines_of(project.read_work("BRELAN.TMP"));
    ASSERT_EQ(lines.size(), 10U);
    EXPECT_EQ(lines[5], "    1 ");
    EXPECT_EQ(lines[6], "    2 ");
    EXPECT_EQ(lines[7], "    1     2 ");
}

TEST(CardStream, EmptyFirstValueOfTheBaseEditKeepsTheHeightOfTheLastRow) {
    expect_normalised(
        Kind::displacement, {"2", "1 1", "0 0", "1 1 1", "5.7 1 1", ",1"},
        {"    2     0 ", "    1     1     1     1     0     1 ", " 0.00000E+00  0.00000E+00 ",
         " 0.10000E+01  0.10000E+01  0.10000E+01 ", " 0.57000E+01  0.10000E+01  0.10000E+01 ", "    5 "});
}

TEST(CardStream, CommaAndBlanksTogetherAreOneSeparator) {
    expect_normalised(Kind::displacement, copy_cards_with(4, "1 , 2  ,3,   4"),
                      normalised_with(4, "    1     2     3     4 "));
}

TEST(CardStream, ValueThatEndsInColumn125Counts) {
    std::string card = "0 0 0";
    card.resize(119, ' ');
    card += "100.00";
    expect_normalised(Kind::displacement, copy_cards_with(6, card),
                      normalised_with(6, " 0.00000E+00  0.00000E+00  0.00000E+00  0.10000E+03 "));
}

TEST(CardStream, ValueThatReachesColumn126IsNotSeen) {
    // Five values, four by count: the fourth is read, the fifth is not.
    std::string card = "0 0 0 4";
    card.resize(120, ' ');
    card += "100.00";
    expect_normalised(Kind::displacement, copy_cards_with(6, card),
                      normalised_with(6, " 0.00000E+00  0.00000E+00  0.00000E+00  0.40000E+01 "));
}

TEST(CardStream, SeparatorInColumn126EndsTheLastValue) {
    std::string card = "0 0 0";
    card.resize(119, ' ');
    card += "100.00,";
    ASSERT_EQ(card.size(), 126U);
    expect_normalised(Kind::displacement, copy_cards_with(6, card),
                      normalised_with(6, " 0.00000E+00  0.00000E+00  0.00000E+00  0.10000E+03 "));
}

TEST(CardStream, StarBehindABlankIsData) {
    // Two values by count, and the first of them is no number.
    const Project project;
    project.write("mesh.Mes", sample_mesh(Kind::displacement).text());
    project.deck("* comment\n * text\n");
    expect_failed(project.run(), {"deck.dat, line 2: "});
    EXPECT_EQ(project.read_work("T7.TMP"), "");
}

TEST(CardStream, IntegerFieldIsTheCutReal) {
    // 1E3, 2.9, -0.5 and 3.0
    expect_normalised(Kind::displacement, copy_cards_with(4, "1E3 2.9 -0.5 3.0"),
                      normalised_with(4, " 1000     2     0     3 "));
}

TEST(CardStream, NumbersMayBeWrittenInEveryForm) {
    expect_normalised(Kind::displacement, copy_cards_with(6, "+1.5D1 .5 5. 1.5+3"),
                      normalised_with(6, " 0.15000E+02  0.50000E+00  0.50000E+01  0.15000E+04 "));
}

TEST(CardStream, RepeatFillsTheFieldsItStandsFor) {
    // Two texts by count, so two values are read: the repeat gives both, and the 3 behind it is not reached.
    expect_normalised(Kind::displacement, copy_cards_with(4, "2*7 3"),
                      normalised_with(4, "    7     7     0     0 "));
}

TEST(CardStream, SlashEndsTheCardAndLeavesTheDefaults) {
    expect_normalised(Kind::displacement, copy_cards_with(4, "7 8 / 9"),
                      normalised_with(4, "    7     8     0     0 "));
}

TEST(CardStream, TabIsABlankForTheReadButNoSeparatorForTheCount) {
    // The two numbers count as one text, and one is what is read.
    expect_normalised(Kind::displacement, copy_cards_with(4, "1 2\t3 4"),
                      normalised_with(4, "    1     2     3     0 "));
}

TEST(CardStream, RealBelowTheSmallestIsZero) {
    expect_normalised(Kind::displacement, copy_cards_with(6, "1e-39 -1e-45 1.2e-38 0"),
                      normalised_with(6, " 0.00000E+00  0.00000E+00  0.12000E-37  0.00000E+00 "));
}

TEST(CardStream, RealsAreRoundedToFiveDigitsFromTheirStoredValue) {
    // The first two lie exactly between two texts and go to the even digit; 1.000005 is stored a little above
    // its half.
    expect_normalised(Kind::displacement, copy_cards_with(6, "100005 100015 1.000005 -99999.6"),
                      normalised_with(6, " 0.10000E+06  0.10002E+06  0.10000E+01 -0.10000E+06 "));
}

TEST(CardStream, ListRunsOverAsManyLinesAsItNeeds) {
    const Project project;
    expect_finished(run_deck(
        project, Kind::displacement,
        {"1", "mesh.Mes", "out.Mes", "1 1", "1", "1", "5", "1,2", "", "  3", "4 5 6 7", "0", "1 1 1"}));
    const auto lines = lines_of(project.read_work("BRELAN.TMP"));
    ASSERT_EQ(lines.size(), 10U);
    EXPECT_EQ(lines[6], "    5 ");
    EXPECT_EQ(lines[7], "    1     2     3     4     5 ");
    EXPECT_EQ(lines[8], "    0 ");
}

TEST(CardStream, ListThatIsTooShortSwallowsTheNextCard) {
    // Three of four numbers: the side card is taken as the fourth, and the code card is read as the side
    // card.
    const Project project;
    const RunResult result =
        run_deck(project, Kind::displacement,
                 {"1", "mesh.Mes", "out.Mes", "1 1", "1", "1", "4", "1 2 3", "0", "1 1 1"});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(lines_of(project.read_work("T7.TMP")).at(1),
              " Card Group No: 3.3.2.3     requires     1 data entry");
}

// ---------------------------------------------------------------------------------------------------------
// File names
// ---------------------------------------------------------------------------------------------------------

TEST(FileName, BareNameIsTakenFromTheParentDirectory) {
    const Project project;
    expect_finished(run_deck(project, Kind::displacement, copy_cards()));
    EXPECT_EQ(lines_of(project.read_work("BRELAN.TMP")).at(1), padded("..\\mesh.Mes"));
    EXPECT_TRUE(project.exists("out.Mes"));
    EXPECT_FALSE(project.exists_work("out.Mes"));
}

TEST(FileName, LeadingBlanksOfABareNameDoNotCount) {
    const Project project;
    expect_finished(run_deck(project, Kind::displacement, copy_cards_with(2, "   mesh.Mes")));
    expect_work_file(project, "BRELAN.TMP", COPY_NORMALISED);
}

TEST(FileName, NameWithADirectoryStandsRelativeToTheWorkingDirectory) {
    const Project project;
    project.write_work("sub/mesh.Mes", sample_mesh(Kind::displacement).text());
    project.deck(text_of(copy_cards_with(2, "sub\\mesh.Mes")));
    expect_finished(project.run());
    expect_work_file(project, "BRELAN.TMP", normalised_with(2, padded("sub\\mesh.Mes")));
}

TEST(FileName, NameOnTheDriveStandsAsItIs) {
    const Project project;
    project.write_data("templates/mesh.Mes", sample_mesh(Kind::displacement).text());
    project.deck(text_of(copy_cards_with(2, "C:\\Vork\\Qx\\Qxdata\\templates\\mesh.Mes")));
    expect_finished(project.run());
    expect_work_file(project, "BRELAN.TMP",
                     normalised_with(2, padded("C:\\Vork\\Qx\\Qxdata\\templates\\mesh.Mes")));
}

TEST(FileName, BackslashInColumn30StillMakesAPath) {
    const std::string name = std::string(29, 'd') + "\\mesh.Mes";
    const Project project;
    project.write_work(std::string(29, 'd') + "/mesh.Mes", sample_mesh(Kind::displacement).text());
    project.deck(text_of(copy_cards_with(2, name)));
    expect_finished(project.run());
    expect_work_file(project, "BRELAN.TMP", normalised_with(2, padded(name)));
}

TEST(FileName, BackslashBehindColumn30LeavesABareName) {
    const std::string name = std::string(30, 'd') + "\\mesh.Mes";
    const Project project;
    project.write(std::string(30, 'd') + "/mesh.Mes", sample_mesh(Kind::displacement).text());
    project.deck(text_of(copy_cards_with(2, name)));
    expect_finished(project.run());
    expect_work_file(project, "BRELAN.TMP", normalised_with(2, padded("..\\" + name)));
}

TEST(FileName, LongestBareNameLosesNothing) {
    const std::string name = std::string(119, 'n') + ".Mes";
    ASSERT_EQ(name.size(), 123U);
    const Project project;
    project.write(name, sample_mesh(Kind::displacement).text());
    project.deck(text_of(copy_cards_with(2, name)));
    expect_finished(project.run());
    expect_work_file(project, "BRELAN.TMP", normalised_with(2, "..\\" + name));
}

TEST(FileName, BareNameIsCutBehindColumn123) {
    const std::string kept = std::string(119, 'n') + ".Mes";
    const Project project;
    project.write(kept, sample_mesh(Kind::displacement).text());
    project.deck(text_of(copy_cards_with(2, kept + "XYZ")));
    expect_finished(project.run());
    expect_work_file(project, "BRELAN.TMP", normalised_with(2, "..\\" + kept));
}

TEST(FileName, IndentedNameKeepsTheTailOfALongerNameBeforeIt) {
    // Two blanks in front of the second name: its last columns come from the longest name before it.
    const std::string longest = std::string(121, 'n') + "XY";
    const Project project;
    project.write(longest, sample_mesh(Kind::displacement).text());
    std::vector<std::string> cards = copy_cards_with(2, longest);
    cards[2] = "  out.Mes";
    project.deck(text_of(cards));
    project.run();
    expect_work_file(project, "BRELAN.TMP", [&] {
        auto lines = normalised_with(2, "..\\" + longest);
        lines[2] = padded("..\\out.Mes", 124) + "XY";
        return lines;
    }());
}

TEST(FileName, ResultIsNamedForThePlotTool) {
    const Project project;
    expect_finished(run_deck(project, Kind::displacement, copy_cards_with(3, "  out.Mes")));
    expect_data_file(project, "FnPlot2D.dat", {padded("..\\out.Mes")});
}

TEST(FileName, PlotToolFileHoldsTheLatestResultOnly) {
    const Project project;
    project.write_data("FnPlot2D.dat", "an earlier name\nand more\n");
    expect_finished(run_deck(project, Kind::displacement, copy_cards()));
    expect_data_file(project, "FnPlot2D.dat", {padded("..\\out.Mes")});
}

TEST(FileName, CombinationNamesItsThirdFileForThePlotTool) {
    const Project project;
    run_deck(project, Kind::displacement, {"0", "a.Mes", "b.Mes", "sub\\c.Mes", "0"});
    expect_data_file(project, "FnPlot2D.dat", {padded("sub\\c.Mes")});
}

TEST(FileName, BaseMeshWithoutAnEditNamesNothingForThePlotTool) {
    const Project project;
    run_deck(project, Kind::displacement, {"2", "1 1", "0 0", "1 1 1", "1 1 1", "0"});
    EXPECT_FALSE(project.exists_data("FnPlot2D.dat"));
}

// ---------------------------------------------------------------------------------------------------------
// The normalised deck: mode and edit
// ---------------------------------------------------------------------------------------------------------

TEST(NormalisedDeck, SecondFieldOfTheModeCardIsZeroWithoutADam) {
    expect_normalised(Kind::displacement, copy_cards_with(1, "1"), COPY_NORMALISED);
}

TEST(NormalisedDeck, SecondFieldOfTheModeCardIsCarried) {
    expect_normalised(Kind::displacement, copy_cards_with(1, "1, 9"), normalised_with(1, "    1     9 "));
}

TEST(NormalisedDeck, MaterialsThatSelectionLeavesAloneAreZeroUnlessGiven) {
    expect_normalised(Kind::displacement, copy_cards_with(5, "0"), COPY_NORMALISED);
    expect_normalised(Kind::displacement, copy_cards_with(5, "0 11 12 13 14 15"),
                      normalised_with(5, "    0    11    12    13    14    15 "));
    expect_normalised(Kind::displacement, copy_cards_with(5, "0 11 12"),
                      normalised_with(5, "    0    11    12     0     0     0 "));
}

TEST(NormalisedDeck, StartNumbersOfBeamsAndTrussesAreZeroUnlessGiven) {
    expect_normalised(Kind::displacement, copy_cards_with(4, "10 20"),
                      normalised_with(4, "   10    20     0     0 "));
    expect_normalised(Kind::displacement, copy_cards_with(4, "10 20 30"),
                      normalised_with(4, "   10    20    30     0 "));
}

TEST(NormalisedDeck, MoveAndMirrorAreLinesOfReals) {
    std::vector<std::string> cards = copy_cards_with(6, "1.25 -2.5 100 -0.001");
    cards[6] = "-1 0.5";
    std::vector<std::string> lines =
        normalised_with(6, " 0.12500E+01 -0.25000E+01  0.10000E+03 -0.10000E-02 ");
    lines[6] = "-0.10000E+01  0.50000E+00 ";
    expect_normalised(Kind::displacement, cards, lines);
}

TEST(NormalisedDeck, NumberTooWideForItsFieldFailsInTheRunAndNotInTheChecker) {
    const Project project;
    const RunResult result = run_deck(project, Kind::displacement, copy_cards_with(4, "100000 1"));
    expect_failed(result, {});
    // The whole deck was checked and written; the field shows asterisks.
    expect_work_file(project, "BRELAN.TMP", normalised_with(4, "*****     1     0     0 "));
    EXPECT_FALSE(project.exists_work("MESSAGE.INP"));
}

TEST(NormalisedDeck, WidestNumbersOfAField) {
    const Project project;
    run_deck(project, Kind::displacement, copy_cards_with(4, "1 1 99999 -9999"));
    expect_work_file(project, "BRELAN.TMP", normalised_with(4, "    1     1 99999 -9999 "));
}

std::vector<std::string> edit_deck(const std::vector<std::string>& more) {
    std::vector<std::string> cards{"1", "mesh.Mes", "out.Mes", "1 1 1 1"};
    cards.insert(cards.end(), more.begin(), more.end());
    return cards;
}

std::vector<std::string> edit_lines(const std::vector<std::string>& more) {
    std::vector<std::string> lines{"    1     0 ", padded("..\\mesh.Mes"), padded("..\\out.Mes"),
                                   "    1     1     1     1 "};
    lines.insert(lines.end(), more.begin(), more.end());
    return lines;
}

const std::string WINDOW_LINE = "-0.10000E+01 -0.10000E+01  0.15000E+01  0.20000E+01 ";

TEST(NormalisedDeck, CodesInAWindow) {
    expect_normalised(Kind::displacement, edit_deck({"1", "0", "-1 -1 1.5 2", "1", "7 8 9"}),
                      edit_lines({"    1     0     0     0     0     0 ", "    0 ", WINDOW_LINE, "    1 ",
                                  "    7     8     9 "}));
}

TEST(NormalisedDeck, CodesHaveFiveTwoTwoOrThreeWordsByKind) {
    const std::vector<std::string> codes = {"1 2 3 4 5", "1 2", "1 2", "1 2 3"};
    const std::vector<std::string> lines = {"    1     2     3     4     5 ", "    1     2 ", "    1     2 ",
                                            "    1     2     3 "};
    for (const Kind kind : ALL_KINDS) {
        const auto k = static_cast<std::size_t>(kind);
        expect_normalised(
            kind, edit_deck({"1", "0", "-1 -1 1.5 2", "0", codes[k]}),
            edit_lines({"    1     0     0     0     0     0 ", "    0 ", WINDOW_LINE, "    0 ", lines[k]}));
    }
}

TEST(NormalisedDeck, EveryLocationButZeroHasAList) {
    for (const char* location : {"1", "2", "3", "4", "-1"}) {
        expect_normalised(
            Kind::displacement, edit_deck({"1", location, "3", "1 2 7", "0", "1 1 1"}),
            edit_lines({"    1     0     0     0     0     0 ", i_field(std::atoi(location), 5) + " ",
                        "    3 ", "    1     2     7 ", "    0 ", "    1     1     1 "}));
    }
}

TEST(NormalisedDeck, ListGoesOnInTheNextLineAfterTenNumbers) {
    std::string list;
    for (int n = 1; n <= 12; ++n)
        list += " " + std::to_string(n % 7 + 1);
    expect_normalised(Kind::displacement, edit_deck({"1", "1", "12", list, "0", "1 1 1"}),
                      edit_lines({"    1     0     0     0     0     0 ", "    1 ", "   12 ",
                                  "    2     3     4     5     6     7     1     2     3     4 ",
                                  "    5     6 ", "    0 ", "    1     1     1 "}));
}

TEST(NormalisedDeck, ListOfTenNumbersIsOneLine) {
    expect_normalised(Kind::displacement, edit_deck({"1", "1", "10", "1 2 3 4 5 6 7 1 2 3", "0", "1 1 1"}),
                      edit_lines({"    1     0     0     0     0     0 ", "    1 ", "   10 ",
                                  "    1     2     3     4     5     6     7     1     2     3 ", "    0 ",
                                  "    1     1     1 "}));
}

TEST(NormalisedDeck, LongestListHasFiveHundredNumbers) {
    std::string list;
    for (int n = 0; n < 500; ++n)
        list += n % 25 == 24 ? "3\n" : "3 ";
    list.pop_back();
    const Project project;
    expect_finished(run_deck(project, Kind::displacement, edit_deck({"1", "1", "500", list, "0", "1 1 1"})));
    const auto lines = lines_of(project.read_work("BRELAN.TMP"));
    ASSERT_EQ(lines.size(), 59U);
    EXPECT_EQ(lines[6], "  500 ");
    for (std::size_t n = 7; n < 57; ++n) {
        EXPECT_EQ(lines[n], "    3     3     3     3     3     3     3     3     3     3 ") << n;
    }
    EXPECT_EQ(lines[57], "    0 ");
}

TEST(NormalisedDeck, ListCountOfZeroOrLessReadsNoLineAndWritesAnEmptyOne) {
    for (const char* count : {"0", "-3"}) {
        expect_normalised(
            Kind::displacement, edit_deck({"1", "1", count, "1", "7 8 9"}),
            edit_lines({"    1     0     0     0     0     0 ", "    1 ", i_field(std::atoi(count), 5) + " ",
                        "", "    1 ", "    7     8     9 "}));
    }
}

TEST(NormalisedDeck, ElementsToDelete) {
    expect_normalised(Kind::displacement, edit_deck({"2 1 2", "0", "-1 -1 1.5 2", "0"}),
                      edit_lines({"    2     1     2     0     0     0 ", "    0 ", WINDOW_LINE, "    0 "}));
    expect_normalised(
        Kind::displacement, edit_deck({"2", "1", "2", "3 -5", "1"}),
        edit_lines({"    2     0     0     0     0     0 ", "    1 ", "    2 ", "    3    -5 ", "    1 "}));
}

TEST(NormalisedDeck, MaterialsToChange) {
    expect_normalised(Kind::displacement, edit_deck({"3", "0", "-1 -1 1.5 2", "0", "4 5 6"}),
                      edit_lines({"    3     0     0     0     0     0 ", "    0 ", WINDOW_LINE, "    0 ",
                                  "    4     5     6 "}));
    expect_normalised(Kind::displacement, edit_deck({"3", "1", "2", "3 -5", "0", "4 0 6"}),
                      edit_lines({"    3     0     0     0     0     0 ", "    1 ", "    2 ", "    3    -5 ",
                                  "    0 ", "    4     0     6 "}));
}

TEST(NormalisedDeck, TriangleMapDropsTheSourceName) {
    // A line must stand for FILEA, blank or not; it is dropped, for the template takes its place.
    for (const char* source : {"", "   ", "any text at all", "no such mesh.Mes"}) {
        const Project project;
        const RunResult result =
            run_deck(project, Kind::displacement,
                     {"1", source, "out.Mes", "1 1", "5", "1", "7 9.81", "0 0 10 0 5 8.66"});
        EXPECT_NE(result.status, 1);
        expect_work_file(
            project, "BRELAN.TMP",
            {"    1     0 ", padded("..\\out.Mes"), "    1     1     0     0 ",
             "    5     0     0     0     0     0 ", "    1 ", "    7  0.98100E+01  0.00000E+00 ",
             " 0.00000E+00  0.00000E+00  0.10000E+02  0.00000E+00  0.50000E+01  0.86600E+01 "});
    }
}

TEST(NormalisedDeck, TriangleMapTakesALevelOfWater) {
    const Project project;
    run_deck(project, Kind::head, {"1", "", "out.Mes", "1 1", "5", "3", "7.9 9.81 -4.5", "0 0 10 0 5 8.66"});
    const auto lines = lines_of(project.read_work("BRELAN.TMP"));
    ASSERT_EQ(lines.size(), 7U);
    EXPECT_EQ(lines[4], "    3 ");
    EXPECT_EQ(lines[5], "    7  0.98100E+01 -0.45000E+01 ");
}

TEST(NormalisedDeck, TriangleMapWithoutTheSourceLineShiftsAllCardsByOne) {
    // The look-ahead takes the model for the edit, the result's name for the source, and Card 3.2 for the
    // result's name; so the card that is wrong is the one behind it.
    const Project project;
    const RunResult result =
        run_deck(project, Kind::displacement, {"1", "out.Mes", "1 1", "5", "1", "7 9.81", "0 0 10 0 5 8.66"});
    EXPECT_EQ(result.status, 1);
    expect_work_file(project, "BRELAN.TMP", {"    1     0 ", padded("..\\out.Mes"), padded("..\\1 1")});
    const auto listing = lines_of(project.read_work("T7.TMP"));
    ASSERT_EQ(listing.size(), 8U);
    EXPECT_EQ(listing[1], " Card Group No: 3.2         requires     4 data entry");
    EXPECT_EQ(listing[6], " 5");
}

TEST(NormalisedDeck, LookAheadCutsARealEdit) {
    // 5.9 is the triangle map for the look-ahead as well as for the card.
    const Project project;
    run_deck(project, Kind::displacement,
             {"1", "", "out.Mes", "1 1", "5.9", "1", "7 9.81", "0 0 10 0 5 8.66"});
    const auto lines = lines_of(project.read_work("BRELAN.TMP"));
    ASSERT_EQ(lines.size(), 7U);
    EXPECT_EQ(lines[1], padded("..\\out.Mes"));
    EXPECT_EQ(lines[3], "    5     0     0     0     0     0 ");
}

TEST(NormalisedDeck, EditOfAnUnknownNumberHasNoFurtherCards) {
    for (const char* edit : {"7", "-1"}) {
        const Project project;
        expect_finished(run_deck(project, Kind::displacement, edit_deck({edit, "this is not", "looked at"})));
        expect_work_file(project, "BRELAN.TMP",
                         edit_lines({i_field(std::atoi(edit), 5) + "     0     0     0     0     0 "}));
        // Nothing is selected or stored.
        Mesh empty;
        empty.name = "..\\out.Mes";
        expect_file(project, "out.Mes", lines_of(empty.text()));
    }
}

TEST(NormalisedDeck, RebuildRowsKeepWhatIsNotGivenByKind) {
    const std::vector<std::string> start = {"    6     0     0     0     0     0 ", "    2 "};
    const auto lines = [&](const std::string& first, const std::string& second) {
        return edit_lines({start[0], start[1], first, second, "    1 ", "    1     2     1   -10   -10 ",
                           "    2 ", "    1     2     1     9   -10 ", "    2     1     2     8     7 "});
    };
    const std::vector<std::string> cards =
        edit_deck({"6", "2", "1 2 3 4 1", "2 1 2 3 4 5 6 7", "1", "1 2 1", "2", "1 2 1 9", "2 1 2 8 7"});
    expect_normalised(Kind::coupled, cards,
                      lines("    1     2     3     4     1   -10   -10   -10 ",
                            "    2     1     2     3     4     5     6     7 "));
    for (const Kind kind : {Kind::temperature, Kind::head}) {
        expect_normalised(kind, cards,
                          lines("    1     2     3     4     1   -10   -10 ",
                                "    2     1     2     3     4     5     6 "));
    }
    expect_normalised(Kind::displacement, cards,
                      lines("    1     2     3     4     1   -10 -0.10000E+02 -0.10000E+02 ",
                            "    2     1     2     3     4     5  0.60000E+01  0.70000E+01 "));
}

TEST(NormalisedDeck, RebuildRowsHaveTheirDefaultsAnewForEachRow) {
    // What a longer row gave must not leak into the fields that the next row leaves out.
    expect_normalised(
        Kind::displacement, edit_deck({"6", "2", "1 1 2 3 4 8 0.5 1.5", "2 1 2 3 4", "0", "0"}),
        edit_lines({"    6     0     0     0     0     0 ", "    2 ",
                    "    1     1     2     3     4     8  0.50000E+00  0.15000E+01 ",
                    "    2     1     2     3     4   -10 -0.10000E+02 -0.10000E+02 ", "    0 ", "    0 "}));
}

TEST(NormalisedDeck, RebuildCountsOfZeroOrLessHaveNoRows) {
    expect_normalised(Kind::coupled, edit_deck({"6", "0", "-1", "0"}),
                      edit_lines({"    6     0     0     0     0     0 ", "    0 ", "   -1 ", "    0 "}));
}

TEST(NormalisedDeck, RebuildTakesUpToAHundredRowsOfEachKind) {
    std::vector<std::string> cards = edit_deck({"6"});
    for (const char* row : {"1 1 2 3 4", "1 1 2", "1 1 2"}) {
        cards.emplace_back("100");
        cards.insert(cards.end(), 100, row);
    }
    const Project project;
    expect_finished(run_deck(project, Kind::displacement, cards));
    EXPECT_EQ(lines_of(project.read_work("BRELAN.TMP")).size(), 5U + 303U);
}

// ---------------------------------------------------------------------------------------------------------
// The normalised deck: combination and base mesh
// ---------------------------------------------------------------------------------------------------------

TEST(NormalisedDeck, CombinationWithoutAnInterface) {
    for (const char* mode : {"0", "-1"}) {
        for (const char* interface : {"0", "2", "-1"}) {
            expect_normalised(
                Kind::displacement, {mode, "a.Mes", "  b.Mes", "sub\\c.Mes", interface},
                {i_field(std::atoi(mode), 5) + "     0 ", padded("..\\a.Mes"), padded("..\\b.Mes"),
                 padded("sub\\c.Mes"), i_field(std::atoi(interface), 5) + " "});
        }
    }
}

TEST(NormalisedDeck, CombinationAlongAnInterfaceHasTwoLists) {
    expect_normalised(Kind::displacement,
                      {"0 3", "a.Mes", "b.Mes", "c.Mes", "1", "11", "1 2 3 4 5 6", "7 8 9 10 11",
                       "21 22 23 24 25 26 27 28 29 30 31"},
                      {"    0     3 ", padded("..\\a.Mes"), padded("..\\b.Mes"), padded("..\\c.Mes"),
                       "    1 ", "   11 ", "    1     2     3     4     5     6     7     8     9    10 ",
                       "   11 ", "   21    22    23    24    25    26    27    28    29    30 ", "   31 "});
}

TEST(NormalisedDeck, CombinationWithAnEmptyInterfaceHasTwoEmptyLines) {
    for (const char* count : {"0", "-2"}) {
        expect_normalised(Kind::displacement, {"0", "a.Mes", "b.Mes", "c.Mes", "1", count},
                          {"    0     0 ", padded("..\\a.Mes"), padded("..\\b.Mes"), padded("..\\c.Mes"),
                           "    1 ", i_field(std::atoi(count), 5) + " ", "", ""});
    }
}

TEST(NormalisedDeck, BaseMeshByKind) {
    const auto lines = [](const std::string& origin) {
        return std::vector<std::string>{"    2     0 ",
                                        "    2     1     0     1     1     0 ",
                                        origin,
                                        " 0.10000E+01  0.50000E+00  0.00000E+00 ",
                                        " 0.25000E+01  0.50000E+00  0.11000E+01 ",
                                        " 0.30000E+01  0.75000E+00 -0.10000E+01 ",
                                        "    0 "};
    };
    const auto cards = [](const std::string& origin) {
        return std::vector<std::string>{"2", "2 1 0 1 1 0", origin, "1 .5 0", "2.5 .5 1.1", "3 .75 -1", "0"};
    };
    for (const Kind kind : {Kind::coupled, Kind::temperature, Kind::head}) {
        expect_normalised(kind, cards("1 -2 4.5"), lines(" 0.10000E+01 -0.20000E+01  0.45000E+01 "));
    }
    // Without a third value there is no water table, and temperature and head are 0.
    expect_normalised(Kind::coupled, cards("1 -2"), lines(" 0.10000E+01 -0.20000E+01 -0.10000E+31 "));
    expect_normalised(Kind::temperature, cards("1 -2"), lines(" 0.10000E+01 -0.20000E+01  0.00000E+00 "));
    expect_normalised(Kind::head, cards("1 -2"), lines(" 0.10000E+01 -0.20000E+01  0.00000E+00 "));
    expect_normalised(Kind::displacement, cards("1 -2"), lines(" 0.10000E+01 -0.20000E+01 "));
}

TEST(NormalisedDeck, BoundariesOfTheBaseMeshAreLeftRightAndBottomUnlessGiven) {
    const auto second_line = [](const std::string& card) {
        const Project project;
        run_deck(project, Kind::displacement, {"2", card, "0 0", "1 1 1", "1 1 1", "0"});
        const auto lines = lines_of(project.read_work("BRELAN.TMP"));
        return lines.size() == 6 ? lines[1] : "another number of lines";
    };
    EXPECT_EQ(second_line("1 1"), "    1     1     1     1     0     1 ");
    EXPECT_EQ(second_line("1 1 0"), "    1     1     0     1     0     1 ");
    EXPECT_EQ(second_line("1 1 0 0 1"), "    1     1     0     0     1     1 ");
}

TEST(NormalisedDeck, BaseMeshWithAnEditGoesOnWithTheCardsOfTheEdit) {
    std::vector<std::string> cards{"2 0", "1 1", "0 0", "1 1 1", "1 1 1", "1"};
    const std::vector<std::string> edit = copy_cards();
    cards.insert(cards.end(), edit.begin() + 1, edit.end());
    std::vector<std::string> lines{"    2     0 ",
                                   "    1     1     1     1     0     1 ",
                                   " 0.00000E+00  0.00000E+00 ",
                                   " 0.10000E+01  0.10000E+01  0.10000E+01 ",
                                   " 0.10000E+01  0.10000E+01  0.10000E+01 ",
                                   "    1 "};
    lines.insert(lines.end(), COPY_NORMALISED.begin() + 1, COPY_NORMALISED.end());
    expect_normalised(Kind::displacement, cards, lines);
}

TEST(NormalisedDeck, BaseMeshWithAnUnknownEditWordHasNoFurtherCards) {
    std::vector<std::string> cards{"2 0", "1 1", "0 0", "1 1 1", "1 1 1", "2"};
    const std::vector<std::string> edit = copy_cards();
    cards.insert(cards.end(), edit.begin() + 1, edit.end());
    expect_normalised(
        Kind::displacement, cards,
        {"    2     0 ", "    1     1     1     1     0     1 ", " 0.00000E+00  0.00000E+00 ",
         " 0.10000E+01  0.10000E+01  0.10000E+01 ", " 0.10000E+01  0.10000E+01  0.10000E+01 ", "    2 "});
}

TEST(NormalisedDeck, ReplacesThatOfAnEarlierRun) {
    const Project project;
    project.write_work("BRELAN.TMP", text_of(std::vector<std::string>(100, "old")));
    project.write_work("TT55.TMP", text_of(std::vector<std::string>(100, "old")));
    project.write_work("T7.TMP", text_of(std::vector<std::string>(100, "old")));
    expect_finished(run_deck(project, Kind::displacement, copy_cards()));
    expect_work_file(project, "BRELAN.TMP", COPY_NORMALISED);
    EXPECT_EQ(lines_of(project.read_work("TT55.TMP")).size(), 7U);
    EXPECT_TRUE(project.exists_work("T7.TMP"));
    EXPECT_EQ(project.read_work("T7.TMP"), "");
}

}  // namespace
}  // namespace brelan::test
