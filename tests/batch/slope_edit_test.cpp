// IEDIT 5 as a deck of the user's own: the template of the data directory mapped onto a triangle.

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <string>
#include <utility>
#include <vector>

#include "support/dam.h"
#include "support/mesh.h"

namespace brelan::test {
namespace {

// The triangle of the first model in four elements, with nodes 1 to 5 that the model counts to the slope:
//
//                        5 (28.2844, 28.2844)
//                     / |
//            3 ------- 4        element 7: 1 2 3        element 8: 2 4 3
//         / 7 \  8 /  |         element 9: 3 4 5
//       1 ---- 2 ---- 6         element 10: 2 6 4
//
Mesh small_template(Kind kind) {
    constexpr double L = 28.2844;
    const bool mechanical = kind == Kind::coupled || kind == Kind::displacement;
    const std::size_t words = kind == Kind::coupled ? 5 : kind == Kind::displacement ? 3 : 2;
    Mesh mesh;
    mesh.kind = kind;
    const double places[6][2] = {{0, 0}, {L / 2, 0}, {L / 2, L / 2}, {L, L / 2}, {L, L}, {L, 0}};
    for (int n = 1; n <= 6; ++n) {
        MeshNode node;
        node.number = n;
        node.codes.assign(words, 7);
        node.x = places[n - 1][0];
        node.y = places[n - 1][1];
        node.value = 3.0;
        node.factor = 0.5;
        mesh.nodes.push_back(node);
    }
    const std::array<int, 4> corners[4] = {{1, 2, 3, 0}, {2, 4, 3, 0}, {3, 4, 5, 0}, {2, 6, 4, 0}};
    for (int e = 0; e < 4; ++e) {
        MeshElement element;
        element.number = 7 + e;
        element.corners = corners[e];
        element.material = 4;
        element.codes.assign(kind == Kind::coupled ? 4 : mechanical ? 0 : 1, 3);
        element.reals.assign(kind == Kind::coupled ? 1 : mechanical ? 2 : 0, 2.0);
        mesh.continuum.push_back(element);
    }
    return mesh;
}

class SlopeEdit {
public:
    explicit SlopeEdit(Kind kind, const Mesh& mesh) : kind_(kind), project_(kind) {
        project_.write_data("Slope/L_1.0.Mes", mesh.text());
    }
    explicit SlopeEdit(Kind kind) : SlopeEdit(kind, small_template(kind)) {}

