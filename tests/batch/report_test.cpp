// What a person or the front end sees when a run starts, stops or fails: the prompt, the error report, the
// status file, the trace. A front end reads these files by column, so every text is held to the last blank.

#include "support/mesh.h"
#include "support/project.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <ostream>
#include <string>
#include <vector>

namespace brelan::test {
namespace {

const std::string FINISHED_STATUS = "           0";
const std::string ERROR_STATUS = "           1";

// Cards of a run that copies mesh.Mes to out.Mes as it stands.
std::vector<std::string> copy_cards() {
    return {"1 0", "mesh.Mes", "out.Mes", "1 1 1 1", "0", "0 0 0 0", "1 1"};
}

// A project in which the copying deck would finish.
void fill(const Project& project, Kind kind = Kind::displacement) {
    project.write("mesh.Mes", sample_mesh(kind).text());
    project.deck(text_of(copy_cards()));
}

// The nine lines of the front end's message: how many are used, then eight lines of 60 columns.
std::vector<std::string> message(const std::vector<std::string>& lines) {
    std::vector<std::string> result{"           7"};
    for (const auto& line : lines)
        result.push_back(padded(line, 60));
    result.resize(9, std::string(60, ' '));
    return result;
}

// The same eight lines as they stand on the console, with the stop text behind them.
std::string console_report(const std::vector<std::string>& lines) {
    std::vector<std::string> result = message(lines);
    result.erase(result.begin());
    return text_of(result) + "300\n";
}

void expect_error_stop(const RunResult& result) {
    EXPECT_EQ(result.status, 1) << result.err;
    EXPECT_EQ(result.signal, 0);
    EXPECT_FALSE(result.timed_out);
    EXPECT_EQ(result.err, "");
}

void expect_quiet_error_stop(const RunResult& result) {
    expect_error_stop(result);
    EXPECT_EQ(result.out, "300\n");
}

// ---------------------------------------------------------------------------------------------------------
// The error report
// ---------------------------------------------------------------------------------------------------------

TEST(ErrorReport, ListsTheCardBetweenDashesInTheListingFile) {
    const Project project;
    fill(project);
    project.deck(with_line(text_of(copy_cards()), 1, "1 0 0"));
    expect_quiet_error_stop(project.run());
    expect_work_file(
        project, "T7.TMP",
        {" ************* ERROR IN THE USER INPUT **************",
         " Card Group No: 1.1         requires     2 data entry", " But user input contains     3 data ",
         " Please check the following listing of input data   ", "", " -----", " 1 0 0", " -----"});
}

TEST(ErrorReport, GivesTheFrontEndNineLinesOfSixtyColumns) {
    const Project project;
    fill(project);
    project.deck(with_line(text_of(copy_cards()), 1, "1 0 0"));
    expect_quiet_error_stop(project.run());
    expect_work_file(project, "MESSAGE.INP",
                     {"           7", " Card Group No: 1.1         requires     2 data entry       ",
                      " But user input contains     3 data                         ",
                      " Please check the following listing of input data           ",
                      "                                                            ",
                      " -----                                                      ",
                      " 1 0 0                                                      ",
                      " -----                                                      ",
                      "                                                            "});
}

TEST(ErrorReport, SetsTheStatusForTheFrontEnd) {
    const Project project;
    fill(project);
    project.write_data("BRELAN2D.DAT", "           0\nleft by an earlier run\n");
    project.deck(with_line(text_of(copy_cards()), 1, "1 0 0"));
    expect_quiet_error_stop(project.run());
    expect_data_file(project, "BRELAN2D.DAT", {ERROR_STATUS});
}

TEST(ErrorReport, StandsOnTheConsoleForAPersonAndWaitsForALine) {
    const Project project;
    fill(project);
    project.write_data("MANUAL.DAT", "1\n");
    project.write_work("MESSAGE.INP", "for the front end\n");
    project.deck(with_line(text_of(copy_cards()), 1, "1 0 0"));
    RunOptions console;
    console.keep_input_open = true;
    console.time_limit = std::chrono::seconds(20);
    const RunResult result = project.run("\n", console);
    expect_error_stop(result);
    EXPECT_EQ(result.out,
              " Card Group No: 1.1         requires     2 data entry       \n"
              " But user input contains     3 data                         \n"
              " Please check the following listing of input data           \n"
              "                                                            \n"
              " -----                                                      \n"
              " 1 0 0                                                      \n"
              " -----                                                      \n"
              "                                                            \n"
              "300\n");
    // The message of the front end belongs to the front end: a person's run leaves it alone.
    expect_work_file(project, "MESSAGE.INP", {"for the front end"});
    expect_data_file(project, "BRELAN2D.DAT", {ERROR_STATUS});
}

TEST(ErrorReport, PauseEndsWithTheEndOfStandardInput) {
    const Project project;
    fill(project);
    project.write_data("MANUAL.DAT", "1\n");
    project.deck(with_line(text_of(copy_cards()), 1, "1 0 0"));
    const RunResult result = project.run();
    expect_error_stop(result);
    EXPECT_EQ(result.out, console_report({" Card Group No: 1.1         requires     2 data entry",
                                          " But user input contains     3 data ",
                                          " Please check the following listing of input data   ", "",
                                          " -----", " 1 0 0", " -----"}));
}

TEST(ErrorReport, WaitsForEverWhereNobodySitsAtTheConsole) {
    const Project project;
    fill(project);
    project.write_data("MANUAL.DAT", "1\n");
    project.deck(with_line(text_of(copy_cards()), 1, "1 0 0"));
    RunOptions console;
    console.keep_input_open = true;
    console.time_limit = std::chrono::milliseconds(1500);
    const RunResult result = project.run("", console);
    EXPECT_TRUE(result.timed_out);
    // What the person is to read must be there before the program waits.
    EXPECT_NE(result.out.find(" Card Group No: 1.1         requires     2 data entry"), std::string::npos);
    EXPECT_EQ(result.out.find("300"), std::string::npos);
}

TEST(ErrorReport, GoesToTheConsoleForAnyModeButZero) {
    for (const char* mode : {"2\n", "-1\n"}) {
        const Project project;
        fill(project);
        project.write_data("MANUAL.DAT", mode);
        project.deck(with_line(text_of(copy_cards()), 1, "1 0 0"));
        const RunResult result = project.run("\n");
        expect_error_stop(result);
        EXPECT_EQ(result.out.substr(0, 15), " Card Group No:") << mode;
        EXPECT_FALSE(project.exists_work("MESSAGE.INP")) << mode;
    }
}

TEST(ErrorReport, NamesTheInterfaceCardAsCardGroupOneOne) {
    const Project project;
    project.deck(text_of({"0", "a.Mes", "b.Mes", "c.Mes", "1 1"}));
    expect_quiet_error_stop(project.run());
    expect_work_file(
        project, "MESSAGE.INP",
        message({" Card Group No: 1.1         requires     1 data entry",
                 " But user input contains     2 data ",
                 " Please check the following listing of input data   ", "", " ---", " 1 1", " ---"}));
}

TEST(ErrorReport, ShowsTheMaximumForACardThatIsTooShort) {
    const Project project;
    fill(project);
    project.deck(with_line(text_of(copy_cards()), 4, "  17"));
    expect_quiet_error_stop(project.run());
    expect_work_file(
        project, "T7.TMP",
        {" ************* ERROR IN THE USER INPUT **************",
         " Card Group No: 3.2         requires     4 data entry", " But user input contains     1 data ",
         " Please check the following listing of input data   ", "", " ----", "   17", " ----"});
}

TEST(ErrorReport, ShowsABlankCardAsBlankData) {
    const Project project;
    fill(project);
    project.deck(with_line(text_of(copy_cards()), 6, ""));
    expect_quiet_error_stop(project.run());
    expect_work_file(
        project, "T7.TMP",
        {" ************* ERROR IN THE USER INPUT **************",
         " Card Group No: 3.3.1.1     requires     4 data entry", " But user input contains     0 data ",
         " Please check the following listing of input data   ", "", " ------------", "  Blank data ",
         " ------------"});
    expect_work_file(project, "MESSAGE.INP",
                     message({" Card Group No: 3.3.1.1     requires     4 data entry",
                              " But user input contains     0 data ",
                              " Please check the following listing of input data   ", "", " ------------",
                              "  Blank data ", " ------------"}));
}

TEST(ErrorReport, ShowsACardOfCommasAsBlankData) {
    const Project project;
    fill(project);
    project.deck(with_line(text_of(copy_cards()), 6, " , ,,  "));
    expect_quiet_error_stop(project.run());
    const auto lines = lines_of(project.read_work("T7.TMP"));
    ASSERT_EQ(lines.size(), 8U);
    EXPECT_EQ(lines[2], " But user input contains     0 data ");
    EXPECT_EQ(lines[6], "  Blank data ");
}

TEST(ErrorReport, ShowsACardWithoutABlankInItsColumnsAsBlankData) {
    const Project project;
    fill(project);
    project.deck(with_line(text_of(copy_cards()), 6, std::string(126, '1')));
    expect_quiet_error_stop(project.run());
    expect_work_file(
        project, "T7.TMP",
        {" ************* ERROR IN THE USER INPUT **************",
         " Card Group No: 3.3.1.1     requires     4 data entry", " But user input contains     0 data ",
         " Please check the following listing of input data   ", "", " ------------", "  Blank data ",
         " ------------"});
}

TEST(ErrorReport, DoesNotCountAValueThatReachesTheLastColumn) {
    // Four values, the last in columns 121 to 126: the card counts three and the dashes end under the third.
    std::string card = "0 0 0";
    card.resize(120, ' ');
    card += "100.00";
    ASSERT_EQ(card.size(), 126U);
    const Project project;
    fill(project);
    project.deck(with_line(text_of(copy_cards()), 6, card));
    expect_quiet_error_stop(project.run());
    expect_work_file(
        project, "T7.TMP",
        {" ************* ERROR IN THE USER INPUT **************",
         " Card Group No: 3.3.1.1     requires     4 data entry", " But user input contains     3 data ",
         " Please check the following listing of input data   ", "", " -----", " 0 0 0", " -----"});
}

TEST(ErrorReport, CountsAValueThatEndsOneColumnEarlier) {
    // Five values where four belong, the last in columns 120 to 125: all five count and the dashes reach
    // column 125.
    std::string card = "0 0 0 0";
    card.resize(119, ' ');
    card += "100.00";
    ASSERT_EQ(card.size(), 125U);
    const Project project;
    fill(project);
    project.deck(with_line(text_of(copy_cards()), 6, card));
    expect_quiet_error_stop(project.run());
    expect_work_file(
        project, "T7.TMP",
        {" ************* ERROR IN THE USER INPUT **************",
         " Card Group No: 3.3.1.1     requires     4 data entry", " But user input contains     5 data ",
         " Please check the following listing of input data   ", "", " " + std::string(125, '-'), " " + card,
         " " + std::string(125, '-')});
}

TEST(ErrorReport, CutsALongCardAtSixtyColumnsForTheFrontEndOnly) {
    // Columns 1 to 70 of the card; one blank stands in front of it in the listing, so 59 of them are left.
    const std::string card = "1000000000 2000000000 3000000000 4000000000 5000000000 6000000000 7000";
    ASSERT_EQ(card.size(), 70U);
    const Project project;
    fill(project);
    project.deck(with_line(text_of(copy_cards()), 6, card));
    expect_quiet_error_stop(project.run());
    expect_work_file(
        project, "T7.TMP",
        {" ************* ERROR IN THE USER INPUT **************",
         " Card Group No: 3.3.1.1     requires     4 data entry", " But user input contains     7 data ",
         " Please check the following listing of input data   ", "",
         " ----------------------------------------------------------------------", " " + card,
         " ----------------------------------------------------------------------"});
    expect_work_file(project, "MESSAGE.INP",
                     {"           7", " Card Group No: 3.3.1.1     requires     4 data entry       ",
                      " But user input contains     7 data                         ",
                      " Please check the following listing of input data           ",
                      "                                                            ",
                      " -----------------------------------------------------------",
                      " 1000000000 2000000000 3000000000 4000000000 5000000000 6000",
                      " -----------------------------------------------------------",
                      "                                                            "});
}

TEST(ErrorReport, CutsALongCardAtSixtyColumnsOnTheConsole) {
    const std::string card = "1000000000 2000000000 3000000000 4000000000 5000000000 6000000000 7000";
    const Project project;
    fill(project);
    project.write_data("MANUAL.DAT", "1\n");
    project.deck(with_line(text_of(copy_cards()), 6, card));
    const RunResult result = project.run("\n");
    expect_error_stop(result);
    EXPECT_EQ(result.out, console_report({" Card Group No: 3.3.1.1     requires     4 data entry",
                                          " But user input contains     7 data ",
                                          " Please check the following listing of input data   ", "",
                                          " -----------------------------------------------------------",
                                          " 1000000000 2000000000 3000000000 4000000000 5000000000 6000",
                                          " -----------------------------------------------------------"}));
}

TEST(ErrorReport, ShowsACardAsTheUserWroteIt) {
    // Leading blanks, commas, foreign characters and what is no number at all stay; only the blanks behind
    // the last value go. The card is counted before anybody tries to read a number.
    const Project project;
    fill(project);
    project.deck(with_line(text_of(copy_cards()), 7, "  1,,two;three ,4 5\xE4   "));
    expect_quiet_error_stop(project.run());
    expect_work_file(
        project, "T7.TMP",
        {" ************* ERROR IN THE USER INPUT **************",
         " Card Group No: 3.3.1.2     requires     2 data entry", " But user input contains     4 data ",
         " Please check the following listing of input data   ", "", " --------------------",
         "   1,,two;three ,4 5\xE4", " --------------------"});
}

TEST(ErrorReport, OverwritesTheMessageOfAnEarlierRun) {
    const Project project;
    fill(project);
    project.deck(with_line(text_of(copy_cards()), 6, "1 2 3 4 5 6"));
    expect_quiet_error_stop(project.run());
    project.deck(with_line(text_of(copy_cards()), 7, "1"));
    expect_quiet_error_stop(project.run());
    expect_work_file(project, "MESSAGE.INP",
                     message({" Card Group No: 3.3.1.2     requires     2 data entry",
                              " But user input contains     1 data ",
                              " Please check the following listing of input data   ", "", " -", " 1", " -"}));
    expect_work_file(
        project, "T7.TMP",
        {" ************* ERROR IN THE USER INPUT **************",
         " Card Group No: 3.3.1.2     requires     2 data entry", " But user input contains     1 data ",
         " Please check the following listing of input data   ", "", " -", " 1", " -"});
}

TEST(ErrorReport, KeepsWhatTheCheckerWroteBeforeTheWrongCard) {
    const Project project;
    fill(project);
    project.deck(with_line(text_of(copy_cards()), 4, "1"));
    expect_quiet_error_stop(project.run());
    expect_work_file(project, "BRELAN.TMP", {"    1     0 ", padded("..\\mesh.Mes"), padded("..\\out.Mes")});
}

TEST(ErrorReport, LeavesNoResultAndNoOpenTrace) {
    const Project project;
    fill(project);
    project.write("out.Mes", "an earlier result\n");
    project.write_data("DEBUG/Brelan_P1.dat", "1 43\n");
    project.deck(with_line(text_of(copy_cards()), 7, "1"));
    expect_quiet_error_stop(project.run());
    expect_file(project, "out.Mes", {"an earlier result"});
    const auto trace = lines_of(project.read_work("Brelan_P1.deb"));
    ASSERT_EQ(trace.size(), 4U);
    EXPECT_EQ(trace.back(), "  Pass 2 ");
}

// A wrong card of each kind: which card is told and how many values it may have.
struct WrongCard {
    const char* name;
    Kind kind;
    std::vector<std::string>
        cards;  // the last of them is the wrong one, but for those that must stand behind it
    const char* label;
    int maximum;
    int count;
    std::size_t behind = 0;
};

void PrintTo(const WrongCard& card, std::ostream* stream) {
    *stream << card.name;
}

std::vector<std::string> counted_edit(const std::vector<std::string>& more) {
    std::vector<std::string> cards{"1", "mesh.Mes", "out.Mes", "1 1"};
    cards.insert(cards.end(), more.begin(), more.end());
    return cards;
}

std::vector<std::string> base_cards(const std::vector<std::string>& more) {
    std::vector<std::string> cards{"2"};
    cards.insert(cards.end(), more.begin(), more.end());
    return cards;
}

std::vector<std::string> dam_cards(const std::vector<std::string>& more) {
    std::vector<std::string> cards{"3"};
    cards.insert(cards.end(), more.begin(), more.end());
    return cards;
}

const std::string EIGHT = "1 2 3 4 5 6 7 8";

std::vector<WrongCard> wrong_cards() {
    constexpr Kind D = Kind::displacement;
    constexpr Kind C = Kind::coupled;
    constexpr Kind T = Kind::temperature;
    constexpr Kind H = Kind::head;
    std::vector<WrongCard> rows = {
        {"ModeCardTooLong", D, {"1 2 3"}, "1.1", 2, 3},
        {"ModeCardBlank", D, {""}, "1.1", 2, 0},
        {"InterfaceTooLong", D, {"0", "a", "b", "c", "1 2"}, "1.1", 1, 2},
        {"InterfaceTooLongKeepingCoordinates", D, {"-1", "a", "b", "c", "1 2"}, "1.1", 1, 2},
        {"InterfaceCountTooLong", D, {"0", "a", "b", "c", "1", "2 2"}, "2.3", 1, 2},
        {"StartNumbersTooShort", D, {"1", "a", "b", "1", "0"}, "3.2", 4, 1, 1},
        {"StartNumbersTooLong", D, {"1", "a", "b", "1 1 1 1 1", "0"}, "3.2", 4, 5, 1},
        {"EditCardTooLong", D, counted_edit({"0 1 2 3 4 5 6"}), "3.3", 6, 7},
        {"MoveTooShort", D, counted_edit({"0", "0 0 0"}), "3.3.1.1", 4, 3},
        {"MoveTooLong", D, counted_edit({"0", "0 0 0 0 0"}), "3.3.1.1", 4, 5},
        {"ScaleTooShort", D, counted_edit({"0", "0 0 0 0", "1"}), "3.3.1.2", 2, 1},
        {"ScaleTooLong", D, counted_edit({"0", "0 0 0 0", "1 1 1"}), "3.3.1.2", 2, 3},
        {"CodeLocationTooLong", D, counted_edit({"1", "0 0"}), "3.3.2.1", 1, 2},
        {"CodeWindowTooShort", D, counted_edit({"1", "0", "0 0 1"}), "3.3.2.2.1", 4, 3},
        {"CodeListCountTooLong", D, counted_edit({"1", "1", "2 2"}), "3.3.2.2.2", 1, 2},
        {"CodePolylineCountTooLong", D, counted_edit({"1", "2", "2 2"}), "3.3.2.2.2", 1, 2},
        {"CodeMaterialCountBlank", D, counted_edit({"1", "3", ""}), "3.3.2.2.2", 1, 0},
        {"CodeSideTooLong", D, counted_edit({"1", "0", "0 0 1 1", "0 0"}), "3.3.2.3", 1, 2},
        {"CodeSideTooLongBehindAList", D, counted_edit({"1", "1", "2", "1 2", "0 0"}), "3.3.2.3", 1, 2},
        {"CodesTooLongDisplacement", D, counted_edit({"1", "0", "0 0 1 1", "0", "1 1 1 1"}), "3.3.2.4", 3, 4},
        {"CodesTooShortDisplacement", D, counted_edit({"1", "0", "0 0 1 1", "0", "1 1"}), "3.3.2.4", 3, 2},
        {"CodesTooShortCoupled", C, counted_edit({"1", "0", "0 0 1 1", "0", "1 1 1 1"}), "3.3.2.4", 5, 4},
        {"CodesTooLongCoupled", C, counted_edit({"1", "0", "0 0 1 1", "0", "1 1 1 1 1 1"}), "3.3.2.4", 5, 6},
        {"CodesTooLongTemperature", T, counted_edit({"1", "0", "0 0 1 1", "0", "1 1 1"}), "3.3.2.4", 2, 3},
        {"CodesTooShortHead", H, counted_edit({"1", "0", "0 0 1 1", "0", "1"}), "3.3.2.4", 2, 1},
        {"DeleteLocationTooLong", D, counted_edit({"2", "0 0"}), "3.3.3.1", 1, 2},
        {"DeleteWindowTooLong", D, counted_edit({"2", "0", "0 0 1 1 1"}), "3.3.3.2.1", 4, 5},
        {"DeleteListCountTooLong", D, counted_edit({"2", "1", "2 2"}), "3.3.3.2.2", 1, 2},
        {"DeleteSideTooLong", D, counted_edit({"2", "0", "0 0 1 1", "0 0"}), "3.3.3.3", 1, 2},
        {"MaterialLocationTooLong", D, counted_edit({"3", "0 0"}), "3.3.4.1", 1, 2},
        {"MaterialWindowTooShort", D, counted_edit({"3", "0", "0 0 1"}), "3.3.4.2.1", 4, 3},
        {"MaterialListCountTooLong", D, counted_edit({"3", "1", "2 2"}), "3.3.4.2.2", 1, 2},
        {"MaterialSideTooLong", D, counted_edit({"3", "0", "0 0 1 1", "0 0"}), "3.3.4.3", 1, 2},
        {"MaterialsTooShort", D, counted_edit({"3", "0", "0 0 1 1", "0", "1 1"}), "3.3.4.4", 3, 2},
        {"MaterialsTooLong", D, counted_edit({"3", "0", "0 0 1 1", "0", "1 1 1 1"}), "3.3.4.4", 3, 4},
        {"ModelTooLong", D, counted_edit({"5", "1 1"}), "3.3.6.1", 1, 2},
        {"TemplateTooShort", D, counted_edit({"5", "1", "1"}), "3.3.6.2", 3, 1},
        {"TemplateTooLong", D, counted_edit({"5", "1", "1 9.81 2 3"}), "3.3.6.2", 3, 4},
        {"TriangleTooShort", D, counted_edit({"5", "1", "1 9.81", "0 0 1 0 1"}), "3.3.6.3", 6, 5},
        {"TriangleTooLong", D, counted_edit({"5", "1", "1 9.81", "0 0 1 0 1 1 1"}), "3.3.6.3", 6, 7},
        {"ContinuumRowCountTooLong", D, counted_edit({"6", "1 1"}), "3.6.1", 1, 2},
        {"ContinuumRowTooShort", D, counted_edit({"6", "1", "1 1 2 3"}), "3.6.1-1", 8, 4},
        {"ContinuumRowTooLong", D, counted_edit({"6", "1", "1 1 2 3 4 5 6 7 8"}), "3.6.1-1", 8, 9},
        {"SecondContinuumRowTooShort", C, counted_edit({"6", "2", "1 1 2 3 4", "2 1 2"}), "3.6.1-1", 8, 3},
        {"ContinuumRowTooLongHead", H, counted_edit({"6", "1", "1 1 2 3 4 5 6 7 8"}), "3.6.1-1", 8, 9},
        {"BeamRowCountTooLong", D, counted_edit({"6", "0", "1 1"}), "3.6.2", 1, 2},
        {"BeamRowTooShort", D, counted_edit({"6", "0", "1", "1 1"}), "3.6.2-1", 5, 2},
        {"BeamRowTooLong", D, counted_edit({"6", "0", "1", "1 1 2 3 4 5"}), "3.6.2-1", 5, 6},
        {"TrussRowCountTooLong", D, counted_edit({"6", "0", "0", "1 1"}), "3.6.3", 1, 2},
        {"TrussRowTooShort", D, counted_edit({"6", "0", "0", "1", "1 1"}), "3.6.3-1", 5, 2},
        {"TrussRowTooLong", D, counted_edit({"6", "0", "0", "1", "1 1 2 3 4 5"}), "3.6.3-1", 5, 6},
        {"BlockCountsTooShort", D, base_cards({"1"}), "4.1", 6, 1},
        {"BlockCountsTooLong", D, base_cards({"1 1 1 1 1 1 1"}), "4.1", 6, 7},
        {"OriginTooShort", C, base_cards({"1 1", "0"}), "4.2", 3, 1},
        {"OriginTooLong", C, base_cards({"1 1", "0 0 0 0"}), "4.2", 3, 4},
        {"OriginTooLongTemperature", T, base_cards({"1 1", "0 0 0 0"}), "4.2", 3, 4},
        {"OriginTooLongHead", H, base_cards({"1 1", "0 0 0 0"}), "4.2", 3, 4},
        {"OriginTooLongDisplacement", D, base_cards({"1 1", "0 0 0"}), "4.2", 2, 3},
        {"ColumnTooShort", D, base_cards({"1 1", "0 0", "1 1"}), "4.3", 3, 2},
        {"SecondColumnTooLong", D, base_cards({"2 1", "0 0", "1 1 1", "1 1 1 1"}), "4.3", 3, 4},
        {"RowTooShort", D, base_cards({"1 1", "0 0", "1 1 1", "1 1"}), "4.4", 3, 2},
        {"BaseEditTooLong", D, base_cards({"1 1", "0 0", "1 1 1", "1 1 1", "0 0"}), "4.5", 1, 2},
        {"EditBehindTheBaseMesh", D, base_cards({"1 1", "0 0", "1 1 1", "1 1 1", "1", "a", "b", "1", "0"}),
         "3.2", 4, 1, 1},
        {"DamTooShort", D, dam_cards({"1 1 1"}), "5.1", 6, 3},
        {"DamTooLong", D, dam_cards({"1 1 1 1 1 1 1"}), "5.1", 6, 7},
        {"DamProfileTooShort", D, dam_cards({"0 0 0 0", "1 2 3 4 5 6 7"}), "5.2", 8, 7},
        {"DamProfileTooLong", D, dam_cards({"0 0 0 0", "1 2 3 4 5 6 7 8 9"}), "5.2", 8, 9},
        {"DamCoreTooShort", D, dam_cards({"0 1 0 0", EIGHT, "1 2 3 4 5 6 7"}), "5.3", 8, 7},
        {"DamGroundTooLong", D, dam_cards({"2 0 0 0", EIGHT, "1 2 3"}), "5.4-1", 2, 3},
        {"DamGroundTooShortBehindTheCore", D, dam_cards({"2 1 0 0", EIGHT, EIGHT, "1"}), "5.4-1", 2, 1},
        {"DamCutTooShort", D, dam_cards({"2 0 1 0", EIGHT, "1 2", "1 2", "1 2 3 4 5 6 7"}), "5.5", 8, 7},
    };
    return rows;
}

class WrongCardTest : public ::testing::TestWithParam<WrongCard> {};

TEST_P(WrongCardTest, TellsTheCardItsMaximumAndTheCount) {
    const WrongCard& row = GetParam();
    const Project project(row.kind);
    project.write("mesh.Mes", sample_mesh(row.kind).text());
    project.deck(commented_deck(row.cards));
    expect_quiet_error_stop(project.run());
    const auto lines = lines_of(project.read_work("T7.TMP"));
    ASSERT_EQ(lines.size(), 8U);
    EXPECT_EQ(lines[1], " Card Group No: " + padded(row.label, 11) + " requires " + i_field(row.maximum, 5) +
                            " data entry");
    EXPECT_EQ(lines[2], " But user input contains " + i_field(row.count, 5) + " data ");
    const std::string& wrong = row.cards.at(row.cards.size() - 1 - row.behind);
    EXPECT_EQ(lines[6], row.count == 0 ? "  Blank data " : " " + wrong);
    expect_data_file(project, "BRELAN2D.DAT", {ERROR_STATUS});
}

INSTANTIATE_TEST_SUITE_P(EveryCard, WrongCardTest, ::testing::ValuesIn(wrong_cards()),
                         [](const auto& information) { return std::string(information.param.name); });

// ---------------------------------------------------------------------------------------------------------
// How a run ends
// ---------------------------------------------------------------------------------------------------------

TEST(EndOfRun, FinishedRunSetsTheStatusToZeroWithoutAWord) {
    const Project project;
    fill(project);
    project.write_data("BRELAN2D.DAT", "1 and more text of an earlier run\nin two lines\n");
    expect_finished(project.run());
    expect_data_file(project, "BRELAN2D.DAT", {FINISHED_STATUS});
    EXPECT_FALSE(project.exists_work("MESSAGE.INP"));
}

TEST(EndOfRun, FailureLeavesTheStatusOfAnEarlierRun) {
    // A front end that does not clear the file reads a stale 0 here: nothing but a finished run or a user
    // error writes it.
    const Project project;
    fill(project);
    project.write_data("BRELAN2D.DAT", FINISHED_STATUS + "\n");
    project.write("mesh.Mes", "cut off\n");
    expect_failed(project.run(), {"mesh.Mes"});
    expect_data_file(project, "BRELAN2D.DAT", {FINISHED_STATUS});
}

TEST(EndOfRun, DeckThatEndsBehindTheModeCardIsAFailureAndNoCountError) {
    const Project project;
    fill(project);
    project.deck("* only the mode\n1\n");
    expect_failed(project.run(), {"deck.dat"});
    EXPECT_FALSE(project.exists_work("MESSAGE.INP"));
    EXPECT_EQ(project.read_work("T7.TMP"), "");
}

TEST(EndOfRun, UnknownModeHasNoCardsAndNoMesh) {
    for (const char* mode : {"4", "17"}) {
        const Project project;
        fill(project);
        project.write_data("DEBUG/Brelan_P1.dat", "1 43\n");
        project.deck(std::string(mode) + "\n");
        expect_failed(project.run(), {});
        expect_work_file(project, "BRELAN.TMP", {i_field(std::stoi(mode), 5) + "     0 "});
        // The run gets as far as the mesh that nobody opened.
        EXPECT_EQ(lines_of(project.read_work("Brelan_P1.deb")).back(), "  Pass 6 ") << mode;
    }
}

TEST(EndOfRun, ModeBelowMinusOneReadsTheCardsOfACombinationAndHasNoMesh) {
    const Project project;
    fill(project);
    project.deck(text_of({"-2", "a.Mes", "b.Mes", "c.Mes", "0"}));
    expect_failed(project.run(), {});
    expect_work_file(
        project, "BRELAN.TMP",
        {"   -2     0 ", padded("..\\a.Mes"), padded("..\\b.Mes"), padded("..\\c.Mes"), "    0 "});
}

TEST(EndOfRun, BaseMeshWithAnUnknownEditWordFailsWhereTheCardsOfAnEditShouldStand) {
    // The checker takes cards of an edit for 1 only, the run goes on to an edit for anything but 0.
    const Project project;
    fill(project);
    project.deck(text_of({"2", "1 1", "0 0", "1 1 1", "1 1 1", "2"}));
    expect_failed(project.run(), {"deck.dat"});
    EXPECT_EQ(project.read_work("T7.TMP"), "");
    EXPECT_FALSE(project.exists_data("BRELAN2D.DAT"));
}

TEST(EndOfRun, EarlierResultSurvivesAFailureBeforeTheWriting) {
    const Project project;
    fill(project);
    project.write("out.Mes", "an earlier result\n");
    project.write("mesh.Mes", without_line(sample_mesh(Kind::displacement).text(), 12));
    expect_failed(project.run(), {"mesh.Mes"});
    expect_file(project, "out.Mes", {"an earlier result"});
}

TEST(EndOfRun, ResultMayReplaceItsOwnSource) {
    const Project project;
    fill(project);
    project.deck(text_of({"1 0", "mesh.Mes", "mesh.Mes", "1 1 1 1", "0", "0 0 10 0", "1 1"}));
    expect_finished(project.run());
    Mesh expected = sample_mesh(Kind::displacement);
    expected.name = "..\\mesh.Mes";
    for (auto& node : expected.nodes)
        node.x += 10.0;
    expect_file(project, "mesh.Mes", lines_of(expected.text()));
}

TEST(EndOfRun, ResultIsCopiedWithFullLines) {
    const Project project;
    fill(project);
    expect_finished(project.run());
    std::vector<std::string> expected;
    for (const auto& line : lines_of(project.read("out.Mes")))
        expected.push_back(padded(line));
    ASSERT_EQ(expected.size(), 27U);
    expect_work_file(project, "MeshFile.Mes", expected);
}

// ---------------------------------------------------------------------------------------------------------
// Start-up: who names the deck
// ---------------------------------------------------------------------------------------------------------

const std::string PROMPT = " BRELAN-2D is running ... \n Type Input  File Name : ";

TEST(StartUp, AsksAPersonForTheDeck) {
    const Project project;
    fill(project);
    std::filesystem::remove(project.work_file("TFNAME.TMP"));
    project.write_data("MANUAL.DAT", "1\n");
    project.write_data("HUBPLOT.DAT", "0\n");
    const RunResult result = project.run("..\\deck.dat\n");
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_EQ(result.out, PROMPT);
    EXPECT_EQ(result.err, "");
    EXPECT_TRUE(project.exists("out.Mes"));
}

TEST(StartUp, AsksAlsoWhenTheFrontEndModeIsNeitherZeroNorOne) {
    const Project project;
    fill(project);
    project.write_data("MANUAL.DAT", "1\n");
    project.write_data("HUBPLOT.DAT", "2\n");
    const RunResult result = project.run("..\\deck.dat\n");
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_EQ(result.out, PROMPT);
}

TEST(StartUp, FrontEndNamesTheDeckInItsFileAndNobodyIsAsked) {
    const Project project;
    fill(project);
    for (const char* front_end : {"0\n", "1\n", "5\n"}) {
        project.write_data("HUBPLOT.DAT", front_end);
        expect_finished(project.run("..\\another.dat\n"));
    }
}

TEST(StartUp, ConsoleModeOtherThanOneDoesNotAsk) {
    const Project project;
    fill(project);
    project.write_data("MANUAL.DAT", "2\n");
    project.write_data("HUBPLOT.DAT", "0\n");
    expect_finished(project.run("..\\another.dat\n"));
}

TEST(StartUp, FrontEndModeGoesBeforeTheConsoleButErrorsStillGoToTheConsole) {
    const Project project;
    fill(project);
    project.write_data("MANUAL.DAT", "1\n");
    project.write_data("HUBPLOT.DAT", "1\n");
    expect_finished(project.run("..\\another.dat\n"));

    project.deck(with_line(text_of(copy_cards()), 1, "1 0 0"));
    const RunResult result = project.run("\n");
    expect_error_stop(result);
    EXPECT_EQ(result.out, console_report({" Card Group No: 1.1         requires     2 data entry",
                                          " But user input contains     3 data ",
                                          " Please check the following listing of input data   ", "",
                                          " -----", " 1 0 0", " -----"}));
    EXPECT_FALSE(project.exists_work("MESSAGE.INP"));
}

TEST(StartUp, ReportFollowsThePromptAndTakesTheNextLineAsTheAnswerToThePause) {
    const Project project;
    fill(project);
    project.write_data("MANUAL.DAT", "1\n");
    project.write_data("HUBPLOT.DAT", "0\n");
    project.deck(with_line(text_of(copy_cards()), 1, "1 0 0"));
    RunOptions console;
    console.keep_input_open = true;
    console.time_limit = std::chrono::seconds(20);
    const RunResult result = project.run("..\\deck.dat\n\n", console);
    expect_error_stop(result);
    EXPECT_EQ(result.out, PROMPT + console_report({" Card Group No: 1.1         requires     2 data entry",
                                                   " But user input contains     3 data ",
                                                   " Please check the following listing of input data   ", "",
                                                   " -----", " 1 0 0", " -----"}));
}

TEST(StartUp, AnswerCountsUpToColumn126) {
    // A deck in the working directory whose name fills the field; what is typed further right is not seen.
    const std::string name = std::string(122, 'd') + ".dat";
    ASSERT_EQ(name.size(), 126U);
    const Project project;
    fill(project);
    project.write_work(name, text_of(copy_cards()));
    project.write_data("MANUAL.DAT", "1\n");
    project.write_data("HUBPLOT.DAT", "0\n");
    const RunResult result = project.run(name + "lost\n");
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_TRUE(project.exists("out.Mes"));
}

TEST(StartUp, AnswerIsTakenAsTypedWithoutTheParentDirectory) {
    // The names on cards are looked for in the project directory, the deck's own name where it says.
    const Project project;
    fill(project);
    project.write_work("here.dat", text_of(copy_cards()));
    project.write_data("MANUAL.DAT", "1\n");
    project.write_data("HUBPLOT.DAT", "0\n");
    const RunResult found = project.run("here.dat\n");
    EXPECT_EQ(found.status, 0) << found.err;
    const RunResult missing = project.run("deck.dat\n");
    EXPECT_EQ(missing.status, 2);
    EXPECT_EQ(missing.out, PROMPT);
    EXPECT_NE(missing.err.find("deck.dat"), std::string::npos) << missing.err;
}

TEST(StartUp, NoAnswerIsAMessage) {
    for (const char* answer : {"", "\n", "     \n"}) {
        const Project project;
        fill(project);
        project.write_data("MANUAL.DAT", "1\n");
        project.write_data("HUBPLOT.DAT", "0\n");
        const RunResult result = project.run(answer);
        EXPECT_EQ(result.status, 2);
        EXPECT_EQ(result.out, PROMPT);
        EXPECT_EQ(result.err.rfind("brelan2d: ", 0), 0U) << result.err;
        EXPECT_EQ(std::count(result.err.begin(), result.err.end(), '\n'), 1) << result.err;
    }
}

TEST(StartUp, FilesOfTheDataDirectoryAreFreeField) {
    // A person may have edited them: leading blank lines, commas, text behind the value, line ends of another
    // system.
    const Project project;
    fill(project);
    project.write_data("PROGRAM.DAT", "\n   1   ! edition\n");
    project.write_data("MANUAL.DAT", "0, front end\r\n");
    project.write_data("HUBPLOT.DAT", "\t1");
    expect_finished(project.run());
}

TEST(StartUp, DirectoriesMatchWithoutRegardToCase) {
    const Project project;
    fill(project);
    std::filesystem::rename(project.drive() / "Vork", project.drive() / "vORK");
    std::filesystem::rename(project.work_file("TFNAME.TMP"), project.work_file("tfName.tmp"));
    std::filesystem::rename(project.file("mesh.Mes"), project.file("MESH.MES"));
    const RunResult result = project.run();
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_TRUE(std::filesystem::exists(project.drive() / "vORK" / "Qx" / "Qxdata" / "BRELAN2D.DAT"));
    EXPECT_FALSE(std::filesystem::exists(project.drive() / "VORK"));
}

TEST(StartUp, DriveIsFoundInTheUsersDataDirectoryWithoutTheVariable) {
    const Project project;
    fill(project);
    RunOptions options;
    options.without = {"BRELAN_DRIVE_C"};

    // XDG_DATA_HOME names it; else it is below the home directory.
    std::filesystem::create_directories(project.file("share/brelan2d"));
    std::filesystem::copy(project.drive(), project.file("share/brelan2d/C"),
                          std::filesystem::copy_options::recursive);
    options.environment = {{"XDG_DATA_HOME", project.file("share").string()},
                           {"HOME", project.file("no").string()}};
    expect_finished(project.run("", options));
    EXPECT_TRUE(project.exists("share/brelan2d/C/Vork/Qx/Qxdata/BRELAN2D.DAT"));
    EXPECT_FALSE(project.exists_data("BRELAN2D.DAT"));

    std::filesystem::create_directories(project.file("home/.local"));
    std::filesystem::rename(project.file("share"), project.file("home/.local/share"));
    std::filesystem::remove(project.file("home/.local/share/brelan2d/C/Vork/Qx/Qxdata/BRELAN2D.DAT"));
    options.environment = {{"HOME", project.file("home").string()}};
    options.without.push_back("XDG_DATA_HOME");
    expect_finished(project.run("", options));
    const char* const written = "home/.local/share/brelan2d/C/Vork/Qx/Qxdata/BRELAN2D.DAT";
    EXPECT_TRUE(project.exists(written));

    // An empty variable counts as none.
    std::filesystem::remove(project.file(written));
    options.without.clear();
    options.environment = {
        {"BRELAN_DRIVE_C", ""}, {"XDG_DATA_HOME", ""}, {"HOME", project.file("home").string()}};
    expect_finished(project.run("", options));
    EXPECT_TRUE(project.exists(written));
}

TEST(StartUp, VariableOfTheDriveGoesBeforeTheUsersDirectories) {
    const Project project;
    fill(project);
    RunOptions options;
    options.environment = {{"XDG_DATA_HOME", project.file("share").string()},
                           {"HOME", project.file("home").string()}};
    for (const char* other : {"share/brelan2d/C", "home/.local/share/brelan2d/C"}) {
        std::filesystem::create_directories(project.file(other));
        std::filesystem::copy(project.drive(), project.file(other), std::filesystem::copy_options::recursive);
    }
    expect_finished(project.run("", options));
    EXPECT_TRUE(project.exists_data("BRELAN2D.DAT"));
    for (const char* other : {"share/brelan2d/C", "home/.local/share/brelan2d/C"})
        EXPECT_FALSE(project.exists(std::string(other) + "/Vork/Qx/Qxdata/BRELAN2D.DAT")) << other;
}

TEST(StartUp, DriveWithoutAPlaceIsAMessage) {
    const Project project;
    fill(project);
    RunOptions options;
    options.without = {"BRELAN_DRIVE_C", "XDG_DATA_HOME", "HOME"};
    expect_failed(project.run("", options), {"BRELAN_DRIVE_C"});
}

// ---------------------------------------------------------------------------------------------------------
// The pass trace
// ---------------------------------------------------------------------------------------------------------

const std::string MODULE_LINE_START = "  32 BIT RELEASE: MODULESIZE = ";

// The trace without the module line, which holds a number of no meaning.
std::vector<std::string> trace_of(const Project& project, const std::string& name) {
    std::vector<std::string> lines = lines_of(project.read_work(name));
    const auto module = std::find_if(lines.begin(), lines.end(), [](const std::string& line) {
        return line.rfind(MODULE_LINE_START, 0) == 0;
    });
    if (module != lines.end()) {
        EXPECT_EQ(module->size(), MODULE_LINE_START.size() + 12)
            << "a blank and eleven columns for the number";
        lines.erase(module);
    }
    return lines;
}

const std::vector<std::string> WHOLE_TRACE = {"  Start debugging ... ",
                                              "  Pass 1 ",
                                              "  Pass 2 ",
                                              "  Pass 3 ...",
                                              "  Pass 4D ",
                                              "  Pass 5A ",
                                              "  Pass 6 ",
                                              "  Pass 8 ",
                                              "  Pass 9 ",
                                              "  Pass 10 ",
                                              "  Pass 11 ",
                                              "  Pass 12 ",
                                              "  Pass 13 ",
                                              "  Pass 14.7  NMOVE =            0",
                                              "  Pass 20 ",
                                              "  Pass 21 ",
                                              "  Pass 22.1 ",
                                              "  Pass 22.2 ",
                                              "  Pass 23 ",
                                              "  Pass 24 ",
                                              "  Pass 25 ",
                                              "  Pass 26 ",
                                              "  Pass 27.1 ",
                                              "  Pass 27.2 ",
                                              "  Pass 43 "};

std::vector<std::string> trace_up_to(const std::string& last) {
    const auto end = std::find(WHOLE_TRACE.begin(), WHOLE_TRACE.end(), last);
    return {WHOLE_TRACE.begin(), end + 1};
}

TEST(Trace, ShowsEveryPassOfAWholeRun) {
    const Project project;
    fill(project);
    project.write_data("DEBUG/Brelan_P1.dat", "1 99.0\n");
    project.write_work("Brelan_P1.deb", text_of(std::vector<std::string>(100, "from an earlier run")));
    expect_finished(project.run());
    EXPECT_EQ(first_difference(WHOLE_TRACE, trace_of(project, "Brelan_P1.deb")), "");
    const auto lines = lines_of(project.read_work("Brelan_P1.deb"));
    ASSERT_GT(lines.size(), 2U);
    EXPECT_EQ(lines[1].substr(0, MODULE_LINE_START.size()), MODULE_LINE_START);
    EXPECT_FALSE(project.exists_work("fort.888"));
}

TEST(Trace, IsNamedAfterTheEdition) {
    const std::vector<std::pair<int, std::string>> editions = {{1, "P1"},  {2, "P2"}, {3, "P3"}, {4, "P4"},
                                                               {5, "P5"},  {6, "P6"}, {9, "P7"}, {10, "P8"},
                                                               {11, "P9"}, {12, "P0"}};
    for (const auto& [edition, code] : editions) {
        const Project project(edition);
        const Kind kind = edition == 5 || edition == 6    ? Kind::temperature
                          : edition == 9 || edition == 10 ? Kind::head
                          : edition == 1                  ? Kind::displacement
                                                          : Kind::coupled;
        fill(project, kind);
        project.write_data("DEBUG/Brelan_" + code + ".dat", "2 43\n");
        expect_finished(project.run());
        EXPECT_EQ(first_difference(WHOLE_TRACE, trace_of(project, "Brelan_" + code + ".deb")), "") << edition;
        const MeshCheck check = expect_sound_mesh(project, "out.Mes", kind);
        EXPECT_EQ(check.mesh.nodes.size(), 7U) << edition;
    }
}

TEST(Trace, LeavesOutThePassesOfMissingSections) {
    const Project project;
    fill(project);
    Mesh mesh = sample_mesh(Kind::displacement);
    mesh.continuum.clear();
    mesh.trusses.clear();
    project.write("mesh.Mes", mesh.text());
    project.write_data("DEBUG/Brelan_P1.dat", "1 43\n");
    expect_finished(project.run());
    const std::vector<std::string> expected = {"  Start debugging ... ",
                                               "  Pass 1 ",
                                               "  Pass 2 ",
                                               "  Pass 3 ...",
                                               "  Pass 4D ",
                                               "  Pass 5A ",
                                               "  Pass 6 ",
                                               "  Pass 8 ",
                                               "  Pass 9 ",
                                               "  Pass 12 ",
                                               "  Pass 14.7  NMOVE =            0",
                                               "  Pass 20 ",
                                               "  Pass 21 ",
                                               "  Pass 22.1 ",
                                               "  Pass 22.2 ",
                                               "  Pass 23 ",
                                               "  Pass 25 ",
                                               "  Pass 27.1 ",
                                               "  Pass 27.2 ",
                                               "  Pass 43 "};
    EXPECT_EQ(first_difference(expected, trace_of(project, "Brelan_P1.deb")), "");
}

TEST(Trace, ShowsThePassesOfAPolylineSelection) {
    const Project project;
    fill(project);
    project.deck(text_of({"1", "mesh.Mes", "out.Mes", "1 1", "1", "2", "2", "1 7", "0", "1 1 1"}));
    project.write_data("DEBUG/Brelan_P1.dat", "1 43\n");
    expect_finished(project.run());
    const auto lines = trace_of(project, "Brelan_P1.deb");
    ASSERT_GT(lines.size(), 12U);
    EXPECT_EQ(first_difference({"  Pass 5B ", "  Pass 6 ", "  Pass 7A ", "  Pass 7B ", "  Pass 7C-1 ",
                                "  Pass 7C-2 ", "  Pass 7D ", "  Pass 8 "},
                               {lines.begin() + 5, lines.begin() + 13}),
              "");
}

TEST(Trace, StaysOffWithoutADebugFile) {
    const Project project;
    fill(project);
    project.write_work("Brelan_P1.deb", "kept\n");
    expect_finished(project.run());
    expect_work_file(project, "Brelan_P1.deb", {"kept"});
}

TEST(Trace, StaysOffWithADebugLevelOfZero) {
    for (const char* level : {"0 43.0\n", "-1 43.0\n"}) {
        const Project project;
        fill(project);
        project.write_data("DEBUG/Brelan_P1.dat", level);
        expect_finished(project.run());
        EXPECT_FALSE(project.exists_work("Brelan_P1.deb")) << level;
        EXPECT_FALSE(project.exists_work("fort.888")) << level;
    }
}

TEST(Trace, HoldsOnlyItsFirstLineBelowPassOne) {
    const Project project;
    fill(project);
    project.write_data("DEBUG/Brelan_P1.dat", "1 0.5\n");
    expect_finished(project.run());
    expect_work_file(project, "Brelan_P1.deb", {"  Start debugging ... "});
    EXPECT_FALSE(project.exists_work("fort.888"));
}

TEST(Trace, EndsBehindThePassItIsAskedFor) {
    // The run goes on to its end; only the trace is closed, complete on disk.
    const std::vector<std::pair<std::string, std::string>> cases = {
        {"1.0", "  Pass 1 "},
        {"2.0", "  Pass 2 "},
        {"3", "  Pass 3 ..."},
        {"4.4", "  Pass 4D "},
        {"5.1", "  Pass 5A "},
        {"13", "  Pass 13 "},
        {"14.6", "  Pass 14.7  NMOVE =            0"},
        {"22.1", "  Pass 22.1 "},
        {"22.2", "  Pass 22.2 "},
        {"27.1", "  Pass 27.1 "},
        {"43.0", "  Pass 43 "}};
    for (const auto& [number, last] : cases) {
        const Project project;
        fill(project);
        project.write_data("DEBUG/Brelan_P1.dat", "1 " + number + "\n");
        expect_finished(project.run());
        EXPECT_EQ(first_difference(trace_up_to(last), trace_of(project, "Brelan_P1.deb")), "") << number;
        EXPECT_FALSE(project.exists_work("fort.888")) << number;
        EXPECT_TRUE(project.exists("out.Mes")) << number;
    }
}

TEST(Trace, PassBetweenTwoNumbersEndsWithTheLowerOne) {
    const Project project;
    fill(project);
    project.write_data("DEBUG/Brelan_P1.dat", "1 14.5\n");
    expect_finished(project.run());
    EXPECT_EQ(first_difference(trace_up_to("  Pass 13 "), trace_of(project, "Brelan_P1.deb")), "");
}

TEST(Trace, IsCompleteOnDiskWhenTheRunFails) {
    const Project project;
    fill(project);
    project.write_data("DEBUG/Brelan_P1.dat", "1 43\n");
    project.write("mesh.Mes", first_lines(sample_mesh(Kind::displacement).text(), 9));
    expect_failed(project.run(), {"mesh.Mes"});
    EXPECT_EQ(first_difference(trace_up_to("  Pass 4D "), trace_of(project, "Brelan_P1.deb")), "");
}

TEST(Trace, DeckOfAnUnnamedEditionIsOfTheDisplacementKindAndHasNoTrace) {
    for (const int edition : {7, 8, 0, 13, -1, 99}) {
        const Project project(edition);
        fill(project);
        for (const char* code : {"P1", "P7", "P8"}) {
            project.write_data("DEBUG/Brelan_" + std::string(code) + ".dat", "1 43\n");
        }
        expect_finished(project.run());
        Mesh expected = sample_mesh(Kind::displacement);
        expected.name = "..\\out.Mes";
        expect_file(project, "out.Mes", lines_of(expected.text()));
        for (const char* code : {"P1", "P7", "P8"}) {
            EXPECT_FALSE(project.exists_work("Brelan_" + std::string(code) + ".deb")) << edition;
        }
        EXPECT_FALSE(project.exists_work("fort.888")) << edition;
    }
}

}  // namespace
}  // namespace brelan::test
