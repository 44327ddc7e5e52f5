#include <fmt/core.h>

#include "cli/console.h"
#include "cli/exit_status.h"
#include "cli/input_file.h"
#include "cli/words.h"
#include "commands/commands.h"
#include "formats/any_mesh.h"
#include "formats/cell_mesh.h"
#include "formats/gmsh.h"
#include "formats/group_codes.h"
#include "formats/mesh_file.h"
#include "formats/vtu.h"

namespace brelan::tool {

namespace {

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

}  // namespace

int convert(const ConvertOptions& options, const Context& context) {
    const Target target = target_of(options);
    std::vector<GroupCodes> codes;
    for (const std::string& text : options.codes)
        codes.push_back(group_codes_of(text));
    const MeshLists mesh = read_any_mesh_as(
        mesh_source(options.from), options.kind.kind(), [&](const std::string& text) { note(context, text); },
        codes);
    if (target == Target::mesh) {
        write_mesh_file(mesh, options.to);
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
