// Files that a run writes for the user under names of its own, besides the mesh that a card names.
#pragma once

#include <string_view>

namespace brelan {

inline constexpr std::string_view BASE_MESH_FILE = "..\\Bmesh.dat";
inline constexpr std::string_view BOUNDARY_FILE = "..\\Boundary.Man";
inline constexpr std::string_view POST_FILE = "..\\Group.Pos";
inline constexpr std::string_view GROUP_MAIN_FILE = "..\\Group.Man";
inline constexpr std::string_view MATERIAL_MAIN_FILE = "..\\MatAD.Man";

// Those of an edit with groups.
inline constexpr std::string_view GROUP_RESULTS[] = {BOUNDARY_FILE, POST_FILE, GROUP_MAIN_FILE,
                                                     MATERIAL_MAIN_FILE};

}  // namespace brelan
