// brelan edit: a deck in the browser, beside the mesh that it makes.
#include <fmt/core.h>
#include <malloc.h>
#include <spawn.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <optional>
#include <string>
#include <system_error>

#include "cli/console.h"
#include "cli/exit_status.h"
#include "cli/held_signals.h"
#include "cli/output_file.h"
#include "commands/commands.h"
#include "commands/editing/session.h"

namespace brelan::tool {

namespace {

namespace fs = std::filesystem;

bool has_display() {
    return std::getenv("DISPLAY") != nullptr || std::getenv("WAYLAND_DISPLAY") != nullptr;
}

// A page that leads to the address, which only its user can read: the arguments of a process can be read by
// everybody.
class WayIn {
public:
    explicit WayIn(const std::string& address) {
        std::error_code error;
        const char* const of_user = std::getenv("XDG_RUNTIME_DIR");
        std::string name =
            (of_user != nullptr ? fs::path(of_user) : fs::temp_directory_path(error)) / "brelan-XXXXXX";
        if (mkdtemp(name.data()) == nullptr)
            return;
        directory_ = name;
        write_file(
            page(),
            fmt::format(
                "<!DOCTYPE html><meta charset=\"utf-8\"><title>brelan edit</title>"
                "<meta http-equiv=\"refresh\" content=\"0; url={0}\"><a href=\"{0}\">brelan edit</a>\n",
                address));
    }
    ~WayIn() {
        std::error_code error;
        if (!directory_.empty())
            fs::remove_all(directory_, error);
    }
    WayIn(const WayIn&) = delete;
    WayIn& operator=(const WayIn&) = delete;

    // A browser that does not come is no fault of the command. Signals for the command are none for the
    // browser, which may outlive it.
    void open() const {
        if (directory_.empty())
            return;
        std::string name = "xdg-open", argument = page().string();
        char* arguments[] = {name.data(), argument.data(), nullptr};
        posix_spawnattr_t apart{};
        sigset_t nothing{};
        sigemptyset(&nothing);
        posix_spawnattr_init(&apart);
        posix_spawnattr_setsigmask(&apart, &nothing);
        posix_spawnattr_setflags(&apart, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETPGROUP);
        pid_t process = 0;
        posix_spawnp(&process, name.c_str(), nullptr, &apart, arguments, environ);
        posix_spawnattr_destroy(&apart);
    }

private:
    fs::path page() const { return directory_ / "edit.html"; }

    fs::path directory_;
};

}  // namespace

int edit(const EditOptions& options, const Context& context) {
    const HeldSignals signals;
    // The tables of a run that has ended go back to the system: new ones are all zeros without being written.
    constexpr int BYTES_OF_A_TABLE = 4 << 20;
    mallopt(M_MMAP_THRESHOLD, BYTES_OF_A_TABLE);
    const EditSession session(options, context);
    print(session.address() + "\n");
    finish_output();
    note(context, "Ctrl-C ends it");
    std::optional<WayIn> way_in;
    if (!options.no_browser && has_display())
        way_in.emplace(session.address()).open();
    signals.wait();
    return STATUS_OK;
}

}  // namespace brelan::tool
