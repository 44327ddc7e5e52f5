// A message as it stands on a terminal, taken apart for programs.
#pragma once

#include <string>

namespace brelan::tool {

// "FILE, line N: text", "FILE: text" for the file that is given, or a text alone.
struct PlacedRemark {
    std::string text, file;
    int line = 0;
};
PlacedRemark taken_apart(const std::string& message, const std::string& file);

}  // namespace brelan::tool
