// The report of a study: one page for a browser, without use of a network, with pictures/ beside it.
#pragma once

#include <filesystem>
#include <string>

#include "study/database.h"

namespace brelan::tool {

inline constexpr std::string_view PICTURES = "pictures";

// "pictures/00012/012345.svg" below the study's directory.
std::filesystem::path picture_of_case(const std::filesystem::path& study, std::size_t number);

// Writes the page for all rows of the database; throws Failure.
void write_report(const Database& database, const std::string& title, const std::filesystem::path& page);

// As they stand in study/report/; the page with %NONCE%, %TITLE%, %STYLE%, %DATA% and %SCRIPT%.
extern const char* const REPORT_PAGE;
extern const char* const REPORT_STYLE;
extern const char* const REPORT_SCRIPT;

}  // namespace brelan::tool
