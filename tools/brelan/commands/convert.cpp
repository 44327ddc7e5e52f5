#include <fmt/core.h>

#include <memory>

#include "cli/console.h"
#include "cli/exit_status.h"
#include "cli/input_file.h"
#include "commands/commands.h"
#include "commands/options.h"
#include "formats/any_mesh.h"
#include "formats/cell_mesh.h"
#include "formats/gmsh.h"
#include "formats/vtu.h"
#include "model/mesh_file.h"

namespace brelan::tool {

namespace {

constexpr const char* EXAMPLES = R"(  brelan convert Pit.Mes Pit.vtu                 for ParaView
  brelan convert Pit.Mes Pit.msh                 for Gmsh, version 4.1
  brelan convert --to msh2 --bare Pit.Mes Pit.msh
                                                 version 2.2, materials as physical groups only
  brelan convert Pit.vtu Pit.Mes                 and back
  brelan convert --kind head drawn.msh Dam.Mes   a mesh that Gmsh made, for the head kind
  brelan convert --to vtu Pit.Mes - | gzip > Pit.vtu.gz
)";

struct ConvertOptions {
    std::string from, to;
    std::string format;
    bool bare = false;
    KindOption kind;
};

enum class Target { mesh, vtu, gmsh_2, gmsh_4 };

Target target_of(const ConvertOptions& options) {
    if (options.format == "mes")
        return Target::mesh;
    if (options.format == "vtu")
        return Target::vtu;
    if (options.format == "msh2")
        return Target::gmsh_2;
    if (options.format == "msh" || options.format == "msh4")
        return Target::gmsh_4;
    if (options.to == STANDARD_STREAM)
        throw Failure(fmt::format("{}: expected the format with --to", STANDARD_OUTPUT));
    const std::optional<Format> format = format_of_name(options.to);
    if (!format)
        throw Failure(fmt::format(
            "{}: expected a name that ends in .Mes, .vtu or .msh, or the format with --to", options.to));
    return *format == Format::mesh ? Target::mesh : *format == Format::vtu ? Target::vtu : Target::gmsh_4;
}

int convert(const ConvertOptions& options, const Context& context) {
    const Target target = target_of(options);
    const Mesh mesh = read_any_mesh_as(mesh_source(options.from), options.kind.kind(),
                                       [&](const std::string& text) { note(context, text); });
    if (target == Target::mesh) {
        write_mesh_file(mesh, options.to);
        return STATUS_OK;
    }
    CellMesh cells = cells_of(mesh);
    if (options.bare) {
        cells.point_data.clear();
        cells.cell_data.clear();
    }
    if (target == Target::vtu)
        write_vtu(cells, options.to);
    else
        write_gmsh(cells, options.to, target == Target::gmsh_2 ? GmshVersion::v2_2 : GmshVersion::v4_1);
    return STATUS_OK;
}

}  // namespace

void add_convert(CLI::App& app, Context& context) {
    CLI::App* command = app.add_subcommand("convert", "Carry a mesh to ParaView or Gmsh, and back");
    command->footer(EXAMPLES);
    const auto options = std::make_shared<ConvertOptions>();
    command
        ->add_option("FROM", options->from,
                     "Mesh file (.Mes), VTU (.vtu) or Gmsh file (.msh); - is standard input")
        ->required();
    command
        ->add_option("TO", options->to,
                     "File to be written; its ending names the format. - is standard output")
        ->required();
    command->add_option("--to", options->format, "mes, vtu, msh2 or msh4, whatever the ending")
        ->type_name("FORMAT")
        ->check(CLI::IsMember({"mes", "vtu", "msh", "msh2", "msh4"}));
    command->add_flag("--bare", options->bare,
                      "Without codes and attributes as data arrays, which Gmsh shows one over the other");
    options->kind.add_to(*command,
                         "Kind of the mesh: coupled, temperature, head or displacement (that of FROM)");
    command->callback(
        [options, &context] { context.action = [options, &context] { return convert(*options, context); }; });
}

}  // namespace brelan::tool
