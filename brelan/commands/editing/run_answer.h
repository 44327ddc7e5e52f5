// What a page is told of a run: a head in JSON and arrays of numbers.
#pragma once

#include <cstdint>

#include "commands/mesh_run.h"
#include "page/server.h"

namespace brelan::tool {

// The length of the head in bytes (32 bits, little-endian), the head, and the arrays one behind the other,
// from a multiple of four on. `number` is what the page calls the run.
Answer run_answer(const MeshRun& run, std::int64_t number);

// Of the same mesh, what it is drawn from not: numbers, symbols and values.
Answer details_answer(const MeshLists& mesh, std::int64_t number);

}  // namespace brelan::tool
