// The reader of VTU files, and what becomes a mesh of ours of it.
#include "cli/exit_status.h"
#include "formats/vtu.h"
#include "input.h"
#include "targets.h"
#include "text/run_end.h"

namespace brelan::fuzz {

void vtu_file(std::string_view input) {
    const Header header = take_header(input);
    try {
        tool::mesh_of(tool::read_vtu(input, "a.vtu"), header.kind_or_none());
    } catch (const tool::Failure&) {
    } catch (const RunEnd&) {
    }
}

}  // namespace brelan::fuzz
