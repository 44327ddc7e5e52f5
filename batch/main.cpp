// BRELAN-2D, the mesh pre-processor: runs the deck that the start-up files name. The one option is "--sound",
// which has elements cut so that a solver takes them; any other argument is passed over, as front ends give
// them.

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <memory>
#include <new>
#include <span>
#include <string>
#include <string_view>
#include <thread>

#include "progress.h"
#include "run/run.h"
#include "run/run_deck.h"
#include "terminal.h"
#include "text/directory_hold.h"
#include "text/run_end.h"
#include "text/termination.h"

namespace brelan {

namespace {

#ifdef _WIN32

// The drive itself.
std::filesystem::path drive_c() {
    return {};
}

#else

std::string variable(const char* name) {
    const char* value = std::getenv(name);
    return value == nullptr ? std::string{} : std::string{value};
}

// The directory that stands for drive C:\: the environment variable BRELAN_DRIVE_C names it, else it is
// $XDG_DATA_HOME/brelan2d/C, else ~/.local/share/brelan2d/C.
std::filesystem::path drive_c() {
    if (const std::string place = variable("BRELAN_DRIVE_C"); !place.empty())
        return place;
    if (const std::string place = variable("XDG_DATA_HOME"); !place.empty())
        return std::filesystem::path(place) / "brelan2d" / "C";
    if (const std::string place = variable("HOME"); !place.empty())
        return std::filesystem::path(place) / ".local" / "share" / "brelan2d" / "C";
    return {};
}

#endif

// One line on standard error. What a file name or a deck holds cannot steer a terminal.
int failed(std::string message) {
    std::replace_if(
        message.begin(), message.end(), [](unsigned char c) { return c < ' ' || c == 127; }, '?');
    write_text(stderr, "brelan2d: " + message + "\n");
    return STATUS_FAILED;
}

// Nothing here may need more of it.
int without_memory() {
    std::fputs("brelan2d: the run cannot go on: there is not enough memory\n", stderr);
    return STATUS_FAILED;
}

// The standard library's own files may find no memory where nothing can be thrown. tests/faults tries it, but
// such an end is none at which coverage is kept.
// GCOVR_EXCL_START
void end_by_terminate() {
    if (termination_by() == Termination::fault)
        std::fputs(
            "brelan2d: the run cannot go on: an error inside the program; please report it with the deck\n",
            stderr);
    else
        without_memory();
    std::_Exit(STATUS_FAILED);
}
// GCOVR_EXCL_STOP

CutMethod method_by(std::span<char* const> arguments) {
    const bool sound = std::any_of(arguments.begin(), arguments.end(),
                                   [](std::string_view argument) { return argument == "--sound"; });
    return sound ? CutMethod::sound : CutMethod::by_rules;
}

// Runs in one directory would write into each other's working files.
void wait_for_directory(DirectoryHold& directory) {
    if (directory.try_to_hold())
        return;
    std::fprintf(stderr, "brelan2d: another run is at work in this directory; waiting for it to end\n");
    while (!directory.try_to_hold())
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
}

int run_here(CutMethod cut) {
    Progress progress;  // before any file is opened
    DirectoryHold directory(".");
    wait_for_directory(directory);
    Terminal terminal;
    const auto run = std::make_unique<Run>(Directories{{}, drive_c()}, terminal, progress.watcher());
    run->cut = cut;
    const RunEnd end = run_to_end(*run);
    if (end.status == STATUS_FAILED)
        return failed(end.text);
    if (end.status == STATUS_STOPPED)
        write_text(stdout, end.text + "\n");
    return end.status;
}

}  // namespace

}  // namespace brelan

int main(int count, char* arguments[]) {
    std::set_terminate(brelan::end_by_terminate);
    try {
        const std::span<char* const> given(arguments, static_cast<std::size_t>(count));
        return brelan::run_here(brelan::method_by(given.subspan(std::min<std::size_t>(given.size(), 1))));
    } catch (const std::bad_alloc&) {
        return brelan::without_memory();
    } catch (const std::exception& error) {
        return brelan::failed(std::string("the run cannot go on: ") + error.what());
    }
}
