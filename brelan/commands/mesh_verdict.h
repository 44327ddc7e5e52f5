// Whether the mesh of a run is sound.
#pragma once

#include <cstddef>
#include <string>

#include "commands/run_summary.h"

namespace brelan::tool {

struct MeshVerdict {
    bool known = false;      // false: there is no mesh, or it cannot be read
    std::size_t faults = 0;  // places that make it unsound
    std::string text;        // "unsound: 1 hanging node (...)"
};

MeshVerdict verdict_on(const RunReport& run);

}  // namespace brelan::tool
