// Ctrl-C and its like as the end of a command that works until then.
#pragma once

#include <chrono>
#include <csignal>

namespace brelan::tool {

// While it lives they wait to be asked for, in this thread and in those that are started meanwhile.
class HeldSignals {
public:
    HeldSignals();
    ~HeldSignals();
    HeldSignals(const HeldSignals&) = delete;
    HeldSignals& operator=(const HeldSignals&) = delete;

    void wait() const;

    // True when one came within the time.
    bool came_within(std::chrono::milliseconds time) const;

private:
    sigset_t held_{}, before_{};
};

}  // namespace brelan::tool
