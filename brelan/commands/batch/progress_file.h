// What a running batch program tells of the decks and groups that it works on.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace brelan::tool {

// One line of the program's.
struct ToldProgress {
    std::int32_t deck = 0, decks = 0, group = 0, groups = 0;  // as those of RunProgress
    std::string pass, title;
};

// The progress that a line tells; none where it is no such line.
std::optional<ToldProgress> progress_in(std::string_view line);

// A file without a name that the program inherits and writes on.
class ProgressFile {
public:
    ProgressFile();  // throws Failure

    int descriptor() const { return fileno(file_.get()); }

    // Reads what has been added.
    void look();

    const ToldProgress& last() const { return last_; }

private:
    struct Closer {
        void operator()(std::FILE* file) const { std::fclose(file); }
    };

    std::unique_ptr<std::FILE, Closer> file_;
    std::size_t read_ = 0;
    std::string rest_;
    ToldProgress last_;
};

}  // namespace brelan::tool
