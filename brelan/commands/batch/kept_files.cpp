#include "commands/batch/kept_files.h"

#include <fmt/core.h>

#include <system_error>
#include <utility>

#include "cli/exit_status.h"

namespace brelan::tool {

namespace fs = std::filesystem;

KeptFiles::KeptFiles(const fs::path& project, CopyKind kind, const std::vector<fs::path>& files)
    : copies_(project, kind, files) {
    for (const fs::path& file : files) {
        std::error_code error;
        Entry entry{file, {}};
        if (fs::is_regular_file(file, error)) {
            entry.copy = copies_.copy(entries_.size());
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
            copies_.leave_to_next_run();
            throw Failure(
                fmt::format("{}: cannot be removed: {}", entry.file.string(), error.code().message()));
        } catch (const Failure& failure) {
            copies_.keep();
            throw Failure(fmt::format("{}; it is kept as {}", failure.what(), entry.copy.string()));
        }
    }
}

}  // namespace brelan::tool
