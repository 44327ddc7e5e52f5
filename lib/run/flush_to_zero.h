// Denormal results count as 0 in all arithmetic, on every processor.
#pragma once

#include <cstdint>

namespace brelan {

// The floating-point mode of the calling thread as long as a run lives; the mode before it comes back.
class FlushToZero {
public:
    FlushToZero();
    ~FlushToZero();
    FlushToZero(const FlushToZero&) = delete;
    FlushToZero& operator=(const FlushToZero&) = delete;

private:
    std::uint64_t before_;
};

}  // namespace brelan
