// Random samples that are the same on every machine.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace brelan::tool {

enum class Sampling { random, latin };

// `count` numbers from 0 to below 1 for a parameter, a case each: independent ones, or a Latin hypercube,
// which has one in each of `count` equal parts of the range. Parameters have generators of their own, so that
// one more changes nothing in the others.
std::vector<double> samples(Sampling sampling, std::size_t count, std::uint64_t seed, std::size_t parameter);

}  // namespace brelan::tool
