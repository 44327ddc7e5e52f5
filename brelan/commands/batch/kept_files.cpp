#include "commands/batch/kept_files.h"

#include <fmt/core.h>

#include <system_error>

#include "cli/exit_status.h"
#include "cli/input_file.h"
#include "cli/output_file.h"

namespace brelan::tool {

namespace fs = std::filesystem;

void copy_with_time(const fs::path& from, const fs::path& to) {
    write_file(to, read_file(from));
    std::error_code without;
    if (const fs::file_time_type time = fs::last_write_time(from, without); !without)
        fs::last_write_time(to, time, without);
}

KeptFiles::KeptFiles(const fs::path& project, const std::vector<fs::path>& files)
    : directory_(project, ".brelan-kept-", LeftDirectories::stay) {
    for (const fs::path& file : files) {
        std::error_code error;
        Entry entry{file, {}};
        if (fs::is_regular_file(file, error)) {
            entry.copy = directory_.path() / fmt::format("{}", entries_.size());
            copy_with_time(file, entry.copy);
        }
        entries_.push_back(std::move(entry));
    }
}

void KeptFiles::put_back() {
    for (const Entry& entry : entries_) {
        try {
            if (entry.copy.empty())
                fs::remove(entry.file);
            else
                copy_with_time(entry.copy, entry.file);
        } catch (const fs::filesystem_error& error) {
            directory_.keep();
            throw Failure(
                fmt::format("{}: cannot be removed: {}", entry.file.string(), error.code().message()));
        } catch (const Failure& failure) {
            directory_.keep();
            throw Failure(fmt::format("{}; it is kept as {}", failure.what(), entry.copy.string()));
        }
    }
}

}  // namespace brelan::tool
