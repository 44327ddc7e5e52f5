#include "study/program_output.h"

#include <fmt/core.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>

#include "cli/exit_status.h"

namespace brelan::tool {

namespace {

using OutputStream = std::unique_ptr<std::FILE, int (*)(std::FILE*)>;

OutputStream stream_for_output() {
    OutputStream stream(std::tmpfile(), &std::fclose);
    if (!stream)
        throw Failure(fmt::format("no temporary file can be made: {}", std::strerror(errno)));
    return stream;
}

std::string text_in(std::FILE* stream) {
    std::rewind(stream);
    std::string text;
    char piece[4096];
    while (const std::size_t count = std::fread(piece, 1, sizeof piece, stream))
        text.append(piece, count);
    return text;
}

}  // namespace

ProgramOutput output_of_program(const std::vector<std::string>& arguments) {
    const OutputStream out = stream_for_output(), err = stream_for_output();
    std::vector<char*> words;
    words.reserve(arguments.size() + 1);
    for (const std::string& argument : arguments)
        words.push_back(const_cast<char*>(argument.c_str()));
    words.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, 0, "/dev/null", 0, 0);
    posix_spawn_file_actions_adddup2(&actions, fileno(out.get()), 1);
    posix_spawn_file_actions_adddup2(&actions, fileno(err.get()), 2);
    pid_t process = 0;
    const int started = posix_spawnp(&process, words[0], &actions, nullptr, words.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    if (started == ENOENT)
        return {127, "", arguments.front() + " is not there"};
    if (started != 0)
        throw Failure(fmt::format("{} cannot be started: {}", arguments.front(), std::strerror(started)));
    int status = 0;
    while (waitpid(process, &status, 0) < 0 && errno == EINTR) {
    }
    return {WIFEXITED(status) ? WEXITSTATUS(status) : 128, text_in(out.get()), text_in(err.get())};
}

}  // namespace brelan::tool
