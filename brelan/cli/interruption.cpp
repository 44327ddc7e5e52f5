#include "cli/interruption.h"

#include <unistd.h>

#include <atomic>

namespace brelan::tool {

namespace {

constexpr int SIGNALS[] = {SIGINT, SIGTERM, SIGHUP};

// A signal handler is handed nothing but the number of its signal: these two are all that outlives a call in
// the command, and of types that a handler may touch.
// NOLINTBEGIN(cppcoreguidelines-avoid-non-const-global-variables)
volatile std::sig_atomic_t signal_that_came = 0;
std::atomic<const char*> half_file{nullptr};
// NOLINTEND(cppcoreguidelines-avoid-non-const-global-variables)
static_assert(std::atomic<const char*>::is_always_lock_free);

extern "C" void note_signal(int number) {
    signal_that_came = number;
}

extern "C" void remove_half_file(int number) {
    if (const char* const name = half_file)
        unlink(name);
    signal(number, SIG_DFL);
    raise(number);
}

}  // namespace

Interruption::Interruption() {
    signal_that_came = 0;
    for (int i = 0; i < 3; ++i) {
        struct sigaction noted {};
        noted.sa_handler = note_signal;  // without SA_RESTART: a wait for a lock is left
        sigaction(SIGNALS[i], nullptr, &before_[i]);
        if (before_[i].sa_handler != SIG_IGN)
            sigaction(SIGNALS[i], &noted, nullptr);
    }
}

Interruption::~Interruption() {
    for (int i = 0; i < 3; ++i)
        sigaction(SIGNALS[i], &before_[i], nullptr);
    if (signal_that_came != 0)
        raise(signal_that_came);
}

bool Interruption::came() const {
    return signal_that_came != 0;
}

void remove_half_files_on_signals() {
    for (const int number : SIGNALS)
        if (signal(number, remove_half_file) == SIG_IGN)
            signal(number, SIG_IGN);
}

void set_half_file(const char* name) {
    half_file = name;
}

}  // namespace brelan::tool
