// What main and the commands share.
#pragma once

#include <filesystem>
#include <functional>

namespace brelan::tool {

struct Context {
    bool quiet = false;             // only results and errors
    std::filesystem::path program;  // of this executable, absolute; batch program and data lie near it
    // Set by the callback of the command that was named; main runs it when the command line is read. Returns
    // the exit status.
    std::function<int()> action;
};

}  // namespace brelan::tool
