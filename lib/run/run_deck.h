// A run as a value, in the process of its caller: nothing is written to the terminal, no exception but
// std::bad_alloc comes out, and the floating-point mode of the thread is as it was.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "mesh/cut_method.h"
#include "mesh/element_activity.h"
#include "text/files.h"
#include "text/run_end.h"
#include "text/watch.h"

namespace brelan {

struct Run;

// Carries out a run and closes its files. All are complete when a run finishes or stops; one that cannot be
// written makes it a failure. Where the watcher ends it (STATUS_ENDED) the deck in work leaves no result;
// working files and settings that it has renewed stay.
RunEnd run_to_end(Run& run);

// Where the report of a card with a wrong count goes.
enum class ReportPlace { file, console };

// Listings and working copies that no later pass reads: in memory their text is not made where nobody asks.
enum class Listings { left_out, kept };

struct RunInput {
    std::int32_t edition = 1;
    std::string deck_name = "..\\deck.dat";
    // Texts by their names as decks and the program write them: the deck, its meshes, and what the run looks
    // up on drive C:\ ("C:\Vork\Qx\Qxdata\UNIT.DAT"). The start-up files are made.
    std::map<std::string, std::string> files;
    ReportPlace report = ReportPlace::file;
    Listings listings = Listings::left_out;
    CutMethod cut = CutMethod::by_rules;
    RunWatcher* watcher = nullptr;
};

struct RunResult {
    RunEnd end;                          // status, text, place and field of what ended the run
    std::string console;                 // what was shown
    std::string mesh;                    // name of the result mesh, empty where the run did not come to it
    std::shared_ptr<MemoryFiles> files;  // what a run in memory left, its input among it

    // Of the elements of `mesh`, in ascending number: those that its groups give steps of the analysis at
    // which they come or go. analysis/stages.h makes stages of them.
    std::vector<ElementActivity> activity = {};
};

// Runs a deck in memory.
RunResult run_deck(const RunInput& input);

// Runs the deck that the start-up files of a project on disk name; what it leaves is there.
RunResult run_deck(const Directories& project, CutMethod cut = CutMethod::by_rules,
                   RunWatcher* watcher = nullptr);

// The files that a run in memory begins with. Ends the run at a name that is none.
std::shared_ptr<MemoryFiles> files_of(const RunInput& input);

}  // namespace brelan
