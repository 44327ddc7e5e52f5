// How far a study is, at which rate, and what time is left.
#pragma once

#include <chrono>
#include <cstddef>
#include <string>

#include "cli/console.h"
#include "cli/context.h"

namespace brelan::tool {

// "120 of 1000 cases, 2 failed, 35.2/s, 25 s left"
struct Advance {
    std::size_t all = 0, done = 0, failed = 0;
    std::size_t here = 0;  // done in this invocation, which the rate is of
    double seconds = 0.0;  // of it
};
std::string advance_text(const Advance& advance);

// One line on a terminal that changes; elsewhere a line a minute.
class StudyProgress {
public:
    explicit StudyProgress(const Context& context);
    void show(Advance advance);

private:
    using Clock = std::chrono::steady_clock;
    const Context& context_;
    ProgressLine line_;
    Clock::time_point begun_, shown_;
};

}  // namespace brelan::tool
