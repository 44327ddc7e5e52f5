// Pages for the browser that are put together from parts.
#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "cli/output_file.h"

namespace brelan::tool {

// JSON inside a script: "</script>" in a title must not end it.
std::string for_script(std::string json);

// Text of a page.
std::string for_html(std::string_view text);

// Writes the page with texts in the place of its marks. Each mark stands once, in the order of the parts;
// what is put in is not looked at again.
void write_page(OutputFile& out, std::string_view page,
                const std::vector<std::pair<std::string_view, std::string>>& parts);

}  // namespace brelan::tool
