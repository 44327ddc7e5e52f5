// What the unit tests share: a working directory of their own, the text of a run's end, an edition.
#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

#include "run/run.h"
#include "support/numbers.h"
#include "text/channels.h"
#include "text/run_end.h"

namespace brelan::test {

// The run whose parts the unit tests work on, one after the other.
inline KeptConsole shown;
inline Run state{Directories{}, shown};

// A fresh directory that is the working directory as long as it lives, with drive C: in it. Channels are
// closed with it.
class WorkDirectory {
public:
    WorkDirectory() : before_(std::filesystem::current_path()) {
        std::string pattern = (std::filesystem::temp_directory_path() / "brelan-unit-XXXXXX").string();
        if (::mkdtemp(pattern.data()) == nullptr)
            throw std::runtime_error("no temporary directory");
        path_ = std::filesystem::canonical(pattern);
        std::filesystem::permissions(path_, std::filesystem::perms{0755});
        std::filesystem::current_path(path_);
        state.channels = Channels(Directories{{}, path_ / "C"});
    }
    WorkDirectory(const WorkDirectory&) = delete;
    WorkDirectory& operator=(const WorkDirectory&) = delete;
    ~WorkDirectory() {
        state.channels.close_all();
        std::error_code ignored;
        std::filesystem::current_path(before_, ignored);
        std::filesystem::remove_all(path_, ignored);
    }

    const std::filesystem::path& path() const { return path_; }

    void write(const std::string& name, std::string_view text) const {
        std::filesystem::create_directories((path_ / name).parent_path());
        std::ofstream(path_ / name, std::ios::binary).write(text.data(), std::ssize(text));
    }
    std::string read(const std::string& name) const {
        std::ifstream file(path_ / name, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    }
    bool exists(const std::string& name) const { return std::filesystem::exists(path_ / name); }

private:
    std::filesystem::path before_, path_;
};

// A test with a working directory of its own.
class ChannelTest : public ::testing::Test {
protected:
    WorkDirectory directory;

    // The lines that are left on a channel, whole.
    static std::vector<std::string> rest_of(Channel& channel) {
        std::vector<std::string> lines;
        while (!channel.at_end())
            lines.emplace_back(channel.read_whole_line("a line"));
        return lines;
    }
};

// The message with which a call ends the run; empty, with a failure, where it does not.
template <class Call>
std::string failure_of(Call call) {
    try {
        call();
    } catch (const RunEnd& end) {
        EXPECT_EQ(end.status, STATUS_FAILED) << end.text;
        return end.text;
    }
    ADD_FAILURE() << "the run goes on";
    return {};
}

// The text with which a call stops the run.
template <class Call>
std::string stop_of(Call call) {
    try {
        call();
    } catch (const RunEnd& end) {
        EXPECT_EQ(end.status, STATUS_STOPPED) << end.text;
        return end.text;
    }
    ADD_FAILURE() << "the run goes on";
    return {};
}

// The edition of a test; the one before it comes back at its end.
class Edition {
public:
    explicit Edition(std::int32_t number) : before_(state.settings.edition) { state.set_edition(number); }
    Edition(const Edition&) = delete;
    Edition& operator=(const Edition&) = delete;
    ~Edition() { state.set_edition(before_); }

private:
    std::int32_t before_;
};

// An edition of each kind.
inline constexpr std::int32_t COUPLED = 2, TEMPERATURE = 5, HEAD = 9, DISPLACEMENT = 1;

}  // namespace brelan::test
