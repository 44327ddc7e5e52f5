// The slope templates of the package: counts, divisions, numbers, angles and areas, read from their files.

#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "support/campaign.h"
#include "support/project.h"

namespace brelan::test {
namespace {

namespace fs = std::filesystem;

const fs::path PACKAGE = fs::path(BRELAN_SOURCE_DIR) / "data" / "Vork" / "Qx" / "Qxdata";

// What each template must be.
struct Expected {
    int model;
    const char* file;
    double width, height;
    int divisions, columns, rows, elements;
    int low_points, point_sum;  // slope point i is node i up to low_points, node point_sum - i beyond
    int low_parts, part_sum;    // slope part w is held by element w + 1 (or w + 2), part_sum - w beyond
};
constexpr Expected TEMPLATES[] = {
    {1, "L_1.0.Mes", 28.2844, 28.2844, 40, 28, 28, 412, 21, 242, 20, 214},
    {2, "L_1.5.Mes", 33.28, 22.1846, 40, 33, 28, 452, 21, 217, 20, 190},
    {3, "L_2.0.Mes", 26.0, 13.0, 29, 26, 13, 182, 30, 0, 0, 0},
    {4, "L_2.5.Mes", 32.5, 13.0, 35, 33, 13, 228, 36, 0, 0, 0},
    {5, "L_3.0.Mes", 39.0, 13.0, 41, 39, 13, 270, 42, 0, 0, 0},
};

struct Spot {
    double x = 0.0, y = 0.0;
};

struct Template {
    Expected expected;
    std::string text;
    std::map<int, Spot> nodes;
    std::map<int, std::vector<int>> elements;
    std::vector<std::vector<double>> node_lines, element_lines;  // all values of each record

    Template(const Expected& e, const std::string& set)
        : expected(e), text(read_text(PACKAGE / set / e.file)) {
        std::vector<std::string> lines;
        for (const std::string& line : lines_of(text))
            if (line.empty() || line.front() != '*')
                lines.push_back(line);
        const std::vector<double> counts = values(lines.at(2));
        std::size_t at = 5;
        for (int i = 0; i < static_cast<int>(counts.at(0)); ++i, ++at) {
            node_lines.push_back(values(lines.at(at)));
            const std::size_t x = set == "Slope" ? 6 : 3;
            nodes[static_cast<int>(node_lines.back().at(0))] = {node_lines.back().at(x),
                                                                node_lines.back().at(x + 1)};
        }
        at += 2;
        for (int i = 0; i < static_cast<int>(counts.at(1)); ++i, ++at) {
            element_lines.push_back(values(lines.at(at)));
            std::vector<int>& corners = elements[static_cast<int>(element_lines.back().at(0))];
            for (std::size_t k = 1; k <= 4; ++k)
                if (element_lines.back().at(k) > 0.0)
                    corners.push_back(static_cast<int>(element_lines.back().at(k)));
        }
        EXPECT_EQ(at, lines.size()) << e.file;
    }

    static std::vector<double> values(const std::string& line) {
        std::istringstream stream(line);
        std::vector<double> found;
        for (double value = 0.0; stream >> value;)
            found.push_back(value);
        return found;
    }

    // Node of slope point i from 1, element of slope part w from 0.
    int slope_node(int i) const { return i <= expected.low_points ? i : expected.point_sum - i; }
    int slope_element(int w) const {
        if (expected.part_sum == 0)
            return w + 2;
        return w < expected.low_parts ? w + 1 : expected.part_sum - w;
    }
    std::set<int> slope_nodes() const {
        std::set<int> found;
        for (int i = 1; i <= expected.divisions + 1; ++i)
            found.insert(slope_node(i));
        return found;
    }

