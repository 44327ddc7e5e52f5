// Base meshes whose nodes are known by row and column: every side that is to be fixed is fixed at all of its
// nodes, and neighbouring blocks share theirs, however long the field and however far from 0.

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <set>
#include <sstream>

#include "run/run_deck.h"
#include "support/campaign.h"
#include "support/group_drawing.h"
#include "support/mesh.h"

namespace brelan::test {
namespace {

struct Strip {
    double length = 0.0, smallest = 0.0, position = 0.5;
};

struct Field {
    Kind kind = Kind::displacement;
    double x = 0.0, y = 0.0;
    std::array<int, 4> fixed{1, 1, 0, 1};  // left, right, top, bottom
    std::vector<Strip> columns, rows;

    std::string deck() const {
        std::ostringstream text;
        text.precision(9);
        text << "2 0\n" << columns.size() << " " << rows.size();
        for (const int side : fixed)
            text << " " << side;
        text << "\n" << x << " " << y << (kind == Kind::displacement ? "" : " 0.0") << "\n";
        for (const auto* strips : {&columns, &rows})
            for (const Strip& strip : *strips)
                text << strip.length << " " << strip.smallest << " " << strip.position << "\n";
        text << "0\n";
        return text.str();
    }
    double right() const { return as_read(x) + length(columns); }
    double top() const { return as_read(y) + length(rows); }

private:
    static double as_read(double value) { return static_cast<double>(static_cast<float>(value)); }
    static double length(const std::vector<Strip>& strips) {
        double sum = 0.0;
        for (const Strip& strip : strips)
            sum += as_read(strip.length);
        return sum;
    }
};

brelan::RunResult run_field(const Field& field, CutMethod cut) {
    RunInput input;
    input.edition = edition_of(field.kind);
    input.files["..\\deck.dat"] = field.deck();
    input.cut = cut;
    return run_deck(input);
}

Mesh mesh_of(const Field& field, CutMethod cut) {
    const brelan::RunResult result = run_field(field, cut);
    EXPECT_EQ(result.end.status, STATUS_FINISHED) << result.end.text << "\n" << field.deck();
    return result.end.status == STATUS_FINISHED
               ? check_mesh(result.files->text("..\\Bmesh.dat"), field.kind).mesh
               : Mesh{};
}

// A coordinate with the six digits of a mesh file.
double in_file(double value) {
    std::array<char, 40> text{};
    std::snprintf(text.data(), text.size(), "%.5e", static_cast<double>(static_cast<float>(value)));
    return std::strtod(text.data(), nullptr);
}

// The code of a fixed node by kind, and its place for the left, right, top and bottom side.
int fixed_code(Kind kind) {
    return kind == Kind::temperature ? -100 : 1;
}

// Nodes by columns from the top, elements likewise; each node on a side stands on it and is fixed where the
// side is.
void expect_grid(const Field& field, const Mesh& mesh) {
    ASSERT_GE(mesh.nodes.size(), 4U);
    std::size_t rows = 1;
    while (rows < mesh.nodes.size() && mesh.nodes[rows].y < mesh.nodes[rows - 1].y)
        ++rows;
    const std::size_t columns = mesh.nodes.size() / rows;
    ASSERT_EQ(mesh.nodes.size(), rows * columns) << field.deck();
    const auto node = [&](std::size_t r, std::size_t c) -> const MeshNode& {
        return mesh.nodes[c * rows + r];
    };
    std::size_t wrong = 0;
    for (std::size_t c = 0; c < columns; ++c)
        for (std::size_t r = 0; r < rows; ++r) {
            const MeshNode& n = node(r, c);
            wrong += c > 0 && node(r, c - 1).x >= n.x ? 1 : 0;
            wrong += r > 0 && node(r - 1, c).y <= n.y ? 1 : 0;
            wrong += c == 0 && n.x != in_file(field.x) ? 1 : 0;
            wrong += c + 1 == columns && n.x != in_file(field.right()) ? 1 : 0;
            wrong += r == 0 && n.y != in_file(field.top()) ? 1 : 0;
            wrong += r + 1 == rows && n.y != in_file(field.y) ? 1 : 0;
            const bool x_fixed = (c == 0 && field.fixed[0] == 1) || (c + 1 == columns && field.fixed[1] == 1);
            const bool y_fixed = (r == 0 && field.fixed[2] == 1) || (r + 1 == rows && field.fixed[3] == 1);
            wrong += n.codes[0] != (x_fixed ? fixed_code(field.kind) : 0) ? 1 : 0;
            wrong += n.codes[1] != (y_fixed ? fixed_code(field.kind) : 0) ? 1 : 0;
        }
    EXPECT_EQ(wrong, 0U) << field.deck();
    ASSERT_EQ(mesh.continuum.size(), (rows - 1) * (columns - 1)) << field.deck();
    std::size_t e = 0;
    for (std::size_t c = 0; c + 1 < columns; ++c)
        for (std::size_t r = 0; r + 1 < rows; ++r) {
            const std::array<int, 4> corners{node(r, c + 1).number, node(r, c).number, node(r + 1, c).number,
                                             node(r + 1, c + 1).number};
            wrong += mesh.continuum[e++].corners != corners ? 1 : 0;
        }
    EXPECT_EQ(wrong, 0U) << field.deck();
}

std::size_t fixed_at_bottom(const Mesh& mesh) {
    std::size_t count = 0;
    for (const MeshNode& node : mesh.nodes)
        count += node.codes[1] == 1 ? 1 : 0;
    return count;
}

TEST(PlacedByGrid, HighFieldsAreFixedAtAllNodesOfTheirBottom) {
    for (const double height : {50.0, 150.0, 160.0, 200.0, 310.0, 1000.0}) {
        Field field;
        field.columns = {{20.0, 1.0, 0.5}};
        field.rows = {{height, 1.0, 0.5}};
        expect_grid(field, mesh_of(field, CutMethod::sound));
        EXPECT_EQ(fixed_at_bottom(mesh_of(field, CutMethod::sound)), 21U) << height;
    }
}

// By sums of 32 bits, as existing decks have them.
TEST(PlacedByGrid, OnlyWithTheSoundCut) {
    Field field;
    field.columns = {{20.0, 1.0, 0.5}};
    field.rows = {{150.0, 1.0, 0.5}};
    EXPECT_EQ(fixed_at_bottom(mesh_of(field, CutMethod::by_rules)), 2U);
}

TEST(PlacedByGrid, RandomTablesOfBlocks) {
    Drawing drawing(14);
    for (int i = 0; i < rounds(150, 1000); ++i) {
        Field field;
        field.kind = ALL_KINDS[static_cast<std::size_t>(i % 4)];
        field.x = std::round(static_cast<double>(drawing.between(-1000.0F, 1000.0F)) * 100.0) / 100.0;
        field.y = std::round(static_cast<double>(drawing.between(-1000.0F, 1000.0F)) * 100.0) / 100.0;
        for (int& side : field.fixed)
            side = drawing.below(3) > 0 ? 1 : 0;
        const double most = drawing.one_in(8) ? 1000.0 : static_cast<double>(drawing.between(20.0F, 300.0F));
        for (auto* strips : {&field.columns, &field.rows}) {
            const int count = 1 + drawing.below(6);
            for (int k = 0; k < count; ++k) {
                Strip strip;
                strip.length =
                    std::round(static_cast<double>(drawing.between(0.2F, 1.0F)) * most / count * 10.0) /
                        10.0 +
                    0.5;
                strip.smallest =
                    std::max(0.5, strip.length / static_cast<double>(drawing.between(1.0F, 14.0F)));
                strip.position =
                    static_cast<double>(drawing.between(0.3F, 0.5F)) * (drawing.one_in(2) ? 1.0 : -1.0);
                strips->push_back(strip);
            }
        }
        expect_grid(field, mesh_of(field, CutMethod::sound));
        if (HasFailure())
            return;
    }
}

// The middle of a graded block may lie at 0.
TEST(PlacedByGrid, AMiddleAtZeroIsAPlace) {
    Field field;
    field.x = -3.0;
    field.columns = {{10.0, 1.0, 0.3}};
    field.y = -7.0;
    field.rows = {{10.0, 1.0, 0.3}};
    const Mesh mesh = mesh_of(field, CutMethod::sound);
    expect_grid(field, mesh);
    std::set<double> columns, rows;  // straight ones
    for (const MeshNode& node : mesh.nodes) {
        columns.insert(node.x);
        rows.insert(node.y);
    }
    EXPECT_EQ(columns.size() * rows.size(), mesh.nodes.size());
    EXPECT_TRUE(columns.contains(-3.0) && columns.contains(7.0) && rows.contains(-7.0) && rows.contains(3.0));
}

TEST(PlacedByGrid, ElementsThatSixDigitsDoNotShowAreRefused) {
    Field field;
    field.x = 20000.0;
    field.columns = {{1.0, 0.02, 0.5}};
    field.rows = {{1.0, 1.0, 0.5}};
    const brelan::RunResult result = run_field(field, CutMethod::sound);
    EXPECT_EQ(result.end.status, STATUS_FAILED);
    EXPECT_EQ(
        result.end.text,
        "..\\Bmesh.dat: expected the top right corner of element 1 above and right of its bottom left one by "
        "the six digits of a mesh file, found node 3 at (20000.000000, 1.000000) and node 2 at "
        "(20000.000000, 0.000000): lengths above 0, larger DX and DY, or a field nearer to 0 part them");
    EXPECT_EQ(result.files->text("..\\Bmesh.dat"), "");
}

}  // namespace
}  // namespace brelan::test
