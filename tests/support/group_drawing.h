// Random meshes and the groups that are drawn over them: lines of any slope, along sides, through corners,
// outlines, arcs, joints. The same seed gives the same drawing with every library.
#pragma once

#include <array>
#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include "plane/point.h"
#include "support/project.h"

namespace brelan::test {

class Drawing {
public:
    explicit Drawing(std::uint32_t seed) : engine_(seed) {}

    float between(float low, float high) {
        return low + (high - low) * (static_cast<float>(engine_() >> 8) * 0x1p-24F);
    }
    int below(int limit) { return static_cast<int>(engine_() % static_cast<std::uint32_t>(limit)); }
    bool one_in(int count) { return below(count) == 0; }
    template <class T, std::size_t COUNT>
    const T& one_of(const std::array<T, COUNT>& list) {
        return list[static_cast<std::size_t>(below(static_cast<int>(COUNT)))];
    }

private:
    std::mt19937 engine_;
};

// A rectangle from (0, 0) divided into columns and rows: graded, with shifted inner nodes, mirrored, each
// cell a quadrilateral or two triangles. Nodes are numbered from 1 in rows.
struct DrawnMesh {
    int columns = 0, rows = 0;
    float width = 0.0F, height = 0.0F;
    std::vector<Point> nodes;
    std::vector<bool> coded;  // nodes with code words, which the groups must not move
    std::vector<std::array<std::int32_t, 4>> elements;

    std::int32_t node_at(int column, int row) const { return row * (columns + 1) + column + 1; }
    const Point& place(std::int32_t n) const { return nodes[static_cast<std::size_t>(n - 1)]; }
    bool is_on_outline(const Point& p) const;
};
DrawnMesh draw_mesh(Drawing& drawing, int cells = 5);

struct DrawnSegment {
    int LTYPE = 1, NDIV = 0, IEND = 2;
    float Xo = 0.0F, Yo = 0.0F, Rx = 0.0F, Ry = 0.0F, Qb = 0.0F, Qe = 0.0F;  // angles in degrees
};

struct DrawnGroup {
    int MTYPE = 2, OVERLAY = 0, MOVE = 0;
    int MAT = 0, KF = 1, MATj = 0, KFj = 1, LTi = 0, LMi = 0, LTo = 0, LMo = 0, MATold = 0;
    float THICj = 0.0F;
    std::vector<Point> points;
    std::vector<DrawnSegment> segments;

    bool is_open() const { return MTYPE == 2 || MTYPE == -2; }
};

// What a line is drawn by.
enum class Course { any_slope, along_sides, through_corners };

// An open line (MTYPE 2) with beams.
DrawnGroup draw_line(Drawing& drawing, const DrawnMesh& mesh, Course course);
// A closed outline of three to six corners (MTYPE 3) with a material.
DrawnGroup draw_outline(Drawing& drawing, const DrawnMesh& mesh);
// A circle, an ellipse or a sector between an arc and its chord (MTYPE 3).
DrawnGroup draw_arc(Drawing& drawing, const DrawnMesh& mesh);
// Makes a joint out of a line or an outline.
void make_joint(DrawnGroup& group, float THICj);

// The cards of a group from Card 3.3.5.4.1 on.
std::vector<std::string> cards_of(const DrawnGroup& group);

}  // namespace brelan::test
