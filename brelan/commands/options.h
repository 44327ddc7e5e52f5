// Options that several commands have.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "analysis/mesh_lists.h"

namespace brelan::tool {

// --kind coupled|temperature|head|displacement, for files that do not tell their kind.
struct KindOption {
    std::string name;

    std::optional<LayoutKind> kind() const { return name.empty() ? std::nullopt : kind_named(name); }
};

// The edition that a deck is meant for.
struct EditionOptions {
    std::int32_t edition = 0;  // 0: not given
    std::string kind;          // empty: not given
};

}  // namespace brelan::tool
