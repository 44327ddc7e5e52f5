#include "cli/output_file.h"

#include <fcntl.h>
#include <fmt/core.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <system_error>

#include "cli/exit_status.h"
#include "cli/input_file.h"
#include "cli/interruption.h"

namespace brelan::tool {

namespace {

namespace fs = std::filesystem;

}  // namespace

OutputFile::OutputFile(const fs::path& path) : path_(path), target_(path) {
    std::error_code error;
    if (path.empty())
        throw Failure("expected the name of a file to write, found an empty one");
    if (path == STANDARD_STREAM) {
        path_ = STANDARD_OUTPUT;
        std::fflush(stdout);
        const int handle = dup(STDOUT_FILENO);
        file_ = handle < 0 ? nullptr : fdopen(handle, "wb");
        if (file_ == nullptr)
            fail();
        return;
    }
    if (fs::is_symlink(path, error)) {
        target_ = fs::weakly_canonical(path, error);
        if (error)
            target_ = path;
    }
    const fs::file_status there = fs::status(target_, error);
    if (fs::is_directory(there))
        throw Failure(fmt::format("{}: expected the name of a file, found a directory", path.string()));
    if (fs::exists(there) && !fs::is_regular_file(there)) {
        file_ = std::fopen(target_.c_str(), "wb");
        if (file_ == nullptr)
            fail();
        return;
    }
    // Replacing a file that is write-protected would go behind its owner's back.
    if (fs::exists(there) && access(target_.c_str(), W_OK) != 0)
        fail();
    struct stat known {};
    const mode_t mode = stat(target_.c_str(), &known) == 0 ? known.st_mode & 07777U : 0666U;
    for (int attempt = 0; attempt < 100; ++attempt) {
        beside_ = target_;
        beside_ += fmt::format(".{}-{}.part", getpid(), attempt);
        const int handle = open(beside_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode);
        if (handle >= 0) {
            set_half_file(beside_.c_str());
            file_ = fdopen(handle, "wb");
            break;
        }
        if (errno != EEXIST)
            break;
    }
    if (file_ == nullptr) {
        set_half_file(nullptr);
        beside_.clear();
        fail();
    }
}

OutputFile::~OutputFile() {
    if (file_ != nullptr)
        std::fclose(file_);
    if (beside_.empty())
        return;
    unlink(beside_.c_str());
    set_half_file(nullptr);
}

void OutputFile::fail() const {
    throw Failure(fmt::format("{}: cannot be written: {}", path_.string(), std::strerror(errno)));
}

void OutputFile::write(std::string_view text) {
    if (std::fwrite(text.data(), 1, text.size(), file_) != text.size())
        fail();
}

void OutputFile::commit() {
    std::FILE* const file = file_;
    file_ = nullptr;
    if (std::ferror(file) != 0 || std::fflush(file) != 0) {
        const int reason = errno;
        std::fclose(file);
        errno = reason;
        fail();
    }
    if (std::fclose(file) != 0)
        fail();
    if (beside_.empty())
        return;
    if (rename(beside_.c_str(), target_.c_str()) != 0)
        fail();
    set_half_file(nullptr);
    beside_.clear();
}

void write_file(const fs::path& path, std::string_view text) {
    OutputFile file(path);
    file.write(text);
    file.commit();
}

}  // namespace brelan::tool
