// Why a process is about to be terminated: for the terminate handlers of the programs, which say so.
#pragma once

namespace brelan {

enum class Termination {
    no_memory,  // an exception that found no memory to be thrown, or that tells of the want where none may be
                // thrown
    fault,      // anything else: an error of the program itself
};

// To be asked in a terminate handler. Needs no memory.
Termination termination_by() noexcept;

}  // namespace brelan
