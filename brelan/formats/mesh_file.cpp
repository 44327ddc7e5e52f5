#include "formats/mesh_file.h"

#include <fmt/core.h>

#include <utility>

#include "cli/drive_c.h"
#include "cli/exit_status.h"
#include "cli/input_file.h"
#include "cli/output_file.h"
#include "text/channel_numbers.h"

namespace brelan::tool {

namespace {

MeshLists of_a_kind(std::optional<MeshLists> mesh, const std::string& name) {
    if (!mesh)
        throw Failure(
            fmt::format("{}: neither headings nor records tell the kind of mesh; name it with --kind", name));
    return std::move(*mesh);
}

}  // namespace

MeshLists read_mesh_file(const std::filesystem::path& path, std::optional<LayoutKind> kind,
                         const std::filesystem::path& directory) {
    return of_a_kind(mesh_of_file(path, {directory, drive_c()}, kind), path.string());
}

MeshLists read_mesh_text(std::string_view text, const std::string& name, std::optional<LayoutKind> kind) {
    return of_a_kind(mesh_of_text(text, name, kind), name);
}

std::optional<LayoutKind> kind_of_mesh_file(const std::filesystem::path& path) {
    return brelan::kind_of_mesh_file(path, {{}, drive_c()});
}

void write_mesh_file(const MeshLists& mesh, const std::filesystem::path& path) {
    Channels channels;
    Channel& file = channels.open_in_memory(CHANNEL_RESULT, mesh.name);
    write_mesh(file, mesh, path == STANDARD_STREAM ? mesh.name : path.filename().string());
    write_file(path, file.text());
}

}  // namespace brelan::tool
