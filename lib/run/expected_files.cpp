#include "run/expected_files.h"

#include "mesh/result_names.h"
#include "run/run.h"

namespace brelan {

namespace {

void expect_edit(Run& run) {
    if (!run.deck.has_edit)
        return;
    if (!run.deck.uses_template)
        run.channels.expect_source(run.deck.names.first.view());
    run.channels.expect_result(run.deck.names.result.view(), OpenStatus::result);
    if (run.deck.edit.operation == 4)
        for (const std::string_view name : GROUP_RESULTS)
            run.channels.expect_result(name, OpenStatus::side_result);
}

}  // namespace

void expect_files(Run& run) {
    switch (run.deck.mode) {
        case -1:
        case 0:
            run.channels.expect_source(run.deck.names.first.view());
            run.channels.expect_source(run.deck.names.second.view());
            run.channels.expect_result(run.deck.names.result.view(), OpenStatus::result);
            return;
        case 2:
            expect_edit(run);
            run.channels.expect_result(BASE_MESH_FILE, OpenStatus::result);
            return;
        default:
            expect_edit(run);
    }
}

}  // namespace brelan
