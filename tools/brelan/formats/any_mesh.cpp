#include "formats/any_mesh.h"

#include <fmt/core.h>

#include "cli/input_file.h"
#include "cli/words.h"
#include "formats/cell_mesh.h"
#include "formats/gmsh.h"
#include "formats/vtu.h"
#include "model/mesh_file.h"

namespace brelan::tool {

MeshSource mesh_source(const std::string& file) {
    constexpr std::size_t ENOUGH = 64;
    MeshSource source;
    source.name = file;
    if (file == STANDARD_STREAM) {
        source.name = STANDARD_INPUT;
        source.text = read_standard_input();
    }
    std::string start = source.text ? source.text->substr(0, ENOUGH) : read_start(file, ENOUGH);
    start.erase(0, start.find_first_not_of(" \t\r\n"));
    if (start.starts_with("<?xml") || start.starts_with("<VTKFile"))
        source.format = Format::vtu;
    else if (start.starts_with("$MeshFormat") || start.starts_with("$Comments"))
        source.format = Format::gmsh;
    return source;
}

std::optional<Format> format_of_name(const std::filesystem::path& path) {
    const std::string ending = lower(path.extension().string());
    if (ending == ".vtu")
        return Format::vtu;
    if (ending == ".msh")
        return Format::gmsh;
    if (ending == ".mes" || ending == ".meg" || ending == ".dat")
        return Format::mesh;
    return std::nullopt;
}

Mesh read_any_mesh(const MeshSource& source, std::optional<LayoutKind> kind, const Remark& remark) {
    const std::string& name = source.name;
    if (source.format == Format::mesh)
        return source.text ? read_mesh_text(*source.text, name, kind) : read_mesh_file(name, kind);
    const std::string content = source.text ? *source.text : read_file(name);
    FromCells read =
        mesh_of(source.format == Format::vtu ? read_vtu(content, name) : read_gmsh(content, name), kind);
    if (remark && read.left_out > 0)
        remark(fmt::format("{}: {} points and lines are no elements and were left out", name, read.left_out));
    if (remark && read.turned > 0)
        remark(fmt::format("{}: {} clockwise elements were turned", name, read.turned));
    return std::move(read.mesh);
}

Mesh as_kind(const Mesh& mesh, LayoutKind kind) {
    return mesh.kind == kind ? mesh : mesh_of(cells_of(mesh), kind).mesh;
}

}  // namespace brelan::tool
