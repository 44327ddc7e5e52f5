#include <fmt/core.h>

#include "cli/console.h"
#include "cli/exit_status.h"
#include "cli/input_file.h"
#include "cli/words.h"
#include "commands/commands.h"
#include "commands/deck_stages.h"
#include "formats/any_mesh.h"
#include "formats/cell_mesh.h"
#include "formats/gmsh.h"
#include "formats/group_codes.h"
#include "formats/inp.h"
#include "formats/mdpa.h"
#include "formats/mesh_file.h"
#include "formats/vtu.h"

namespace brelan::tool {

namespace {

enum class Target { mesh, vtu, gmsh_2, gmsh_4, mdpa, inp, materials };

bool has_ending(const std::string& name, std::string_view ending) {
    return lower(std::filesystem::path(name).extension().string()) == ending;
}

Target target_of(const ConvertOptions& options) {
    if (options.format == "mes")
        return Target::mesh;
    if (options.format == "vtu")
        return Target::vtu;
    if (options.format == "msh2")
        return Target::gmsh_2;
    if (options.format == "msh" || options.format == "msh4")
        return Target::gmsh_4;
    if (options.format == "mdpa" || (options.format.empty() && has_ending(options.to, ".mdpa")))
        return Target::mdpa;
    if (options.format == "inp" || (options.format.empty() && has_ending(options.to, ".inp")))
        return Target::inp;
    if (options.format == "csv" || (options.format.empty() && has_ending(options.to, ".csv")))
        return Target::materials;
    if (options.to == STANDARD_STREAM)
        throw Failure(fmt::format("{}: expected the format with --to", STANDARD_OUTPUT));
    const std::optional<Format> format = format_of_name(options.to);
    if (!format)
        throw Failure(fmt::format(
            "{}: expected a name that ends in .Mes, .vtu, .msh, .mdpa or .inp, or the format with --to",
            options.to));
    return *format == Format::mesh ? Target::mesh : *format == Format::vtu ? Target::vtu : Target::gmsh_4;
}

void write_for_geotechnics(const MeshLists& mesh, const Stages& stages, const ConvertOptions& options,
                           const Context& context) {
    if (options.stages && options.to == STANDARD_STREAM)
        throw Failure(fmt::format("{}: expected the name of a file, as --stages writes others beside it",
                                  STANDARD_OUTPUT));
    const MdpaModel model = mdpa_model(mesh, cells_of(mesh), stages, options.cables);
    if (options.stages)
        write_mdpa_stages(model, options.to);
    write_mdpa(model, options.to);
    for (const std::string& remark : model.remarks)
        note(context, fmt::format("{}: {}", options.from, remark));
}

void write_for_mechanics(const MeshLists& mesh, const Stages& stages, const ConvertOptions& options,
                         const Context& context) {
    InpOptions inp;
    inp.joints = joint_choice(options.inp.joints);
    if (options.inp.axisymmetric)
        inp.form = PlaneForm::axisymmetric;
    inp.gravity = options.inp.gravity.value_or(inp.gravity);
    if (!options.inp.materials.empty())
        inp.materials = read_properties(options.inp.materials);
    write_inp(mesh, stages, inp, options.to, [&](const std::string& text) { note(context, text); });
}

// Throws Failure where an option asks for what the target does not have.
void require_target_of_options(const ConvertOptions& options, Target target) {
    if (target != Target::mdpa && (options.stages || !options.cables.empty()))
        throw Failure("expected a file that ends in .mdpa with --stages and --cable");
    if (target != Target::mdpa && target != Target::inp && target != Target::materials &&
        !options.deck.empty())
        throw Failure("expected a file that ends in .mdpa, .inp or .csv with --deck");
    const InpChoices& inp = options.inp;
    if (target != Target::inp &&
        (!inp.joints.empty() || !inp.materials.empty() || inp.gravity || inp.axisymmetric))
        throw Failure(
            "expected a file that ends in .inp with --joints, --materials, --gravity and --axisymmetric");
}

}  // namespace

int convert(const ConvertOptions& options, const Context& context) {
    const Target target = target_of(options);
    require_target_of_options(options, target);
    require_one_standard_input({options.from, options.deck, options.inp.materials});
    std::vector<GroupCodes> codes;
    for (const std::string& text : options.codes)
        codes.push_back(group_codes_of(text));
    MeshLists mesh = read_any_mesh_as(
        mesh_source(options.from), options.kind.kind(), [&](const std::string& text) { note(context, text); },
        codes);
    Stages stages;
    if (!options.deck.empty()) {
        DeckStages of_deck = stages_of_deck(options.deck, mesh, context);
        stages = std::move(of_deck.stages);
        mesh.names = std::move(of_deck.names);
    }
    if (target == Target::mesh) {
        write_mesh_file(mesh, options.to);
        return STATUS_OK;
    }
    if (target == Target::mdpa) {
        write_for_geotechnics(mesh, stages, options, context);
        return STATUS_OK;
    }
    if (target == Target::inp) {
        write_for_mechanics(mesh, stages, options, context);
        return STATUS_OK;
    }
    if (target == Target::materials) {
        write_properties(mesh, options.to);
        return STATUS_OK;
    }
    CellMesh cells = cells_of(mesh);
    if (cells.straightened > 0)
        note(context,
             fmt::format(
                 "{}: {} written with straight sides", mesh.file,
                 counted(cells.straightened, "element has midside nodes on some of its sides alone and is",
                         "elements have midside nodes on some of their sides alone and are")));
    if (options.bare) {
        cells.point_data.clear();
        cells.cell_data.clear();
        cells.names = {};  // of numbers that are gone
    }
    if (target == Target::vtu)
        write_vtu(cells, options.to);
    else
        write_gmsh(cells, options.to, target == Target::gmsh_2 ? GmshVersion::v2_2 : GmshVersion::v4_1);
    return STATUS_OK;
}

}  // namespace brelan::tool
