#include "cli/output_file.h"

#include <fmt/core.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <system_error>

#include "cli/exit_status.h"
#include "cli/input_file.h"
#include "cli/interruption.h"
#include "text/native_file.h"

namespace brelan::tool {

namespace fs = std::filesystem;

OutputFile::OutputFile(const fs::path& path) : path_(path) {
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
    std::error_code error;
    const fs::path target = behind_links(path);
    const fs::file_status there = fs::status(target, error);
    if (fs::is_directory(there))
        throw Failure(fmt::format("{}: expected the name of a file, found a directory", path.string()));
    if (fs::exists(there) && !fs::is_regular_file(there)) {
        file_ = std::fopen(target.c_str(), "wb");
        if (file_ == nullptr)
            fail();
        return;
    }
    // Replacing a file that is write-protected would go behind its owner's back.
    if (const Replaceable found = replaceable(path); found.file) {
        errno = found.file.value();
        fail();
    }
    try {
        whole_.emplace(path);
    } catch (const std::system_error& failure) {
        errno = failure.code().value();
        fail();
    }
    set_half_file(whole_->beside().c_str());
    file_ = whole_->stream();
}

OutputFile::~OutputFile() {
    if (!whole_ && file_ != nullptr)
        std::fclose(file_);
    whole_.reset();
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
    if (whole_) {
        try {
            whole_->commit();
        } catch (const std::system_error& failure) {
            errno = failure.code().value();
            fail();
        }
        set_half_file(nullptr);
        return;
    }
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
}

void write_file(const fs::path& path, std::string_view text) {
    OutputFile file(path);
    file.write(text);
    file.commit();
}

}  // namespace brelan::tool
