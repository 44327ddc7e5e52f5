#include "terminal.h"

#include <cstdio>

#include "text/run_end.h"
#include "text/text_line.h"

namespace brelan {

void Terminal::write(std::string_view text) {
    if (std::fwrite(text.data(), 1, text.size(), stdout) != text.size() || std::fflush(stdout) != 0)
        fail("console: standard output cannot be written");
}

bool Terminal::read(std::string& line) {
    line.clear();
    int c = std::getchar();
    if (c == EOF)
        return false;
    for (; c != EOF && c != '\n'; c = std::getchar())
        if (line.size() <= static_cast<std::size_t>(LINE_COLUMNS))
            line += static_cast<char>(c);
    if (!line.empty() && line.back() == '\r')
        line.pop_back();
    return true;
}

}  // namespace brelan
