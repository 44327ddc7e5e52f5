// Mode 1: one mesh is read, edited and written.
#pragma once

namespace brelan {

struct Run;

// Opens the files of the edit and strips the source mesh.
void open_edit_files(Run& run);

// Takes Cards 3.2 and 3.3 and those of IEDIT; fires the pass of the edit.
void begin_edit(Run& run);

// The edit that changes nothing: IEDIT 0 with all numbers from 1.
void set_identity_edit(Run& run);

// Passes 6 to 27.2.
void run_edit(Run& run);

}  // namespace brelan
