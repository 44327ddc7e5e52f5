#include "study/program_output.h"

#include <fmt/core.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>

#include "cli/exit_status.h"
#include "cli/temporary_file.h"

namespace brelan::tool {

ProgramOutput output_of_program(const std::vector<std::string>& arguments) {
    const TemporaryFile out = temporary_file(), err = temporary_file();
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
    return {WIFEXITED(status) ? WEXITSTATUS(status) : 128, content(out.get()), content(err.get())};
}

}  // namespace brelan::tool
