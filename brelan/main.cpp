// brelan: runs decks, shows meshes, checks them and carries them to other programs.

#include <cstdio>
#include <exception>
#include <new>

#include "cli/console.h"
#include "cli/exit_status.h"
#include "cli/interruption.h"
#include "commands/command_line.h"
#include "text/run_end.h"

using namespace brelan::tool;

int main(int argc, char** argv) {
    remove_half_files_on_signals();
    int status = STATUS_BAD;
    try {
        status = run_command_line(argc, argv);
    } catch (const Failure& failure) {
        error_line(failure.what());
    } catch (const brelan::RunEnd& end) {
        error_line(end.text);
    } catch (const std::bad_alloc&) {
        std::fputs("brelan: there is not enough memory\n", stderr);  // nothing here may need more of it
    } catch (const std::exception& error) {
        error_line(error.what());
    }
    return status;
}
