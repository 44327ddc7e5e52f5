// What a deck reads and writes for the user, known before its passes begin.
#pragma once

namespace brelan {

struct Run;

// Ends the run where a result of the deck would take the place of a file that the run reads, or cannot take
// its place: nothing of the user's has been touched by then. A mesh that is edited in place is no such case.
void expect_files(Run& run);

}  // namespace brelan
