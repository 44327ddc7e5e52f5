// A file that is there whole or not at all.
#pragma once

#include <cstdio>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include "text/whole_file.h"

namespace brelan::tool {

// Writes beside the file and takes its name when all is written. Without commit() nothing is left, whatever
// ended the command; a file of the name that was there before stays as it was. What is no ordinary file is
// written directly; "-" is standard output.
class OutputFile {
public:
    // Throws Failure when nothing can be written there.
    explicit OutputFile(const std::filesystem::path& path);
    ~OutputFile();
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;

    void write(std::string_view text);

    std::string name() const { return path_.string(); }  // for messages

    // Where a library may write by itself; its stream is closed meanwhile.
    std::FILE* stream() { return file_; }

    // Throws Failure when something could not be written.
    void commit();

private:
    [[noreturn]] void fail() const;

    std::filesystem::path path_;      // as the user gave it, for messages
    std::optional<WholeFile> whole_;  // none where the target is written directly
    std::FILE* file_ = nullptr;       // that of the whole file, or of the target
};

// Writes a whole text.
void write_file(const std::filesystem::path& path, std::string_view text);

}  // namespace brelan::tool
