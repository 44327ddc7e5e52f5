// Copies of the user's files in a directory of the project, and where they belong: a run that is killed
// leaves them to the next.
#pragma once

#include <cstddef>
#include <filesystem>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "commands/batch/temporary_directory.h"

namespace brelan::tool {

// Copies a file to a place that it replaces as a whole, with the time of its last change, by which other
// programs tell what is new. Throws Failure.
void copy_with_time(const std::filesystem::path& from, const std::filesystem::path& to);

// What the files of a directory of copies are to the user, which its name tells.
enum class CopyKind {
    to_be_replaced,  // the run replaces the files by what is as good
    not_to_be_seen,  // the files are the user's alone: the run must leave them as they were
    of_run,          // what the run itself has made
};

class UserCopies {
public:
    // A directory for copies of files at these places; it is gone with the object. Throws Failure.
    UserCopies(const std::filesystem::path& project, CopyKind kind,
               const std::vector<std::filesystem::path>& places);

    // The name of the copy of a file, by its number among the places.
    std::filesystem::path copy(std::size_t number) const;

    // The directory stays: for the next run to settle, or for good, as the user has been told what is there.
    void leave_to_next_run() { directory_.keep(); }
    void keep();

private:
    TemporaryDirectory directory_;
    std::vector<std::string> names_;
};

// Sees to what killed runs have left in a project that nobody else is at work in. A copy whose place in the
// project is empty goes there; one that the place does not need is removed, and so is what a run has made;
// the file of the user's that a run should have left as it was stays beside another that stands there now.
// `remark` gets a line for each that goes back or stays.
void settle_left_copies(const std::filesystem::path& project,
                        const std::function<void(const std::string&)>& remark);

}  // namespace brelan::tool
