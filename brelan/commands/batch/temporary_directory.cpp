#include "commands/batch/temporary_directory.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <string>
#include <system_error>

#include "cli/exit_status.h"

namespace brelan::tool {

namespace {

namespace fs = std::filesystem;

fs::path place_for_temporary_files() {
    std::error_code error;
    const char* named = std::getenv("TMPDIR");
    if (named != nullptr && fs::is_directory(named, error))
        return named;
    return "/tmp";
}

}  // namespace

TemporaryDirectory::TemporaryDirectory(const fs::path& in, std::string_view prefix) {
    std::error_code error;
    std::string name =
        (fs::absolute(in, error).lexically_normal() / (std::string(prefix) + "XXXXXX")).string();
    if (error || mkdtemp(name.data()) == nullptr)
        throw Failure(in.string() + ": no directory can be made in it: " + std::strerror(errno));
    path_ = name;
}

TemporaryDirectory::TemporaryDirectory(std::string_view prefix)
    : TemporaryDirectory(place_for_temporary_files(), prefix) {}

TemporaryDirectory::~TemporaryDirectory() {
    std::error_code ignored;  // what cannot be taken away stays
    if (!keep_)
        fs::remove_all(path_, ignored);
}

}  // namespace brelan::tool
