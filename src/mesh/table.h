// Tables of fixed size, indexed from 1 by the external number, every access checked in every build.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>

#include "channel/layout.h"
#include "channel/run_end.h"

namespace brelan {

[[noreturn]] inline void fail_outside_table(std::string_view table, std::int32_t number, std::int32_t last) {
    FAIL("table " + std::string(table) + ": number " + std::to_string(number) + " is outside 1 to " +
         std::to_string(last));
}

// Entries 1 to N. The name is shown in the message that ends a run at an access outside.
template <class T, std::int32_t N, FixedText NAME>
class Table {
public:
    static constexpr std::int32_t SIZE = N;

    T& operator[](std::int32_t number) { return entry_[checked(number)]; }
    const T& operator[](std::int32_t number) const { return entry_[checked(number)]; }

    void fill(const T& value) { entry_.fill(value); }

private:
    static std::size_t checked(std::int32_t number) {
        const std::uint32_t index = static_cast<std::uint32_t>(number) - 1U;
        if (index >= static_cast<std::uint32_t>(N))
            fail_outside_table(NAME.view(), number, N);
        return index;
    }

    std::array<T, static_cast<std::size_t>(N)> entry_{};
};

}  // namespace brelan
