// The one way from a real to an integer.
#pragma once

#include <cstdint>
#include <limits>

namespace brelan {

// Truncates towards zero. A value beyond the 32-bit range, or one that is not a number, gives -2147483648.
constexpr std::int32_t to_integer(float value) {
    return value > -2147483648.0F && value < 2147483648.0F ? static_cast<std::int32_t>(value)
                                                           : std::numeric_limits<std::int32_t>::min();
}

}  // namespace brelan
