// What a person wants to read when a run has finished.
#pragma once

#include <filesystem>
#include <map>
#include <string>

#include "commands/batch/edition.h"

namespace brelan::tool {

// Files of a directory, and what tells that one has been written.
using DirectoryState = std::map<std::string, std::string>;
DirectoryState state_of(const std::filesystem::path& directory);

struct FinishedRun {
    std::filesystem::path deck, project, result;  // the result may be empty: none is known
    Edition edition;
    double seconds = 0.0;
    DirectoryState before;  // of the project
};

std::string run_summary(const FinishedRun& run);

}  // namespace brelan::tool
