#include "cli/temporary_file.h"

#include <fmt/core.h>

#include <cerrno>
#include <cstring>

#include "cli/exit_status.h"

namespace brelan::tool {

TemporaryFile temporary_file() {
    std::FILE* file = std::tmpfile();
    if (file == nullptr)
        throw Failure(fmt::format("no temporary file can be made: {}", std::strerror(errno)));
    return TemporaryFile(file);
}

std::string content(std::FILE* file) {
    std::rewind(file);
    std::string text;
    char piece[4096];
    while (const std::size_t count = std::fread(piece, 1, sizeof piece, file))
        text.append(piece, count);
    return text;
}

}  // namespace brelan::tool
