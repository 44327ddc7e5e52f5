#include "commands/cut_choice.h"

#include <fmt/core.h>

#include <cstddef>
#include <string>
#include <vector>

#include "analysis/soundness.h"
#include "cli/exit_status.h"
#include "commands/batch/kept_files.h"
#include "commands/batch/side_files.h"
#include "drawing/soundness_text.h"
#include "formats/mesh_file.h"
#include "text/run_end.h"

namespace brelan::tool {

namespace {

namespace fs = std::filesystem;

struct MeshVerdict {
    bool known = false;      // false: there is no mesh, or it cannot be read
    std::size_t faults = 0;  // places that make it unsound
    std::string text;        // "unsound: 1 hanging node (...)", or why it cannot be read
};

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
    } catch (const Failure& failure) {
        verdict.text = failure.what();
    } catch (const RunEnd& end) {
        verdict.text = end.text;
    }
    return verdict;
}

// The files that a run may write or delete.
std::vector<fs::path> files_at_stake(const RunPlace& place) {
    std::vector<fs::path> files{file_of_card(place.project, place.deck.result, place.kept_work),
                                file_of_card(place.project, LINE_UP)};
    for (const std::string& name : side_file_names(place.deck, place.project)) {
        files.push_back(file_of_card(place.project, name));
        if (!place.options.apart.empty())
            files.push_back(fs::path(place.options.apart) / files.back().filename());
    }
    if (!place.data.is_private())
        for (const char* name : {"BRELAN2D.DAT", "FnPlot2D.dat"})
            files.push_back(place.data.files() / name);
    std::erase(files, fs::path{});
    return files;
}

// The cut makes no difference to other decks.
bool is_cut(const NotedDeck& deck) {
    constexpr std::int32_t base_mesh = 2;
    return deck.mode >= base_mesh || !deck.groups.empty();
}

std::string reason_against(const RunReport& sound, const MeshVerdict& verdict) {
    if (sound.status != STATUS_OK)
        return "the sound cut ended with: " + sound.message;
    return verdict.known ? "the mesh of the sound cut is no better, " + verdict.text
                         : "the sound cut left no mesh that can be read";
}

// What stops the second run may stop this as well, as a full disk does: then both are told.
void put_back_after(const Failure& first, KeptFiles& files) {
    try {
        files.put_back();
    } catch (const Failure& second) {
        throw Failure(fmt::format("{}; {}", first.what(), second.what()));
    }
}

// By the rules, and where the mesh is unsound by the sound cut, from the same files. The better mesh stands.
RunReport run_by_both(const RunPlace& place, const RunReport& begun) {
    const std::vector<fs::path> files = files_at_stake(place);
    KeptFiles before(place.project, CopyKind::to_be_replaced, files);
    RunReport by_rules = run_once(place, begun, CutMethod::by_rules);
    const MeshVerdict rules = verdict_on(by_rules);
    if (!rules.known && !rules.text.empty())
        by_rules.remarks.push_back("whether the mesh is sound is not known, nor tried the sound cut: " +
                                   rules.text);
    if (rules.faults == 0)
        return by_rules;
    KeptFiles after(place.project, CopyKind::of_run, files);
    try {
        before.put_back();
        RunReport again = begun;
        again.seconds = by_rules.seconds;
        RunReport sound = run_once(place, again, CutMethod::sound);
        const MeshVerdict verdict = verdict_on(sound);
        if (verdict.known && verdict.faults < rules.faults) {
            sound.cut_reason = "by the rules the mesh is " + rules.text;
            return sound;
        }
        by_rules.seconds = sound.seconds;
        by_rules.cut_reason = reason_against(sound, verdict);
    } catch (const Failure& failure) {
        put_back_after(failure, after);
        throw;
    } catch (...) {
        after.put_back();
        throw;
    }
    after.put_back();
    return by_rules;
}

}  // namespace

RunReport run_by_choice(const RunPlace& place, const RunReport& begun) {
    if (place.options.cut == Cut::automatic && is_cut(place.deck))
        return run_by_both(place, begun);
    return run_once(place, begun, place.options.cut == Cut::sound ? CutMethod::sound : CutMethod::by_rules);
}

}  // namespace brelan::tool
