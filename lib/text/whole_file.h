// A file that is replaced as a whole: whoever opens it finds what was there before or what was written, at
// whatever moment a run fails, is killed or the machine stops.
#pragma once

#include <cstdio>
#include <filesystem>
#include <string_view>
#include <system_error>

namespace brelan {

// Whether a file can be replaced, or made where there is none.
struct Replaceable {
    std::error_code file;       // why the file that is there must not be written; none: it may be
    std::error_code directory;  // why its directory takes no new file; none: it does
    explicit operator bool() const { return !file && !directory; }
};
Replaceable replaceable(const std::filesystem::path& path);

// Text is written to a file beside the one that it is for, "X.brelan-<process>-<n>.part", which takes the
// name X when all is written and on the disk. Links are followed; permissions stay as they were. Such files
// that a killed process has left in the directory are removed. Errors are thrown as std::system_error.
class WholeFile {
public:
    explicit WholeFile(const std::filesystem::path& path);
    // Without commit() nothing is left.
    ~WholeFile();
    WholeFile(const WholeFile&) = delete;
    WholeFile& operator=(const WholeFile&) = delete;

    void write(std::string_view text);
    void commit();

    // Where a library may write by itself.
    std::FILE* stream() { return stream_; }
    const std::filesystem::path& beside() const { return beside_; }

private:
    std::filesystem::path target_, beside_;
    std::FILE* stream_ = nullptr;
};

}  // namespace brelan
