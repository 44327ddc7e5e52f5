#include "cli/input_file.h"

#include <fmt/core.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <limits>
#include <memory>
#include <system_error>

#include "cli/exit_status.h"

namespace brelan::tool {

std::string read_start(const std::filesystem::path& path, std::size_t count) {
    namespace fs = std::filesystem;
    const std::string name = path.string();
    std::error_code error;
    const fs::file_status status = fs::status(path, error);
    if (fs::is_directory(status))
        throw Failure(fmt::format("{}: expected a file, found a directory", name));
    if (!fs::exists(status))
        throw Failure(fmt::format("{}: expected a file, but there is none of this name", name));
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(path.c_str(), "rb"), std::fclose);
    if (file == nullptr)
        throw Failure(fmt::format("{}: the file cannot be opened: {}", name, std::strerror(errno)));
    std::string text;
    char piece[1U << 16U];
    while (text.size() < count) {
        const std::size_t got = std::fread(piece, 1, std::min(sizeof piece, count - text.size()), file.get());
        if (got == 0)
            break;
        text.append(piece, got);
    }
    if (std::ferror(file.get()) != 0)
        throw Failure(fmt::format("{}: the file cannot be read: {}", name, std::strerror(errno)));
    return text;
}

std::string read_file(const std::filesystem::path& path) {
    return read_start(path, std::numeric_limits<std::size_t>::max());
}

}  // namespace brelan::tool
