#include "text/whole_file.h"

#include <cerrno>
#include <string>

#include "text/file_names.h"
#include "text/native_file.h"

namespace brelan {

namespace {

namespace fs = std::filesystem;

constexpr std::string_view MARK = ".brelan-", END = ".part";
constexpr std::size_t LONGEST_NAME = 255;  // of a file, in bytes

[[noreturn]] void throw_reason() {
    throw std::system_error(errno, std::generic_category());
}

fs::path directory_of(const fs::path& path) {
    return path.has_parent_path() ? path.parent_path() : fs::path(".");
}

fs::path name_beside(const fs::path& target, int attempt) {
    const std::string end = std::string(MARK) + std::to_string(process_number()) + "-" +
                            std::to_string(attempt) + std::string(END);
    fs::path::string_type name = target.filename().native();
    if (name.size() + end.size() > LONGEST_NAME)
        name.resize(LONGEST_NAME - end.size());
    return fs::path(name) += end;
}

bool is_name_beside(std::string_view name) {
    const std::size_t mark = name.rfind(MARK);
    if (mark == std::string_view::npos || !name.ends_with(END))
        return false;
    const std::string_view between =
        name.substr(mark + MARK.size(), name.size() - mark - MARK.size() - END.size());
    return !between.empty() && between.find_first_not_of("0123456789-") == std::string_view::npos;
}

// What processes have left that were killed as they wrote. A directory that cannot be read keeps it.
void remove_left_files(const fs::path& directory) {
    std::error_code error;
    for (fs::directory_iterator it(directory, error), end; !error && it != end; it.increment(error))
        if (is_name_beside(utf_8(it->path().filename())))
            remove_unless_locked(it->path());
}

}  // namespace

Replaceable replaceable(const fs::path& path) {
    const fs::path target = behind_links(path);
    Replaceable found;
    const fs::file_type type = type_of_file(target);
    if (type == fs::file_type::regular)
        found.file = may_write(target);
    else if (type != fs::file_type::not_found)
        return found;  // is written where it is
    found.directory = may_add_files(directory_of(target));
    return found;
}

WholeFile::WholeFile(const fs::path& path) : target_(behind_links(path)) {
    constexpr int attempts = 1000;
    remove_left_files(directory_of(target_));
    for (int attempt = 0; stream_ == nullptr && attempt < attempts; ++attempt) {
        beside_ = target_.parent_path() / name_beside(target_, attempt);
        stream_ = create_stream(beside_, target_);
        if (stream_ == nullptr && errno != EEXIST)
            break;
    }
    if (stream_ == nullptr)
        throw_reason();
}

WholeFile::~WholeFile() {
    if (stream_ != nullptr)
        std::fclose(stream_);
    std::error_code ignored;
    if (!beside_.empty())
        remove_file(beside_, ignored);
}

void WholeFile::write(std::string_view text) {
    if (std::fwrite(text.data(), 1, text.size(), stream_) != text.size())
        throw_reason();
}

void WholeFile::commit() {
    errno = EIO;  // of a write before this one
    if (std::ferror(stream_) != 0 || !flush_to_disk(stream_))
        throw_reason();
    // It keeps its lock until it has its name. Windows renames no open file.
    if constexpr (CLOSED_BEFORE_REPLACING) {
        std::FILE* const stream = stream_;
        stream_ = nullptr;
        if (std::fclose(stream) != 0)
            throw_reason();
    }
    std::error_code error;
    replace_file(beside_, target_, error);
    if (error)
        throw std::system_error(error);
    beside_.clear();
    // A directory that must not be read cannot be flushed.
    if (!flush_directory(directory_of(target_)) && errno != EACCES)
        throw_reason();
}

}  // namespace brelan
