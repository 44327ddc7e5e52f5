#include "commands/batch/kept_files.h"

#include <fmt/core.h>

#include <system_error>

#include "cli/exit_status.h"

namespace brelan::tool {

namespace {

namespace fs = std::filesystem;

// With the time of the last change, by which other programs tell what is new.
void copy_with_time(const fs::path& from, const fs::path& to, std::error_code& error) {
    fs::copy_file(from, to, fs::copy_options::overwrite_existing, error);
    if (!error)
        fs::last_write_time(to, fs::last_write_time(from, error), error);
}

}  // namespace

KeptFiles::KeptFiles(const fs::path& project, const std::vector<fs::path>& files)
    : directory_(project, ".brelan-kept-") {
    for (const fs::path& file : files) {
        std::error_code error;
        Entry entry{file, {}};
        if (fs::is_regular_file(file, error)) {
            entry.copy = directory_.path() / fmt::format("{}", entries_.size());
            copy_with_time(file, entry.copy, error);
            if (error)
                throw Failure(fmt::format("{}: cannot be kept: {}", file.string(), error.message()));
        }
        entries_.push_back(std::move(entry));
    }
}

void KeptFiles::put_back() {
    for (const Entry& entry : entries_) {
        std::error_code error;
        if (entry.copy.empty())
            fs::remove(entry.file, error);
        else
            copy_with_time(entry.copy, entry.file, error);
        if (!error)
            continue;
        directory_.keep();
        throw Failure(entry.copy.empty()
                          ? fmt::format("{}: cannot be removed: {}", entry.file.string(), error.message())
                          : fmt::format("{}: cannot be put back from {}: {}", entry.file.string(),
                                        entry.copy.string(), error.message()));
    }
}

}  // namespace brelan::tool
