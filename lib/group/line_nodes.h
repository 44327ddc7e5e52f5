// The nodes of a group's line.
#pragma once

#include <vector>

#include "group/engine.h"
#include "mesh/group_tables.h"
#include "mesh/tables.h"
#include "plane/path.h"

namespace brelan {

// The mesh nodes on the finished path, in order along it. A node that the path comes to again is not listed
// again.
std::vector<NodeNumber> list_path_nodes(Mesh& mesh, const Tolerances& tolerances, Engine& engine,
                                        const Path& path);

// The same with the edge of the path, from 0, that each node lies on, and again where the path comes to it
// again.
struct LineNode {
    NodeNumber node;
    std::size_t edge = 0;
};
std::vector<LineNode> list_all_path_nodes(Mesh& mesh, const Tolerances& tolerances, Engine& engine,
                                          const Path& path);

// The nodes of a free line: the first node within TOLSAME of each path point, or a new one there.
std::vector<NodeNumber> list_free_nodes(Mesh& mesh, const Tolerances& tolerances, Engine& engine,
                                        const Path& path);

}  // namespace brelan
