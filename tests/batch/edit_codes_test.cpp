// Whole runs that set node codes, in each kind: every way to select nodes, and the sides of a selection.
#include <gtest/gtest.h>

#include <set>
#include <string>

#include "batch/edit_run.h"

namespace brelan::test {
namespace {

constexpr const char* X[] = {"0.000000E+00", "0.100000E+01", "0.200000E+01", "0.300000E+01"};

// Nodes are renumbered by one, so that a selection by the new numbers would take others.
const std::string STARTS = "21 12 31 41";
const std::string STARTS_NORMALISED = "   21    12    31    41 ";

using Nodes = std::set<int>;
const Nodes NONE{};
const Nodes ALL{11, 12, 13, 14, 15, 16};

// The site with the new codes at nodes of the source.
Lines coded_site(Kind kind, const Nodes& coded) {
    const KindText& text = text_of_kind(kind);
    const auto node = [&](int source, const char* number, const char* x, const char* y) {
        return node_line(kind, number, coded.contains(source) ? text.new_codes : text.codes, x, y);
    };
    return Lines{"     6       2       1       1"} + node_headings(kind) +
           Lines{node(11, "12", X[0], X[0]), node(12, "13", X[2], X[0]),
                 node(13, "14", X[2], X[1]), node(14, "15", X[0], X[1]),
                 node(15, "16", X[1], X[0]), node(16, "17", X[3], "0.500000E+00")} +
           continuum_headings(kind) +
           Lines{"     21     12     13     14     15" + text.quadrilateral,
                 "     22     13     17     14      0" + text.triangle_written} +
           BEAM_HEADINGS + Lines{"     31     12     13      7      1"} + TRUSS_HEADINGS +
           Lines{"     41     15     14      8      1"} + CLOSING;
}

// A selection: its cards from ILOC up to ISIDE, the same in the normalised deck, and what each side takes.
struct Selected {
    Lines cards, normalised;
    Nodes inside, outside;
};

void expect_codes(Kind kind, const Selected& selection, const std::string& side, const Nodes& coded) {
    SCOPED_TRACE("ISIDE " + side);
    const KindText& text = text_of_kind(kind);
    const Lines head{STARTS_NORMALISED, "    1     0     0     0     0     0 "};
    expect_edit(kind, text.source, Lines{STARTS, "1"} + selection.cards + Lines{side, text.IDNEW},
                {head + selection.normalised + Lines{"    " + side + " ", text.IDNEW_normalised},
                 stripped_site(kind), coded_site(kind, coded)});
}

void expect_each_side(Kind kind, const Selected& selection) {
    expect_codes(kind, selection, "0", selection.inside);
    expect_codes(kind, selection, "1", selection.outside);
    expect_codes(kind, selection, "2", NONE);
}

class CodesOfKind : public ::testing::TestWithParam<Kind> {};

TEST_P(CodesOfKind, WindowTakesWhatLiesStrictlyInside) {
    // Nodes 11 and 14 lie on its left edge, node 16 on its right one.
    expect_each_side(GetParam(), {{"0", "0 -1 3 2"},
                                  {"    0 ", " 0.00000E+00 -0.10000E+01  0.30000E+01  0.20000E+01 "},
                                  {12, 13, 15},
                                  {11, 14, 16}});
}

TEST_P(CodesOfKind, WindowThroughNodesTakesNoneOfThem) {
    expect_each_side(
        GetParam(),
        {{"0", "0 0 2 1"}, {"    0 ", " 0.00000E+00  0.00000E+00  0.20000E+01  0.10000E+01 "}, NONE, ALL});
}

TEST_P(CodesOfKind, ListTakesNumbersOfTheSource) {
    expect_each_side(
        GetParam(),
        {{"1", "3", "12 -14 16"}, {"    1 ", "    3 ", "   12   -14    16 "}, {12, 13, 14, 16}, {11, 15}});
}

TEST_P(CodesOfKind, ListMayTakeSeveralLinesAndNameMissingNodes) {
    expect_each_side(GetParam(), {{"1", "4", "3", "-7,10", "16"},
                                  {"    1 ", "    4 ", "    3    -7    10    16 "},
                                  {16},
                                  {11, 12, 13, 14, 15}});
}

TEST_P(CodesOfKind, EmptyListTakesNothing) {
    expect_each_side(GetParam(), {{"1", "0"}, {"    1 ", "    0 ", ""}, NONE, ALL});
}

TEST_P(CodesOfKind, PolylineTakesWhatLiesOnIt) {
    // Node 15 lies between the first two points.
    expect_each_side(
        GetParam(),
        {{"2", "3", "11 12", "13"}, {"    2 ", "    3 ", "   11    12    13 "}, {11, 12, 13, 15}, {14, 16}});
}

TEST_P(CodesOfKind, MaterialsTakeTheNodesOfTheirElementsWhateverTheSide) {
    // The triangle of material 6; the list is no range, so that 7 and 8 are not on it.
    const Selected triangle{{"3", "2", "6 -8"}, {"    3 ", "    2 ", "    6    -8 "}, {}, {}};
    // The beam and the truss.
    const Selected lines{{"3", "2", "8 7"}, {"    3 ", "    2 ", "    8     7 "}, {}, {}};
    const Selected quadrilateral{{"3", "1", "5"}, {"    3 ", "    1 ", "    5 "}, {}, {}};
    for (const char* side : {"0", "1", "2"}) {
        expect_codes(GetParam(), triangle, side, {12, 13, 16});
        expect_codes(GetParam(), lines, side, {11, 12, 13, 14});
        expect_codes(GetParam(), quadrilateral, side, {11, 12, 13, 14});
    }
}

TEST_P(CodesOfKind, UnknownSelectionHoldsNothing) {
    expect_each_side(GetParam(), {{"4", "2", "11 12"}, {"    4 ", "    2 ", "   11    12 "}, NONE, ALL});
}

INSTANTIATE_TEST_SUITE_P(Kinds, CodesOfKind, ::testing::ValuesIn(ALL_KINDS),
                         [](const auto& tested) { return name_of(tested.param); });

// --- polylines to the limit --------------------------------------------------------------------------------

// A line of two nodes and a third one at a place; all get code 7 that lie on the line.
void expect_on_line(const std::string& x, const std::string& y, const std::string& shown, bool on_line) {
    const std::string place = "X " + x + ", Y " + y;
    SCOPED_TRACE(place);
    const auto node = [](const std::string& number, bool coded, const std::string& coordinates) {
        return "      " + number + (coded ? "    7    7    7" : "    0    0    0") + "    1    1 " +
               coordinates;
    };
    expect_result(Kind::displacement,
                  {"line", "counts", "3 0 0 0", "nodes", "nodes", "1 0 0 0 1 1 0 0", "2 0 0 0 1 1 10 0",
                   "3 0 0 0 1 1 " + x + " " + y},
                  {"1 1", "1", "2", "2", "1 2", "0", "7 7 7"},
                  Lines{"     3       0       0       0"} + node_headings(Kind::displacement) +
                      Lines{node("1", true, " 0.000000E+00  0.000000E+00 "),
                            node("2", true, " 0.100000E+02  0.000000E+00 "), node("3", on_line, shown)} +
                      CLOSING);
}

TEST(CodesOnPolyline, NodeWithinAThousandthBeyondTheEndIsSelected) {
    expect_on_line("10.0005", "0.0009", " 0.100005E+02  0.900000E-03 ", true);
    expect_on_line("-0.0005", "0", "-0.500000E-03  0.000000E+00 ", true);
    expect_on_line("-0.001", "0", "-0.100000E-02  0.000000E+00 ", true);
}

TEST(CodesOnPolyline, NodeFartherBeyondTheEndIsNot) {
    expect_on_line("10.002", "0", " 0.100020E+02  0.000000E+00 ", false);
    expect_on_line("-0.0011", "0", "-0.110000E-02  0.000000E+00 ", false);
}

TEST(CodesOnPolyline, NodeWithinAThousandthBesideTheLineIsSelected) {
    expect_on_line("5", "0.001", " 0.500000E+01  0.100000E-02 ", true);
    expect_on_line("5", "-0.001", " 0.500000E+01 -0.100000E-02 ", true);
    expect_on_line("5", "0.00101", " 0.500000E+01  0.101000E-02 ", false);
}

TEST(CodesOnPolyline, SelectionLeavesNoStrayNodes) {
    // The flags of the source's numbers serve the polyline alone: 11 to 16 are not in the result from 101 on.
    const KindText& text = text_of_kind(Kind::head);
    const auto node = [&](const char* number, const std::string& codes, const char* x, const char* y) {
        return node_line(Kind::head, number, codes, x, y);
    };
    expect_result(
        Kind::head, text.source, {"21 101 31 41", "1", "2", "2", "14 13", "0", "2 3"},
        Lines{"     6       2       1       1"} + node_headings(Kind::head) +
            Lines{node("101", text.codes, X[0], X[0]), node("102", text.codes, X[2], X[0]),
                  node("103", text.new_codes, X[2], X[1]), node("104", text.new_codes, X[0], X[1]),
                  node("105", text.codes, X[1], X[0]), node("106", text.codes, X[3], "0.500000E+00")} +
            continuum_headings(Kind::head) +
            Lines{"     21    101    102    103    104     5    3",
                  "     22    102    106    103      0     6    5"} +
            BEAM_HEADINGS + Lines{"     31    101    102      7      1"} + TRUSS_HEADINGS +
            Lines{"     41    104    103      8      1"} + CLOSING);
}

TEST(CodesOnPolyline, PointThatIsNoNodeIsAtTheOrigin) {
    // Number 99 has no record: its coordinates are those of an empty slot. The line runs from (0, 0) to node
    // 13 in (2, 1) and meets node 11 in (0, 0).
    const Kind kind = Kind::temperature;
    expect_result(kind, text_of_kind(kind).source, {"21 12 31 41", "1", "2", "2", "99 13", "0", "2 3"},
                  coded_site(kind, {11, 13}));
}

}  // namespace
}  // namespace brelan::test