    std::vector<Spot> corners(const std::vector<int>& element) const {
        std::vector<Spot> spots;
        for (const int corner : element)
            spots.push_back(nodes.at(corner));
        return spots;
    }
};

double area(const std::vector<Spot>& p) {
    double sum = 0.0;
    for (std::size_t i = 0; i < p.size(); ++i) {
        const Spot& a = p[i];
        const Spot& b = p[(i + 1) % p.size()];
        sum += a.x * b.y - b.x * a.y;
    }
    return 0.5 * sum;
}

double angle(const Spot& before, const Spot& at, const Spot& behind) {
    const double ux = behind.x - at.x, uy = behind.y - at.y, vx = before.x - at.x, vy = before.y - at.y;
    return std::atan2(ux * vy - uy * vx, ux * vx + uy * vy) * 180.0 / std::acos(-1.0);
}

std::vector<Template> all_templates() {
    std::vector<Template> all;
    for (const Expected& expected : TEMPLATES)
        for (const char* set : {"Slope", "Slope_TH"})
            all.emplace_back(expected, set);
    return all;
}

// --- both sets -----------------------------------------------------------------------------------

TEST(SlopeTemplates, HaveTheirCounts) {
    for (const Template& t : all_templates()) {
        EXPECT_EQ(t.elements.size(), static_cast<std::size_t>(t.expected.elements)) << t.expected.file;
        // No gap in either numbering.
        EXPECT_EQ(t.nodes.begin()->first, 1);
        EXPECT_EQ(t.nodes.rbegin()->first, static_cast<int>(t.nodes.size()));
        EXPECT_EQ(t.elements.begin()->first, 1);
        EXPECT_EQ(t.elements.rbegin()->first, static_cast<int>(t.elements.size()));
    }
}

TEST(SlopeTemplates, AreMadeByTheGenerator) {
    const fs::path made = fs::temp_directory_path() / ("brelan-slopes-" + std::to_string(::getpid()));
    ASSERT_EQ(std::system((std::string(SLOPE_TEMPLATES_TOOL) + " " + made.string()).c_str()), 0);
    int files = 0;
    for (const char* set : {"Slope", "Slope_TH"})
        for (const fs::directory_entry& entry : fs::directory_iterator(PACKAGE / set)) {
            EXPECT_EQ(read_text(entry.path()), read_text(made / set / entry.path().filename()))
                << entry.path().filename();
            ++files;
        }
    EXPECT_EQ(files, 10);
    fs::remove_all(made);
}

TEST(SlopeTemplates, GeneratorRefusesADirectoryThatItCannotWrite) {
    const std::string tool(SLOPE_TEMPLATES_TOOL);
    EXPECT_NE(std::system((tool + " /dev/null/none 2>/dev/null").c_str()), 0);
    EXPECT_NE(std::system((tool + " 2>/dev/null").c_str()), 0);
}

TEST(SlopeTemplates, OfBothSetsAreTheSameMesh) {
    for (const Expected& expected : TEMPLATES) {
        const Template one(expected, "Slope"), other(expected, "Slope_TH");
        EXPECT_EQ(one.elements, other.elements);
        ASSERT_EQ(one.nodes.size(), other.nodes.size());
        for (const auto& [number, spot] : one.nodes) {
            EXPECT_EQ(spot.x, other.nodes.at(number).x);
            EXPECT_EQ(spot.y, other.nodes.at(number).y);
        }
    }
}

TEST(SlopeTemplates, HaveRecordsOfTheirKinds) {
    for (const Expected& expected : TEMPLATES) {
        const Template one(expected, "Slope"), other(expected, "Slope_TH");
        for (const auto& line : one.node_lines) {
            ASSERT_EQ(line.size(), 8U);
            EXPECT_EQ(line[1], 0.0);
            EXPECT_EQ(line[2], 0.0);
        }
        for (const auto& line : other.node_lines) {
            ASSERT_EQ(line.size(), 7U);
            EXPECT_EQ(line[1], 0.0);
            EXPECT_EQ(line[2], 0.0);
        }
        for (const auto& line : one.element_lines) {
            ASSERT_EQ(line.size(), 15U);
            EXPECT_EQ(line[9], 1.0);
        }
        for (const auto& line : other.element_lines) {
            ASSERT_EQ(line.size(), 7U);
            EXPECT_EQ(line[5], 1.0);
        }
    }
}

// --- the mesh ------------------------------------------------------------------------------------

// Every side is shared by two elements that run through it in opposite ways, or lies on a side of the
// triangle.
TEST(SlopeTemplates, FillTheirTriangle) {
    for (const Template& t : all_templates()) {
        const double width = t.expected.width, height = t.expected.height;
        std::set<std::pair<int, int>> sides;
        double sum = 0.0;
        for (const auto& [number, element] : t.elements) {
            sum += area(t.corners(element));
            for (std::size_t i = 0; i < element.size(); ++i)
                EXPECT_TRUE(sides.insert({element[i], element[(i + 1) % element.size()]}).second) << number;
        }
        EXPECT_NEAR(sum, 0.5 * width * height, 1.0E-3);
        std::array<int, 3> divisions{};
        for (const auto& [a, b] : sides) {
            if (sides.contains({b, a}))
                continue;
            const Spot& p = t.nodes.at(a);
            const Spot& q = t.nodes.at(b);
            const auto both = [&](auto on) { return on(p) && on(q); };
            if (both([](const Spot& s) { return s.y == 0.0; }))
                ++divisions[0];
            else if (both([&](const Spot& s) { return std::abs(s.x - width) < 1.0E-4; }))
                ++divisions[1];
            else if (both([&](const Spot& s) {
                         return std::abs(s.x * height - s.y * width) < 1.0E-3 * width;
                     }))
                ++divisions[2];
            else
                ADD_FAILURE() << t.expected.file << ": free side " << a << "-" << b;
        }
        EXPECT_EQ(divisions, (std::array<int, 3>{t.expected.columns, t.expected.rows, t.expected.divisions}));
    }
}

TEST(SlopeTemplates, DivideTheirSidesEvenly) {
    for (const Template& t : all_templates()) {
        std::set<int> base, wall;
        for (const auto& [number, spot] : t.nodes) {
            const double column = spot.x / t.expected.width * t.expected.columns;
            const double row = spot.y / t.expected.height * t.expected.rows;
            if (spot.y == 0.0) {
                EXPECT_NEAR(column, std::round(column), 1.0E-4);
                base.insert(static_cast<int>(std::round(column)));
            }
            if (std::abs(spot.x - t.expected.width) < 1.0E-4) {
                EXPECT_NEAR(row, std::round(row), 1.0E-4);
                wall.insert(static_cast<int>(std::round(row)));
            }
        }
        EXPECT_EQ(base.size(), static_cast<std::size_t>(t.expected.columns) + 1);
        EXPECT_EQ(wall.size(), static_cast<std::size_t>(t.expected.rows) + 1);
        for (int i = 0; i <= t.expected.divisions; ++i) {
            const Spot& spot = t.nodes.at(t.slope_node(i + 1));
            EXPECT_NEAR(spot.x, t.expected.width * i / t.expected.divisions, 1.0E-4)
                << t.expected.file << " " << i;
            EXPECT_NEAR(spot.y, t.expected.height * i / t.expected.divisions, 1.0E-4)
                << t.expected.file << " " << i;
        }
    }
}

TEST(SlopeTemplates, HoldEachPartOfTheSlopeInTheElementOfItsNumber) {
    for (const Template& t : all_templates()) {
        const std::set<int> slope = t.slope_nodes();
        std::set<int> at_slope;
        for (int w = 0; w < t.expected.divisions; ++w) {
            const int number = t.slope_element(w);
            at_slope.insert(number);
            const std::vector<int>& c = t.elements.at(number);
            bool found = false;
            for (std::size_t i = 0; i < c.size(); ++i) {
                const std::set<int> side{c[i], c[(i + 1) % c.size()]};
                found = found || side == std::set<int>{t.slope_node(w + 1), t.slope_node(w + 2)};
            }
            EXPECT_TRUE(found) << t.expected.file << ", part " << w << ", element " << number;
        }
        for (const auto& [number, c] : t.elements)
            for (std::size_t i = 0; i < c.size(); ++i)
                if (slope.contains(c[i]) && slope.contains(c[(i + 1) % c.size()])) {
                    EXPECT_TRUE(at_slope.contains(number)) << t.expected.file << ", element " << number;
                }
    }
}

TEST(SlopeTemplates, AreMostlyQuadrilateralsWithGoodAngles) {
    for (const Template& t : all_templates()) {
        std::size_t quadrilaterals = 0;
        for (const auto& [number, element] : t.elements) {
            const std::vector<Spot> c = t.corners(element);
            quadrilaterals += c.size() == 4 ? 1 : 0;
            for (std::size_t i = 0; i < c.size(); ++i) {
                const double degrees = angle(c[(i + c.size() - 1) % c.size()], c[i], c[(i + 1) % c.size()]);
                EXPECT_GT(degrees, 15.0) << t.expected.file << ", element " << number;
                EXPECT_LT(degrees, 140.0) << t.expected.file << ", element " << number;
            }
        }
        EXPECT_GT(quadrilaterals * 10, t.elements.size() * 7) << t.expected.file;
    }
}

// --- under water ---------------------------------------------------------------------------------

// The slope spaced anew for a level near a node; the same points where the level is between two.
std::vector<double> slope_shares(int N, double water_share) {
    std::vector<double> shares;
    int below = static_cast<int>(water_share * N);
    const double part = water_share * N - below;
    const bool split = part >= 0.25 && part <= 0.75;
    if (part > 0.75 && below + 1 < N)
        ++below;
    for (int i = 0; i <= N; ++i)
        shares.push_back(split        ? static_cast<double>(i) / N
                         : i == 0     ? 0.0
                         : i <= below ? water_share * i / below
                                      : water_share + (1.0 - water_share) * (i - below) / (N - below));
    return shares;
}

TEST(SlopeTemplates, KeepPositiveAreasAtEveryWaterLevel) {
    for (const Expected& expected : TEMPLATES) {
        Template t(expected, "Slope");
        for (int thousandth = 1; thousandth <= 999; thousandth += SAMPLE_SHARE) {
            const std::vector<double> shares = slope_shares(expected.divisions, thousandth / 1000.0);
            for (int i = 0; i <= expected.divisions; ++i)
                t.nodes[t.slope_node(i + 1)] = {expected.width * shares[static_cast<std::size_t>(i)],
                                                expected.height * shares[static_cast<std::size_t>(i)]};
            for (const auto& [number, element] : t.elements)
                ASSERT_GT(area(t.corners(element)), 0.0)
                    << expected.file << ", level " << thousandth << ", element " << number;
        }
    }
}

}  // namespace
}  // namespace brelan::test
