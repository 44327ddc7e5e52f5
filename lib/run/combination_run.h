// Modes 0 and -1: two meshes become one.
#pragma once

namespace brelan {

struct Run;

// Opens the files of Cards 2.x and strips both meshes; finds the elements' new numbers.
void open_combination(Run& run);

// Passes 6 to 41.
void run_combination(Run& run);

}  // namespace brelan
