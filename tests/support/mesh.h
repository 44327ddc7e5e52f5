// Small meshes as text, and a check of the meshes that the program writes.

#pragma once

#include "support/project.h"

#include <array>
#include <string>
#include <string_view>
#include <vector>

namespace brelan::test {

struct MeshNode {
    int number = 0;
    std::vector<int> codes;  // 5, 2, 2 or 3 by kind
    double x = 0.0;
    double y = 0.0;
    double value = 0.0;   // temperature or head
    double factor = 0.0;  // CF, temperature and head only
};

struct MeshElement {
    int number = 0;
    std::array<int, 4> corners{};
    std::array<int, 4> midsides{};  // coupled and displacement only
    int material = 1;
    std::vector<int> codes;     // coupled KS, KF, INTR, INTS; temperature and head IDH
    std::vector<double> reals;  // coupled TBJWL; displacement THIC, DEN
};

struct MeshLine {
    int number = 0;
    int i = 0;
    int j = 0;
    int material = 1;
};

struct Mesh {
    Kind kind = Kind::displacement;
    std::string name = "mesh.Mes";
    std::vector<MeshNode> nodes;
    std::vector<MeshElement> continuum;
    std::vector<MeshLine> beams;
    std::vector<MeshLine> trusses;
    bool closing_lines = true;  // the two lines behind the last section of an edited mesh

    // The mesh in the columns of the mesh file, headings included.
    std::string text() const;
};

// Two unit squares and a triangle, two beams and two trusses:
//
//   4-----5-----6            line  1      name                  line 18-19  headings of the beams
//   |  1  |  2  | \          line  2      header                line 20-21  beams 4 (1-2), 5 (2-3)
//   |     |     |  3\        line  3      counts                line 22-23  headings of the trusses
//   1-----2-----3-----7      line  4- 5   headings of the nodes line 24-25  trusses 6 (4-5), 7 (5-6)
//                            line  6-12   nodes 1 to 7          line 26-27  closing lines
//                            line 13-14   headings of the continuum elements
//                            line 15-17   continuum elements 1 to 3
Mesh sample_mesh(Kind kind);

// What a mesh file holds and what is wrong with it. `problems` is empty for a file that keeps the layout of
// its kind to the column, whose counts are those of its records, whose numbers ascend and whose corners are
// nodes of the mesh.
struct MeshCheck {
    Mesh mesh;
    std::array<int, 4> counts{};
    double area = 0.0;  // sum of the areas of the continuum elements, each taken positive
    int clockwise = 0;  // continuum elements whose corners run clockwise
    std::vector<std::string> problems;
};

MeshCheck check_mesh(std::string_view text, Kind kind);

// Reads a mesh of the project directory and reports each of its problems; gives back what it holds.
MeshCheck expect_sound_mesh(const Project& project, std::string_view name, Kind kind,
                            const char* source = __builtin_FILE(), int line = __builtin_LINE());

// A value in the column forms of the mesh file: mantissa 0.ddd, two-digit exponent.
std::string e_field(double value, int width, int digits);
std::string i_field(long long value, int width);

}  // namespace brelan::test
