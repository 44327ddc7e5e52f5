#include "commands/batch/batch_program.h"

#include <fmt/core.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <thread>
#include <vector>

#include "cli/exit_status.h"
#include "cli/output_file.h"
#include "cli/temporary_file.h"

namespace brelan::tool {

namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;

constexpr std::string_view PROGRAM_NAME = "brelan2d";
constexpr int NOT_STARTED = 127;

bool is_program(const fs::path& file) {
    std::error_code error;
    return fs::is_regular_file(file, error) && access(file.c_str(), X_OK) == 0;
}

// The child's side: nothing here may allocate or return.
[[noreturn]] void become(const BatchStart& start, char* const* environment, std::FILE* in, std::FILE* out,
                         std::FILE* err) {
    const char* option = start.cut == CutMethod::sound ? "--sound" : nullptr;
    char* const arguments[] = {const_cast<char*>(start.program.c_str()), const_cast<char*>(option), nullptr};
    if (dup2(fileno(in), 0) >= 0 && dup2(fileno(out), 1) >= 0 && dup2(fileno(err), 2) >= 0 &&
        chdir(start.working_directory.c_str()) == 0)
        execve(start.program.c_str(), arguments, environment);
    _exit(NOT_STARTED);
}

std::vector<std::string> environment_for(const BatchStart& start) {
    constexpr std::string_view drive = "BRELAN_DRIVE_C=", progress = "BRELAN_PROGRESS=";
    std::vector<std::string> environment{std::string(drive) + start.drive.string()};
    if (start.progress)
        environment.push_back(std::string(progress) + std::to_string(*start.progress));
    for (char** entry = environ; *entry != nullptr; ++entry)
        if (const std::string_view text = *entry; !text.starts_with(drive) && !text.starts_with(progress))
            environment.emplace_back(text);
    return environment;
}

// The status of the child when it has ended; waits a little at a time.
int wait_for(pid_t child, const Interruption& interruption, const std::function<void()>& waiting) {
    int status = 0;
    auto pause = 1ms;
    for (;;) {
        const pid_t ended = waitpid(child, &status, WNOHANG);
        if (ended == child)
            return status;
        if (ended < 0 && errno != EINTR)
            throw Failure(fmt::format("{} cannot be waited for: {}", PROGRAM_NAME, std::strerror(errno)));
        if (interruption.came()) {
            kill(child, SIGTERM);
            waitpid(child, &status, 0);
            throw Interrupted{};
        }
        waiting();
        std::this_thread::sleep_for(pause);
        pause = std::min(pause * 2, 50ms);
    }
}

}  // namespace

fs::path find_batch_program(const fs::path& brelan, const fs::path& named) {
    if (!named.empty()) {
        if (!is_program(named))
            throw Failure(fmt::format("{}: expected the batch program, an executable file", named.string()));
        return fs::absolute(named);
    }
    const fs::path there = brelan.parent_path();
    for (const fs::path& place : {there / PROGRAM_NAME, there.parent_path() / "libexec" / PROGRAM_NAME,
                                  there.parent_path() / "libexec" / PROGRAM_NAME / PROGRAM_NAME})
        if (is_program(place))
            return place;
    throw Failure(fmt::format("{}: the batch program is not there; --program names it",
                              (there / PROGRAM_NAME).string()));
}

BatchResult run_batch_program(const BatchStart& start, const Interruption& interruption,
                              const std::function<void()>& waiting) {
    write_file(start.working_directory / "TFNAME.TMP", start.deck + "\n");
    const TemporaryFile in = temporary_file(), out = temporary_file(), err = temporary_file();
    std::fputs((start.deck + "\n").c_str(), in.get());
    std::rewind(in.get());
    std::vector<std::string> variables = environment_for(start);
    std::vector<char*> environment;
    environment.reserve(variables.size() + 1);
    for (std::string& variable : variables)
        environment.push_back(variable.data());
    environment.push_back(nullptr);

    std::fflush(nullptr);
    const pid_t child = fork();
    if (child < 0)
        throw Failure(fmt::format("{}: cannot be started: {}", start.program.string(), std::strerror(errno)));
    if (child == 0)
        become(start, environment.data(), in.get(), out.get(), err.get());
    const int status = wait_for(child, interruption, waiting);
    if (interruption.came())
        throw Interrupted{};
    if (WIFSIGNALED(status))
        throw Failure(fmt::format("{} was ended by signal {}", PROGRAM_NAME, WTERMSIG(status)));
    if (WEXITSTATUS(status) == NOT_STARTED)
        throw Failure(fmt::format("{}: cannot be started", start.program.string()));
    return {WEXITSTATUS(status), content(out.get()), content(err.get())};
}

}  // namespace brelan::tool
