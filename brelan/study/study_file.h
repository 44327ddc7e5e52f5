// The file of a study: which deck, which values, what to do with each case and what to gather from it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "study/value.h"

namespace brelan::tool {

// How the cases come out of the values.
enum class Method { grid, list, random, latin };

struct Parameter {
    std::string name;
    std::vector<StudyValue> values;  // none: any number between `from` and `to`
    double from = 0.0, to = 0.0;
    int line = 0;  // of the study file

    bool is_interval() const { return values.empty(); }
};

// A word or path of what is gathered.
struct Wanted {
    std::string path;
    int line = 0;
};

struct StudyFile {
    std::filesystem::path file;
    std::filesystem::path deck;            // with placeholders
    std::filesystem::path directory;       // of cases, results and report
    std::string kind;                      // empty: by the deck
    std::string cut = "auto";              // rules, sound, auto
    double time_limit = 0.0;               // of a case, in seconds; 0: none
    std::vector<std::string> conversions;  // words of targets: "vtu"
    std::vector<Wanted> gather;
    Method method = Method::grid;
    std::size_t count = 0;  // of samples
    std::uint64_t seed = 1;
    std::vector<Parameter> parameters;

    // Names of what is in the file, with its line; for messages.
    std::string place(int line) const;
};

// Throws Failure "FILE, line N: ..." for everything that is wrong with it.
StudyFile read_study_file(const std::filesystem::path& file);

// The columns of a table of values in CSV, a parameter each; throws Failure with file and line.
std::vector<Parameter> read_value_table(const std::filesystem::path& file);

// The most cases that a study may have.
inline constexpr std::size_t MOST_CASES = 10'000'000;

}  // namespace brelan::tool
