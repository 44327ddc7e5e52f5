// What came out of a case, as it stands in the case's folder.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "study/value.h"

namespace brelan::tool {

// "finished"; "stopped" and "failed": the run ended with a message; "no deck": the placeholders give none;
// "time limit" and "crashed": its process was ended, or ended itself.
struct CaseRecord {
    std::size_t number = 0;   // from 1
    std::uint64_t input = 0;  // tells a case whose deck or options are others
    std::string files;        // what else it read: "Row.Mes=0123456789abcdef"
    std::string state, message, details, cut, mesh;
    double seconds = 0.0;
    std::vector<std::string> written;  // names of the files in its folder, besides the record
    NamedValues gathered;
};

inline constexpr std::string_view FINISHED = "finished";
inline constexpr std::string_view CASE_RECORD = "case.txt";
inline constexpr std::string_view CASES = "cases";

// "00012/012345" for case 12345: a thousand in a directory.
std::string folder_of_case(std::size_t number);

std::string record_text(const CaseRecord& record);

// None where the text is not whole.
std::optional<CaseRecord> record_of_text(std::string_view text);

// That of a case below a study's directory; none where it has not ended.
std::optional<CaseRecord> read_record(const std::filesystem::path& study, std::size_t number);

// Of texts, the same on every machine.
std::uint64_t hash_of(std::string_view text, std::uint64_t before = 0xcbf29ce484222325U);

}  // namespace brelan::tool
