// Standard output for data, standard error for messages, and colour where it is wanted.
#pragma once

#include <cstdio>
#include <string>
#include <string_view>

namespace brelan::tool {

struct Context;

// True when the stream is a terminal that wants colour: NO_COLOR is not set (or empty), TERM is not "dumb".
bool wants_color(std::FILE* stream);

// True when the stream is a terminal.
bool is_terminal(std::FILE* stream);

enum class Ink { plain, bold, faint, red, green, yellow, blue };

// The text in the colour where the stream wants colour, else as it is.
std::string inked(std::FILE* stream, Ink ink, std::string_view text);

// Text of a file or of its name without characters that could steer a terminal; a tab is named.
std::string printable(std::string_view text);

// Writes to standard output; finish_output says whether all of it arrived.
void print(std::string_view text);

// Flushes standard output. Throws Failure when something could not be written.
void finish_output();

// "brelan: <text>" as one line on standard error.
void error_line(std::string_view text);

// The same as a remark that --quiet leaves out.
void note(const Context& context, std::string_view text);

// One line on a terminal's standard error that each call replaces; nothing elsewhere. Gone when the object
// is.
class ProgressLine {
public:
    explicit ProgressLine(const Context& context);
    ~ProgressLine();
    ProgressLine(const ProgressLine&) = delete;
    ProgressLine& operator=(const ProgressLine&) = delete;

    bool is_on() const { return on_; }

    void show(std::string_view text);
    void clear();

private:
    bool on_ = false;
    std::string shown_;  // empty: nothing
};

}  // namespace brelan::tool
