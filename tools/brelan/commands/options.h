// Options that several commands have.
#pragma once

#include <CLI/CLI.hpp>
#include <optional>
#include <string>

#include "model/mesh.h"

namespace brelan::tool {

// --kind coupled|temperature|head|displacement, for files that do not tell their kind.
struct KindOption {
    std::string name;

    void add_to(CLI::App& command, const std::string& help);
    std::optional<LayoutKind> kind() const;
};

}  // namespace brelan::tool
