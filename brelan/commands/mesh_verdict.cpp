#include "commands/mesh_verdict.h"

#include "analysis/soundness.h"
#include "cli/exit_status.h"
#include "drawing/soundness_text.h"
#include "formats/mesh_file.h"
#include "text/run_end.h"

namespace brelan::tool {

MeshVerdict verdict_on(const RunReport& run) {
    if (run.status != STATUS_OK || run.result.empty())
        return {};
    MeshVerdict verdict;
    try {
        const MeshLists mesh = read_mesh_file(run.result, run.edition.kind);
        const Soundness soundness = check_soundness(mesh, corners_of(mesh));
        verdict.known = true;
        verdict.text = soundness_line(soundness);
        for (const Finding& finding : soundness.findings)
            verdict.faults += finding.unsound ? finding.places.size() : 0;
    } catch (const Failure&) {  // the summary says so
        return {};
    } catch (const RunEnd&) {
        return {};
    }
    return verdict;
}

}  // namespace brelan::tool
