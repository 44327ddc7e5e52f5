// The data directory of a run: one of its own, made from the package's masters, or one that is there.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <utility>
#include <vector>

#include "commands/batch/edition.h"
#include "commands/batch/temporary_directory.h"

namespace brelan::tool {

class DataDirectory {
public:
    // A private one for an edition, from the masters found beside the program. A project's own "UNIT.DAT"
    // takes the place of the master. All other directories of the user's drive C: are seen through it.
    DataDirectory(const std::filesystem::path& brelan, const Edition& edition,
                  const std::filesystem::path& project);

    // One that is there: `place` is the directory of drive C:, or that of the data files itself. Nothing in
    // it is changed but what the batch program writes.
    explicit DataDirectory(const std::filesystem::path& place);

    const std::filesystem::path& drive() const { return drive_; }  // for BRELAN_DRIVE_C, absolute
    const std::filesystem::path& files() const { return files_; }  // where PROGRAM.DAT is
    bool is_private() const { return own_.has_value(); }

private:
    std::optional<TemporaryDirectory> own_;
    std::filesystem::path drive_, files_;
};

// The package's masters of a kind, found beside the program: the name below the data directory of each, and
// where it lies. What tells a run of its edition and of its front end is not among them. Throws Failure.
std::vector<std::pair<std::filesystem::path, std::filesystem::path>> master_files(
    const std::filesystem::path& brelan, LayoutKind kind);

// The edition in the PROGRAM.DAT of a data directory. Throws Failure.
std::int32_t edition_in(const DataDirectory& data);

}  // namespace brelan::tool
