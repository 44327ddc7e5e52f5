// From a group's outline to its path: segments become points, each pair of points is cut into the mesh, and
// the nodes that then lie on the path are listed.
#pragma once

#include <cstdint>
#include <vector>

#include "group/engine.h"
#include "mesh/group_tables.h"
#include "mesh/tables.h"
#include "plane/geometry.h"

namespace brelan {

// The outline of the group in work.
struct Outline {
    GroupRow group;
    std::vector<Point> point;  // OUTX, OUTY: from place 1, with room behind the last for the end of an arc
    bool closed = false;
};

struct Path {
    std::vector<Point> point;         // PATHX, PATHY
    std::size_t edges = 0;            // the last of a closed path goes back to its first point
    std::vector<std::size_t> single;  // edges from 0 of undivided segments whose ends alone reach the mesh

    const Point& end_of(std::size_t edge) const { return point[edge + 1 == point.size() ? 0 : edge + 1]; }
};

// Builds the path of group g. Unless the line is free (MTYPE 2 with OVERLAY 1), the mesh is cut along it.
Path build_path(Mesh& mesh, const GroupCards& group_cards, const Tolerances& tolerances, Engine& engine,
                std::int32_t g, Outline& outline);

// The mesh nodes on the finished path, in order along it, with their places on it.
KeptLine list_path_nodes(Mesh& mesh, const Tolerances& tolerances, Engine& engine, const Path& path);

// The nodes of a free line: the first node within TOLSAME of each path point, or a new one there.
KeptLine list_free_nodes(Mesh& mesh, const Tolerances& tolerances, Engine& engine, const Path& path);

}  // namespace brelan
