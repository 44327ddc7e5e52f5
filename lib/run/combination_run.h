// Modes 0 and -1: two meshes become one.
#pragma once

namespace brelan {

struct Run;

// Reads Cards 2.x, opens the files and strips both meshes; finds the elements' new numbers.
void open_combination(Run& run);

// Passes 6 to 41.
void run_combination(Run& run);

}  // namespace brelan
