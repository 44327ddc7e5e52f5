// Whole runs at the limits of an edit: start numbers, gaps, corners that are no nodes, attributes that change
// on their way out.
#include <gtest/gtest.h>

#include <string>

#include "batch/edit_run.h"

namespace brelan::test {
namespace {

const Lines IDENTITY{"0", "0 0 0 0", "1 1"};

// A mesh of the head kind, the shortest of the four: its counts, its nodes with their coordinates, its
// elements.
Lines head_mesh(const std::string& counts, const Lines& nodes, const Lines& sections) {
    return Lines{"limits", "counts", counts, "nodes", "nodes"} + nodes + sections;
}
const Lines ELEMENTS{"elements", "elements"};
const Lines SQUARE{"1 0 0 0 0 0 0", "2 0 0 1 0 0 0", "3 0 0 1 1 0 0", "4 0 0 0 1 0 0"};

const std::string ZERO = " 0.000000E+00 ";
const std::string ONE = " 0.100000E+01 ";
const std::string MINUS = "-0.100000E+01 ";

std::string node(const std::string& number, const std::string& x, const std::string& y) {
    return std::string(7 - number.size(), ' ') + number + "    0    0 " + x + y + ZERO + ZERO;
}
const Lines SQUARE_WRITTEN{node("1", ZERO, ZERO), node("2", ONE, ZERO), node("3", ONE, ONE),
                           node("4", ZERO, ONE)};

void expect_head(const Lines& mesh, const Lines& cards, const std::string& counts, const Lines& nodes,
                 const Lines& sections, const char* source = __builtin_FILE(), int line = __builtin_LINE()) {
    expect_result(Kind::head, mesh, cards,
                  Lines{counts} + node_headings(Kind::head) + nodes + sections + CLOSING, source, line);
}

// --- start numbers -----------------------------------------------------------------------------------------

// Continuum elements 1 and 100, beams 101 and 103, trusses 105 and 106.
const Lines THREE_TYPES =
    head_mesh("4 2 2 2", SQUARE,
              ELEMENTS + Lines{"1 1 2 3 4 1 0", "100 1 2 3 4 1 0"} + ELEMENTS +
                  Lines{"101 1 2 1 1", "103 2 3 1 1"} + ELEMENTS + Lines{"105 3 4 1 1", "106 4 1 1 1"});

Lines three_types(const Lines& numbers) {
    const auto line = [&](std::size_t i, const std::string& rest) {
        return std::string(7 - numbers[i].size(), ' ') + numbers[i] + rest;
    };
    const std::string square = "      1      2      3      4     1    0";
    return continuum_headings(Kind::head) + Lines{line(0, square), line(1, square)} + BEAM_HEADINGS +
           Lines{line(2, "      1      2      1      1"), line(3, "      2      3      1      1")} +
           TRUSS_HEADINGS +
           Lines{line(4, "      3      4      1      1"), line(5, "      4      1      1      1")};
}

void expect_numbers(const std::string& starts, const Lines& numbers, const char* source = __builtin_FILE(),
                    int line = __builtin_LINE()) {
    expect_head(THREE_TYPES, Lines{starts} + IDENTITY, "     4       2       2       2", SQUARE_WRITTEN,
                three_types(numbers), source, line);
}

TEST(EditNumbers, BeamsThatWouldOverlapAreRaised) {
    expect_numbers("1 1 50 200", {"1", "100", "101", "103", "200", "201"});
}

TEST(EditNumbers, TrussesAreRaisedBehindTheRaisedBeams) {
    expect_numbers("1 1 50 60", {"1", "100", "101", "103", "104", "105"});
}

TEST(EditNumbers, StartsLeftOutFollowEachOther) {
    expect_numbers("11 1", {"11", "110", "111", "113", "114", "115"});
}

TEST(EditNumbers, StartsThatKeepTheTypesApartStay) {
    expect_numbers("1 1 300 302", {"1", "100", "300", "302", "303", "304"});
    expect_numbers("1 1 300 400", {"1", "100", "300", "302", "400", "401"});
}

TEST(EditNumbers, TrussesFollowBeamsThatWereNotRaised) {
    expect_numbers("1 1 300 200", {"1", "100", "300", "302", "303", "304"});
}

TEST(EditNumbers, ElementBeyondTheTableIsAMessage) {
    expect_edit_fails(Kind::head, THREE_TYPES, Lines{"99900 1"} + IDENTITY,
                      {"mesh.Mes, line 13: element 100", "99990", "99999"});
}

TEST(EditNumbers, NodeBeyondTheTableIsAMessage) {
    expect_edit_fails(Kind::head, THREE_TYPES, Lines{"1 99988"} + IDENTITY,
                      {"mesh.Mes, line 9: node 4", "99990", "99991"});
}

TEST(EditNumbers, NodeBelowTheTableIsAMessage) {
    expect_edit_fails(Kind::head, THREE_TYPES, Lines{"1 0"} + IDENTITY,
                      {"mesh.Mes, line 6: node 1", "99990"});
    expect_edit_fails(Kind::head, THREE_TYPES, Lines{"-5 1"} + IDENTITY, {"mesh.Mes, line 12: element 1"});
}

// --- gaps and the ends of the tables -----------------------------------------------------------------------

TEST(EditNumbers, GapsBetweenNodesStay) {
    const Lines mesh = head_mesh("3 1 0 0", {"10 0 0 0 0 0 0", "20 0 0 1 0 0 0", "30 0 0 1 1 0 0"},
                                 ELEMENTS + Lines{"7 10 20 30 0 1 0"});
    expect_head(mesh, Lines{"1 1"} + IDENTITY, "     3       1       0       0",
                {node("1", ZERO, ZERO), node("11", ONE, ZERO), node("21", ONE, ONE)},
                continuum_headings(Kind::head) + Lines{"      1      1     11     21      0     1    0"});
}

TEST(EditNumbers, HighestNumbersAreLegal) {
    const Lines mesh = head_mesh("3 2 0 0", {"1 0 0 0 0 0 0", "20 0 0 1 0 0 0", "99990 0 0 1 1 0 0"},
                                 ELEMENTS + Lines{"1 1 20 99990 0 1 0", "99990 99990 1 20 0 1 0"});
    expect_head(mesh, Lines{"1 1"} + IDENTITY, "     3       2       0       0",
                {node("1", ZERO, ZERO), node("20", ONE, ZERO), node("99990", ONE, ONE)},
                continuum_headings(Kind::head) + Lines{"      1      1     20  99990      0     1    0",
                                                       "  99990  99990      1     20      0     1    0"});
}

TEST(EditNumbers, NumberBehindTheHighestIsAMessage) {
    expect_edit_fails(Kind::head, head_mesh("1 0 0 0", {"99991 0 0 0 0 0 0"}, {}), Lines{"1 1"} + IDENTITY,
                      {"mesh.Mes, line 6: ", "99990", "99991"});
    for (const char* element : {"99991 1 2 3 4 1 0", "0 1 2 3 4 1 0", "5 1 2 3 99991 1 0"})
        expect_edit_fails(Kind::head, head_mesh("4 1 0 0", SQUARE, ELEMENTS + Lines{element}),
                          Lines{"1 1"} + IDENTITY, {"mesh.Mes, line 12: ", "99990"});
}

// --- corners that are no nodes -----------------------------------------------------------------------------

void expect_corners(const std::string& scales, const std::string& element, const std::string& written) {
    SCOPED_TRACE("scales " + scales + ", element " + element);
    const bool left = scales.starts_with('-');
    const std::string one = left ? MINUS : ONE;
    expect_head(
        head_mesh("4 1 0 0", SQUARE, ELEMENTS + Lines{element}), {"1 101", "0", "0 0 0 0", scales},
        "     4       1       0       0",
        {node("101", ZERO, ZERO), node("102", one, ZERO), node("103", one, ONE), node("104", ZERO, ONE)},
        continuum_headings(Kind::head) + Lines{written});
}

TEST(EditCorners, NegativeFourthCornerMakesNoTriangle) {
    // It goes through the row of a quadrilateral, as it stands.
    expect_corners("1 1", "1 1 2 3 -4 1 0", "      1    101    102    103     -4     1    0");
    expect_corners("-1 1", "1 1 2 3 -4 1 0", "      1    102    101     -4    103     1    0");
}

TEST(EditCorners, CornerOfZeroStaysZero) {
    expect_corners("1 1", "1 1 0 3 4 1 0", "      1    101      0    103    104     1    0");
    expect_corners("-1 1", "1 1 0 3 4 1 0", "      1      0    101    104    103     1    0");
}

TEST(EditCorners, TriangleHasNoFourthCornerBehindAMirror) {
    expect_corners("-1 1", "1 1 2 3 0 1 0", "      1    102    101    103      0     1    0");
}

TEST(EditCorners, ScaleOfZeroIsNoMirror) {
    expect_head(head_mesh("4 1 0 0", SQUARE, ELEMENTS + Lines{"1 1 2 3 4 1 0"}),
                {"1 1", "0", "0 0 0 0", "0 1"}, "     4       1       0       0",
                {node("1", ZERO, ZERO), node("2", ZERO, ZERO), node("3", ZERO, ONE), node("4", ZERO, ONE)},
                continuum_headings(Kind::head) + Lines{"      1      1      2      3      4     1    0"});
}

// --- attributes and values ---------------------------------------------------------------------------------

TEST(EditValues, NegativeIDHIsWrittenAsItsAbsoluteValueLess100) {
    for (const Kind kind : {Kind::temperature, Kind::head}) {
        Lines mesh = head_mesh("4 6 0 0", SQUARE,
                               ELEMENTS + Lines{"1 1 2 3 4 1 -105", "2 1 2 3 4 1 -100", "3 1 2 3 4 1 -1",
                                                "4 1 2 3 4 1 0", "5 1 2 3 4 1 105", "6 1 2 3 4 1 -1234"});
        const std::string square = "      1      2      3      4     1";
        expect_result(kind, mesh, Lines{"1 1"} + IDENTITY,
                      Lines{"     4       6       0       0"} + node_headings(kind) + SQUARE_WRITTEN +
                          continuum_headings(kind) +
                          Lines{"      1" + square + "    5", "      2" + square + "    0",
                                "      3" + square + "  -99", "      4" + square + "    0",
                                "      5" + square + "  105", "      6" + square + " 1134"} +
                          CLOSING);
    }
}

TEST(EditValues, NegativeIDHOfANewRecordIsWrittenTheSameWay) {
    expect_head(head_mesh("4 1 0 0", SQUARE, ELEMENTS + Lines{"1 1 2 3 4 1 3"}),
                {"1 1", "6", "1", "1 1 2 3 4 1 -107", "0", "0"}, "     4       1       0       0",
                SQUARE_WRITTEN,
                continuum_headings(Kind::head) + Lines{"      1      1      2      3      4     1    7"});
}

TEST(EditValues, IDHTooWideForItsFieldIsAMessage) {
    // It shows as asterisks in the working copy, which no reader takes for a number.
    for (const char* element : {"1 1 2 3 4 1 -10000", "1 1 2 3 4 1 100000", "1 1 2 3 4 1 -2147483648"})
        expect_edit_fails(Kind::head, head_mesh("4 1 0 0", SQUARE, ELEMENTS + Lines{element}),
                          Lines{"1 1"} + IDENTITY, {"mesh.Mes, line 12: expected an integer"});
}

TEST(EditValues, MovedCoordinatesAreThoseOf32Bits) {
    // (0.1 - 0) * 3 + 0 is 0.3 in six digits; 16777216 + 1 has no place of its own.
    expect_head(head_mesh("2 0 0 0", {"1 0 0 0.1 16777216 0 0", "2 0 0 1E-3 -7 1 2"}, {}),
                {"1 1", "0", "0 0 0 1", "3 1"}, "     2       0       0       0",
                {"      1    0    0  0.300000E+00  0.167772E+08  0.000000E+00  0.000000E+00 ",
                 "      2    0    0  0.300000E-02 -0.600000E+01  0.100000E+01  0.200000E+01 "},
                {});
}

TEST(EditValues, ShiftHasTheFiveDigitsOfTheNormalisedDeck) {
    expect_head(head_mesh("1 0 0 0", {"1 0 0 0 0 0 0"}, {}), {"1 1", "0", "0 0 1.234567 -0.9876543", "1 1"},
                "     1       0       0       0", {node("1", " 0.123460E+01 ", "-0.987650E+00 ")}, {});
}

TEST(EditValues, NewMaterialZeroIsAMaterial) {
    expect_head(head_mesh("4 1 0 0", SQUARE, ELEMENTS + Lines{"1 1 2 3 4 5 3"}),
                {"1 1", "6", "1", "5 -10 -10 -10 -10 0", "0", "0"}, "     4       1       0       0",
                SQUARE_WRITTEN,
                continuum_headings(Kind::head) + Lines{"      1      1      2      3      4     0    3"});
}

TEST(EditValues, RowOfOneMaterialDoesNotSeeWhatAnotherMade) {
    // Material 5 becomes 6, which the second row would make 7.
    expect_head(head_mesh("4 2 0 0", SQUARE, ELEMENTS + Lines{"1 1 2 3 4 5 3", "2 1 2 3 4 6 3"}),
                {"1 1", "6", "2", "5 2 1 4 3 6", "6 -10 -10 -10 -10 7", "0", "0"},
                "     4       2       0       0", SQUARE_WRITTEN,
                continuum_headings(Kind::head) + Lines{"      1      2      1      4      3     6    3",
                                                       "      2      1      2      3      4     7    3"});
}

TEST(EditValues, CoordinateBeyondEveryNumberIsAMessage) {
    expect_edit_fails(Kind::head, head_mesh("1 0 0 0", {"1 0 0 1E30 0 0 0"}, {}),
                      {"1 1", "0", "0 0 0 0", "1E30 1"}, {"mesh.Mes, line 6: node 1"});
}

// --- names -------------------------------------------------------------------------------------------------

TEST(EditNames, NameOfWhichNothingIsLeftIsAMessage) {
    // Columns 1 to 123 of a bare name count. With none of them used the name before would be taken again, and
    // the result would replace the source.
    for (const std::size_t column : {124U, 125U, 126U}) {
        const std::string name = std::string(column - 1, ' ') + "x";
        const Project project(Kind::head);
        project.write("mesh.Mes", text_of(head_mesh("4 0 0 0", SQUARE, {})));
        project.deck(text_of(Lines{"1 0", "mesh.Mes", name, "1 1"} + IDENTITY));
        const Snapshot before = project.snapshot();
        expect_failed(project.run(), {"deck.dat, line 3: ", "expected"});
        EXPECT_EQ(project.changed_since(before), Lines{});
        project.deck(text_of(Lines{"1 0", name, "out.Mes", "1 1"} + IDENTITY));
        expect_failed(project.run(), {"deck.dat, line 2: ", "expected"});
    }
}

// --- deletion ----------------------------------------------------------------------------------------------

TEST(EditDeletion, ExcludedMaterialSurvivesInsideTheWindow) {
    // Of the site only the quadrilateral of material 5 is left, and the nodes that it needs.
    const Kind kind = Kind::temperature;
    const KindText& text = text_of_kind(kind);
    const auto left = [&](const char* number, const char* x, const char* y) {
        return node_line(kind, number, text.codes, x, y);
    };
    const char *zero = "0.000000E+00", *one = "0.100000E+01", *two = "0.200000E+01";
    expect_result(kind, text.source, {"101 1001", "2 5", "0", "-1 -1 4 2", "0"},
                  Lines{"     4       1       0       0"} + node_headings(kind) +
                      Lines{left("1001", zero, zero), left("1002", two, zero), left("1003", two, one),
                            left("1004", zero, one)} +
                      continuum_headings(kind) + Lines{"    101   1001   1002   1003   1004     5    3"} +
                      CLOSING);
}

// Node 99000 is in no record, so that its number meets the shift of the others first at an element.
TEST(EditNumbers, CornerThatIsShiftedBeyondTheTableIsAMessage) {
    expect_edit_fails(
        Kind::head, head_mesh("4 1 0 0", SQUARE, ELEMENTS + Lines{"1 1 2 3 99000 1 0"}),
        Lines{"1 5001"} + IDENTITY,
        {"mesh.Mes, line 12: corner 99000: expected a new node number of at most 99990", "makes it 104000"});
}

TEST(EditWindow, LineElementWithoutTwoNodesHasNoMiddle) {
    const Lines mesh = head_mesh("4 0 1 0", SQUARE, ELEMENTS + Lines{"1 1 0 1 1"});
    expect_edit_fails(Kind::head, mesh, Lines{"1 1", "2", "0", "-1 -1 2 2", "0"},
                      {"mesh.Mes, line 12: element 1: expected two nodes"});
}

// 1e-20 times 1e-20 has no full digits in 32 bits any more.
TEST(EditNumbers, PlaceTooSmallForFullDigitsIsZero) {
    expect_head(head_mesh("1 0 0 0", {"1 0 0 1E-20 0 0 0"}, {}), {"1 1", "0", "0 0 0 0", "1E-20 1"},
                "     1       0       0       0", {node("1", ZERO, ZERO)}, {});
}

}  // namespace
}  // namespace brelan::test
