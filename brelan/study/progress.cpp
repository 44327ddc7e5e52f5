#include "study/progress.h"

#include <fmt/core.h>

#include <cmath>

namespace brelan::tool {

namespace {

std::string duration_text(double seconds) {
    const auto whole = std::llround(seconds);
    if (whole < 100)
        return fmt::format("{} s", whole);
    if (whole < 6000)
        return fmt::format("{} min {:02} s", whole / 60, whole % 60);
    return fmt::format("{} h {:02} min", whole / 3600, whole / 60 % 60);
}

}  // namespace

std::string advance_text(const Advance& a) {
    std::string text = fmt::format("{} of {} cases", a.done, a.all);
    if (a.failed > 0)
        text += fmt::format(", {} failed", a.failed);
    if (a.here > 0 && a.seconds > 0.0) {
        const double rate = static_cast<double>(a.here) / a.seconds;
        text += fmt::format(", {:.3g}/s", rate);
        if (a.done < a.all)
            text += fmt::format(", {} left", duration_text(static_cast<double>(a.all - a.done) / rate));
    }
    return text;
}

StudyProgress::StudyProgress(const Context& context)
    : context_(context), line_(context), begun_(Clock::now()), shown_(begun_) {}

void StudyProgress::show(Advance advance) {
    constexpr std::chrono::milliseconds BLINK{100};
    constexpr std::chrono::seconds MINUTE{60};
    const Clock::time_point now = Clock::now();
    const bool terminal = is_terminal(stderr);
    if (now - shown_ < (terminal ? BLINK : std::chrono::milliseconds(MINUTE)))
        return;
    shown_ = now;
    advance.seconds = std::chrono::duration<double>(now - begun_).count();
    if (terminal)
        line_.show(advance_text(advance));
    else
        note(context_, advance_text(advance));
}

}  // namespace brelan::tool
