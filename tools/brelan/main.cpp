// brelan: runs decks, shows meshes, checks them and carries them to other programs.

#include <fmt/core.h>
#include <unistd.h>

#include <exception>

#include "channel/channels.h"
#include "channel/run_end.h"
#include "cli/console.h"
#include "cli/exit_status.h"
#include "cli/help.h"
#include "cli/output_file.h"
#include "commands/commands.h"

namespace {

using namespace brelan::tool;

constexpr const char* EXAMPLES = R"(  brelan new base-mesh > pit.dat     a commented starter deck
  brelan run pit.dat                 makes the mesh
  brelan plot Bmesh.dat -o pit.html  shows it, to be opened in a browser
  brelan info Bmesh.dat              counts, areas, quality, soundness
  brelan convert Bmesh.dat pit.vtu   carries it to ParaView (.vtu) or Gmsh (.msh)
)";

void add_commands(CLI::App& app, Context& context) {
    add_run(app, context);
    add_new(app, context);
    add_check(app, context);
    add_info(app, context);
    add_plot(app, context);
    add_convert(app, context);
    add_diff(app, context);
    add_help(app, context);
}

// The parser would only say that a command is missing.
void require_known_command(CLI::App& app, int argc, char** argv) {
    for (int i = 1; i < argc; ++i)
        if (argv[i][0] != '-') {
            command_named(app, argv[i]);
            return;
        }
}

std::filesystem::path own_path() {
    std::error_code error;
    std::filesystem::path path = std::filesystem::read_symlink("/proc/self/exe", error);
    return path;
}

// Reads the command line and runs the command that it names.
int command(int argc, char** argv) {
    Context context;
    context.program = own_path();
    CLI::App app("Decks and meshes of BRELAN-2D: run, check, look at, carry to other programs.", "brelan");
    app.formatter(std::make_shared<ExamplesFirst>());
    app.footer(EXAMPLES);
    app.set_version_flag("--version", "brelan " BRELAN_VERSION, "Show the version and end");
    app.set_help_flag("-h,--help", "Show this help and end");
    app.add_flag("-q,--quiet", context.quiet, "Only results and errors");
    app.require_subcommand(1);
    app.fallthrough();
    add_commands(app, context);
    require_known_command(app, argc, argv);
    try {
        app.parse(argc, argv);
    } catch (const CLI::Success& shown) {  // help or version
        app.exit(shown);
        finish_output();
        return STATUS_OK;
    } catch (const CLI::ParseError& error) {
        error_line(fmt::format("{}; see \"brelan {}--help\"", error.what(), parsed_command(app)));
        return STATUS_BAD;
    }
    const int status = context.action();
    finish_output();
    return status;
}

}  // namespace

int main(int argc, char** argv) {
    remove_half_files_on_signals();
    int status = STATUS_BAD;
    try {
        status = command(argc, argv);
    } catch (const Failure& failure) {
        error_line(failure.what());
    } catch (const brelan::RunEnd& end) {
        error_line(end.text);
    } catch (const std::bad_alloc&) {
        error_line("there is not enough memory");
    } catch (const std::exception& error) {
        error_line(error.what());
    }
    brelan::close_all_channels();
    return status;
}
