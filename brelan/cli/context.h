// What main and the commands share.
#pragma once

#include <filesystem>

namespace brelan::tool {

struct Context {
    bool quiet = false;             // only results and errors
    std::filesystem::path program;  // of this executable, absolute; batch program and data lie near it
};

}  // namespace brelan::tool
