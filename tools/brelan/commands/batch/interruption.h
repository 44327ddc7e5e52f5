// Ctrl-C and its like while the batch program runs: it is ended, and what was made for the run taken away,
// before the signal does what it would have done.
#pragma once

#include <csignal>

namespace brelan::tool {

class Interruption {
public:
    Interruption();
    ~Interruption();  // sends the signal again when one came
    Interruption(const Interruption&) = delete;
    Interruption& operator=(const Interruption&) = delete;

    bool came() const;

private:
    struct sigaction before_[3]{};
};

// Thrown to leave a command when an interruption came.
struct Interrupted {};

}  // namespace brelan::tool
