// What `brelan info` shows of a mesh.
#pragma once

#include <nlohmann/json.hpp>
#include <string>

#include "analysis/counts.h"
#include "analysis/quality.h"
#include "analysis/soundness.h"

namespace brelan::tool {

struct MeshReport {
    const Mesh& mesh;
    Counts counts;
    Quality quality;
    Soundness soundness;
};

// At most `list` places of each finding; 0 for all.
std::string report_text(const MeshReport& report, std::size_t list);
nlohmann::ordered_json report_json(const MeshReport& report, std::size_t list);

}  // namespace brelan::tool
