// Ctrl-C and its like: nothing half done is left when a signal ends the process.
#pragma once

#include <csignal>

namespace brelan::tool {

// While the batch program runs: it is ended, and what was made for the run taken away, before the signal does
// what it would have done.
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

// Takes away what is half written when the process is interrupted or told to end.
void remove_half_files_on_signals();

// The file that is half written, of which there is one at a time; nullptr when it is whole or gone. The name
// has to last until then.
void set_half_file(const char* name);

}  // namespace brelan::tool
