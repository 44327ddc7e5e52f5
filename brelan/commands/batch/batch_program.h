// The batch program, started for one deck.
#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <string>

#include "cli/interruption.h"
#include "mesh/cut_method.h"

namespace brelan::tool {

// The program beside this one, in its libexec directory, or as named. Throws Failure when it is not there.
std::filesystem::path find_batch_program(const std::filesystem::path& brelan,
                                         const std::filesystem::path& named);

struct BatchResult {
    int status = 0;        // exit status
    std::string out, err;  // what it said
};

struct BatchStart {
    std::filesystem::path program, working_directory, drive;
    std::string deck;  // its name from the working directory, for TFNAME.TMP
    CutMethod cut = CutMethod::by_rules;
    std::optional<int> progress = {};  // the descriptor that the program tells its progress on
};

// Writes TFNAME.TMP, starts the program and waits for it; `waiting` is called every now and then. A program
// that asks at the console is told the deck's name there. Throws Interrupted, and Failure when the program
// cannot be started or is ended by a signal.
BatchResult run_batch_program(const BatchStart& start, const Interruption& interruption,
                              const std::function<void()>& waiting);

}  // namespace brelan::tool
