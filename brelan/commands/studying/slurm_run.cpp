// A study as job arrays of Slurm.
#include <fmt/core.h>

#include <algorithm>
#include <chrono>
#include <thread>

#include "cli/exit_status.h"
#include "cli/output_file.h"
#include "cli/words.h"
#include "commands/studying/study_run.h"
#include "study/slurm.h"

namespace brelan::tool {

namespace {

namespace fs = std::filesystem;

constexpr std::string_view JOB = "slurm job";  // facts of the database
constexpr int MOST_SUBMISSIONS = 3;            // of a case whose task has ended without it

std::string in_quotes(const std::string& word) {
    std::string text = "'";
    for (const char c : word)
        text += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return text + "'";
}

class SlurmRun {
public:
    SlurmRun(CaseRunner& runner, Gatherer& gatherer, const StudyOptions& options,
             const Interruption& interruption, const Context& context)
        : runner_(runner),
          gatherer_(gatherer),
          options_(options),
          interruption_(interruption),
          context_(context),
          place_(fs::absolute(runner.study().directory) / "slurm") {}

    void run() {
        StudyProgress progress(context_);
        follow_left_job(progress);
        for (int submission = 0; submission < MOST_SUBMISSIONS && missing() > 0; ++submission) {
            submit();
            follow(progress);
        }
        note_lost_cases();
        gatherer_.finish();
    }

private:
    std::size_t missing() const { return gatherer_.states().count() - gatherer_.states().done(); }

    fs::path list_of(std::size_t task) const { return place_ / fmt::format("{}.cases", task); }

    // Jobs go on when the invocation that submitted them has been ended: they are followed, not doubled.
    void follow_left_job(StudyProgress& progress) {
        job_ = gatherer_.database().fact(std::string(JOB));
        if (job_.empty())
            return;
        const std::set<std::size_t> living = living_tasks(job_);
        if (!living.empty()) {
            note(context_, fmt::format("job {} of this study is still at work; following it", job_));
            tasks_ = *living.rbegin();
            chunks_.clear();  // not known any more: what it leaves is found case by case
            follow(progress);
        }
        set_job("");
        for (std::size_t number = 1; number <= gatherer_.states().count(); ++number)
            if (gatherer_.states().missing(number))
                gatherer_.take(number);
    }

    void set_job(const std::string& job) {
        job_ = job;
        gatherer_.database().set_fact(std::string(JOB), job);
        gatherer_.database().commit();
    }

    // A list of cases for each task, and the script that all run.
    void submit() {
        std::error_code error;
        fs::remove_all(place_, error);
        fs::create_directories(place_, error);
        chunks_.assign(1, {});
        for (std::size_t number = 1; number <= gatherer_.states().count(); ++number) {
            if (!gatherer_.states().missing(number))
                continue;
            if (chunks_.back().size() == std::max<std::size_t>(1, options_.chunk))
                chunks_.emplace_back();
            chunks_.back().push_back(number);
        }
        tasks_ = chunks_.size();
        for (std::size_t task = 1; task <= tasks_; ++task) {
            std::string list;
            for (const std::size_t number : chunks_[task - 1])
                list += fmt::format("{}\n", number);
            write_file(list_of(task), list);
        }
        const fs::path script = place_ / "task.sh";
        const std::string jobs =
            options_.jobs > 0 ? fmt::format("{}", options_.jobs) : "\"${SLURM_CPUS_PER_TASK:-1}\"";
        write_file(
            script,
            fmt::format(
                "#!/bin/sh\nexec {} -q study work {} --cases {}/\"$SLURM_ARRAY_TASK_ID\".cases -j {}\n",
                in_quotes(context_.program.string()), in_quotes(fs::absolute(runner_.study().file).string()),
                in_quotes(place_.string()), jobs));
        set_job(submit_array({options_.partition, options_.account, options_.slurm}, tasks_, script, place_));
        note(context_, fmt::format("job {}: {} in {}", job_, counted(missing(), "case", "cases"),
                                   counted(tasks_, "task", "tasks")));
    }

    // What a task has left so far. A task works its cases off in their order: a few that are not there are
    // those that it works on.
    void gather(std::vector<std::size_t>& chunk, bool ended) {
        constexpr std::size_t AHEAD = 64;
        std::size_t absent = 0;
        std::erase_if(chunk, [&](std::size_t number) {
            if (!ended && absent > AHEAD)
                return false;
            const bool taken = gatherer_.take(number);
            absent += taken ? 0 : 1;
            return taken;
        });
    }

    void follow(StudyProgress& progress) {
        using namespace std::chrono_literals;
        auto pause = 200ms;
        for (;;) {
            const std::set<std::size_t> living = living_tasks(job_);
            for (std::size_t task = 1; task <= chunks_.size(); ++task)
                if (!chunks_[task - 1].empty())
                    gather(chunks_[task - 1], !living.contains(task));
            gatherer_.commit_now_and_then();
            gatherer_.show(progress);
            if (living.empty() || (!chunks_.empty() && missing() == 0))
                return;
            for (auto waited = 0ms; waited < pause; waited += 100ms) {
                if (interruption_.came()) {
                    gatherer_.finish();
                    note(context_,
                         fmt::format("job {} goes on; the same command follows it, scancel {} ends it", job_,
                                     job_));
                    throw Interrupted{};
                }
                std::this_thread::sleep_for(100ms);
            }
            pause = std::min(pause * 2, std::chrono::milliseconds(10s));
        }
    }

    // Tasks that have ended without some of their cases, as those of a node that is dead.
    void note_lost_cases() {
        for (std::size_t task = 1; task <= chunks_.size(); ++task)
            for (const std::size_t number : chunks_[task - 1]) {
                const std::string state = state_of_task(job_, task);
                throw Failure(
                    fmt::format("case {} has not been run: task {} of job {} has ended{}; {} tells more, and "
                                "the same command goes on with what is missing",
                                number, task, job_, state.empty() ? "" : " (" + state + ")",
                                (place_ / fmt::format("{}.log", task)).string()));
            }
        set_job("");
    }

    CaseRunner& runner_;
    Gatherer& gatherer_;
    const StudyOptions& options_;
    const Interruption& interruption_;
    const Context& context_;
    fs::path place_;
    std::string job_;
    std::size_t tasks_ = 0;
    std::vector<std::vector<std::size_t>> chunks_;  // cases of each task that are not gathered yet
};

}  // namespace

void run_by_slurm(CaseRunner& runner, Gatherer& gatherer, const StudyOptions& options,
                  const Interruption& interruption, const Context& context) {
    SlurmRun(runner, gatherer, options, interruption, context).run();
}

}  // namespace brelan::tool
