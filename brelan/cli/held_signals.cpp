#include "cli/held_signals.h"

namespace brelan::tool {

HeldSignals::HeldSignals() {
    sigemptyset(&held_);
    for (const int number : {SIGINT, SIGTERM, SIGHUP})
        sigaddset(&held_, number);
    pthread_sigmask(SIG_BLOCK, &held_, &before_);
}

HeldSignals::~HeldSignals() {
    pthread_sigmask(SIG_SETMASK, &before_, nullptr);
}

void HeldSignals::wait() const {
    int number = 0;
    sigwait(&held_, &number);
}

bool HeldSignals::came_within(std::chrono::milliseconds time) const {
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(time);
    timespec span{};
    span.tv_sec = seconds.count();
    span.tv_nsec = std::chrono::nanoseconds(time - seconds).count();
    return sigtimedwait(&held_, nullptr, &span) > 0;
}

}  // namespace brelan::tool
