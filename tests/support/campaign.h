// How long a random campaign is: a sample in every run of the tests, all of it in `scripts/long`, which sets
// BRELAN_LONG.
#pragma once

#include <cstdlib>

namespace brelan::test {

inline bool is_long_run() {
    return std::getenv("BRELAN_LONG") != nullptr;
}

// A build with sanitizers runs slowly: it takes one in so many of a sample, which the plain build takes
// whole.
#if defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
inline constexpr int SAMPLE_SHARE = 6;
#else
inline constexpr int SAMPLE_SHARE = 1;
#endif
#elif defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
inline constexpr int SAMPLE_SHARE = 6;
#else
inline constexpr int SAMPLE_SHARE = 1;
#endif

// Of the rounds of a campaign, the first in a sample.
template <class Count>
Count rounds(Count sample, Count all) {
    const Count share = sample / static_cast<Count>(SAMPLE_SHARE);
    return is_long_run() ? all : share > 0 ? share : Count{1};
}

// Of a campaign that a plain build always takes whole.
template <class Count>
Count rounds(Count all) {
    return rounds(all, all);
}

}  // namespace brelan::test
