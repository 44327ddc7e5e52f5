#include "study/samples.h"

#include <numeric>
#include <random>
#include <utility>

namespace brelan::tool {

namespace {

// The standard defines the numbers of the generator to the bit, but not those of its distributions.
class SampleSource {
public:
    SampleSource(std::uint64_t seed, std::size_t parameter)
        : engine_(seed ^ (0x9E3779B97F4A7C15U * (parameter + 1))) {}

    double unit() { return static_cast<double>(engine_() >> 11U) * 0x1p-53; }

    std::size_t below(std::size_t count) {
        const std::uint64_t most = UINT64_MAX - UINT64_MAX % count;
        std::uint64_t drawn = engine_();
        while (drawn >= most)
            drawn = engine_();
        return static_cast<std::size_t>(drawn % count);
    }

private:
    std::mt19937_64 engine_;
};

}  // namespace

std::vector<double> samples(Sampling sampling, std::size_t count, std::uint64_t seed, std::size_t parameter) {
    SampleSource source(seed, parameter);
    std::vector<double> drawn(count);
    if (sampling == Sampling::random) {
        for (double& value : drawn)
            value = source.unit();
        return drawn;
    }
    std::iota(drawn.begin(), drawn.end(), 0.0);
    for (std::size_t k = count; k > 1; --k)
        std::swap(drawn[k - 1], drawn[source.below(k)]);
    for (double& value : drawn)
        value = (value + source.unit()) / static_cast<double>(count);
    return drawn;
}

}  // namespace brelan::tool
