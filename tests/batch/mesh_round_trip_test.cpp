// Random meshes of each kind through the real program: what an edit must keep.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <map>
#include <numeric>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "support/mesh.h"
#include "support/project.h"

namespace brelan::test {
namespace {

// A grid of cells whose points are shifted a little and numbered at random; a cell is a quadrilateral or two
// triangles, each beginning at any of its corners. Reals have no more digits than the file shows.
class RandomMesh {
public:
    RandomMesh(Kind kind, unsigned seed) : random_(seed) {
        mesh_.kind = kind;
        columns_ = between(2, 7);
        rows_ = between(2, 7);
        add_nodes();
        int number = between(1, 500);
        for (int row = 0; row < rows_; ++row)
            for (int column = 0; column < columns_; ++column)
                add_cell(column, row, number);
        for (int k = between(0, 5); k > 0; --k)
            mesh_.beams.push_back(line(number));
        for (int k = between(0, 5); k > 0; --k)
            mesh_.trusses.push_back(line(number));
    }

    const Mesh& mesh() const { return mesh_; }

private:
    int between(int lowest, int highest) {
        return lowest + static_cast<int>(random_() % static_cast<unsigned>(highest - lowest + 1));
    }
    double decimal(int lowest, int highest, double unit) { return between(lowest, highest) / unit; }

    bool has_node_values() const { return mesh_.kind == Kind::temperature || mesh_.kind == Kind::head; }

    void add_nodes() {
        const int points = (columns_ + 1) * (rows_ + 1);
        std::vector<int> order(static_cast<std::size_t>(points));
        std::iota(order.begin(), order.end(), 0);
        std::shuffle(order.begin(), order.end(), random_);
        number_of_.resize(order.size());
        const int codes = mesh_.kind == Kind::coupled ? 5 : mesh_.kind == Kind::displacement ? 3 : 2;
        int number = between(0, 500);
        for (const int point : order) {
            number += between(1, 30);
            number_of_[static_cast<std::size_t>(point)] = number;
            MeshNode node;
            node.number = number;
            for (int k = 0; k < codes; ++k)
                node.codes.push_back(between(-99, 999));
            const int column = point % (columns_ + 1);
            const int row = point / (columns_ + 1);
            node.x = (100000 * (column - 3) + between(-30000, 30000)) / 100000.0;
            node.y = (100000 * (row - 3) + between(-30000, 30000)) / 100000.0;
            if (has_node_values()) {
                node.value = decimal(-999999, 999999, 1000.0);
                node.factor = decimal(0, 999, 100000.0);
            }
            mesh_.nodes.push_back(node);
        }
    }

    int point(int column, int row) const {
        return number_of_[static_cast<std::size_t>(row * (columns_ + 1) + column)];
    }

    void add_cell(int column, int row, int& number) {
        std::array<int, 4> c{point(column, row), point(column + 1, row), point(column + 1, row + 1),
                             point(column, row + 1)};
        std::rotate(c.begin(), c.begin() + between(0, 3), c.end());
        if (between(0, 2) > 0) {
            add_element({c[0], c[1], c[2], c[3]}, number);
        } else {
            add_element({c[0], c[1], c[2], 0}, number);
            add_element({c[3], c[0], c[2], 0}, number);
        }
    }

    void add_element(std::array<int, 4> corners, int& number) {
        MeshElement element;
        number += between(1, 20);
        element.number = number;
        element.corners = corners;
        element.material = between(-99, 999);
        if (mesh_.kind == Kind::coupled || mesh_.kind == Kind::displacement)
            for (int& midside : element.midsides)
                midside = between(0, 1) * between(-5, 99990);
        switch (mesh_.kind) {
            case Kind::coupled:
                for (int k = 0; k < 4; ++k)
                    element.codes.push_back(between(-99, 999));
                element.reals = {decimal(-9999, 9999, 100.0)};
                break;
            case Kind::temperature:
            case Kind::head:
                element.codes = {between(0, 999)};
                break;
            case Kind::displacement:
                element.reals = {decimal(-9999, 9999, 100.0), decimal(-9999, 9999, 10000.0)};
                break;
        }
        mesh_.continuum.push_back(element);
    }

    MeshLine line(int& number) {
        number += between(1, 20);
        const int column = between(0, columns_ - 1);
        const int row = between(0, rows_);
        return {number, point(column, row), point(column + 1, row), between(1, 99999)};
    }

