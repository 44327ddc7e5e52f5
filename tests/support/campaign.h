// How long a random campaign is: a sample in every run of the tests, all of it in `scripts/long`, which sets
// BRELAN_LONG.
#pragma once

#include <cstdlib>

namespace brelan::test {

inline bool is_long_run() {
    return std::getenv("BRELAN_LONG") != nullptr;
}

// Of the rounds of a campaign, the first in a sample.
template <class Count>
Count rounds(Count sample, Count all) {
    return is_long_run() ? all : sample;
}

}  // namespace brelan::test
