// Every input that the fuzzers keep, through the same entries as theirs: it ends in order. What once went
// wrong is among them.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <ostream>
#include <string>
#include <vector>

#include "targets.h"

namespace brelan::fuzz {

void PrintTo(const Target& target, std::ostream* stream) {
    *stream << target.name;
}

namespace {

namespace fs = std::filesystem;

std::vector<fs::path> kept_inputs(std::string_view target) {
    std::vector<fs::path> inputs;
    for (const auto& entry : fs::directory_iterator(fs::path(FUZZ_CORPUS) / target))
        inputs.push_back(entry.path());
    std::sort(inputs.begin(), inputs.end());
    return inputs;
}

class KeptInput : public ::testing::TestWithParam<Target> {};

TEST_P(KeptInput, EndsInOrder) {
    const std::vector<fs::path> inputs = kept_inputs(GetParam().name);
    EXPECT_FALSE(inputs.empty());
    for (const fs::path& path : inputs) {
        SCOPED_TRACE(path.filename().string());
        std::ifstream file(path, std::ios::binary);
        const std::string input((std::istreambuf_iterator<char>(file)), {});
        EXPECT_NO_THROW(GetParam().run(input));
    }
}

INSTANTIATE_TEST_SUITE_P(Targets, KeptInput, ::testing::ValuesIn(TARGETS),
                         [](const auto& test) { return std::string(test.param.name); });

}  // namespace
}  // namespace brelan::fuzz
