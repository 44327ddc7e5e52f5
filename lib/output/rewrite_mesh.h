// The result mesh with the materials that the groups' elements got.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include "mesh/edition.h"
#include "mesh/mesh_records.h"
#include "text/channels.h"
#include "text/trace.h"

namespace brelan {

// Writes the mesh file anew: copied to "TEMPMESH.TMP", which stays, and from there back with the new material
// of each continuum element, 0 leaving the old one. The counts are those of the records in the file.
void rewrite_mesh(Channels& channels, Trace& trace, const Settings& settings, std::string_view result_name,
                  const MeshCounts& counts, std::span<const MaterialNumber> new_material);

}  // namespace brelan
