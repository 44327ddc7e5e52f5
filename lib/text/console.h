// The console of a run: the one prompt, the card error report and the stop texts go there. A library's run
// has one that keeps what is written; the batch program's is the terminal.
#pragma once

#include <string>
#include <string_view>

namespace brelan {

class Console {
public:
    Console() = default;
    Console(const Console&) = delete;
    Console& operator=(const Console&) = delete;
    virtual ~Console() = default;

    // Shows text as it stands, without a line end of its own.
    virtual void write(std::string_view text) = 0;

    // Reads a line; false when there is none.
    virtual bool read(std::string& line) = 0;
};

// Nobody is there: what is written is kept for the result of the run, and nothing is answered.
class KeptConsole : public Console {
public:
    void write(std::string_view text) override { text_ += text; }
    bool read(std::string& line) override {
        line.clear();
        return false;
    }
    const std::string& text() const { return text_; }

private:
    std::string text_;
};

}  // namespace brelan
