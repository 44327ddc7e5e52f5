// How far a run has come, for the program that has started this one and waits: a line for each pass and each
// group, on a descriptor that is inherited.
#pragma once

#include "text/watch.h"

namespace brelan {

// Writes to the descriptor that the environment variable BRELAN_PROGRESS names; to none where it names none
// that is open, or one of the three standard streams. Must be made before the run opens any file. A line that
// cannot be written is left out.
class Progress : public RunWatcher {
public:
    Progress();
    bool goes_on(const RunProgress& progress) noexcept override;

    // Where nobody listens a run needs no watcher.
    RunWatcher* watcher() { return descriptor_ < 0 ? nullptr : this; }

private:
    int descriptor_ = -1;
    RunProgress told_;
};

}  // namespace brelan
