// The pass trace of a running batch program, as a person wants to follow it.
#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>

namespace brelan::tool {

// What a pass does: "14.2" is "groups are drawn over the mesh"; empty for a number that means nothing here.
std::string_view work_of_pass(std::string_view pass);

class PassTrace {
public:
    // The directory in which the program writes its trace.
    explicit PassTrace(std::filesystem::path working_directory) : directory_(std::move(working_directory)) {}

    // Reads what has been added. True when there is a new pass.
    bool look();

    const std::string& pass() const { return pass_; }  // "14.2"; empty before the first
    int decks() const { return decks_; }               // that the run has begun so far

private:
    void take_line(std::string_view line);

    std::filesystem::path directory_, file_;
    std::size_t read_ = 0;
    std::string rest_, pass_;
    int decks_ = 0;
};

}  // namespace brelan::tool
