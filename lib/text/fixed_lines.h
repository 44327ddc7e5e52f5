// Lines that are written as they stand: the fixed texts of a file.
#pragma once

#include <initializer_list>
#include <span>
#include <string_view>

#include "text/channels.h"

namespace brelan {

inline void write_lines(Channel& file, std::span<const std::string_view> lines) {
    for (const std::string_view line : lines)
        file.write_line(line);
}

inline void write_lines(Channel& file, std::initializer_list<std::string_view> lines) {
    write_lines(file, std::span(lines.begin(), lines.size()));
}

}  // namespace brelan
