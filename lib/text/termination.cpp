#include "text/termination.h"

#include <exception>
#include <new>

namespace brelan {

Termination termination_by() noexcept {
    // Where there is no room for an exception none is current. A copy would need room again; the current one
    // is thrown once more as it is.
    if (std::current_exception() == nullptr)
        return Termination::no_memory;
    try {
        throw;
    } catch (const std::bad_alloc&) {
        return Termination::no_memory;
    } catch (...) {
        return Termination::fault;
    }
}

}  // namespace brelan
