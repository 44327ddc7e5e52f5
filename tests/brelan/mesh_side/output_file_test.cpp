// Files that are there whole or not at all, also when a signal ends the process.
#include "cli/output_file.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <csignal>
#include <fstream>
#include <iterator>

#include "cli/interruption.h"

namespace brelan::tool {
namespace {

namespace fs = std::filesystem;

class OutputFileOnSignal : public testing::Test {
protected:
    OutputFileOnSignal() { fs::create_directories(place_); }
    ~OutputFileOnSignal() override { fs::remove_all(place_); }

    std::string content(const fs::path& file) const {
        std::ifstream stream(place_ / file);
        return {std::istreambuf_iterator<char>(stream), {}};
    }
    std::ptrdiff_t files() const { return std::distance(fs::directory_iterator(place_), {}); }

    const fs::path place_ = fs::temp_directory_path() / ("brelan-out-" + std::to_string(getpid()));
};

TEST_F(OutputFileOnSignal, takes_the_half_file_away_and_leaves_whole_ones_and_the_one_before) {
    write_file(place_ / "mesh.svg", "before");
    for (const int number : {SIGINT, SIGTERM, SIGHUP}) {
        const auto write_half = [&] {
            remove_half_files_on_signals();
            write_file(place_ / "whole.svg", "whole");
            OutputFile file(place_ / "mesh.svg");
            file.write("half");
            raise(number);
        };
        EXPECT_EXIT(write_half(), testing::KilledBySignal(number), "");
        EXPECT_EQ(content("mesh.svg"), "before");
        EXPECT_EQ(content("whole.svg"), "whole");
        EXPECT_EQ(files(), 2) << "signal " << number;
    }
}

TEST_F(OutputFileOnSignal, is_whole_where_it_is_finished_before_the_interruption_ends) {
    const auto write_on = [&] {
        remove_half_files_on_signals();
        const Interruption interruption;
        OutputFile file(place_ / "mesh.svg");
        file.write("half");
        raise(SIGTERM);
        file.write(interruption.came() ? " and half" : "");
        file.commit();
    };
    EXPECT_EXIT(write_on(), testing::KilledBySignal(SIGTERM), "");
    EXPECT_EQ(content("mesh.svg"), "half and half");
    EXPECT_EQ(files(), 1);
}

}  // namespace
}  // namespace brelan::tool
