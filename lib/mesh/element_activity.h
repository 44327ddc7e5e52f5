// When the elements of a finished mesh come and go in the analysis.
#pragma once

#include <cstdint>

#include "mesh/numbers.h"

namespace brelan {

// Steps at which an element is activated and deactivated.
struct ActivityPair {
    std::int32_t activated = 0, deactivated = 0;  // NAC, NDAC

    friend bool operator==(const ActivityPair&, const ActivityPair&) = default;
};

struct ElementActivity {
    ElementNumber element;
    ActivityPair pair;
    MaterialNumber old_material;  // of a continuum element before it got one of its group's own; 0 for others
};

}  // namespace brelan
