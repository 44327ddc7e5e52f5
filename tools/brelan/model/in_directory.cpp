#include "model/in_directory.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "cli/exit_status.h"

namespace brelan::tool {

InDirectory::InDirectory(const std::filesystem::path& directory)
    : before_(open(".", O_RDONLY | O_DIRECTORY | O_CLOEXEC)) {
    if (before_ < 0 || chdir(directory.c_str()) != 0) {
        const std::string reason = std::strerror(errno);
        if (before_ >= 0)
            close(before_);
        throw Failure(directory.string() + ": expected a directory to work in: " + reason);
    }
}

InDirectory::~InDirectory() {
    [[maybe_unused]] const int back = fchdir(before_);
    close(before_);
}

}  // namespace brelan::tool
