#include "text/watch.h"

#include "text/run_end.h"

namespace brelan {

void Watch::at_pass(std::string_view trace_text) {
    if (watcher_ == nullptr)
        return;
    progress_.pass = pass_name(trace_text);
    progress_.group = progress_.groups = 0;
    progress_.title = {};
    ask();
}

void Watch::at_group(std::int32_t group, std::int32_t groups, std::string_view title) {
    if (watcher_ == nullptr)
        return;
    progress_.group = group;
    progress_.groups = groups;
    progress_.title = title;
    ask();
}

void Watch::ask() {
    if (!watcher_->goes_on(progress_))
        throw RunEnd{STATUS_ENDED, "the run was ended"};
}

std::string_view pass_name(std::string_view trace_text) {
    constexpr std::string_view word = "Pass ";
    const std::size_t begin = trace_text.find_first_not_of(' ');
    if (begin == std::string_view::npos || !trace_text.substr(begin).starts_with(word))
        return {};
    trace_text.remove_prefix(begin + word.size());
    return trace_text.substr(0, trace_text.find(' '));
}

}  // namespace brelan
