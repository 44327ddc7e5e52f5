// The patterns of a cut: every row of the pattern tables, and every combination of marks.

#include "group/split_patterns.h"

#include <gtest/gtest.h>

#include <cmath>
#include <sstream>
#include <string>
#include <vector>

namespace brelan::test {
namespace {

constexpr int TRIANGLE_ROW = 3, QUADRILATERAL_ROW = 4;

// A row with the marks in the text: "V1 S2 C".
CutRow row_with(int corners, const std::string& marks) {
    CutRow row;
    row.element = ElementNumber(1);
    for (int i = 0; i < corners; ++i)
        row.corner_node[i] = NodeNumber(11 + i);
    std::istringstream text(marks);
    for (std::string mark; text >> mark;) {
        if (mark == "C")
            row.centre_node = NodeNumber(31);
        else if (mark[0] == 'V')
            row.corner_on_line[mark[1] - '1'] = 1;
        else
            row.side_node[mark[1] - '1'] = NodeNumber(21 + mark[1] - '1');
    }
    return row;
}

std::string name_of_place(At at) {
    static const std::vector<std::string> names{"", "N1", "N2", "N3", "N4", "S1", "S2", "S3", "S4", "C"};
    return names[static_cast<std::size_t>(at)];
}

// The parts as text: "N1 N2 S1, N1 S1 N3"; empty for a row that stays whole.
std::string parts_text(const CutRow& row) {
    std::string text;
    for (const SplitPart& part : parts_of(row)) {
        if (!text.empty())
            text += ", ";
        std::string one;
        for (const At at : part)
            if (at != At::none)
                one += (one.empty() ? "" : " ") + name_of_place(at);
        text += one;
    }
    return text;
}

struct Row {
    std::string marks, parts;
};

void expect_rows(int corners, const std::vector<Row>& rows) {
    for (const Row& row : rows)
        EXPECT_EQ(parts_text(row_with(corners, row.marks)), row.parts) << "marks: " << row.marks;
}

// --- every row of the tables ---------------------------------------------------------------------

TEST(SplitPatterns, TriangleWithCentre) {
    const std::string three = "N1 N2 C, C N2 N3, N1 C N3";
    expect_rows(TRIANGLE_ROW, {{"C", three},
                               {"C S1", "N1 N2 C, C N2 S1, C S1 N3, N1 C N3"},
                               {"C S2", "N1 N2 C, C N2 N3, S2 C N3, N1 C S2"},
                               {"C S3", "N1 S3 C, C S3 N2, C N2 N3, N1 C N3"},
                               {"C S2 S3", "N1 N2 C, C N2 N3, S2 C N3, N1 C S2"},
                               {"C S1 S2 S3", "N1 N2 C, C N2 S1, C S1 N3, N1 C N3"},
                               {"C V1", three},
                               {"C V2", three},
                               {"C V3", three},
                               {"C V1 S1", three},
                               {"C V2 S3", three},
                               {"C V1 V2 V3", three}});
}

TEST(SplitPatterns, TriangleWithTwoSidesCut) {
    expect_rows(TRIANGLE_ROW, {{"S1 S2", "N1 N2 S1 S2, S2 S1 N3"},
                               {"S1 S3", "N1 S3 S1 N3, S3 N2 S1"},
                               {"S2 S3", "N1 S3 S2, S2 S3 N2 N3"},
                               {"S1 S2 S3", "N1 N2 S1 S2, S2 S1 N3"},
                               {"V1 S1 S3", "N1 S3 S1 N3, S3 N2 S1"}});
}

TEST(SplitPatterns, TriangleFromACornerToTheSideOpposite) {
    expect_rows(TRIANGLE_ROW, {{"V1 S1", "N1 N2 S1, N1 S1 N3"},
                               {"V2 S2", "N1 N2 S2, S2 N2 N3"},
                               {"V3 S3", "N1 S3 N3, S3 N2 N3"},
                               {"V1 V2 S2", "N1 N2 S2, S2 N2 N3"},
                               {"V1 V2 S1", "N1 N2 S1, N1 S1 N3"}});
}

TEST(SplitPatterns, TriangleThatStaysWhole) {
    expect_rows(TRIANGLE_ROW, {{"", ""},
                               {"V1", ""},
                               {"V1 V2", ""},
                               {"V1 V2 V3", ""},
                               {"S1", ""},
                               {"S2", ""},
                               {"S3", ""},
                               {"V1 S2", ""},
                               {"V1 S3", ""},
                               {"V2 S1", ""},
                               {"V3 S2", ""}});
}

TEST(SplitPatterns, QuadrilateralWithCentre) {
    const std::string four = "N1 N2 C, N2 N3 C, C N3 N4, N1 C N4";
    expect_rows(QUADRILATERAL_ROW, {{"C", four},
                                    {"C S1", "N1 S1 C, S1 N2 C, N2 N3 C, C N3 N4, N1 C N4"},
                                    {"C S2", "N1 N2 C, N2 S2 C, C S2 N3, C N3 N4, N1 C N4"},
                                    {"C S3", "N1 N2 C, N2 N3 C, C N3 S3, C S3 N4, N1 C N4"},
                                    {"C S4", "N1 N2 C, N2 N3 C, C N3 N4, S4 C N4, N1 C S4"},
                                    {"C S3 S4", "N1 N2 C, N2 N3 C, C N3 S3, C S3 N4, N1 C N4"},
                                    {"C V1", four},
                                    {"C V2", four},
                                    {"C V3", four},
                                    {"C V4", four},
                                    {"C V4 S1", four}});
}

TEST(SplitPatterns, QuadrilateralByCornersAlone) {
    const std::string one_three = "N1 N2 N3, N1 N3 N4", two_four = "N1 N2 N4, N2 N3 N4";
    expect_rows(QUADRILATERAL_ROW, {{"", ""},
                                    {"V1", ""},
                                    {"V2", ""},
                                    {"V3", ""},
                                    {"V4", ""},
                                    {"V1 V3", one_three},
                                    {"V2 V4", two_four},
                                    {"V1 V2", ""},
                                    {"V2 V3", ""},
                                    {"V3 V4", ""},
                                    {"V1 V4", ""},
                                    {"V1 V2 V3", two_four},
                                    {"V1 V3 V4", two_four},
                                    {"V1 V2 V4", one_three},
                                    {"V2 V3 V4", one_three},
                                    {"V1 V2 V3 V4", two_four}});
}

TEST(SplitPatterns, QuadrilateralWithTwoSidesCut) {
    const std::string S1S2 = "S1 N2 S2, N1 S1 S2 N3, N1 N3 N4";
    const std::string S1S3 = "S1 N2 N3 S3, N1 S1 S3 N4";
    const std::string S2S4 = "N1 N2 S2 S4, S4 S2 N3 N4";
    expect_rows(QUADRILATERAL_ROW, {{"S1 S2", S1S2},
                                    {"S1 S3", S1S3},
                                    {"S1 S4", "N2 N3 N4, S1 N2 N4 S4, N1 S1 S4"},
                                    {"S2 S4", S2S4},
                                    {"S2 S3", "S2 N3 S3, N2 S2 S3 N4, N1 N2 N4"},
                                    {"S3 S4", "N1 N2 N3, N1 N3 S3 S4, S4 S3 N4"},
                                    {"S1 S2 S3", S1S2},
                                    {"S1 S2 S4", S1S2},
                                    {"S1 S3 S4", S1S3},
                                    {"S2 S3 S4", S2S4},
                                    {"S1 S2 S3 S4", S1S2},
                                    {"V1 V3 S2 S4", S2S4}});
}

TEST(SplitPatterns, QuadrilateralFromItsFirstCorner) {
    expect_rows(QUADRILATERAL_ROW, {{"V1 V2 V3 S2", "N1 N2 N4, N2 N3 N4"},
                                    {"V1 V2 V3 S4", "N1 N2 N4, N2 N3 N4"},
                                    {"V1 S2", "N1 N2 S2, N1 S2 N3 N4"},
                                    {"V1 V3 S2", "N1 N2 S2, N1 S2 N3 N4"},
                                    {"V1 V3 S3", "N1 N2 N3, N1 N3 N4"},
                                    {"V1 V3 S1", "N1 N2 N3, N1 N3 N4"},
                                    {"V1 S3", "N1 N2 N3 S3, N1 S3 N4"},
                                    {"V1 V2 S3", "N1 N2 N3 S3, N1 S3 N4"},
                                    {"V1 S1", ""},
                                    {"V1 S4", ""},
                                    {"V1 V2 S4", ""}});
}

TEST(SplitPatterns, QuadrilateralFromItsSecondCorner) {
    expect_rows(QUADRILATERAL_ROW, {{"V2 V3 V4 S3", "N1 N2 N3, N1 N3 N4"},
                                    {"V2 S3", "N2 N3 S3, N1 N2 S3 N4"},
                                    {"V2 V4 S3", "N2 N3 S3, N1 N2 S3 N4"},
                                    {"V2 V4 S4", "N2 N3 N4, N1 N2 N4"},
                                    {"V2 V4 S1", "N2 N3 N4, N1 N2 N4"},
                                    {"V2 S4", "N1 N2 S4, S4 N2 N3 N4"},
                                    {"V2 V3 S4", "N1 N2 S4, S4 N2 N3 N4"},
                                    {"V2 S1", ""},
                                    {"V2 S2", ""},
                                    {"V2 V3 S1", ""}});
}

TEST(SplitPatterns, QuadrilateralFromItsLastCorners) {
    expect_rows(QUADRILATERAL_ROW, {{"V3 S1", "S1 N2 N3, N1 S1 N3 N4"},
                                    {"V3 S4", "N1 N2 N3 S4, S4 N3 N4"},
                                    {"V3 V4 S1", "S1 N2 N3, N1 S1 N3 N4"},
                                    {"V3 S2", ""},
                                    {"V3 S3", ""},
                                    {"V3 V4 S2", ""},
                                    {"V4 S2", "N1 N2 S2 N4, S2 N3 N4"},
                                    {"V4 S1", "S1 N2 N3 N4, N1 S1 N4"},
                                    {"V4 S3", ""},
                                    {"V4 S4", ""},
                                    {"S1", ""},
                                    {"S2", ""},
                                    {"S3", ""},
                                    {"S4", ""}});
}

// --- every combination of marks ------------------------------------------------------------------

struct Place {
    double x, y;
};

// Sample rows. Side nodes lie off the middle of their sides, the centre node off that of the row.
Place place_of(At at, bool triangle) {
    const std::vector<Place> corners = triangle ? std::vector<Place>{{0, 0}, {8, 1}, {2, 7}}
                                                : std::vector<Place>{{0, 0}, {8, 1}, {9, 8}, {1, 6}};
    const int place = static_cast<int>(at);
    if (at == At::centre)
        return triangle ? Place{3, 2.5} : Place{4, 3};
    if (place <= static_cast<int>(At::n4))
        return corners[static_cast<std::size_t>(place - static_cast<int>(At::n1))];
    const auto side = static_cast<std::size_t>(place - static_cast<int>(At::s1));
    const std::size_t count = corners.size();
    const Place& a = corners[triangle ? (side + 1) % 3 : side];
    const Place& b = corners[triangle ? (side + 2) % 3 : (side + 1) % count];
    return {a.x + 0.4 * (b.x - a.x), a.y + 0.4 * (b.y - a.y)};
}

double area_of(const std::vector<At>& ring, bool triangle) {
    double twice = 0.0;
    for (std::size_t i = 0; i < ring.size(); ++i) {
        const Place a = place_of(ring[i], triangle);
        const Place b = place_of(ring[(i + 1) % ring.size()], triangle);
        twice += a.x * b.y - b.x * a.y;
    }
    return twice / 2.0;
}

// Side marks that the parts of a row leave out: a neighbour's node then hangs on the side.
int left_out(const CutRow& row) {
    int left = 0;
    for (int i = 0; i < row.corners(); ++i) {
        bool used = row.side_node[i].is_none();
        for (const SplitPart& part : parts_of(row))
            for (const At at : part)
                used = used || at == static_cast<At>(static_cast<int>(At::s1) + i);
        left += used ? 0 : 1;
    }
    return left;
}

int sides_of(const CutRow& row) {
    int count = 0;
    for (int i = 0; i < row.corners(); ++i)
        count += row.side_node[i].names_one() ? 1 : 0;
    return count;
}

// How many side marks the patterns leave out, derived from the rules: with a centre the first side only, and
// none when a corner is on the line; without one two sides, or one when a corner across from it is on it.
int expected_left_out(const CutRow& row) {
    const bool V1 = row.corner_on_line[0] == 1, V2 = row.corner_on_line[1] == 1,
               V3 = row.corner_on_line[2] == 1, V4 = row.corner_on_line[3] == 1;
    const bool S1 = row.side_node[0].names_one(), S2 = row.side_node[1].names_one(),
               S3 = row.side_node[2].names_one(), S4 = row.side_node[3].names_one();
    const int NS = sides_of(row);
    if (NS == 0)
        return 0;
    if (row.centre_node.names_one())
        return V1 || V2 || V3 || V4 ? NS : NS - 1;
    if (NS >= 2)
        return NS - 2;
    bool used = false;
    if (row.is_triangle())
        used = (V1 && S1) || (V2 && S2) || (V3 && S3);
    else if (V1)
        used = !(V2 && V3) && (S2 || (S3 && !V3));
    else if (V2)
        used = !(V3 && V4) && (S3 || (S4 && !V4));
    else if (V3)
        used = S1 || S4;
    else if (V4)
        used = S1 || S2;
    return used ? 0 : 1;
}

std::string marks_text(const CutRow& row) {
    std::string text = row.is_triangle() ? "triangle" : "quadrilateral";
    for (int i = 0; i < row.corners(); ++i) {
        text += row.corner_on_line[i] == 1 ? " V" + std::to_string(i + 1) : "";
        text += row.side_node[i].names_one() ? " S" + std::to_string(i + 1) : "";
    }
    return text + (row.centre_node.names_one() ? " C" : "");
}

std::vector<CutRow> all_rows() {
    std::vector<CutRow> rows;
    for (const int corners : {TRIANGLE_ROW, QUADRILATERAL_ROW})
        for (int marks = 0; marks < 1 << (2 * corners + 1); ++marks) {
            CutRow row = row_with(corners, "");
            for (int i = 0; i < corners; ++i) {
                row.corner_on_line[i] = marks >> i & 1;
                row.side_node[i] = NodeNumber((marks >> (corners + i) & 1) * (21 + i));
            }
            row.centre_node = NodeNumber((marks >> (2 * corners) & 1) * 31);
            rows.push_back(row);
        }
    return rows;
}

bool exists_in(const CutRow& row, At at) {
    const int place = static_cast<int>(at);
    if (at == At::centre)
        return row.centre_node.names_one();
    if (place >= static_cast<int>(At::s1))
        return row.side_node[place - static_cast<int>(At::s1)].names_one();
    return row.corner_node[place - static_cast<int>(At::n1)].names_one();
}

TEST(SplitPatterns, PartsUseNodesThatTheRowHas) {
    for (const CutRow& row : all_rows())
        for (const SplitPart& part : parts_of(row))
            for (std::size_t i = 0; i < 4; ++i) {
                if (i == 3 && part[i] == At::none)
                    continue;
                ASSERT_NE(part[i], At::none) << marks_text(row);
                EXPECT_TRUE(exists_in(row, part[i])) << marks_text(row) << ": " << name_of_place(part[i]);
                for (std::size_t k = 0; k < i; ++k)
                    EXPECT_NE(part[i], part[k]) << marks_text(row);
            }
}

TEST(SplitPatterns, PartsFillTheRow) {
    for (const CutRow& row : all_rows()) {
        const bool triangle = row.is_triangle();
        std::vector<At> whole{At::n1, At::n2, At::n3};
        if (!triangle)
            whole.push_back(At::n4);
        double sum = 0.0;
        for (const SplitPart& part : parts_of(row)) {
            std::vector<At> ring(part.begin(), part.end());
            if (ring.back() == At::none)
                ring.pop_back();
            const double area = area_of(ring, triangle);
            EXPECT_GT(area, 0.0) << marks_text(row);
            sum += area;
        }
        if (!parts_of(row).empty()) {
            EXPECT_NEAR(sum, area_of(whole, triangle), 1.0E-9) << marks_text(row);
        }
    }
}

TEST(SplitPatterns, PartsUseAllSideNodesButThoseTheRulesLeaveOut) {
    for (const CutRow& row : all_rows())
        EXPECT_EQ(left_out(row), expected_left_out(row)) << marks_text(row);
}

// The combinations that leave a node hanging, one of each sort.
TEST(SplitPatterns, CombinationsWithAHangingNode) {
    const auto hanging = [](int corners, const std::string& marks) {
        return left_out(row_with(corners, marks));
    };
    EXPECT_EQ(hanging(TRIANGLE_ROW, "S1"), 1) << "a side node with no corner on the line";
    EXPECT_EQ(hanging(TRIANGLE_ROW, "V1 S2"), 1) << "a side node beside the corner";
    EXPECT_EQ(hanging(TRIANGLE_ROW, "S1 S2 S3"), 1) << "the third side node";
    EXPECT_EQ(hanging(TRIANGLE_ROW, "C S1 S2"), 1) << "the second side node beside a centre";
    EXPECT_EQ(hanging(TRIANGLE_ROW, "C V1 S1"), 1) << "a side node beside a centre and a corner";
    EXPECT_EQ(hanging(QUADRILATERAL_ROW, "S3"), 1) << "a side node with no corner on the line";
    EXPECT_EQ(hanging(QUADRILATERAL_ROW, "V1 S4"), 1) << "a side node beside the corner";
    EXPECT_EQ(hanging(QUADRILATERAL_ROW, "V1 V2 V3 S4"), 1) << "a side node behind three corners";
    EXPECT_EQ(hanging(QUADRILATERAL_ROW, "V1 V3 S3"), 1) << "a side node beside a diagonal";
    EXPECT_EQ(hanging(QUADRILATERAL_ROW, "S1 S2 S3 S4"), 2) << "the third and fourth side node";
    EXPECT_EQ(hanging(QUADRILATERAL_ROW, "C S1 S2 S3 S4"), 3) << "all but one beside a centre";
}

}  // namespace
}  // namespace brelan::test
