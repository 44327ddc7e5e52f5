// The reader and the writer of mesh files.
#include "analysis/mesh_file.h"

#include "input.h"
#include "targets.h"
#include "text/channel_numbers.h"

namespace brelan::fuzz {

void mesh_file(std::string_view input) {
    const Header header = take_header(input);
    std::string written;
    std::optional<MeshLists> mesh;
    try {
        mesh = mesh_of_text(input, "a.Mes", header.kind_or_none());
        if (!mesh)
            return;
        Channels channels;
        Channel& file = channels.open_in_memory(CHANNEL_RESULT, "b.Mes");
        write_mesh(file, *mesh, "b.Mes");
        written = file.text();
    } catch (const RunEnd&) {
        return;
    }
    try {
        const std::optional<MeshLists> again = mesh_of_text(written, "b.Mes", mesh->kind);
        require(again && again->nodes.size() == mesh->nodes.size() &&
                    again->elements.size() == mesh->elements.size(),
                "what was written is another mesh when it is read");
    } catch (const RunEnd& end) {
        require(false, "what was written cannot be read: " + end.text);
    }
}

}  // namespace brelan::fuzz
