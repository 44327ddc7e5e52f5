#include "commands/batch/pass_trace.h"

#include <array>
#include <fstream>
#include <system_error>

#include "text/watch.h"

namespace brelan::tool {

namespace {

namespace fs = std::filesystem;

struct Work {
    std::string_view passes;  // between blanks
    std::string_view text;
};
constexpr std::array WORKS{
    Work{" 1 2 ", "starting"},
    Work{" 3 ", "cards are checked"},
    Work{" 4A ", "the base mesh is made"},
    Work{" 4B 4C ", "the base mesh is written"},
    Work{" 4D ", "the tables are emptied"},
    Work{" 5A 5B 5C 5D 5E 5F 5G 6 ", "the mesh is opened"},
    Work{" 7A 7B 7C 7D ", "nodes on a polyline are looked for"},
    Work{" 8 ", "nodes are read"},
    Work{" 9 10 11 12 13 ", "elements are read"},
    Work{" 14.1 ", "cards of the groups are read"},
    Work{" 14.2 ", "groups are drawn over the mesh"},
    Work{" 14.3 14.4 ", "groups are listed"},
    Work{" 14.5 14.6 ", "truss lines are lined up"},
    Work{" 14.7 ", "nodes are moved"},
    Work{" 15 16 17 18 19 ", "numbers are closed up"},
    Work{" 20 21 22 23 24 25 26 27.1 27.2 35 36 37 38 39 40 41 42 ", "the result is written"},
    Work{" 28 29 ", "the second mesh is read"},
    Work{" 30 31 ", "the smallest distance of nodes is looked for"},
    Work{" 32 33 34 ", "common nodes are matched"},
    Work{" 43 ", "finished"},
};

}  // namespace

std::string_view work_of_pass(std::string_view pass) {
    const std::string key = " " + std::string(pass) + " ";
    for (const Work& work : WORKS)
        if (work.passes.find(key) != std::string_view::npos)
            return work.text;
    return {};
}

void PassTrace::take_line(std::string_view line) {
    const std::string_view name = pass_name(line);
    if (name.empty())
        return;
    pass_ = name;
    if (pass_ == "3")
        ++decks_;
}

bool PassTrace::look() {
    std::error_code error;
    if (file_.empty())
        for (const fs::directory_entry& there : fs::directory_iterator(directory_, error))
            if (there.path().extension() == ".deb")
                file_ = there.path();
    if (file_.empty())
        return false;
    std::ifstream stream(file_, std::ios::binary);
    stream.seekg(static_cast<std::streamoff>(read_));
    // A trace that cannot be read shows no progress, and must not end the run.
    std::array<char, 4096> piece;
    while (stream) {
        stream.read(piece.data(), piece.size());
        const auto count = static_cast<std::size_t>(stream.gcount());
        read_ += count;
        rest_.append(piece.data(), count);
    }
    const std::string before = pass_;
    for (std::size_t end = rest_.find('\n'); end != std::string::npos; end = rest_.find('\n')) {
        take_line(std::string_view(rest_).substr(0, end));
        rest_.erase(0, end + 1);
    }
    return pass_ != before;
}

}  // namespace brelan::tool
