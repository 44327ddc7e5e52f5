// brelan run: the batch program for one deck, with all that it needs around it.
#include <fmt/core.h>

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "cli/console.h"
#include "cli/exit_status.h"
#include "cli/words.h"
#include "commands/batch/batch_program.h"
#include "commands/batch/data_directory.h"
#include "commands/batch/directory_lock.h"
#include "commands/batch/edition.h"
#include "commands/batch/side_files.h"
#include "commands/batch/user_copies.h"
#include "commands/card_report.h"
#include "commands/checking/deck_check.h"
#include "commands/checking/drawn_lines.h"
#include "commands/commands.h"
#include "commands/cut_choice.h"
#include "commands/run_summary.h"
#include "formats/mesh_file.h"
#include "text/run_end.h"

namespace brelan::tool {

namespace {

namespace fs = std::filesystem;
using Remark = std::function<void(const std::string&)>;

fs::path directory_of(const fs::path& deck) {
    return deck.parent_path().empty() ? fs::path(".") : deck.parent_path();
}

// A message for a deck that must not be run, although the batch program would.
void refuse_harmful_result(const NotedDeck& deck, const fs::path& project, const fs::path& work,
                           const DataDirectory& data) {
    std::error_code error;
    std::vector<std::string> names = side_file_names(deck, project);
    names.push_back(deck.result);
    for (const std::string& written : names) {
        const fs::path file = file_of_card(project, written, work);
        if (!file.empty() && fs::exists(file, error) && fs::equivalent(file, deck.file, error) && !error)
            throw Failure(fmt::format("{}: the run would put {} in the place of the deck", deck.file.string(),
                                      written));
    }
    const std::string& name = deck.result;
    if (data.is_private() && name.size() > 3 && name[1] == ':' &&
        name.find_first_of("\\/", 3) == std::string::npos)
        throw Failure(
            fmt::format("{}: {} lies in the root of drive C:, where a run without --data keeps no files",
                        deck.file.string(), name));
}

// What may be wrong with the deck, before it runs: not why the run will end, which it will say itself, nor
// what has been said of its kind and of the mark in front of it, nor of the cut by the rules when the sound
// one is asked for.
void warn(const Remark& remark, const DeckCheck& check, Cut cut, bool work_is_left) {
    for (const Doubt& doubt : check.doubts) {
        if ((cut == Cut::sound && is_of_rules(doubt)) || doubt.ends_run || doubt.id == "other-kind" ||
            doubt.id == "byte-order-mark" || (doubt.id == "lost-result" && work_is_left))
            continue;
        const std::string line = doubt.line > 0 ? fmt::format(", line {}", doubt.line) : "";
        remark(fmt::format("{}{}: warning: {}", check.deck.file.string(), line, doubt.message));
    }
}

// The lists that a dam with shells leaves go by the numbers of a mesh that its run deletes. Where the sound
// cut has drawn a core or wall over the finished dam, the list of the groups is that of its mesh.
void remark_old_numbers(RunReport& report, const NotedDeck& deck) {
    constexpr std::int32_t dam = 3;
    constexpr std::string_view body = "EarthDam.Mes";
    if (deck.mode != dam || report.result.empty() || report.result.filename() == body)
        return;
    const bool zones_last = report.cut == CutMethod::sound && (deck.card("5.3") || deck.card("5.5"));
    std::vector<std::string> lists;
    for (const fs::path& file : report.also)
        if (const std::string kind = lower(file.extension().string());
            kind == ".man" || (kind == ".pos" && !zones_last))
            lists.push_back(file.filename().string());
    if (!lists.empty())
        report.remarks.push_back(fmt::format(
            "{} {} the numbers of {}, which the run has deleted, and not those of {}", joined(lists, " and "),
            lists.size() == 1 ? "has" : "have", body, report.result.filename().string()));
}

// Lines that have come out longer or shorter than drawn. A mesh that cannot be read is told by the summary.
void remark_changed_lines(RunReport& report, const DeckCheck& check) {
    if (report.result.empty() || check.deck.groups.empty())
        return;
    try {
        const MeshLists mesh = read_mesh_file(report.result, check.edition.kind);
        for (const std::string& remark : changed_lines(check.deck, check.first_mesh, mesh))
            report.remarks.push_back(remark);
    } catch (const Failure&) {
        return;
    } catch (const RunEnd&) {
        return;
    }
}

int run_deck(const RunOptions& options, const Context& context) {
    const Interruption interruption;  // first: what was made for the run is gone when the signal comes again
    const DeckSource source = deck_source(options.deck);  // one that is not there is no matter of the project
    const fs::path& deck_file = source.file;
    const fs::path project = options.project.empty() ? directory_of(deck_file) : fs::path(options.project);
    std::error_code error;
    if (!fs::is_directory(project, error))
        throw Failure(fmt::format("{}: expected the project's directory", project.string()));
    const fs::path program = find_batch_program(context.program, options.program);

    std::optional<DataDirectory> data;
    std::optional<std::int32_t> edition_of_data;
    if (!options.data.empty()) {
        data.emplace(options.data);
        edition_of_data = edition_in(*data);
    }
    const fs::path kept_work = options.work.empty() ? fs::path{} : project / options.work;
    RunReport report;
    report.deck = deck_file;
    report.project = project;
    // On standard error for a person, and in the object for a program.
    const Remark remark = [&](const std::string& text) {
        note(context, text);
        if (options.json)
            report.remarks.push_back(text);
    };
    const EditionOfDeck choice =
        edition_of_deck(source, project, kept_work, options.edition, edition_of_data);
    report.edition = choice.edition;
    if (!choice.contradiction.empty()) {
        const std::string text =
            fmt::format("edition {} ({}) by {}, but {}", choice.edition.number, name_of(choice.edition.kind),
                        choice.edition.source, choice.contradiction);
        note(context, fmt::format("{}: {}", deck_file.string(), text));
        if (options.json)
            report.remarks.push_back(text);
    }

    std::vector<fs::path> locked{project};
    if (data)
        locked.push_back(data->files());
    const DirectoryLock lock(locked, interruption, [&] {
        note(context,
             fmt::format("{}: another run is at work in this project; waiting for it", project.string()));
    });
    settle_left_copies(project, remark);
    if (!data)
        data.emplace(context.program, choice.edition, project);
    const DeckCheck check =
        check_of(read_deck(source, choice.edition.kind), choice.edition, {project, kept_work});
    const NotedDeck& deck = check.deck;
    report.cuts = options.cut == Cut::rules && has_cut(deck);
    report.names = deck.names;
    if (deck.byte_order_mark)
        remark(mark_passed_over(deck_file));
    if (deck.names.changed() > 0)
        remark(names_changed(deck_file, deck.names.changed()));
    refuse_harmful_result(deck, project, kept_work, *data);
    if (check.verdict.status == 0)
        warn(remark, check, options.cut, options.keep || !options.work.empty());
    report =
        run_by_choice({options, context, interruption, deck, project, kept_work, program, *data}, report);
    if (report.status != 0) {
        if (options.json)
            print(run_json(report));
        error_line(report.message);
        fmt::print(stderr, "{}", report.details);
        return report.status;
    }
    remark_old_numbers(report, deck);
    remark_changed_lines(report, check);
    if (options.json)
        print(run_json(report));
    else if (!context.quiet)
        print(run_summary(report));
    return STATUS_OK;
}

}  // namespace

int run(const RunOptions& options, const Context& context) {
    try {
        return run_deck(options, context);
    } catch (const Interrupted&) {
        return STATUS_BAD;  // the signal comes again and ends the process
    }
}

}  // namespace brelan::tool
