// Codes that a user wants for the nodes of physical groups.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace brelan::tool {

// What nodes get: a code, or H, T or CF, by its name in mesh files. Without a value a code is fixed.
struct CodeSetting {
    std::string name;
    std::optional<double> value;
};

// Of "left, right: IDX IDY=0": groups by name, those of curves and points also by tag.
struct GroupCodes {
    std::vector<std::string> groups;
    std::vector<CodeSetting> settings;
};

}  // namespace brelan::tool
