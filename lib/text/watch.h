// Looking on at a run, and ending it: somebody who waits for a long run is told how far it has come, and may
// call it off.
#pragma once

#include <cstdint>
#include <string_view>

namespace brelan {

// How far a run has come.
struct RunProgress {
    std::string_view pass;               // "14.2"; empty before the first
    std::int32_t deck = 0, decks = 0;    // from 1; those of an earth dam are known once its own deck was read
    std::int32_t group = 0, groups = 0;  // from 1, while groups are drawn over the mesh; else 0
    std::string_view title;              // of the group
};

class RunWatcher {
public:
    RunWatcher() = default;
    RunWatcher(const RunWatcher&) = delete;
    RunWatcher& operator=(const RunWatcher&) = delete;
    virtual ~RunWatcher() = default;

    // Called in the run's thread at each pass and each group, and now and then within them, with the same
    // progress. The texts hold during the call. False ends the run. Must not throw.
    virtual bool goes_on(const RunProgress& progress) noexcept = 0;
};

// What the parts of a run tell its watcher. Each ends the run (STATUS_ENDED) where the watcher says so, and
// does nothing where there is none.
class Watch {
public:
    explicit Watch(RunWatcher* watcher = nullptr) : watcher_(watcher) {}

    // The decks that follow are not told before their first pass.
    void set_deck(std::int32_t deck, std::int32_t decks) {
        progress_.deck = deck;
        progress_.decks = decks;
    }

    // A pass, by the text of its line in the trace.
    void at_pass(std::string_view trace_text);

    // The title holds as long as the group is in work.
    void at_group(std::int32_t group, std::int32_t groups, std::string_view title);

    // Within a long step, as often as one likes: the watcher is asked now and then.
    void look() {
        if (watcher_ != nullptr && ++looks_ % LOOKS_PER_CALL == 0)
            ask();
    }

private:
    static constexpr std::uint32_t LOOKS_PER_CALL = 64;

    void ask();

    RunWatcher* watcher_;
    RunProgress progress_;
    std::uint32_t looks_ = 0;
};

// The name of a pass in its line of the trace: "14.5" of " Pass 14.5  LINEUP = ". Empty where the line is of
// no pass.
std::string_view pass_name(std::string_view trace_text);

}  // namespace brelan
