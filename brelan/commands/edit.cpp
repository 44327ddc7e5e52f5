// brelan edit: a deck in the browser, beside the mesh that it makes.
#include <fmt/core.h>
#include <spawn.h>
#include <sys/wait.h>

#include <csignal>
#include <cstdlib>

#include "cli/console.h"
#include "cli/exit_status.h"
#include "commands/commands.h"
#include "commands/editing/session.h"

namespace brelan::tool {

namespace {

// While it lives Ctrl-C and its like wait for wait(), in this thread and in those that are started meanwhile.
class HeldSignals {
public:
    HeldSignals() {
        sigemptyset(&held_);
        for (const int number : {SIGINT, SIGTERM, SIGHUP})
            sigaddset(&held_, number);
        pthread_sigmask(SIG_BLOCK, &held_, &before_);
    }
    ~HeldSignals() { pthread_sigmask(SIG_SETMASK, &before_, nullptr); }
    HeldSignals(const HeldSignals&) = delete;
    HeldSignals& operator=(const HeldSignals&) = delete;

    void wait() const {
        int number = 0;
        sigwait(&held_, &number);
    }

private:
    sigset_t held_{}, before_{};
};

// Where there is a display; a browser that does not come is no fault of the command.
void open_in_browser(const std::string& address) {
    if (std::getenv("DISPLAY") == nullptr && std::getenv("WAYLAND_DISPLAY") == nullptr)
        return;
    std::string name = "xdg-open", argument = address;
    char* arguments[] = {name.data(), argument.data(), nullptr};
    pid_t process = 0;
    if (posix_spawnp(&process, name.c_str(), nullptr, nullptr, arguments, environ) == 0)
        waitpid(process, nullptr, 0);
}

}  // namespace

int edit(const EditOptions& options, const Context& context) {
    const HeldSignals signals;
    const EditSession session(options, context);
    print(session.address() + "\n");
    finish_output();
    note(context, "Ctrl-C ends it");
    if (!options.no_browser)
        open_in_browser(session.address());
    signals.wait();
    return STATUS_OK;
}

}  // namespace brelan::tool
