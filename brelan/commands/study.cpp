// brelan study: one deck for many values, and a report on all of them.
#include <fmt/core.h>

#include <algorithm>
#include <filesystem>
#include <map>

#include "cli/console.h"
#include "cli/exit_status.h"
#include "cli/input_file.h"
#include "cli/output_file.h"
#include "cli/words.h"
#include "commands/batch/directory_lock.h"
#include "commands/commands.h"
#include "commands/studying/starter_study.h"
#include "commands/studying/study_run.h"
#include "drawing/mesh_picture.h"
#include "formats/mesh_file.h"
#include "study/report_page.h"
#include "text/run_end.h"

namespace brelan::tool {

namespace {

namespace fs = std::filesystem;

// --- new -----------------------------------------------------------------------------------------

std::string with_study_name(std::string_view text, const std::string& name) {
    constexpr std::string_view mark = "@NAME@";
    std::string made(text);
    for (std::size_t at = 0; (at = made.find(mark, at)) != std::string::npos; at += name.size())
        made.replace(at, mark.size(), name);
    return made;
}

int new_study(const StudyOptions& options, const std::string& named, const Context& context) {
    fs::path file = named.empty() ? "pit.toml" : named;
    if (file.extension().empty())
        file += ".toml";
    const std::string name = file.stem().string();
    fs::path deck = file;
    deck.replace_extension(".dat");
    std::error_code error;
    for (const fs::path& path : {file, deck})
        if (!options.force && fs::exists(path, error))
            throw Failure(
                fmt::format("{}: there is a file of this name; --force replaces it", path.string()));
    if (file.has_parent_path())
        fs::create_directories(file.parent_path(), error);
    write_file(deck, STARTER_STUDY_DECK);
    write_file(file, with_study_name(STARTER_STUDY, name));
    note(context, fmt::format("{}: written, and its deck {}; next: brelan study {}", file.string(),
                              deck.string(), file.string()));
    return STATUS_OK;
}

// --- what came out -------------------------------------------------------------------------------

Database results_of(const StudyFile& study) {
    std::error_code error;
    const fs::path file = study.directory / DATABASE;
    if (!fs::exists(file, error))
        throw Failure(fmt::format("{}: there are no results yet; \"brelan study {}\" makes them",
                                  file.string(), study.file.string()));
    return Database(file, DatabaseUse::read);
}

std::string csv_cell(const StudyValue& value) {
    std::string text = text_of_value(value);
    if (text.find_first_of(",\"\r\n") == std::string::npos)
        return text;
    std::string quoted = "\"";
    for (const char c : text)
        quoted += c == '"' ? std::string("\"\"") : std::string(1, c);
    return quoted + "\"";
}

int write_csv(const StudyOptions& options, const StudyFile& study) {
    const Database database = results_of(study);
    OutputFile out(options.output.empty() ? std::string(STANDARD_STREAM) : options.output);
    std::string head = "case";
    for (const std::string& name : database.parameters())
        head += "," + csv_cell(name);
    head += ",state,cut,seconds";
    for (const std::string& name : database.gathered())
        head += "," + csv_cell(name);
    out.write(head + ",message\n");
    database.for_each([&](const CaseRow& row) {
        std::string line = fmt::format("{}", row.record.number);
        for (const auto& [name, value] : row.parameters)
            line += "," + csv_cell(value);
        line += fmt::format(",{},{},{}", row.record.state, row.record.cut, row.record.seconds);
        for (const auto& [name, value] : row.record.gathered)
            line += "," + csv_cell(value);
        out.write(line + "," + csv_cell(row.record.message) + "\n");
    });
    out.commit();
    return STATUS_OK;
}

struct StateCounts {
    std::size_t ended = 0;
    std::map<std::string, std::size_t> by_state;
    std::string failure;  // of the first that has not finished
};

StateCounts state_counts(const Database& database) {
    StateCounts counts;
    database.for_each([&](const CaseRow& row) {
        ++counts.ended;
        ++counts.by_state[row.record.state];
        if (row.record.state != FINISHED && counts.failure.empty())
            counts.failure = fmt::format("case {}: {}", row.record.number, row.record.message);
    });
    return counts;
}

std::string counts_text(const StudyFile& study, const StateCounts& counts, std::size_t all) {
    std::string text = fmt::format("{}: {} of {}", printable(study.directory.string()), counts.ended,
                                   counted(all, "case", "cases"));
    for (const auto& [state, count] : counts.by_state)
        text += fmt::format(", {} {}", count, state);
    text += "\n";
    if (!counts.failure.empty())
        text += "  " + inked(stdout, Ink::yellow, printable(counts.failure)) + "\n";
    return text;
}

int show_status(const StudyFile& study) {
    const StateCounts counts = state_counts(results_of(study));
    const std::size_t all = Plan(study).count();
    print(counts_text(study, counts, all));
    return counts.ended == all && counts.failure.empty() ? STATUS_OK : STATUS_FOUND;
}

// --- report --------------------------------------------------------------------------------------

void draw_picture(const StudyFile& study, const CaseRecord& record) {
    try {
        const MeshLists mesh = read_mesh_file(
            study.directory / CASES / folder_of_case(record.number) / record.mesh, kind_named(study.kind));
        PictureOptions options;
        options.width = 480.0;
        options.title = fmt::format("Case {}", record.number);
        write_svg(picture_of(mesh, options).scene, picture_of_case(study.directory, record.number));
    } catch (const Failure&) {
        return;  // a folder that a person has taken away has no picture
    } catch (const RunEnd&) {
        return;
    }
}

// Those that are not there, or older than their cases.
void draw_pictures(const StudyFile& study, const Database& database, const StudyOptions& options,
                   const Interruption& interruption, const Context& context) {
    std::vector<CaseRecord> to_draw;
    database.for_each([&](const CaseRow& row) {
        if (row.record.mesh.empty())
            return;
        std::error_code none, other;
        const fs::path picture = picture_of_case(study.directory, row.record.number);
        const auto drawn = fs::last_write_time(picture, none);
        const auto made = fs::last_write_time(
            study.directory / CASES / folder_of_case(row.record.number) / CASE_RECORD, other);
        if (!none && !other && drawn >= made)
            return;
        fs::create_directories(picture.parent_path(), none);
        CaseRecord record;
        record.number = row.record.number;
        record.mesh = row.record.mesh;
        to_draw.push_back(std::move(record));
    });
    StudyProgress progress(context);
    std::size_t at = 0, done = 0;
    WorkerPlan plan;
    plan.count = worker_count(options);
    plan.work = [&](std::size_t place) { draw_picture(study, to_draw[place - 1]); };
    plan.next = [&]() { return at < to_draw.size() ? std::optional(++at) : std::nullopt; };
    plan.ended = [&](const CaseEnd&) { progress.show({to_draw.size(), ++done, 0, done, 0.0}); };
    plan.goes_on = [&] { return !interruption.came(); };
    run_workers(plan);
    if (interruption.came())
        throw Interrupted{};
}

int write_report_of(const StudyOptions& options, const StudyFile& study, const Interruption& interruption,
                    const Context& context) {
    const Database database = results_of(study);
    if (!options.no_pictures)
        draw_pictures(study, database, options, interruption, context);
    const fs::path page = study.directory / "report.html";
    write_report(database, study.file.filename().string(), page);
    note(context, fmt::format("{}: written, to be opened in a browser", page.string()));
    return STATUS_OK;
}

// --- run -----------------------------------------------------------------------------------------

int run_study(const StudyOptions& options, const fs::path& file, const Interruption& interruption,
              const Context& context) {
    CaseRunner runner(file, context.program);
    const StudyFile& study = runner.study();
    std::error_code error;
    fs::create_directories(study.directory, error);
    if (!fs::is_directory(study.directory, error))
        throw Failure(fmt::format("{}: cannot be made a directory", study.directory.string()));
    const DirectoryLock lock({study.directory}, interruption, [&] {
        note(context, fmt::format("{}: another process is at work on this study; waiting for it",
                                  study.directory.string()));
    });
    Gatherer gatherer(runner, context, options.again);
    const CaseStates& states = gatherer.states();
    if (gatherer.other_input() > 0)
        note(context, fmt::format("{} since then changed by the study or its deck: run again",
                                  counted(gatherer.other_input(), "case was", "cases were")));
    if (states.done() > 0 && states.done() < states.count())
        note(context, fmt::format("{} of {} cases are done already", states.done(), states.count()));
    if (options.engine == "slurm")
        run_by_slurm(runner, gatherer, options, interruption, context);
    else
        run_on_cores(runner, gatherer, options, interruption, context);
    const StateCounts counts = state_counts(gatherer.database());
    if (!context.quiet)
        print(counts_text(study, counts, states.count()));
    return counts.failure.empty() ? STATUS_OK : STATUS_FOUND;
}

}  // namespace

int study(const StudyOptions& options, const Context& context) {
    static const std::vector<std::string> WORDS{"run", "new", "report", "csv", "status", "work"};
    std::string word = "run", file;
    if (std::find(WORDS.begin(), WORDS.end(), options.words.front()) != WORDS.end()) {
        word = options.words.front();
        file = options.words.size() > 1 ? options.words[1] : "";
    } else if (options.words.size() > 1) {
        throw Failure(fmt::format("{}: expected new, report, csv or status in front of the study",
                                  options.words.front()));
    } else {
        file = options.words.front();
    }
    if (word == "new")
        return new_study(options, file, context);
    if (file.empty())
        throw Failure(fmt::format("study {}: expected the file of a study", word));
    if (word == "csv")
        return write_csv(options, read_study_file(file));
    if (word == "status")
        return show_status(read_study_file(file));
    const Interruption interruption;
    try {
        if (word == "report")
            return write_report_of(options, read_study_file(file), interruption, context);
        if (word == "run")
            return run_study(options, file, interruption, context);
        CaseRunner runner(file, context.program);
        run_listed_cases(runner, options, interruption);
        return STATUS_OK;
    } catch (const Interrupted&) {
        note(context, "ended; what is done stays, and the same command goes on with the rest");
        return STATUS_BAD;  // the signal comes again and ends the process
    }
}

}  // namespace brelan::tool
