// The nodes of a group's line.
#pragma once

#include <cstdint>
#include <vector>

#include "group/engine.h"
#include "mesh/group_tables.h"
#include "mesh/tables.h"
#include "plane/path.h"

namespace brelan {

// What becomes of a node that the path comes to again.
enum class Revisits { dropped, kept };

// The mesh nodes on the finished path, in order along it.
std::vector<std::int32_t> list_path_nodes(Mesh& mesh, const Tolerances& tolerances, Engine& engine,
                                          const Path& path, Revisits revisits = Revisits::dropped);

// The nodes of a free line: the first node within TOLSAME of each path point, or a new one there.
std::vector<std::int32_t> list_free_nodes(Mesh& mesh, const Tolerances& tolerances, Engine& engine,
                                          const Path& path);

}  // namespace brelan
