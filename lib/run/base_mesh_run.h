// Mode 2: a base mesh from blocks.
#pragma once

#include <cstdint>

namespace brelan {

struct Run;

// Generates the base mesh of the deck: Passes 4A and 4B. Returns IGMOD: 0 when the deck ends with
// the base mesh, else it goes on as a mode 1 deck.
std::int32_t run_base_mesh(Run& run);

}  // namespace brelan
