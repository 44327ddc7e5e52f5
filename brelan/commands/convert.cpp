#include <fmt/core.h>

#include <utility>

#include "cli/console.h"
#include "cli/exit_status.h"
#include "cli/input_file.h"
#include "commands/commands.h"
#include "commands/deck_stages.h"
#include "formats/any_mesh.h"
#include "formats/any_target.h"
#include "formats/group_codes.h"

namespace brelan::tool {

namespace {

Target target_of(const ConvertOptions& options) {
    if (const std::optional<Target> target = target_named(options.format))
        return *target;
    if (options.to == STANDARD_STREAM)
        throw Failure(fmt::format("{}: expected the format with --to", STANDARD_OUTPUT));
    const std::optional<Target> target = target_of_name(options.to);
    if (!target)
        throw Failure(fmt::format(
            "{}: expected a name that ends in .Mes, .vtu, .msh, .mdpa or .inp, or the format with --to",
            options.to));
    return *target;
}

// Throws Failure where an option asks for what the target does not have.
void require_target_of_options(const ConvertOptions& options, Target target) {
    if (target != Target::mdpa && !options.cables.empty())
        throw Failure("expected a file that ends in .mdpa with --cable");
    if (target != Target::mdpa && target != Target::vtu && options.stages)
        throw Failure("expected a file that ends in .mdpa or .vtu with --stages");
    if (target == Target::vtu && options.stages && options.deck.empty())
        throw Failure("--stages: expected --deck with the deck that made the mesh");
    if (target != Target::mdpa && target != Target::inp && target != Target::materials &&
        target != Target::vtu && !options.deck.empty())
        throw Failure("expected a file that ends in .mdpa, .inp, .vtu or .csv with --deck");
    const InpChoices& inp = options.inp;
    if (target != Target::inp &&
        (!inp.joints.empty() || !inp.materials.empty() || inp.gravity || inp.axisymmetric))
        throw Failure(
            "expected a file that ends in .inp with --joints, --materials, --gravity and --axisymmetric");
}

InpOptions inp_options(const InpChoices& choices) {
    InpOptions inp;
    inp.joints = joint_choice(choices.joints);
    if (choices.axisymmetric)
        inp.form = PlaneForm::axisymmetric;
    inp.gravity = choices.gravity.value_or(inp.gravity);
    if (!choices.materials.empty())
        inp.materials = read_properties(choices.materials);
    return inp;
}

}  // namespace

int convert(const ConvertOptions& options, const Context& context) {
    const Target target = target_of(options);
    require_target_of_options(options, target);
    require_one_standard_input({options.from, options.deck, options.inp.materials});
    const auto remark = [&](const std::string& text) { note(context, text); };
    std::vector<GroupCodes> codes;
    for (const std::string& text : options.codes)
        codes.push_back(group_codes_of(text));
    MeshLists mesh = read_any_mesh_as(mesh_source(options.from), options.kind.kind(), remark, codes);
    Carried carried;
    carried.arrays = !options.bare;
    carried.stage_files = options.stages;
    carried.cables = options.cables;
    if (target == Target::inp)
        carried.inp = inp_options(options.inp);
    if (!options.deck.empty()) {
        DeckStages of_deck = stages_of_deck(options.deck, mesh, context);
        carried.stages = std::move(of_deck.stages);
        mesh.names = std::move(of_deck.names);
    }
    write_any_mesh(mesh, target, options.to, carried, remark);
    return STATUS_OK;
}

}  // namespace brelan::tool
