// A file without a name, which is gone when it is closed: for what a process that is started says.
#pragma once

#include <cstdio>
#include <memory>
#include <string>

namespace brelan::tool {

struct FileCloser {
    void operator()(std::FILE* file) const { std::fclose(file); }
};
using TemporaryFile = std::unique_ptr<std::FILE, FileCloser>;

// Throws Failure where none can be made.
TemporaryFile temporary_file();

// All that stands in it.
std::string content(std::FILE* file);

}  // namespace brelan::tool
