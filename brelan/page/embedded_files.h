// The files of the page, which are part of the program: nothing is read from disk for it.
#pragma once

#include <span>
#include <string_view>

namespace brelan::tool {

struct EmbeddedFile {
    std::string_view name;  // "page.css"; the page itself is "page.html"
    std::string_view text;
};

std::span<const EmbeddedFile> embedded_files();

}  // namespace brelan::tool
