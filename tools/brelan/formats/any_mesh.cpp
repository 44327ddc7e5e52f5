#include "formats/any_mesh.h"

#include <fmt/core.h>

#include "channel/text_line.h"
#include "cli/input_file.h"
#include "cli/words.h"
#include "formats/cell_mesh.h"
#include "formats/gmsh.h"
#include "formats/vtu.h"
#include "model/mesh_file.h"

namespace brelan::tool {

Format format_of_content(const std::filesystem::path& path) {
    constexpr std::size_t ENOUGH = 64;
    std::string start = read_start(path, ENOUGH);
    if (start.starts_with(BYTE_ORDER_MARK))
        start.erase(0, BYTE_ORDER_MARK.size());
    start.erase(0, start.find_first_not_of(" \t\r\n"));
    if (start.starts_with("<?xml") || start.starts_with("<VTKFile"))
        return Format::vtu;
    return start.starts_with("$MeshFormat") || start.starts_with("$Comments") ? Format::gmsh : Format::mesh;
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

Mesh read_any_mesh(const std::filesystem::path& path, std::optional<LayoutKind> kind, const Remark& remark) {
    const Format format = format_of_content(path);
    if (format == Format::mesh) {
        Mesh mesh = read_mesh_file(path, kind);
        if (remark && mesh.byte_order_mark)
            remark(mark_passed_over(path));
        return mesh;
    }
    std::string content = read_file(path);
    if (content.starts_with(BYTE_ORDER_MARK)) {
        content.erase(0, BYTE_ORDER_MARK.size());
        if (remark)
            remark(mark_passed_over(path));
    }
    FromCells read = mesh_of(
        format == Format::vtu ? read_vtu(content, path.string()) : read_gmsh(content, path.string()), kind);
    if (remark && read.left_out > 0)
        remark(fmt::format("{}: {} points and lines are no elements and were left out", path.string(),
                           read.left_out));
    if (remark && read.turned > 0)
        remark(fmt::format("{}: {} clockwise elements were turned", path.string(), read.turned));
    return std::move(read.mesh);
}

Mesh as_kind(const Mesh& mesh, LayoutKind kind) {
    return mesh.kind == kind ? mesh : mesh_of(cells_of(mesh), kind).mesh;
}

}  // namespace brelan::tool
