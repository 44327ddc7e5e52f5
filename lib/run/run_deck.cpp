#include "run/run_deck.h"

#include <exception>
#include <new>
#include <utility>

#include "run/driver.h"
#include "run/run.h"

namespace brelan {

namespace {

// "GROUP.TMP" and the decks of a dam are not among them: other channels read these.
constexpr std::string_view UNREAD_FILES[] = {
    "Bmesh.Tmp", "Coord.dat", "Index.dat", "BRELAN.TMP", "TT55.TMP",  "T7.TMP",        "FILEA.TMP",
    "FILEB.TMP", "TEMPO.TMP", "JOINT.TMP", "fort.888",   "TT123.TMP", "DV-BRELAN.Tmp", "MeshFile.Mes"};

// Closes the files whatever way is left.
struct ClosedAtEnd {
    Channels& channels;
    explicit ClosedAtEnd(Channels& of_run) : channels(of_run) {}
    ClosedAtEnd(const ClosedAtEnd&) = delete;
    ClosedAtEnd& operator=(const ClosedAtEnd&) = delete;
    ~ClosedAtEnd() { channels.close_all(); }
};

// What has been written is put on disk whatever way the run ends. One that ends as it should fails where that
// fails.
RunEnd run_and_flush(Run& run) {
    try {
        RunEnd end{STATUS_FINISHED, {}};
        try {
            run_program(run);
        } catch (const RunEnd& early) {
            end = early;
        }
        if (end.status == STATUS_ENDED)
            return end;
        try {
            run.channels.flush_all();
            run.channels.take_finished_results();
        } catch (const RunEnd& failure) {
            if (end.status != STATUS_FAILED)
                end = failure;
        }
        return end;
        // No routine of ours lets either out but for want of memory, which tests/faults tries.
        // GCOVR_EXCL_START
    } catch (const std::bad_alloc&) {
        throw;
    } catch (const std::exception& error) {
        return {STATUS_FAILED, std::string("the run cannot go on: ") + error.what()};
    }
    // GCOVR_EXCL_STOP
}

RunResult result_with(std::shared_ptr<Files> files, CutMethod cut, RunWatcher* watcher) {
    RunResult result;
    KeptConsole console;
    const auto run = std::make_unique<Run>(std::move(files), console, watcher);
    run->cut = cut;
    result.end = run_to_end(*run);
    result.console = console.text();
    if (result.end.status == STATUS_ENDED)
        return result;
    const std::string_view mesh = run->deck.names.result.view();
    result.mesh = mesh.substr(0, mesh.find_last_not_of(' ') + 1);
    result.activity = std::move(run->activity);
    return result;
}

}  // namespace

RunEnd run_to_end(Run& run) {
    const ClosedAtEnd files{run.channels};
    return run_and_flush(run);
}

std::shared_ptr<MemoryFiles> files_of(const RunInput& input) {
    auto files = std::make_shared<MemoryFiles>();
    const std::string data = "C:\\Vork\\Qx\\Qxdata\\";
    files->put(data + "PROGRAM.DAT", std::to_string(input.edition) + "\n");
    files->put(data + "MANUAL.DAT", input.report == ReportPlace::console ? "1\n" : "0\n");
    files->put(data + "HUBPLOT.DAT", "1\n");
    files->put("TFNAME.TMP", input.deck_name + "\n");
    for (const auto& [name, text] : input.files)
        files->put(name, text);
    if (input.listings == Listings::left_out)
        for (const std::string_view name : UNREAD_FILES)
            files->leave_out(name);
    return files;
}

RunResult run_deck(const RunInput& input) {
    try {
        const std::shared_ptr<MemoryFiles> files = files_of(input);
        RunResult result = result_with(files, input.cut, input.watcher);
        result.files = files;
        return result;
    } catch (const RunEnd& end) {  // a name that is none
        return {end, {}, {}, nullptr};
    }
}

RunResult run_deck(const Directories& project, CutMethod cut, RunWatcher* watcher) {
    return result_with(std::make_shared<DiskFiles>(project), cut, watcher);
}

}  // namespace brelan
