#include "commands/studying/study_run.h"

#include <sched.h>

#include <charconv>
#include <system_error>

#include "cli/exit_status.h"
#include "cli/input_file.h"
#include "cli/words.h"
#include "study/workers.h"

namespace brelan::tool {

namespace {

namespace fs = std::filesystem;

fs::path made_directory(const fs::path& directory) {
    std::error_code error;
    fs::create_directories(directory, error);
    if (!fs::is_directory(directory, error))
        throw Failure(directory.string() + ": cannot be made");
    return directory;
}

CaseStates::State state_of(const CaseRecord& record) {
    return record.state == FINISHED ? CaseStates::State::finished : CaseStates::State::failed;
}

}  // namespace

void CaseStates::set(std::size_t number, State state) {
    State& held = states_[number];
    finished_ -= held == State::finished ? 1 : 0;
    failed_ -= held == State::failed ? 1 : 0;
    held = state;
    finished_ += held == State::finished ? 1 : 0;
    failed_ += held == State::failed ? 1 : 0;
}

Gatherer::Gatherer(CaseRunner& runner, const Context& context, bool again)
    : runner_(runner),
      database_(made_directory(runner.study().directory) / DATABASE, DatabaseUse::gather),
      states_(runner.plan().count()),
      committed_(std::chrono::steady_clock::now()) {
    const auto wanted = [&](const CaseRecord& record) { return !again || record.state == FINISHED; };
    std::size_t behind = 0;
    database_.for_each([&](const CaseRow& row) {
        if (row.record.number > states_.count())
            ++behind;
        else if (!runner_.is_current(row.record))
            ++other_input_;
        else if (wanted(row.record))
            states_.set(row.record.number, state_of(row.record));
    });
    if (behind > 0) {
        database_.cut_behind(states_.count());
        note(context,
             counted(behind, "case is", "cases are") + " behind the end of the study now; the folders stay");
    }
    // Of an invocation that was killed before it could put them in.
    std::size_t found = 0;
    for (std::size_t number = 1; number <= states_.count(); ++number) {
        if (!states_.missing(number))
            continue;
        const std::optional<CaseRecord> record = read_record(runner_.study().directory, number);
        if (record && wanted(*record) && runner_.is_current(*record)) {
            put(*record);
            ++found;
        } else if (record && again && !wanted(*record)) {
            // A record that stands there would be taken for the new one.
            std::error_code error;
            fs::remove(runner_.study().directory / CASES / folder_of_case(number) / CASE_RECORD, error);
        }
    }
    database_.commit();
    known_ = states_.done();
}

void Gatherer::put(const CaseRecord& record) {
    database_.put({record, runner_.plan().values(record.number)});
    states_.set(record.number, state_of(record));
}

bool Gatherer::take(std::size_t number) {
    const std::optional<CaseRecord> record = read_record(runner_.study().directory, number);
    if (!record || !runner_.is_current(*record))
        return false;
    put(*record);
    return true;
}

void Gatherer::show(StudyProgress& progress) const {
    progress.show({states_.count(), states_.done(), states_.failed(), states_.done() - known_, 0.0});
}

void Gatherer::commit_now_and_then() {
    const auto now = std::chrono::steady_clock::now();
    if (now - committed_ < std::chrono::seconds(1))
        return;
    committed_ = now;
    database_.commit();
}

void Gatherer::finish() {
    database_.commit();
}

unsigned worker_count(const StudyOptions& options) {
    if (options.jobs > 0)
        return options.jobs;
    // Those that this process may use: a job of a cluster has a part of its node.
    cpu_set_t cores;
    return sched_getaffinity(0, sizeof cores, &cores) == 0 ? static_cast<unsigned>(CPU_COUNT(&cores)) : 1;
}

void run_on_cores(CaseRunner& runner, Gatherer& gatherer, const StudyOptions& options,
                  const Interruption& interruption, const Context& context) {
    StudyProgress progress(context);
    std::size_t at = 0;
    WorkerPlan plan;
    plan.count = worker_count(options);
    plan.time_limit = runner.study().time_limit;
    plan.work = [&](std::size_t number) { runner.run(number); };
    plan.next = [&]() -> std::optional<std::size_t> {
        while (++at <= gatherer.states().count())
            if (gatherer.states().missing(at))
                return at;
        return std::nullopt;
    };
    plan.ended = [&](const CaseEnd& end) {
        if (end.how != CaseEnd::How::done)
            runner.note_end(end);
        if (!gatherer.take(end.number))
            throw Failure(folder_of_case(end.number) + ": its record is gone");
        gatherer.commit_now_and_then();
        gatherer.show(progress);
    };
    plan.goes_on = [&] {
        gatherer.show(progress);
        return !interruption.came();
    };
    run_workers(plan);
    gatherer.finish();
    if (interruption.came())
        throw Interrupted{};
}

void run_listed_cases(CaseRunner& runner, const StudyOptions& options, const Interruption& interruption) {
    std::vector<std::size_t> numbers;
    const std::string list = read_file(options.cases);
    for (const std::string_view line : lines_of(list)) {
        std::size_t number = 0;
        std::from_chars(line.data(), line.data() + line.size(), number);
        if (number < 1 || number > runner.plan().count())
            throw Failure(options.cases + ": expected numbers of cases");
        // One that a task before has done, which the scheduler has begun anew.
        const std::optional<CaseRecord> record = read_record(runner.study().directory, number);
        if (!record || !runner.is_current(*record))
            numbers.push_back(number);
    }
    std::size_t at = 0;
    WorkerPlan plan;
    plan.count = worker_count(options);
    plan.time_limit = runner.study().time_limit;
    plan.work = [&](std::size_t number) { runner.run(number); };
    plan.next = [&]() { return at < numbers.size() ? std::optional(numbers[at++]) : std::nullopt; };
    plan.ended = [&](const CaseEnd& end) {
        if (end.how != CaseEnd::How::done)
            runner.note_end(end);
    };
    plan.goes_on = [&] { return !interruption.came(); };
    run_workers(plan);
    if (interruption.came())
        throw Interrupted{};
}

}  // namespace brelan::tool
