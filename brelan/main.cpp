// brelan: runs decks, shows meshes, checks them and carries them to other programs.

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <new>

#include "cli/console.h"
#include "cli/exit_status.h"
#include "cli/interruption.h"
#include "commands/command_line.h"
#include "text/run_end.h"
#include "text/termination.h"

using namespace brelan::tool;

namespace {

// Nothing here may need more of it.
void tell_of_memory() {
    std::fputs("brelan: there is not enough memory\n", stderr);
}

// The standard library's own files may find no memory where nothing can be thrown.
void end_by_terminate() {
    if (brelan::termination_by() == brelan::Termination::fault)
        std::fputs("brelan: an error inside the program; please report it with what it was given\n", stderr);
    else
        tell_of_memory();
    std::_Exit(STATUS_BAD);
}

}  // namespace

int main(int argc, char** argv) {
    std::set_terminate(end_by_terminate);
    remove_half_files_on_signals();
    int status = STATUS_BAD;
    try {
        status = run_command_line(argc, argv);
    } catch (const Failure& failure) {
        error_line(failure.what());
    } catch (const brelan::RunEnd& end) {
        error_line(end.text);
    } catch (const std::bad_alloc&) {
        tell_of_memory();
    } catch (const std::exception& error) {
        error_line(error.what());
    }
    return status;
}
