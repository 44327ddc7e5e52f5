// The reader of Gmsh files, and what becomes a mesh of ours of it.
#include "cli/exit_status.h"
#include "formats/gmsh.h"
#include "input.h"
#include "targets.h"
#include "text/run_end.h"

namespace brelan::fuzz {

void gmsh_file(std::string_view input) {
    const Header header = take_header(input);
    try {
        tool::mesh_of(tool::read_gmsh(input, "a.msh"), header.kind_or_none());
    } catch (const tool::Failure&) {
    } catch (const RunEnd&) {
    }
}

}  // namespace brelan::fuzz
