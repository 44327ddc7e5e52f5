// The interpolation of a block: nine and eight key points, and the nodes that map_block places.

#include <array>
#include <bit>
#include <cmath>
#include <random>

#include "blocks/raw_mesh.h"
#include "support/state.h"

namespace brelan::test {
namespace {

// Values by row from the top and column from the left.
using Nine = std::array<std::array<double, 3>, 3>;

BlockValues values_of(const Nine& v) {
    const auto f = [&](std::size_t row, std::size_t column) { return static_cast<float>(v[row][column]); };
    return {f(0, 0), f(0, 1), f(0, 2), f(1, 0), f(1, 1), f(1, 2), f(2, 0), f(2, 1), f(2, 2)};
}

// The Lagrange polynomial of node k of -1, 0, 1.
double lagrange(std::size_t k, double s) {
    constexpr std::array<double, 3> node{-1.0, 0.0, 1.0};
    double product = 1.0;
    for (std::size_t i = 0; i < 3; ++i)
        if (i != k)
            product *= (s - node[i]) / (node[k] - node[i]);
    return product;
}

double nine_points(double s, double r, const Nine& v) {
    double sum = 0.0;
    for (std::size_t row = 0; row < 3; ++row)
        for (std::size_t column = 0; column < 3; ++column)
            sum += lagrange(column, s) * lagrange(2 - row, r) * v[row][column];
    return sum;
}

// The eight-point form, from the corner and side functions of the textbook.
double eight_points(double s, double r, const Nine& v) {
    double sum = 0.0;
    for (const double rk : {-1.0, 1.0}) {
        for (const double sk : {-1.0, 1.0}) {
            const double weight = (1.0 + s * sk) * (1.0 + r * rk) * (s * sk + r * rk - 1.0) / 4.0;
            sum += weight * v[rk > 0.0 ? 0 : 2][sk > 0.0 ? 2 : 0];
        }
    }
    sum += (1.0 - s * s) * (1.0 + r) / 2.0 * v[0][1] + (1.0 - s * s) * (1.0 - r) / 2.0 * v[2][1];
    sum += (1.0 - r * r) * (1.0 - s) / 2.0 * v[1][0] + (1.0 - r * r) * (1.0 + s) / 2.0 * v[1][2];
    return sum;
}

class ShapeFunctions : public ::testing::Test {
protected:
    double between(double low, double high) {
        return std::uniform_real_distribution<double>(low, high)(random_);
    }
    Nine any_values() {
        Nine v{};
        for (auto& row : v)
            for (double& value : row)
                value = static_cast<double>(static_cast<float>(between(-100.0, 100.0)));
        return v;
    }
    // One block whose nodes are the values at the steps of 2 by 2 divisions.
    static float eight_point_value(const BlockValues& v, std::int32_t ndx, std::int32_t ndy, std::int32_t row,
                                   std::int32_t column) {
        Grid<float> grid(ndy + 1, ndx + 1, 0.0F);
        map_block(v, ndx, ndy, 1, 1, 1, grid);
        return grid(row, column);
    }

private:
    std::mt19937 random_{3};
};

TEST_F(ShapeFunctions, NinePointsAgreeWithTheProductsOfPolynomials) {
    for (int round = 0; round < 5000; ++round) {
        const Nine v = any_values();
        const double s = between(-1.0, 1.0), r = between(-1.0, 1.0);
        const float found = lagrange_value(static_cast<float>(s), static_cast<float>(r), values_of(v));
        EXPECT_NEAR(static_cast<double>(found), nine_points(s, r, v), 3.0E-4) << s << " " << r;
    }
}

TEST_F(ShapeFunctions, NinePointWeightsAddUpToOne) {
    const BlockValues ones{1, 1, 1, 1, 1, 1, 1, 1, 1};
    for (int round = 0; round < 2000; ++round) {
        const float s = static_cast<float>(between(-1.0, 1.0)), r = static_cast<float>(between(-1.0, 1.0));
        EXPECT_NEAR(lagrange_value(s, r, ones), 1.0F, 5.0E-7F) << s << " " << r;
    }
}

TEST_F(ShapeFunctions, NinePointsGiveEachKeyPointItsValue) {
    const Nine v = any_values();
    for (std::size_t row = 0; row < 3; ++row)
        for (std::size_t column = 0; column < 3; ++column)
            EXPECT_EQ(lagrange_value(static_cast<float>(column) - 1.0F, 1.0F - static_cast<float>(row),
                                     values_of(v)),
                      static_cast<float>(v[row][column]));
}

TEST_F(ShapeFunctions, NinePointsReproduceEveryBiquadraticSurface) {
    const auto surface = [](double s, double r) {
        return 1.0 + 2.0 * s - 3.0 * r + 0.5 * s * s + 4.0 * s * r - r * r + s * s * r - 2.0 * s * r * r +
               3.0 * s * s * r * r;
    };
    Nine v{};
    for (std::size_t row = 0; row < 3; ++row)
        for (std::size_t column = 0; column < 3; ++column)
            v[row][column] = surface(static_cast<double>(column) - 1.0, 1.0 - static_cast<double>(row));
    for (int round = 0; round < 2000; ++round) {
        const double s = between(-1.0, 1.0), r = between(-1.0, 1.0);
        EXPECT_NEAR(
            static_cast<double>(lagrange_value(static_cast<float>(s), static_cast<float>(r), values_of(v))),
            surface(s, r), 1.0E-5);
    }
}

TEST_F(ShapeFunctions, NinePointTermsAreAddedRowByRowIn32Bits) {
    for (int round = 0; round < 5000; ++round) {
        const Nine v = any_values();
        const float s = static_cast<float>(between(-1.0, 1.0)), r = static_cast<float>(between(-1.0, 1.0));
        const std::array<float, 3> row_weight{r * (r + 1.0F) / 2.0F, 1.0F - r * r, r * (r - 1.0F) / 2.0F};
        const std::array<float, 3> column_weight{s * (s - 1.0F) / 2.0F, 1.0F - s * s, s * (s + 1.0F) / 2.0F};
        float sum = row_weight[0] * column_weight[0] * static_cast<float>(v[0][0]);
        for (std::size_t k = 1; k < 9; ++k)
            sum = sum + row_weight[k / 3] * column_weight[k % 3] * static_cast<float>(v[k / 3][k % 3]);
        EXPECT_EQ(std::bit_cast<std::uint32_t>(lagrange_value(s, r, values_of(v))),
                  std::bit_cast<std::uint32_t>(sum))
            << s << " " << r;
    }
}

// --- nodes of a block ----------------------------------------------------------------------------

TEST_F(ShapeFunctions, EightPointNodesAgreeWithTheTextbook) {
    for (int round = 0; round < 300; ++round) {
        const Nine v = any_values();
        const std::int32_t ndx = 2 + round % 7, ndy = 2 + round % 5;
        Grid<float> grid(ndy + 1, ndx + 1, 0.0F);
        map_block(values_of(v), ndx, ndy, 1, 1, 5, grid);
        for (std::int32_t i = 0; i <= ndx; ++i) {
            for (std::int32_t j = 0; j <= ndy; ++j) {
                if ((i == 0 || i == ndx) && (j == 0 || j == ndy))
                    continue;
                const double s = -1.0 + 2.0 * i / ndx, r = 1.0 - 2.0 * j / ndy;
                EXPECT_NEAR(static_cast<double>(grid(j + 1, i + 1)), eight_points(s, r, v), 1.0E-3)
                    << s << " " << r;
            }
        }
    }
}

TEST_F(ShapeFunctions, EightPointWeightsAddUpToOneAndLeaveTheCentreOut) {
    // The centre is a quarter of minus the corners and half of the middles; its own value takes no part.
    BlockValues v{1, 1, 1, 1, 77, 1, 1, 1, 1};
    EXPECT_EQ(eight_point_value(v, 2, 2, 2, 2), 1.0F);
    v = {1, 6, 5, 0.5F, 99, 4.5F, 0, 2, 4};
    // -(1 + 5 + 0 + 4) / 4 + (0.5 + 4.5 + 6 + 2) / 2
    EXPECT_EQ(eight_point_value(v, 2, 2, 2, 2), 4.0F);
    EXPECT_EQ(eight_point_value(v, 2, 2, 1, 2), 6.0F);
    EXPECT_EQ(eight_point_value(v, 2, 2, 2, 1), 0.5F);
    EXPECT_EQ(eight_point_value(v, 2, 2, 3, 2), 2.0F);
    EXPECT_EQ(eight_point_value(v, 2, 2, 2, 3), 4.5F);
}

TEST_F(ShapeFunctions, ANegativeMaterialTakesTheCentre) {
    Grid<float> grid(3, 3, 0.0F);
    map_block({1, 6, 5, 0.5F, 99, 4.5F, 0, 2, 4}, 2, 2, 1, 1, -5, grid);
    EXPECT_EQ(grid(2, 2), 99.0F);
    EXPECT_EQ(grid(1, 2), 6.0F);
}

TEST_F(ShapeFunctions, CornersTakeTheirKeyValuesExactly) {
    const BlockValues v{0.1F, 7, 0.3F, 7, 7, 7, 0.7F, 7, 0.9F};
    for (const std::int32_t material : {1, -1}) {
        for (const std::int32_t n : {1, 2, 3, 7, 49}) {
            Grid<float> grid(n + 1, n + 1, 0.0F);
            map_block(v, n, n, 1, 1, material, grid);
            EXPECT_EQ(grid(1, 1), 0.1F);
            EXPECT_EQ(grid(1, n + 1), 0.3F);
            EXPECT_EQ(grid(n + 1, 1), 0.7F);
            EXPECT_EQ(grid(n + 1, n + 1), 0.9F);
        }
    }
}

TEST_F(ShapeFunctions, LocalCoordinatesComeFromRepeatedSteps) {
    // Steps of a third, a fifth and so on are not exact: -1 + step + step is not -1 + 2 step.
    for (const auto& [ndx, ndy] : {std::pair{3, 5}, {7, 3}, {49, 11}, {5, 1}, {1, 5}}) {
        const BlockValues v = values_of(any_values());
        Grid<float> grid(ndy + 1, ndx + 1, -1.0F);
        map_block(v, ndx, ndy, 1, 1, -1, grid);
        const float s_step = 2.0F / static_cast<float>(ndx), r_step = 2.0F / static_cast<float>(ndy);
        float s = -1.0F;
        for (std::int32_t column = 1; column <= ndx + 1; ++column) {
            const bool side = column == 1 || column == ndx + 1;
            const float across = column == 1 ? -1.0F : column == ndx + 1 ? 1.0F : s;
            float r = 1.0F;
            for (std::int32_t row = 1; row <= ndy + 1; ++row) {
                if (!side || (row > 1 && row < ndy + 1)) {
                    EXPECT_EQ(grid(row, column), lagrange_value(across, r, v)) << row << " " << column;
                }
                r = r - r_step;
            }
            s = s + s_step;
        }
    }
}

TEST_F(ShapeFunctions, ABlockFillsItsPartOfTheGridOnly) {
    Grid<float> grid(6, 7, -1.0F);
    map_block({4, 4, 4, 4, 4, 4, 4, 4, 4}, 3, 2, 3, 2, -1, grid);
    for (std::int32_t row = 1; row <= 6; ++row)
        for (std::int32_t column = 1; column <= 7; ++column) {
            const bool inside = row >= 2 && row <= 4 && column >= 3 && column <= 6;
            EXPECT_NEAR(grid(row, column), inside ? 4.0F : -1.0F, 2.0E-6F) << row << " " << column;
        }
}

}  // namespace
}  // namespace brelan::test
