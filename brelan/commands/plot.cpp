#include <fmt/core.h>

#include <algorithm>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "analysis/stage_areas.h"
#include "cli/console.h"
#include "cli/exit_status.h"
#include "cli/input_file.h"
#include "cli/words.h"
#include "commands/commands.h"
#include "commands/deck_of_mesh.h"
#include "commands/deck_stages.h"
#include "drawing/html.h"
#include "drawing/mesh_picture.h"
#include "formats/any_mesh.h"

namespace brelan::tool {

namespace {

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

bool shows_something(const MeshLists& mesh, const std::vector<CornerPlaces>& corners, const Bounds& window) {
    return std::any_of(corners.begin(), corners.end(),
                       [&](const CornerPlaces& c) { return c.complete() && shows_in(mesh, c, window); }) ||
           std::any_of(mesh.nodes.begin(), mesh.nodes.end(), [&](const Node& node) {
               return node.x >= window.low.x && node.x <= window.high.x && node.y >= window.low.y &&
                      node.y <= window.high.y;
           });
}

// What stands in the step takes the place of the mesh; what comes and goes there is marked.
StepMarks take_step(std::int32_t step, const Stages& stages, const MeshLists& whole, MeshLists& mesh) {
    StepMarks marks;
    marks.step = step;
    marks.whole = &whole;
    for (const StageSet& set : stages.sets())
        for (const Number number : set.elements) {
            const std::int32_t place = whole.element_place(number);
            if (step > 0 && set.comes() == step)
                marks.comes.push_back(place);
            if (step > 0 && set.goes() == step)
                marks.goes.push_back(place);
        }
    mesh = mesh_in_step(whole, stages, step);
    return marks;
}

std::string steps_text(const std::vector<std::int32_t>& steps) {
    std::vector<std::string> words;
    words.reserve(steps.size());
    for (const std::int32_t step : steps)
        words.push_back(std::to_string(step));
    return joined(words, ", ");
}

}  // namespace

int plot(const PlotOptions& options, const Context& context) {
    require_one_standard_input({options.mesh, options.deck});
    const PictureFormat format = format_of(options);
    MeshLists mesh = read_any_mesh(mesh_source(options.mesh), options.kind.kind(),
                                   [&](const std::string& text) { note(context, text); });
    PictureOptions picture;
    MeshLists whole;
    if (options.step) {
        DeckStages of_deck = stages_of_deck(options.deck, mesh, context);
        const std::vector<std::int32_t>& steps = of_deck.stages.steps();
        if (steps.empty())
            throw Failure(fmt::format("--step {}: no element of {} comes or goes by {}", *options.step,
                                      options.mesh, options.deck));
        if (*options.step > steps.back())
            note(context, fmt::format("--step {} lies behind the last at which anything comes or goes: {}",
                                      *options.step, steps_text(steps)));
        mesh.names = std::move(of_deck.names);
        whole = std::move(mesh);
        picture.step = take_step(*options.step, of_deck.stages, whole, mesh);
    }
    const std::vector<CornerPlaces> corners = corners_of(mesh);
    picture.width = options.width;
    picture.node_numbers = options.numbers == "nodes" || options.numbers == "both";
    picture.element_numbers = options.numbers == "elements" || options.numbers == "both";
    picture.codes = !options.no_codes;
    picture.lines = !options.no_lines;
    picture.legend = !options.no_legend;
    picture.axes = !options.no_axes;
    picture.title = options.title;
    if (options.step && options.title.empty())
        picture.title = fmt::format("{}, step {}", title_of(mesh, picture), *options.step);
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
        const NotedDeck deck = read_deck(options.deck, mesh.kind);
        if (deck.byte_order_mark)
            note(context, mark_passed_over(deck.file));
        if (deck.names.changed() > 0)
            note(context, names_changed(deck.file, deck.names.changed()));
        if (deck.fault)
            note(context, fmt::format("{}, line {}: {}; what stands before it is shown", deck.file.string(),
                                      deck.fault->line, deck.fault->message));
        picture.shapes = shapes_of(deck);
        mesh.names.take(deck.names);
        if (const std::string told = told_of_other_mesh(deck, picture.shapes, options.step ? whole : mesh);
            !told.empty())
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

}  // namespace brelan::tool
