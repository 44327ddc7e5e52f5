#include "formats/any_mesh.h"

#include <fmt/format.h>

#include <algorithm>
#include <vector>

#include "cli/exit_status.h"
#include "cli/input_file.h"
#include "cli/words.h"
#include "formats/cell_mesh.h"
#include "formats/gmsh.h"
#include "formats/group_codes.h"
#include "formats/mesh_file.h"
#include "formats/vtu.h"
#include "text/text_line.h"

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
    if (start.starts_with(BYTE_ORDER_MARK))
        start.erase(0, BYTE_ORDER_MARK.size());
    start.erase(0, start.find_first_not_of(" \t\r\n"));
    if (start.starts_with("<?xml") || start.starts_with("<VTKFile"))
        source.format = Format::vtu;
    else if (start.starts_with("$MeshFormat") || start.starts_with("$Comments"))
        source.format = Format::gmsh;
    return source;
}

namespace {

std::vector<std::string_view> names_of(LayoutKind kind) {
    std::vector<std::string_view> names = code_names(kind);
    if (const std::string_view value = value_name(kind); !value.empty())
        names.insert(names.end(), {value, "CF"});
    for (const AttributeField& attribute : attribute_fields(kind))
        names.push_back(attribute.name);
    return names;
}

// "H, CF and IDH": what a mesh of the one kind holds, and the other kind does not under any name.
std::string only_of(LayoutKind one, LayoutKind other) {
    const std::vector<std::string_view> others = names_of(other);
    std::vector<std::string_view> names = names_of(one);
    std::erase_if(names, [&](std::string_view name) {
        const std::string_view same = same_code(name);
        return std::any_of(others.begin(), others.end(),
                           [&](std::string_view known) { return known == name || known == same; });
    });
    if (names.size() < 2)
        return names.empty() ? "" : std::string(names.front());
    return fmt::format("{} and {}", fmt::join(names.begin(), names.end() - 1, ", "), names.back());
}

std::string change_of_kind(LayoutKind from, LayoutKind to) {
    return fmt::format("the {} kind became the {} kind: {} left out, {} as in a base mesh", name_of(from),
                       name_of(to), only_of(from, to), only_of(to, from));
}

MeshLists mesh_of_cells(const CellMesh& cells, std::optional<LayoutKind> kind, const Remark& remark,
                        const std::vector<GroupCodes>& codes = {}) {
    FromCells read = mesh_of(cells, kind, codes);
    const auto say = [&](const std::string& text) { remark(fmt::format("{}: {}", cells.file, text)); };
    if (read.left_out > 0)
        say(fmt::format("{} left out", counted(read.left_out, "point or line is no element and was",
                                               "points and lines are no elements and were")));
    for (const std::string& group : read.unused)
        say(fmt::format("{} became nothing: no elements, and no codes (see --code)", group));
    for (const std::string& name : read.unmatched)
        say(fmt::format("--code: there is no physical group \"{}\"", name));
    if (read.centres > 0)
        say(fmt::format("{} left out", counted(read.centres, "centre node of a quadrilateral was",
                                               "centre nodes of quadrilaterals were")));
    if (read.midsides > 0)
        say(fmt::format("{} left out", counted(read.midsides, "midside node that no element can name was",
                                               "midside nodes that no element can name were")));
    if (read.turned > 0)
        say(fmt::format("{} clockwise elements were turned", read.turned));
    if (read.source_kind && *read.source_kind != read.mesh.kind)
        say(change_of_kind(*read.source_kind, read.mesh.kind));
    if (read.flow_lines_lost)
        say("its flow lines became trusses");
    return std::move(read.mesh);
}

std::optional<LayoutKind> kind_of(const MeshSource& source) {
    return source.text ? kind_of_mesh_text(*source.text, source.name) : kind_of_mesh_file(source.name);
}

MeshLists read_own(const MeshSource& source, std::optional<LayoutKind> kind, const Remark& remark) {
    MeshLists mesh =
        source.text ? read_mesh_text(*source.text, source.name, kind) : read_mesh_file(source.name, kind);
    if (mesh.byte_order_mark)
        remark(mark_passed_over(source.name));
    return mesh;
}

// All of a file of another format.
std::string content_of(const MeshSource& source, const Remark& remark) {
    std::string content = source.text ? *source.text : read_file(source.name);
    if (content.starts_with(BYTE_ORDER_MARK)) {
        content.erase(0, BYTE_ORDER_MARK.size());
        remark(mark_passed_over(source.name));
    }
    return content;
}

MeshLists with_remark_on_names(MeshLists mesh, const Remark& remark) {
    if (mesh.names.changed() > 0)
        remark(names_changed(mesh.file, mesh.names.changed()));
    return mesh;
}

}  // namespace

MeshLists read_any_mesh(const MeshSource& source, std::optional<LayoutKind> kind, const Remark& remark,
                        const std::vector<GroupCodes>& codes) {
    const std::string& name = source.name;
    if (source.format == Format::mesh) {
        if (kind)
            if (const auto told = kind_of(source); told && *told != *kind)
                remark(fmt::format("{}: a mesh of the {} kind, read as one of the {} kind", name,
                                   name_of(*told), name_of(*kind)));
        return with_remark_on_names(read_own(source, kind, remark), remark);
    }
    const std::string content = content_of(source, remark);
    return with_remark_on_names(
        mesh_of_cells(source.format == Format::vtu ? read_vtu(content, name) : read_gmsh(content, name), kind,
                      remark, codes),
        remark);
}

MeshLists read_any_mesh_as(const MeshSource& source, std::optional<LayoutKind> kind, const Remark& remark,
                           const std::vector<GroupCodes>& codes) {
    if (!codes.empty() && source.format != Format::gmsh)
        throw Failure(fmt::format("{}: expected a Gmsh file, whose groups --code is for", source.name));
    if (!kind || source.format != Format::mesh)
        return read_any_mesh(source, kind, remark, codes);
    const MeshLists mesh =
        with_remark_on_names(read_own(source, kind_of(source).value_or(*kind), remark), remark);
    return mesh.kind == *kind ? mesh : mesh_of_cells(cells_of(mesh), kind, remark);
}

}  // namespace brelan::tool
