// The terminal that the batch program is started in.
//
// A file or a pipe gets and gives the same bytes on every system, lines ending with a line feed. A console of
// Windows shows the characters that the bytes are in UTF-8, whatever its code page.
#pragma once

#include <cstdio>

#include "text/console.h"

namespace brelan {

// Writes to standard output or standard error at once; false when it could not be written.
bool write_text(std::FILE* stream, std::string_view text);

class Terminal : public Console {
public:
    void write(std::string_view text) override;
    bool read(std::string& line) override;
};

}  // namespace brelan