    std::mt19937 random_;
    Mesh mesh_;
    int columns_ = 0, rows_ = 0;
    std::vector<int> number_of_;  // by point of the grid
};

// The first new numbers that change no number.
std::string kept_numbers(const Mesh& mesh) {
    const auto first = [](const std::vector<MeshLine>& lines) {
        return lines.empty() ? std::string("0") : std::to_string(lines.front().number);
    };
    return std::to_string(mesh.continuum.front().number) + " " + std::to_string(mesh.nodes.front().number) +
           " " + first(mesh.beams) + " " + first(mesh.trusses);
}

// Runs the edit from one file of the project to another and gives back the text of the result.
std::string edited(const Project& project, const Mesh& mesh, const std::string& from, const std::string& to,
                   const std::string& scales) {
    project.deck(text_of({"1 0", from, to, kept_numbers(mesh), "0", "0 0 0 0", scales}));
    expect_finished(project.run());
    return project.read(to);
}

std::string text_named(Mesh mesh, const std::string& name) {
    mesh.name = "..\\" + name;
    return mesh.text();
}

void expect_same_text(const std::string& expected, const std::string& found) {
    EXPECT_EQ(first_difference(lines_of(expected), lines_of(found)), "");
}

// The sides of the elements, each in its direction, with the number of elements that have it.
std::map<std::pair<int, int>, int> sides_of(const Mesh& mesh) {
    std::map<std::pair<int, int>, int> sides;
    for (const MeshElement& element : mesh.continuum) {
        const std::size_t corners = element.corners[3] == 0 ? 3 : 4;
        for (std::size_t k = 0; k < corners; ++k)
            ++sides[{element.corners[k], element.corners[(k + 1) % corners]}];
    }
    return sides;
}

// Two elements that share a side run through it in opposite directions, and the sides that only one element
// has close to outlines: as many begin at a node as end there.
void expect_conforming(const Mesh& mesh) {
    const auto sides = sides_of(mesh);
    std::map<int, int> balance;
    for (const auto& [side, count] : sides) {
        EXPECT_EQ(count, 1) << "side " << side.first << "-" << side.second;
        if (!sides.contains({side.second, side.first})) {
            ++balance[side.first];
            --balance[side.second];
        }
    }
    for (const auto& [node, open] : balance)
        EXPECT_EQ(open, 0) << "outline at node " << node;
}

class MeshRoundTrip : public ::testing::TestWithParam<Kind> {
protected:
    static constexpr unsigned ROUNDS = 6;

    template <class Check>
    static void for_random_meshes(Check check) {
        for (unsigned round = 1; round <= ROUNDS; ++round) {
            SCOPED_TRACE("mesh " + std::to_string(round));
            const Mesh mesh = RandomMesh(GetParam(), 1000 * round + 7).mesh();
            const Project project(GetParam());
            project.write("mesh.Mes", text_named(mesh, "mesh.Mes"));
            check(project, mesh);
        }
    }
};

TEST_P(MeshRoundTrip, EditThatChangesNothingKeepsEveryColumn) {
    for_random_meshes([](const Project& project, const Mesh& mesh) {
        expect_same_text(text_named(mesh, "out.Mes"), edited(project, mesh, "mesh.Mes", "out.Mes", "1 1"));
        EXPECT_EQ(project.read("mesh.Mes"), text_named(mesh, "mesh.Mes"));
    });
}

TEST_P(MeshRoundTrip, MirroringTwiceGivesTheMeshBack) {
    for (const char* scales : {"-1 1", "1 -1"}) {
        for_random_meshes([&](const Project& project, const Mesh& mesh) {
            const std::string once = edited(project, mesh, "mesh.Mes", "once.Mes", scales);
            EXPECT_NE(once, text_named(mesh, "once.Mes"));
            expect_same_text(text_named(mesh, "twice.Mes"),
                             edited(project, mesh, "once.Mes", "twice.Mes", scales));
        });
    }
}

TEST_P(MeshRoundTrip, TurningTwiceGivesTheMeshBackWithItsTrianglesTurned) {
    // A half turn brings the third corner of a triangle to the front; two half turns the second.
    for_random_meshes([](const Project& project, const Mesh& mesh) {
        Mesh turned = mesh;
        for (MeshElement& element : turned.continuum)
            if (element.corners[3] == 0)
                std::rotate(element.corners.begin(), element.corners.begin() + 1,
                            element.corners.begin() + 3);
        edited(project, mesh, "mesh.Mes", "once.Mes", "-1 -1");
        expect_same_text(text_named(turned, "twice.Mes"),
                         edited(project, mesh, "once.Mes", "twice.Mes", "-1 -1"));
    });
}

TEST_P(MeshRoundTrip, MirroringKeepsAreaAndDirection) {
    for (const char* scales : {"1 1", "-1 1", "1 -1", "-1 -1"}) {
        for_random_meshes([&](const Project& project, const Mesh& mesh) {
            const MeshCheck before = check_mesh(text_named(mesh, "mesh.Mes"), GetParam());
            edited(project, mesh, "mesh.Mes", "out.Mes", scales);
            const MeshCheck after = expect_sound_mesh(project, "out.Mes", GetParam());
            EXPECT_EQ(before.clockwise, 0);
            EXPECT_EQ(after.clockwise, 0);
            EXPECT_NEAR(after.area, before.area, 1.0E-5 * before.area);
        });
    }
}

TEST_P(MeshRoundTrip, ScalingMultipliesTheArea) {
    for_random_meshes([](const Project& project, const Mesh& mesh) {
        const MeshCheck before = check_mesh(text_named(mesh, "mesh.Mes"), GetParam());
        edited(project, mesh, "mesh.Mes", "out.Mes", "-2.5 4");
        const MeshCheck after = expect_sound_mesh(project, "out.Mes", GetParam());
        EXPECT_NEAR(after.area, 10.0 * before.area, 1.0E-4 * before.area);
    });
}

TEST_P(MeshRoundTrip, ResultConformsAsItsSourceDoes) {
    for (const char* scales : {"1 1", "-1 1", "1 -1", "-1 -1"}) {
        for_random_meshes([&](const Project& project, const Mesh& mesh) {
            expect_conforming(mesh);
            edited(project, mesh, "mesh.Mes", "out.Mes", scales);
            const MeshCheck after = expect_sound_mesh(project, "out.Mes", GetParam());
            expect_conforming(after.mesh);
            EXPECT_EQ(sides_of(after.mesh).size(), sides_of(mesh).size());
        });
    }
}

INSTANTIATE_TEST_SUITE_P(Kinds, MeshRoundTrip, ::testing::ValuesIn(ALL_KINDS),
                         [](const auto& tested) { return name_of(tested.param); });

}  // namespace
}  // namespace brelan::test
