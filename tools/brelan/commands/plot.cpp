#include <fmt/core.h>

#include <algorithm>
#include <memory>

#include "analysis/deck_of_mesh.h"
#include "cli/console.h"
#include "cli/exit_status.h"
#include "cli/input_file.h"
#include "cli/words.h"
#include "commands/commands.h"
#include "commands/options.h"
#include "drawing/html.h"
#include "drawing/mesh_picture.h"
#include "formats/any_mesh.h"

namespace brelan::tool {

namespace {

constexpr const char* EXAMPLES =
    R"(  brelan plot Pit.Mes -o pit.html               to be opened in a browser: zoom, pick, search
  brelan plot Pit.Mes -o pit.svg --deck pit.dat with the outlines that the deck draws
  brelan plot Pit.Mes -o wall.png --window 20 10 40 30 --numbers both
  brelan plot Pit.Mes -o pit.pdf --faults       rings round what is unsound
  brelan plot - -o - --to svg < Pit.Mes | gzip > pit.svgz
)";

struct PlotOptions {
    std::string mesh, output, format, deck, numbers, title;
    std::vector<double> window;
    double width = 1000.0, scale = 2.0;
    bool no_codes = false, no_lines = false, no_legend = false, no_axes = false, faults = false;
    KindOption kind;
};

enum class PictureFormat { svg, png, pdf, html };

PictureFormat format_of(const PlotOptions& options) {
    const bool to_stream = options.output == STANDARD_STREAM;
    const std::string ending = options.format.empty()
                                   ? lower(std::filesystem::path(options.output).extension().string())
                                   : "." + options.format;
    if (ending == ".svg")
        return PictureFormat::svg;
    if (ending == ".html" || ending == ".htm")
        return PictureFormat::html;
    if ((ending == ".png" || ending == ".pdf") && to_stream && is_terminal(stdout))
        throw Failure(fmt::format("{}: expected a file or a program, found a terminal: a picture is no text",
                                  STANDARD_OUTPUT));
    if (ending == ".png")
        return PictureFormat::png;
    if (ending == ".pdf")
        return PictureFormat::pdf;
    if (to_stream)
        throw Failure(fmt::format("{}: expected the format with --to", STANDARD_OUTPUT));
    throw Failure(
        fmt::format("{}: expected a name that ends in .svg, .png, .pdf or .html, or the format with --to",
                    options.output));
}

bool shows_something(const Mesh& mesh, const std::vector<Corners>& corners, const Bounds& window) {
    return std::any_of(corners.begin(), corners.end(),
                       [&](const Corners& c) { return c.complete() && shows_in(mesh, c, window); }) ||
           std::any_of(mesh.nodes.begin(), mesh.nodes.end(), [&](const Node& node) {
               return node.XC >= window.low.x && node.XC <= window.high.x && node.YC >= window.low.y &&
                      node.YC <= window.high.y;
           });
}

int plot(const PlotOptions& options, const Context& context) {
    require_one_standard_input({options.mesh, options.deck});
    const PictureFormat format = format_of(options);
    const Mesh mesh = read_any_mesh(mesh_source(options.mesh), options.kind.kind(),
                                    [&](const std::string& text) { note(context, text); });
    const std::vector<Corners> corners = corners_of(mesh);
    PictureOptions picture;
    picture.width = options.width;
    picture.node_numbers = options.numbers == "nodes" || options.numbers == "both";
    picture.element_numbers = options.numbers == "elements" || options.numbers == "both";
    picture.codes = !options.no_codes;
    picture.lines = !options.no_lines;
    picture.legend = !options.no_legend;
    picture.axes = !options.no_axes;
    picture.title = options.title;
    if (!options.window.empty()) {
        const std::vector<double>& w = options.window;
        if (!(w[2] > w[0]) || !(w[3] > w[1]))
            throw Failure("--window: expected XMIN YMIN XMAX YMAX with XMAX and YMAX the larger ones");
        picture.window = Bounds{{w[0], w[1]}, {w[2], w[3]}};
        if (!shows_something(mesh, corners, *picture.window))
            note(context,
                 fmt::format("--window lies outside the mesh, which reaches {}", extent_text(mesh.bounds())));
    }
    if (!options.deck.empty()) {
        const Deck deck = read_deck(options.deck, mesh.kind);
        if (deck.byte_order_mark)
            note(context, mark_passed_over(deck.file));
        if (deck.fault)
            note(context, fmt::format("{}, line {}: {}; what stands before it is shown", deck.file.string(),
                                      deck.fault->line, deck.fault->message));
        picture.shapes = shapes_of(deck);
        if (const std::string told = told_of_other_mesh(deck, picture.shapes, mesh); !told.empty())
            note(context, fmt::format("{} seems to belong to another mesh than {}: {}", options.deck,
                                      options.mesh, told));
    }
    Soundness soundness;
    if (options.faults || format == PictureFormat::html) {
        soundness = check_soundness(mesh, corners);
        picture.faults = &soundness;
    }
    if (format == PictureFormat::html) {
        write_html(mesh, picture, options.output);
        return STATUS_OK;
    }
    const Picture drawn = picture_of(mesh, picture);
    for (const std::string& remark : drawn.remarks)
        note(context,
             fmt::format("{}: {}", options.output == STANDARD_STREAM ? STANDARD_OUTPUT : options.output,
                         remark));
    if (format == PictureFormat::svg)
        write_svg(drawn.scene, options.output);
    else if (format == PictureFormat::pdf)
        write_pdf(drawn.scene, options.output);
    else
        write_png(drawn.scene, options.output, options.scale);
    return STATUS_OK;
}

}  // namespace

void add_plot(CLI::App& app, Context& context) {
    CLI::App* command = app.add_subcommand("plot", "Draw a mesh as SVG, PNG, PDF or a page for the browser");
    command->footer(EXAMPLES);
    const auto options = std::make_shared<PlotOptions>();
    command->add_option("MESH", options->mesh, "A mesh (.Mes, .vtu, .msh); - is standard input")->required();
    command
        ->add_option("-o,--output", options->output,
                     "Picture; its ending names the format: svg, png, pdf, html. - is standard output")
        ->type_name("FILE")
        ->required();
    command->add_option("--to", options->format, "svg, png, pdf or html, whatever the ending")
        ->type_name("FORMAT")
        ->check(CLI::IsMember({"svg", "png", "pdf", "html"}));
    command->add_option("--deck", options->deck, "Draw the outlines and lines of this deck over the mesh")
        ->type_name("DECK");
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
    options->kind.add_to(*command, "Kind of mesh, where the file does not tell it");
    command->callback(
        [options, &context] { context.action = [options, &context] { return plot(*options, context); }; });
}

}  // namespace brelan::tool
