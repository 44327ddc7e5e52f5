// The console: the one prompt, the card error report and the stop texts. Nothing else is shown there.
#pragma once

#include <string>
#include <string_view>

namespace brelan {

// Writes text as it stands, without a line end of its own.
void console_write(std::string_view text);

// Reads a line; false at the end of standard input.
bool console_read(std::string& line);

// Waits until the person has pressed enter, or standard input ends. What the run has written so far is put on
// disk first: nobody may ever answer.
void console_pause();

}  // namespace brelan
