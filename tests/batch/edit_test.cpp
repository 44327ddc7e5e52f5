// Whole runs that move, scale and mirror a mesh, in each kind: every file the run leaves.
#include <gtest/gtest.h>

#include <string>
#include <tuple>

#include "batch/edit_run.h"

namespace brelan::test {
namespace {

constexpr const char* X[] = {"0.000000E+00", "0.100000E+01", "0.200000E+01", "0.300000E+01"};

// Card 3.2 of most runs here: elements from 101, nodes from 1001, beams from 201, trusses from 301.
const std::string STARTS = "101 1001 201 301";
const std::string STARTS_NORMALISED = "  101  1001   201   301 ";

// --- moving, scaling and mirroring -------------------------------------------------------------------------

// x = (x - 1) * SCX + 10 and y = (y - 0.5) * SCY + 20: where x of 0, 2 and 3 and y of 0 and 1 come to lie.
// Nodes at x 1 come to 10, nodes at y 0.5 to 20.
struct Mirror {
    const char* name;
    const char *scales, *scales_normalised;
    const char *x0, *x2, *x3, *y0, *y1;
    const char *quadrilateral, *triangle;
};

constexpr Mirror MIRRORS[] = {
    {"None", "2 4", " 0.20000E+01  0.40000E+01 ",                                     //
     "0.800000E+01", "0.120000E+02", "0.140000E+02", "0.180000E+02", "0.220000E+02",  //
     "   1001   1002   1003   1004", "   1002   1006   1003      0"},                 //
    {"InX", "-2 4", "-0.20000E+01  0.40000E+01 ",                                     //
     "0.120000E+02", "0.800000E+01", "0.600000E+01", "0.180000E+02", "0.220000E+02",  //
     "   1002   1001   1004   1003", "   1006   1002   1003      0"},                 //
    {"InY", "2 -4", " 0.20000E+01 -0.40000E+01 ",                                     //
     "0.800000E+01", "0.120000E+02", "0.140000E+02", "0.220000E+02", "0.180000E+02",  //
     "   1004   1003   1002   1001", "   1003   1006   1002      0"},                 //
    {"InBoth", "-2 -4", "-0.20000E+01 -0.40000E+01 ",                                 //
     "0.120000E+02", "0.800000E+01", "0.600000E+01", "0.220000E+02", "0.180000E+02",  //
     "   1003   1004   1001   1002", "   1003   1002   1006      0"},                 //
};

class EditMirror : public ::testing::TestWithParam<std::tuple<Kind, Mirror>> {};

TEST_P(EditMirror, LeavesTheseFiles) {
    const auto& [kind, mirror] = GetParam();
    const KindText& text = text_of_kind(kind);
    const auto node = [&, k = kind](const char* number, const char* x, const char* y) {
        return node_line(k, number, text.codes, x, y);
    };
    const EditFiles expected{
        {STARTS_NORMALISED, "    0     0     0     0     0     0 ",
         " 0.10000E+01  0.50000E+00  0.10000E+02  0.20000E+02 ", mirror.scales_normalised},
        stripped_site(kind),
        Lines{"     6       2       1       1"} + node_headings(kind) +
            Lines{node("1001", mirror.x0, mirror.y0), node("1002", mirror.x2, mirror.y0),
                  node("1003", mirror.x2, mirror.y1), node("1004", mirror.x0, mirror.y1),
                  node("1005", "0.100000E+02", mirror.y0), node("1006", mirror.x3, "0.200000E+02")} +
            continuum_headings(kind) +
            Lines{"    101" + std::string(mirror.quadrilateral) + text.quadrilateral,
                  "    102" + std::string(mirror.triangle) + text.triangle_written} +
            BEAM_HEADINGS + Lines{"    201   1001   1002      7      1"} + TRUSS_HEADINGS +
            Lines{"    301   1004   1003      8      1"} + CLOSING};
    expect_edit(kind, text.source, {STARTS, "0", "1 0.5 10 20", mirror.scales}, expected);
}

INSTANTIATE_TEST_SUITE_P(KindsAndMirrors, EditMirror,
                         ::testing::Combine(::testing::ValuesIn(ALL_KINDS), ::testing::ValuesIn(MIRRORS)),
                         [](const auto& tested) {
                             return name_of(std::get<0>(tested.param)) + std::get<1>(tested.param).name;
                         });

// --- an operation that is none -----------------------------------------------------------------------------

class EditOfKind : public ::testing::TestWithParam<Kind> {};

TEST_P(EditOfKind, UnknownOperationLeavesAMeshOfNothing) {
    const Kind kind = GetParam();
    expect_edit(kind, text_of_kind(kind).source, {STARTS, "7"},
                {{STARTS_NORMALISED, "    7     0     0     0     0     0 "},
                 stripped_site(kind),
                 Lines{"     0       0       0       0"} + node_headings(kind) + CLOSING});
}

// The site as it comes out of an edit that changes nothing but numbers by 990, 80, 170 and 260.
Lines renumbered_site(Kind kind) {
    const KindText& text = text_of_kind(kind);
    const auto node = [&](const char* number, const char* x, const char* y) {
        return node_line(kind, number, text.codes, x, y);
    };
    return Lines{"     6       2       1       1"} + node_headings(kind) +
           Lines{node("1001", X[0], X[0]), node("1002", X[2], X[0]), node("1003", X[2], X[1]),
                 node("1004", X[0], X[1]), node("1005", X[1], X[0]), node("1006", X[3], "0.500000E+00")} +
           continuum_headings(kind) +
           Lines{"    101   1001   1002   1003   1004" + text.quadrilateral,
                 "    102   1002   1006   1003      0" + text.triangle_written} +
           BEAM_HEADINGS + Lines{"    201   1001   1002      7      1"} + TRUSS_HEADINGS +
           Lines{"    301   1004   1003      8      1"} + CLOSING;
}

TEST_P(EditOfKind, IdentityOnlyRenumbers) {
    expect_result(GetParam(), text_of_kind(GetParam()).source, {STARTS, "0", "0 0 0 0", "1 1"},
                  renumbered_site(GetParam()));
}

TEST_P(EditOfKind, RebuildingWithoutRowsOnlyRenumbers) {
    const Kind kind = GetParam();
    expect_edit(kind, text_of_kind(kind).source, {STARTS, "6", "0", "-1", "0.9"},
                {{STARTS_NORMALISED, "    6     0     0     0     0     0 ", "    0 ", "   -1 ", "    0 "},
                 stripped_site(kind),
                 renumbered_site(kind)});
}

// --- new records by material -------------------------------------------------------------------------------

// The attributes on the first row of Card 3.6.1-1, what follows the five or six given fields of each row in
// the normalised deck, and the changed quadrilateral.
struct Rebuilt {
    const char* attributes;
    const char *first, *second, *third;
    const char* quadrilateral;
};
constexpr Rebuilt REBUILT[] = {
    {" 7 -10", "     7   -10 ", "   -10   -10   -10 ", "   -10   -10 ",
     "     51     52     53     54    9    7    1    2    2 0.5000E+00"},
    {" 44", "    44 ", "   -10   -10 ", "   -10 ", "     9   44"},
    {" 44 77", "    44 ", "   -10   -10 ", "   -10 ", "     9   44"},
    {" 0.25 -10", "  0.25000E+00 -0.10000E+02 ", "   -10 -0.10000E+02 -0.10000E+02 ",
     " -0.10000E+02 -0.10000E+02 ", "     51     52     53     54    9 0.2500E+00 0.1800E+01"},
};

TEST_P(EditOfKind, RowsByMaterialRebuildTheRecords) {
    const Kind kind = GetParam();
    const KindText& text = text_of_kind(kind);
    const Rebuilt& row = REBUILT[static_cast<std::size_t>(kind)];
    const std::string attributes = row.attributes;
    const auto node = [&](const char* number, const char* x, const char* y) {
        return node_line(kind, number, text.codes, x, y);
    };
    const Lines cards{STARTS,
                      "6",
                      "3",
                      "5 2 3 4 1 9" + attributes,  // turned by one corner; attributes of its own
                      "6 0 5 -10 1",               // none, as it is, as it is, the first
                      "5 1 1 1 1 1",               // comes too late
                      "1",
                      "7 3 4 17 99",  // J for I and I for J
                      "1",
                      "8 0 5"};  // none for I
    const EditFiles expected{
        {STARTS_NORMALISED, "    6     0     0     0     0     0 ", "    3 ",
         "    5     2     3     4     1     9" + std::string(row.first),
         "    6     0     5   -10     1" + std::string(row.second),
         "    5     1     1     1     1     1" + std::string(row.third), "    1 ",
         "    7     3     4    17    99 ", "    1 ", "    8     0     5   -10   -10 "},
        stripped_site(kind),
        Lines{"     6       2       1       1"} + node_headings(kind) +
            Lines{node("1001", X[0], X[0]), node("1002", X[2], X[0]), node("1003", X[2], X[1]),
                  node("1004", X[0], X[1]), node("1005", X[1], X[0]), node("1006", X[3], "0.500000E+00")} +
            continuum_headings(kind) +
            Lines{"    101   1002   1003   1004   1001" + std::string(row.quadrilateral),
                  "    102      0   1006   1003   1002" + text.triangle_written} +
            BEAM_HEADINGS + Lines{"    201   1002   1001     17      1"} + TRUSS_HEADINGS +
            Lines{"    301      0   1003      8      1"} + CLOSING};
    expect_edit(kind, text.source, cards, expected);
}

INSTANTIATE_TEST_SUITE_P(Kinds, EditOfKind, ::testing::ValuesIn(ALL_KINDS),
                         [](const auto& tested) { return name_of(tested.param); });

}  // namespace
}  // namespace brelan::test
