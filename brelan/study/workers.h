// Processes of this program that work on cases: what one crashes with, or hangs in, is its own.
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>

namespace brelan::tool {

// How a worker came to the end of a case.
struct CaseEnd {
    enum class How { done, time_limit, crashed };
    std::size_t number = 0;
    How how = How::done;
    int signal = 0;  // that ended the process; 0 where it ended by itself
    double seconds = 0.0;
};

struct WorkerPlan {
    unsigned count = 1;
    double time_limit = 0.0;                           // of a case, in seconds; 0: none
    std::function<void(std::size_t)> work;             // in the worker
    std::function<std::optional<std::size_t>()> next;  // the next case; nothing when there is none
    std::function<void(const CaseEnd&)> ended;
    std::function<bool()> goes_on;  // asked now and then; false ends all workers
};

// Until all cases are done. A worker that is gone is replaced. No worker outlives this process. Throws
// Failure where no process can be started.
void run_workers(const WorkerPlan& plan);

}  // namespace brelan::tool