    RunResult run(const std::string& numbers, const std::string& values, const std::string& triangle,
                  const std::string& file_a = "Dummy.dat") {
        project_.deck(text_of({"1 0", file_a, "out.Mes", numbers, "5", "1", values, triangle}));
        return project_.run();
    }
    MeshCheck mesh() const { return check_mesh(project_.read("out.Mes"), kind_); }
    const Project& project() const { return project_; }

private:
    Kind kind_;
    Project project_;
};

// Crest, toe and foot of a slope that falls to the left, and of one that falls to the right.
const std::string LEFT = "10 8 0 2 10 2", RIGHT = "10 8 20 2 10 2";

TEST(SlopeEditRun, KeepsNodeNumbersAndShiftsElements) {
    for (const Kind kind : ALL_KINDS) {
        SlopeEdit edit(kind);
        expect_finished(edit.run("101 50", "9 0.0 1.5", LEFT));
        const MeshCheck check = edit.mesh();
        EXPECT_EQ(check.problems, std::vector<std::string>{});
        ASSERT_EQ(check.mesh.nodes.size(), 6U);
        ASSERT_EQ(check.mesh.continuum.size(), 4U);
        const double expected[6][2] = {{0, 2}, {5, 2}, {5, 5}, {10, 5}, {10, 8}, {10, 2}};
        for (int n = 1; n <= 6; ++n) {
            const MeshNode& node = check.mesh.nodes[static_cast<std::size_t>(n - 1)];
            EXPECT_EQ(node.number, n);
            EXPECT_NEAR(node.x, expected[n - 1][0], 1.0E-5);
            EXPECT_NEAR(node.y, expected[n - 1][1], 1.0E-5);
        }
        for (int e = 0; e < 4; ++e)
            EXPECT_EQ(check.mesh.continuum[static_cast<std::size_t>(e)].number, 101 + e);
        EXPECT_EQ(check.mesh.continuum[1].corners, (std::array<int, 4>{2, 4, 3, 0}));
    }
}

// Words 1 and 2 of the slope are 3 and 0 without a level; words 3 to 5 are 1, H is Hi, CF stays.
TEST(SlopeEditRun, GivesNodesAndElementsTheirValues) {
    for (const Kind kind : ALL_KINDS) {
        SlopeEdit edit(kind);
        expect_finished(edit.run("1 1", "9 0.0 1.5", LEFT));
        const Mesh mesh = edit.mesh().mesh;
        ASSERT_EQ(mesh.nodes.size(), 6U);
        for (const MeshNode& node : mesh.nodes) {
            std::vector<int> codes = kind == Kind::coupled        ? std::vector<int>{3, 0, 1, 1, 1}
                                     : kind == Kind::displacement ? std::vector<int>{3, 0, 1}
                                                                  : std::vector<int>{3, 0};
            EXPECT_EQ(node.codes, codes);
            if (kind == Kind::temperature || kind == Kind::head) {
                EXPECT_EQ(node.value, 1.5);
                EXPECT_EQ(node.factor, 0.5);
            }
        }
        ASSERT_EQ(mesh.continuum.size(), 4U);
        for (const MeshElement& element : mesh.continuum) {
            EXPECT_EQ(element.material, 9);
            switch (kind) {
                case Kind::coupled:
                    EXPECT_EQ(element.codes, (std::vector<int>{0, 1, 2, 2}));
                    EXPECT_EQ(element.reals, std::vector<double>{0.0});
                    break;
                case Kind::displacement:
                    EXPECT_EQ(element.reals, (std::vector<double>{1.0, 0.0}));
                    break;
                default:
                    EXPECT_EQ(element.codes, std::vector<int>{0});
            }
        }
    }
}

TEST(SlopeEditRun, TurnsTheElementsOfAMirroredTriangle) {
    SlopeEdit edit(Kind::displacement);
    expect_finished(edit.run("1 1", "1 0.0", RIGHT));
    const MeshCheck check = edit.mesh();
    EXPECT_EQ(check.clockwise, 0);
    EXPECT_NEAR(check.area, 30.0, 1.0E-4);
    EXPECT_EQ(check.mesh.continuum.at(0).corners, (std::array<int, 4>{1, 3, 2, 0}));
    EXPECT_EQ(check.mesh.continuum.at(3).corners, (std::array<int, 4>{2, 4, 6, 0}));
}

TEST(SlopeEditRun, KeepsBeamsAndTrusses) {
    Mesh mesh = small_template(Kind::coupled);
    mesh.beams = {{20, 1, 2, 5}};
    mesh.trusses = {{30, 4, 5, 6}};
    SlopeEdit edit(Kind::coupled, mesh);
    expect_finished(edit.run("101 1", "1 0.0", RIGHT));
    const Mesh result = edit.mesh().mesh;
    ASSERT_EQ(result.beams.size(), 1U);
    ASSERT_EQ(result.trusses.size(), 1U);
    EXPECT_EQ(result.beams[0].number, 105);
    EXPECT_EQ(result.beams[0].i, 1);
    EXPECT_EQ(result.beams[0].material, 5);
    EXPECT_EQ(result.trusses[0].number, 106);
    EXPECT_EQ(result.trusses[0].material, 6);
}

TEST(SlopeEditRun, HasNoUseForFileA) {
    for (const std::string& file_a :
         {std::string("   "), std::string("Dummy.dat"), std::string("no such file")}) {
        SlopeEdit edit(Kind::displacement);
        expect_finished(edit.run("1 1", "1 0.0", LEFT, file_a));
        EXPECT_EQ(edit.mesh().mesh.nodes.size(), 6U);
    }
}

TEST(SlopeEditRun, TakesTheTemplateOfItsModel) {
    struct Row {
        const char* MODEL;
        std::size_t elements;
    };
    for (const Row& row :
         {Row{"1", 412}, {"2", 452}, {"3", 182}, {"4", 228}, {"5", 270}, {"6", 412}, {"-1", 412}}) {
        const Project project(Kind::head);
        install_dam_files(project, Kind::head);
        project.deck(text_of({"1 0", "Dummy.dat", "out.Mes", "1 1", "5", row.MODEL, "1 0.0", LEFT}));
        expect_finished(project.run());
        const MeshCheck check = expect_sound_mesh(project, "out.Mes", Kind::head);
        EXPECT_EQ(check.mesh.continuum.size(), row.elements);
        EXPECT_NEAR(check.area, 30.0, 1.0E-3);
    }
}

// The level lies in the middle of a part of the slope: one node and one element more, on both sides of a dam.
TEST(SlopeEditRun, DividesTheElementAtTheLevel) {
    for (const Kind kind : ALL_KINDS)
        for (const std::string& triangle : {LEFT, RIGHT}) {
            const Project project(kind);
            install_dam_files(project, kind);
            project.deck(text_of({"1 0", "Dummy.dat", "out.Mes", "301 1", "5", "3", "1 0.5 4.0", triangle}));
            expect_finished(project.run());
            const MeshCheck check = expect_sound_mesh(project, "out.Mes", kind);
            ASSERT_EQ(check.mesh.nodes.size(), 210U);
            ASSERT_EQ(check.mesh.continuum.size(), 183U);
            EXPECT_EQ(check.clockwise, 0);
            EXPECT_NEAR(check.area, 30.0, 1.0E-3);
            const MeshNode& level = check.mesh.nodes.back();
            EXPECT_EQ(level.number, 210);
            EXPECT_NEAR(level.y, 5.0, 1.0E-5);
            EXPECT_NEAR(level.x, triangle == LEFT ? 5.0 : 15.0, 1.0E-5);
            EXPECT_EQ(level.codes.at(0), 1);
            EXPECT_EQ(level.codes.at(1), 1);
            if (kind == Kind::temperature || kind == Kind::head) {
                EXPECT_EQ(level.value, 4.0);
                EXPECT_EQ(level.factor, 1.0);
            }
            // Part 14 of the slope, between nodes 15 and 16, is held by element 16.
            int at_level = 0;
            for (const MeshElement& element : check.mesh.continuum)
                for (const int corner : element.corners)
                    if (corner == 210) {
                        ++at_level;
                        EXPECT_TRUE(element.number == 316 || element.number == 483) << element.number;
                    }
            EXPECT_EQ(at_level, 2);
        }
}

TEST(SlopeEditRun, ListsItsValuesFromDebugLevel2On) {
    for (const int level : {1, 2}) {
        const Project project(Kind::displacement);
        install_dam_files(project, Kind::displacement);
        project.write_data("DEBUG/Brelan_P1.dat", std::to_string(level) + " 0.5\n");
        project.deck(text_of({"1 0", "Dummy.dat", "out.Mes", "1 1", "5", "3", "1 0.5", LEFT}));
        expect_finished(project.run());
        const std::vector<std::string> lines = lines_of(project.read_work("Brelan_P1.deb"));
        if (level == 1) {
            EXPECT_EQ(lines.size(), 1U);
            continue;
        }
        const std::vector<std::string> expected = {
            "  Start debugging ... ",      "  MSRT  =            3",      "  N_DIV =           29",
            "  rHw   =   0.500000000E+00", "  rNHw  =   0.145000000E+02", "  N_w   =           14",
            "  X_w   =   0.130000000E+02", "  Y_w   =   0.650000000E+01",
        };
        ASSERT_EQ(lines.size(), expected.size() + 5);
        for (std::size_t i = 0; i < expected.size(); ++i)
            EXPECT_EQ(lines[i], expected[i]);
        const char* labels[] = {" Y_SL(N_w+0) = ", " Y_SL(N_w+1) = ", " Y_SL(N_w+2) = ", " Y_SL(N_w+3) = "};
        for (std::size_t k = 0; k < 4; ++k) {
            const std::string& line = lines[expected.size() + k];
            EXPECT_EQ(line.substr(1, 15), labels[k]);
            EXPECT_NEAR(std::stod(line.substr(16)), 13.0 * static_cast<double>(14 + k) / 29.0, 1.0E-5);
        }
        EXPECT_EQ(lines.back().substr(1, 15), " rDI         = ");
        EXPECT_NEAR(std::stod(lines.back().substr(16)), 0.5, 1.0E-4);
    }
}

// The level in the last part of the slope: heights beyond the crest are shown as 0.
TEST(SlopeEditRun, ListsHeightsBeyondTheCrestAsZero) {
    const Project project(Kind::displacement);
    install_dam_files(project, Kind::displacement);
    project.write_data("DEBUG/Brelan_P1.dat", "2 0.5\n");
    project.deck(text_of({"1 0", "Dummy.dat", "out.Mes", "1 1", "5", "3", "1 0.99", LEFT}));
    expect_finished(project.run());
    const std::vector<std::string> lines = lines_of(project.read_work("Brelan_P1.deb"));
    ASSERT_EQ(lines.size(), 13U);
    EXPECT_NEAR(std::stod(lines[9].substr(16)), 13.0, 1.0E-5);
    EXPECT_EQ(std::stod(lines[10].substr(16)), 0.0);
    EXPECT_EQ(std::stod(lines[11].substr(16)), 0.0);
}

// A node outside the template's triangle is listed, and mapped all the same.
TEST(SlopeEditRun, ListsNodesOutsideTheTemplate) {
    Mesh mesh = small_template(Kind::displacement);
    mesh.nodes[5].y = -28.2844;
    SlopeEdit edit(Kind::displacement, mesh);
    edit.project().write_data("DEBUG/Brelan_P1.dat", "2 0.5\n");
    expect_finished(edit.run("1 1", "1 0.0", LEFT));
    const std::vector<std::string> lines = lines_of(edit.project().read_work("Brelan_P1.deb"));
    ASSERT_EQ(lines.size(), 10U);
    EXPECT_EQ(lines[1], "  ICASE =            1");
    EXPECT_EQ(lines[2].substr(0, 16), "  T_RS: NG  R = ");
    EXPECT_NE(lines[2].find(" S = "), std::string::npos);
    for (const auto& [line, labels] : {std::pair{3, " X1 = | Y1 = "},
                                       {4, " X2 = | Y2 = "},
                                       {5, " X3 = | Y3 = "},
                                       {6, " XC = | YC = "},
                                       {7, " a1 = | b1 = | c1 = "},
                                       {8, " a2 = | b2 = | c2 = "}}) {
        std::string rest = labels;
        while (!rest.empty()) {
            const std::size_t end = std::min(rest.find('|'), rest.size());
            EXPECT_NE(lines[static_cast<std::size_t>(line)].find(rest.substr(0, end)), std::string::npos)
                << line;
            rest.erase(0, end + 1);
        }
    }
    EXPECT_EQ(lines[9], "  TERMINATED DUE TO ERROR ");
    const MeshNode node = edit.mesh().mesh.nodes.at(5);
    EXPECT_NEAR(node.x, 10.0, 1.0E-5);
    EXPECT_NEAR(node.y, -4.0, 1.0E-5);
}

TEST(SlopeEditRun, RefusesANumberBeyondTheTables) {
    SlopeEdit edit(Kind::displacement);
    expect_failed(edit.run("99988 1", "1 0.0", LEFT), {"L_1.0.Mes", "99990", "Card 3.2"});
}

}  // namespace
}  // namespace brelan::test
