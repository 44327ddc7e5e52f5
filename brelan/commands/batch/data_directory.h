// The data directory of a run: one of its own, made from the package's masters, or one that is there.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>

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

// The edition in the PROGRAM.DAT of a data directory. Throws Failure.
std::int32_t edition_in(const DataDirectory& data);

}  // namespace brelan::tool
