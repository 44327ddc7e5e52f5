#include "commands/batch_run.h"

#include <fmt/core.h>

#include <chrono>
#include <optional>
#include <string>
#include <vector>

#include "cli/console.h"
#include "cli/exit_status.h"
#include "cli/input_file.h"
#include "cli/output_file.h"
#include "commands/batch/batch_program.h"
#include "commands/batch/pass_trace.h"
#include "commands/batch/progress_file.h"
#include "commands/batch/side_files.h"
#include "commands/batch/temporary_directory.h"
#include "commands/run_failure.h"

namespace brelan::tool {

namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

// The deck goes to the working directory under this name, whatever its own is.
constexpr std::string_view DECK_NAME = "brelan-run.dat";

// The working directory of a run: one of its own, or the one that the user names and keeps.
class WorkingDirectory {
public:
    WorkingDirectory(const fs::path& project, const RunOptions& options) {
        if (options.work.empty()) {
            // One that is kept is not to be taken for one that a killed run has left.
            if (options.keep)
                own_.emplace(project, ".brelan-", LeftDirectories::stay).keep();
            else
                own_.emplace(project, ".brelan-run-", LeftDirectories::removed);
            path_ = own_->path();
            return;
        }
        std::error_code error;
        path_ = fs::absolute(project / options.work, error);
        fs::create_directory(path_, error);
        if (!fs::is_directory(path_, error) || fs::path(options.work).has_parent_path() ||
            options.work == "." || options.work == "..")
            throw Failure(
                fmt::format("{}: expected the name of a directory of the project to work in", options.work));
    }
    const fs::path& path() const { return path_; }

private:
    std::optional<TemporaryDirectory> own_;
    fs::path path_;
};

// The project's LineUp.dat, which the batch program looks for in its working directory.
class LineUpFile {
public:
    LineUpFile(const fs::path& project, const fs::path& working_directory)
        : file_(file_of_card(project, LINE_UP)), copy_(working_directory / LINE_UP) {
        std::error_code error;
        if (!fs::is_regular_file(file_, error))
            return;
        before_ = read_file(file_);
        fs::copy_file(file_, copy_, fs::copy_options::overwrite_existing, error);
    }

    // The program has turned it off, so that it works once. True when the project's file was changed.
    bool take_back() const {
        std::error_code error;
        if (!before_ || !fs::is_regular_file(copy_, error))
            return false;
        const std::string now = read_file(copy_);
        if (now == *before_)
            return false;
        write_file(file_, now);
        return true;
    }
    const fs::path& file() const { return file_; }

private:
    fs::path file_, copy_;
    std::optional<std::string> before_;
};

// What is shown of a run that takes a while: its pass, and the group in work where the program tells it. A
// run that ends sooner shows nothing.
class ShownProgress {
public:
    ShownProgress(const RunPlace& place, const PassTrace& trace)
        : deck_(place.deck.file), trace_(trace), line_(place.context) {
        if (!place.options.json && line_.is_on())
            told_.emplace();
    }

    std::optional<int> descriptor() const {
        return told_ ? std::optional(told_->descriptor()) : std::nullopt;
    }

    void show() {
        constexpr auto silence = std::chrono::milliseconds(500);
        const Clock::duration time = Clock::now() - begin_;
        if (!told_ || time < silence)
            return;
        told_->look();
        line_.show(text() + fmt::format("  {:.0f} s", std::chrono::duration<double>(time).count()));
    }

    void clear() { line_.clear(); }

private:
    std::string text() const {
        const ToldProgress& told = told_->last();
        std::string text = deck_.filename().string();
        if (told.decks > 1)
            text += fmt::format(", deck {} of {}", told.deck, told.decks);
        else if (trace_.decks() > 1)
            text += fmt::format(", deck {}", trace_.decks());
        const std::string& pass = told.pass.empty() ? trace_.pass() : told.pass;
        if (pass.empty())
            return text;
        text += fmt::format(": pass {}", pass);
        if (told.group > 0)
            return text + fmt::format(", group {} of {}{}{}", told.group, told.groups,
                                      told.title.empty() ? "" : ": ", told.title);
        if (const std::string_view work = work_of_pass(pass); !work.empty())
            text += fmt::format(", {}", work);
        return text;
    }

    const fs::path& deck_;
    const PassTrace& trace_;
    ProgressLine line_;
    std::optional<ProgressFile> told_;  // where it is shown
    Clock::time_point begin_ = Clock::now();
};

// The mesh that the run has written. An earth dam's decks are the run's own: the last of them has told the
// plot tool.
fs::path result_of(const NotedDeck& deck, const fs::path& project, const fs::path& work,
                   const DataDirectory& data) {
    constexpr std::int32_t dam = 3;
    std::string name = deck.result;
    if (deck.mode == 2 && name.empty())
        name = BASE_MESH;
    if (deck.mode == dam) {
        const std::string told = read_file(data.files() / "FnPlot2D.dat");
        name = told.substr(0, told.find('\n'));
        name.erase(name.find_last_not_of(" \r") + 1);
    }
    return file_of_card(project, name, work);
}

}  // namespace

RunReport run_once(const RunPlace& place, RunReport report, CutMethod cut) {
    const RunOptions& options = place.options;
    const NotedDeck& deck = place.deck;
    const fs::path& project = place.project;
    const WorkingDirectory work(project, options);
    write_file(work.path() / DECK_NAME, deck.text);
    const LineUpFile line_up(project, work.path());
    SideFiles files(project, deck, options.apart);

    PassTrace trace(work.path());
    const Clock::time_point begin = Clock::now();
    ShownProgress progress(place, trace);
    const BatchResult result = run_batch_program(
        {place.program, work.path(), place.data.drive(), std::string(DECK_NAME), cut, progress.descriptor()},
        place.interruption, [&] {
            trace.look();
            progress.show();
        });
    report.seconds += std::chrono::duration<double>(Clock::now() - begin).count();
    trace.look();
    progress.clear();
    report.cut = cut;
    report.decks = trace.decks();
    report.pass = trace.pass();
    report.status = result.status;
    files.collect();
    report.also = files.written();
    report.deleted = files.deleted();
    if (line_up.take_back())
        report.also.push_back(line_up.file());
    if (options.keep)
        note(place.context, fmt::format("{}: kept", work.path().string()));

    if (result.status != 0) {
        const FailedRun failed{deck, project, work.path(), std::string(DECK_NAME), trace.pass(), result};
        report.message = failure_message(failed);
        report.details = failure_details(failed);
        return report;
    }
    const fs::path mesh = files.place_of(result_of(deck, project, place.kept_work, place.data));
    if (std::error_code error; !mesh.empty() && fs::is_regular_file(mesh, error)) {
        report.result = mesh;
        std::erase(report.also, mesh);
    }
    return report;
}

}  // namespace brelan::tool
