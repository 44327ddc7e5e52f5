#include "commands/command_line.h"

#include <fmt/core.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <functional>
#include <map>
#include <memory>

#include "cli/console.h"
#include "cli/exit_status.h"
#include "cli/words.h"
#include "commands/command_parser.h"
#include "commands/commands.h"
#include "commands/examples.h"
#include "commands/starter_decks.h"

namespace brelan::tool {

namespace {

// Help that begins with examples: the footer of a command holds them.
class ExamplesFirst : public CLI::Formatter {
public:
    ExamplesFirst() { column_width(30); }

    std::string make_help(const CLI::App* app, std::string name, CLI::AppFormatMode mode) const override {
        if (mode == CLI::AppFormatMode::Sub)
            return CLI::Formatter::make_help(app, name, mode);
        std::string help = make_description(app);
        if (!app->get_footer().empty())
            help += "\nExamples:\n" + app->get_footer();
        const std::string usage =
            make_usage(app, app->get_parent() != nullptr ? "brelan " + app->get_name() : name);
        help += "\n" + usage;
        help += make_positionals(app);
        help += make_groups(app, mode);
        help += make_subcommands(app, mode);
        return help;
    }
};

CLI::IsMember one_of_the_kinds() {
    return CLI::IsMember({"coupled", "temperature", "head", "displacement"});
}

void add_kind(CLI::App& command, KindOption& kind, const char* help) {
    command.add_option("--kind", kind.name, help)->type_name("KIND")->check(one_of_the_kinds());
}

// What run and check have alike.
template <class Options>
void add_deck(CLI::App& command, Options& options) {
    command.add_option("DECK", options.deck, "Card deck; - is standard input")->required()->option_text(" ");
    CLI::Option* edition = command
                               .add_option("--edition", options.edition.edition,
                                           "Edition of the package, 1 to 12; it decides the kind")
                               ->check(CLI::Range(1, 12))
                               ->option_text("N");
    command
        .add_option("--kind", options.edition.kind,
                    "coupled, temperature, head or displacement; without it the kind of the mesh that the "
                    "deck reads")
        ->check(one_of_the_kinds())
        ->option_text("KIND")
        ->excludes(edition);
    command.add_option("--project", options.project, "Directory of the meshes; the deck's without it")
        ->option_text("DIR");
}

void add_cut(CLI::App& command, Cut& cut) {
    command
        .add_option(
            "--cut", cut,
            "How elements are cut along drawn lines: rules, sound, or auto (default): by the rules, and "
            "by the sound cut where the mesh is unsound")
        ->transform(CLI::Transformer(std::map<std::string, Cut>{
            {"rules", Cut::rules}, {"sound", Cut::sound}, {"auto", Cut::automatic}}))
        ->option_text("CUT");
}

void add_run(Parser& parser) {
    auto [command, options] = parser.add("run", "Run a deck and say what came out", EXAMPLES_OF_RUN, run);
    add_deck(*command, *options);
    command
        ->add_option("--apart", options->apart,
                     "Keep Bmesh.dat, Group.Pos and all else that no card names in this directory")
        ->option_text("DIR");
    add_cut(*command, options->cut);
    command->add_flag("--json", options->json, "As an object");
    CLI::Option* data = command
                            ->add_option("--data", options->data,
                                         "An existing data directory; the edition is that of its PROGRAM.DAT")
                            ->option_text("DIR");
    for (const char* name : {"--edition", "--kind"})
        data->excludes(command->get_option(name));
    CLI::Option* work =
        command
            ->add_option("--work", options->work, "Work in this directory of the project, and leave it there")
            ->option_text("NAME");
    command->add_flag("--keep", options->keep, "Leave the working directory of the run")
        ->option_text(" ")
        ->excludes(work);
    command->add_option("--program", options->program, "The batch program")->option_text("FILE");
}

void add_new(Parser& parser) {
    auto [command, options] =
        parser.add("new", "Write a commented starter deck that runs as it is", EXAMPLES_OF_NEW, new_deck);
    command->add_option("DECK", options->kind_of_deck, starter_names())->option_text(" ");
    command->add_flag("--list", options->list, "Show what there is");
    command->add_option("--kind", options->kind, "coupled, temperature, head or displacement (default)")
        ->check(one_of_the_kinds())
        ->option_text("KIND");
    command
        ->add_option("-o,--output", options->directory,
                     "Write the deck, and the meshes that it reads, to this directory; - is standard output")
        ->option_text("DIR");
    command->add_option("--name", options->name, "Name of the deck's file")->option_text("FILE");
    command->add_flag("--force", options->force, "Replace files that are there");
}

void add_check(Parser& parser) {
    auto [command, options] = parser.add("check", "Show a deck card by card, and what may be wrong with it",
                                         EXAMPLES_OF_CHECK, check);
    add_deck(*command, *options);
    command
        ->add_option(
            "--work", options->work,
            "Directory of the project that the run will work in; without it the run has one of its own")
        ->option_text("NAME");
    command
        ->add_option("--cut", options->cut,
                     "For which cut along drawn lines: rules (default) or sound; as run --cut has it")
        ->transform(
            CLI::Transformer(std::map<std::string, Cut>{{"rules", Cut::rules}, {"sound", Cut::sound}}))
        ->option_text("CUT");
    command->add_flag("--dry-run", options->dry_run,
                      "Run the deck in memory as well: no file is written, the mesh is looked at");
    command->add_flag("--json", options->json, "For programs");
    command->add_flag("--strict", options->strict, "Exit status 1 also when there are warnings");
}

CLI::Option* add_deck(CLI::App& command, std::string& deck, const char* use) {
    return command.add_option("--deck", deck, use)->type_name("DECK");
}

void add_info(Parser& parser) {
    auto [command, options] =
        parser.add("info", "Show counts, areas, quality and soundness of meshes", EXAMPLES_OF_INFO, info);
    command->add_option("MESH", options->files, "Mesh files (.Mes, .vtu, .msh); - is standard input")
        ->required();
    add_deck(*command, options->deck,
             "Areas and lengths by step of the analysis, by the deck that made the mesh");
    command->add_flag("--json", options->json, "A list with one object for each mesh");
    command->add_option("--list", options->list, "Places shown of each finding (5; 0 all)")->type_name("N");
    command
        ->add_option("--tolerance", options->tolerance,
                     "Nodes so near are at one place (the resolution of the file's digits)")
        ->type_name("LENGTH")
        ->check(CLI::PositiveNumber);
    add_kind(*command, options->kind, "Kind of mesh, where the file does not tell it");
    QueryOptions& queries = options->queries;
    command->add_option("--nodes-on", queries.nodes_on, "Numbers of the nodes on a line: x=20 or y=5")
        ->type_name("LINE")
        ->allow_extra_args(false);
    command->add_option("--nodes-in", queries.nodes_in, "Of the nodes in a window: XMIN YMIN XMAX YMAX")
        ->type_name("")
        ->expected(4);
    command
        ->add_option("--elements-of", queries.elements_of,
                     "Of the elements of a material: 5, 'joint 7', 'beam 1', 'truss 2', or its name")
        ->type_name("MATERIAL")
        ->allow_extra_args(false);
    command->add_flag("--border", queries.border, "Of the nodes of the outline");
    CLI::Option* pairs = command->add_flag("--pairs", queries.pairs, "Nodes of two meshes at one place");
    command->add_option("--on", queries.on, "Only pairs on this line: x=40 or y=5")
        ->type_name("LINE")
        ->needs(pairs);
    command->add_flag("--card", queries.card, "As the lines of a card's list: its count, then the numbers")
        ->excludes("--json");
}

void add_plot(Parser& parser) {
    auto [command, options] =
        parser.add("plot", "Draw a mesh as SVG, PNG, PDF or a page for the browser", EXAMPLES_OF_PLOT, plot);
    command->add_option("MESH", options->mesh, "A mesh (.Mes, .vtu, .msh); - is standard input")->required();
    command
        ->add_option("-o,--output", options->output,
                     "Picture; its ending names the format: svg, png, pdf, html. - is standard output")
        ->type_name("FILE")
        ->required();
    command->add_option("--to", options->format, "svg, png, pdf or html, whatever the ending")
        ->type_name("FORMAT")
        ->check(CLI::IsMember({"svg", "png", "pdf", "html"}));
    CLI::Option* deck =
        add_deck(*command, options->deck, "Draw the outlines and lines of this deck over the mesh");
    command
        ->add_option("--step", options->step,
                     "With --deck: the mesh in this step of the analysis, with what comes and goes")
        ->type_name("N")
        ->check(CLI::NonNegativeNumber)
        ->needs(deck);
    command->add_option("--numbers", options->numbers, "nodes, elements or both")
        ->type_name("WHAT")
        ->check(CLI::IsMember({"nodes", "elements", "both"}));
    command->add_option("--window", options->window, "Only this part: XMIN YMIN XMAX YMAX")
        ->type_name("")
        ->expected(4);
    command->add_option("--title", options->title, "Text over the picture (the file's name)")
        ->type_name("TEXT");
    command->add_option("--width", options->width, "Width of the page in points (1000)")
        ->type_name("N")
        ->check(CLI::Range(300.0, 20000.0));
    command->add_option("--scale", options->scale, "Pixels for a point in a PNG (2)")
        ->type_name("N")
        ->check(CLI::Range(0.1, 10.0));
    command->add_flag("--faults", options->faults, "Rings round what is unsound");
    command->add_flag("--no-codes", options->no_codes, "Without support symbols");
    command->add_flag("--no-lines", options->no_lines, "Without the sides of the elements");
    command->add_flag("--no-legend", options->no_legend, "Without the legend and the list of titles");
    command->add_flag("--no-axes", options->no_axes, "Without frame and numbers along it");
    add_kind(*command, options->kind, "Kind of mesh, where the file does not tell it");
}

void add_convert(Parser& parser) {
    auto [command, options] =
        parser.add("convert", "Carry a mesh to ParaView or Gmsh, and back", EXAMPLES_OF_CONVERT, convert);
    command
        ->add_option("FROM", options->from,
                     "Mesh file (.Mes), VTU (.vtu) or Gmsh file (.msh); - is standard input")
        ->required();
    command
        ->add_option("TO", options->to,
                     "File to be written; its ending names the format. - is standard output")
        ->required();
    command
        ->add_option("--to", options->format, "mes, vtu, msh2, msh4, mdpa, inp or csv, whatever the ending")
        ->type_name("FORMAT")
        ->check(CLI::IsMember({"mes", "vtu", "msh", "msh2", "msh4", "mdpa", "inp", "csv"}));
    command->add_flag("--bare", options->bare,
                      "Without codes and attributes as data arrays, which Gmsh shows one over the other");
    add_deck(*command, options->deck,
             ".mdpa, .inp, .vtu: the deck that made the mesh, for what comes and goes");
    command->add_flag("--stages", options->stages,
                      ".mdpa: materials and project files of the stages beside it; .vtu: of each step");
    command
        ->add_option("--cable", options->cables,
                     ".mdpa: trusses of these materials are anchors, which only pull")
        ->type_name("N,N,...")
        ->delimiter(',')
        ->expected(1);
    command
        ->add_option("--joints", options->inp.joints,
                     ".inp: what stands for joints: tie, or spring:KN,KS, stiffnesses for an area")
        ->type_name("WHAT");
    command->add_option("--materials", options->inp.materials, ".inp: table of E, nu, density and so on")
        ->type_name("FILE");
    command->add_option("--gravity", options->inp.gravity, ".inp: acceleration downwards (9.81; 0 for none)")
        ->type_name("G")
        ->check(CLI::NonNegativeNumber);
    command->add_flag("--axisymmetric", options->inp.axisymmetric,
                      ".inp: x is the radius; without it plane strain");
    command
        ->add_option("--code", options->codes,
                     "Codes of physical groups: 'left,right: IDX' or 'river: ID H=12.5'")
        ->type_name("TEXT")
        ->allow_extra_args(false);
    add_kind(*command, options->kind,
             "Kind of the mesh: coupled, temperature, head or displacement (that of FROM)");
}

void add_diff(Parser& parser) {
    auto [command, options] =
        parser.add("diff", "Show what differs between two meshes", EXAMPLES_OF_DIFF, diff);
    command->add_option("A", options->a, "A mesh (.Mes, .vtu, .msh); - is standard input")->required();
    command->add_option("B", options->b, "The mesh that it is compared with")->required();
    command->add_flag("--by-place", options->by_place,
                      "Compare what lies at the same place, whatever its number");
    command
        ->add_option("--tolerance", options->tolerance,
                     "Distance that counts as none (0; by place one that suits the meshes)")
        ->type_name("LENGTH")
        ->check(CLI::NonNegativeNumber);
    command->add_option("--list", options->list, "Differences shown of each sort (10; 0 all)")
        ->type_name("N");
    command->add_flag("--json", options->json, "As an object");
    add_kind(*command, options->kind, "Kind of the meshes, where the files do not tell it");
}

void add_edit(Parser& parser) {
    auto [command, options] = parser.add("edit", "Write a deck in the browser, beside the mesh that it makes",
                                         EXAMPLES_OF_EDIT, edit);
    add_deck(*command, *options);
    add_cut(*command, options->cut);
    command
        ->add_option("--port", options->port, "Port of this machine that it is served at (one that is free)")
        ->check(CLI::Range(1, 65535))
        ->option_text("N");
    command->add_flag("--no-browser", options->no_browser, "Only say at which address the page is");
    command->add_flag("--watch", options->watch, "Show what another editor writes to the deck");
}

void add_watch(Parser& parser) {
    auto [command, options] = parser.add(
        "watch", "Run a deck in memory at each save, and say what has changed", EXAMPLES_OF_WATCH, watch);
    add_deck(*command, *options);
    add_cut(*command, options->cut);
}

// Throws Failure where there is none of this name.
CLI::App& command_named(CLI::App& app, const std::string& name) {
    std::vector<std::string> names;
    for (CLI::App* command : app.get_subcommands({})) {
        if (command->get_name() == name)
            return *command;
        names.push_back(command->get_name());
    }
    throw Failure(no_command_of_name(name, names));
}

void add_help(Parser& parser) {
    CLI::App* command = parser.app.add_subcommand("help", "Show the help of a command, or of all");
    command->footer("  brelan help plot    what brelan plot --help shows\n");
    const auto name = std::make_shared<std::string>();
    command->add_option("COMMAND", *name, "Its name")->option_text(" ");
    command->callback([&parser, name] {
        parser.action = [&app = parser.app, name] {
            const CLI::App& shown = name->empty() ? app : command_named(app, *name);
            // App::help() would go by the command that the command line names.
            print(shown.get_formatter()->make_help(&shown, app.get_name(), CLI::AppFormatMode::Normal));
            return STATUS_OK;
        };
    });
}

// "info " when the command line came as far as naming a command, else "".
std::string parsed_command(const CLI::App& app) {
    for (const CLI::App* sub : app.get_subcommands())
        return sub->get_name() + " ";
    return "";
}

}  // namespace

int run_command_line(int argc, char** argv) {
    Parser parser;
    std::error_code error;
    parser.context.program = std::filesystem::read_symlink("/proc/self/exe", error);
    CLI::App& app = parser.app;
    app.formatter(std::make_shared<ExamplesFirst>());
    app.footer(EXAMPLES_OF_ALL);
    app.set_version_flag("--version", "brelan " BRELAN_VERSION, "Show the version and end");
    app.set_help_flag("-h,--help", "Show this help and end");
    app.add_flag("-q,--quiet", parser.context.quiet, "Only results and errors");
    app.require_subcommand(1);
    app.fallthrough();
    for (const auto add : {add_run, add_edit, add_watch, add_new, add_check, add_info, add_plot, add_convert,
                           add_diff, add_study, add_help})
        add(parser);
    // The parser would only say that a command is missing.
    for (int i = 1; i < argc; ++i)
        if (*argv[i] != '-') {
            command_named(app, argv[i]);
            break;
        }
    try {
        app.parse(argc, argv);
    } catch (const CLI::Success& shown) {  // help or version
        app.exit(shown);
        finish_output();
        return STATUS_OK;
    } catch (const CLI::ParseError& fault) {
        error_line(fmt::format("{}; see \"brelan {}--help\"", fault.what(), parsed_command(app)));
        return STATUS_BAD;
    }
    const int status = parser.action();
    finish_output();
    return status;
}

}  // namespace brelan::tool
