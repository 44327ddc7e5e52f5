// What a person, or a program, wants to know of a run.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "commands/batch/edition.h"
#include "mesh/cut_method.h"

namespace brelan::tool {

struct RunReport {
    std::filesystem::path deck, project;
    Edition edition;
    CutMethod cut = CutMethod::by_rules;  // of the mesh that stands there
    std::string cut_reason;               // why, where a choice was made; else empty
    double seconds = 0.0;
    int decks = 0;                            // that the run has begun
    std::string pass;                         // the last one; empty before the first
    int status = 0;                           // exit status of the batch program
    std::string message, details;             // when it is not 0: in one line, and the lines below it
    std::filesystem::path result;             // empty: none is known, or the run has not come to it
    std::vector<std::filesystem::path> also;  // written besides it
    std::vector<std::filesystem::path> deleted;
    std::vector<std::string> remarks;  // each as it stands behind "remark"
};

// Of a run that has finished.
std::string run_summary(const RunReport& report);

// As an object, whatever the end.
std::string run_json(const RunReport& report);  // commands/run_json.cpp

}  // namespace brelan::tool
