#include "cli/input_file.h"

#include <fmt/core.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <limits>
#include <memory>
#include <system_error>

#include "cli/exit_status.h"

namespace brelan::tool {

namespace {

constexpr std::size_t ALL = std::numeric_limits<std::size_t>::max();

std::string read_stream(std::FILE* file, std::string_view name, std::size_t count) {
    std::string text;
    char piece[1U << 16U];
    while (text.size() < count) {
        const std::size_t got = std::fread(piece, 1, std::min(sizeof piece, count - text.size()), file);
        if (got == 0)
            break;
        text.append(piece, got);
    }
    if (std::ferror(file) != 0)
        throw Failure(fmt::format("{}: the file cannot be read: {}", name, std::strerror(errno)));
    return text;
}

}  // namespace

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
    return read_stream(file.get(), name, count);
}

std::string read_file(const std::filesystem::path& path) {
    return read_start(path, ALL);
}

std::string read_standard_input() {
    return read_stream(stdin, STANDARD_INPUT, ALL);
}

void require_one_standard_input(const std::vector<std::string>& files) {
    if (std::count(files.begin(), files.end(), STANDARD_STREAM) > 1)
        throw Failure(fmt::format(
            "{}: it can be read only once; expected \"{}\" for one file, and names for the others",
            STANDARD_INPUT, STANDARD_STREAM));
}

}  // namespace brelan::tool
