#include "commands/batch/interruption.h"

namespace brelan::tool {

namespace {

constexpr int SIGNALS[] = {SIGINT, SIGTERM, SIGHUP};

volatile std::sig_atomic_t signal_that_came = 0;

extern "C" void note_signal(int number) {
    signal_that_came = number;
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

}  // namespace brelan::tool
