// What `brelan info` shows of a mesh.
#pragma once

#include <string>

#include "analysis/counts.h"
#include "analysis/quality.h"
#include "analysis/soundness.h"
#include "cli/json.h"

namespace brelan::tool {

struct MeshReport {
    const MeshLists& mesh;
    Counts counts;
    Quality quality;
    Soundness soundness;
};

// Counts and measures a mesh, which must live as long as the report. A tolerance of 0 is one that suits it.
MeshReport report_of(const MeshLists& mesh, double tolerance);

// At most `list` places of each finding; 0 for all.
std::string report_text(const MeshReport& report, std::size_t list);
Json report_json(const MeshReport& report, std::size_t list);

}  // namespace brelan::tool
