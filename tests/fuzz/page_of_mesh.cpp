// The page that shows a mesh in a browser, with what is wrong with the mesh.
#include "analysis/geometry.h"
#include "analysis/mesh_file.h"
#include "analysis/soundness.h"
#include "cli/exit_status.h"
#include "drawing/html.h"
#include "input.h"
#include "targets.h"
#include "text/run_end.h"

namespace brelan::fuzz {

void page_of_mesh(std::string_view input) {
    const Header header = take_header(input);
    try {
        const std::optional<MeshLists> mesh = mesh_of_text(input, "a.Mes", header.kind_or_none());
        if (!mesh)
            return;
        const Soundness soundness = check_soundness(*mesh, corners_of(*mesh));
        tool::PictureOptions options;
        options.faults = &soundness;
        tool::write_html(*mesh, options, "/dev/null");
        tool::picture_of(*mesh, options);
    } catch (const tool::Failure&) {
    } catch (const RunEnd&) {
    }
}

}  // namespace brelan::fuzz
