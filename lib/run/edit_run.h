// Mode 1: one mesh is read, edited and written.
#pragma once

#include <string_view>

namespace brelan {

struct BaseMesh;
struct Run;

// The source mesh without its comments.
inline constexpr std::string_view WORKING_COPY = "FILEA.TMP";

// Opens the files of the edit and strips the source mesh.
void open_edit_files(Run& run);

// Opens those that are written alone.
void open_result_files(Run& run);

// Takes Cards 3.2 and 3.3 and those of IEDIT; fires the pass of the edit.
void begin_edit(Run& run);

// The edit that changes nothing: IEDIT 0 with all numbers from 1.
void set_identity_edit(Run& run);

// Passes 6 to 27.2.
void run_edit(Run& run);

// The same for a base mesh that is taken as it is, its source mesh not read.
void pass_on(Run& run, const BaseMesh& base);

}  // namespace brelan
