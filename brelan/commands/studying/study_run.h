// A study run, or continued: what is missing is run, and gathered into the database.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "cli/context.h"
#include "cli/interruption.h"
#include "commands/commands.h"
#include "commands/studying/case_run.h"
#include "study/database.h"
#include "study/progress.h"

namespace brelan::tool {

// What is known of the cases of a study.
class CaseStates {
public:
    explicit CaseStates(std::size_t count) : states_(count + 1, State::missing) {}

    enum class State : std::uint8_t { missing, finished, failed };
    void set(std::size_t number, State state);
    bool missing(std::size_t number) const { return states_[number] == State::missing; }
    std::size_t count() const { return states_.size() - 1; }
    std::size_t done() const { return finished_ + failed_; }
    std::size_t failed() const { return failed_; }

private:
    std::vector<State> states_;
    std::size_t finished_ = 0, failed_ = 0;
};

// Puts what cases have left in their folders into the database.
class Gatherer {
public:
    // Takes what the database and the folders have already, as far as it is still what the study asks for.
    // With `again` cases that have not finished are missing.
    Gatherer(CaseRunner& runner, const Context& context, bool again);

    const CaseStates& states() const { return states_; }
    std::size_t other_input() const { return other_input_; }  // cases whose deck or options have changed

    // True when the case has ended, with the input that it has now.
    bool take(std::size_t number);
    void show(StudyProgress& progress) const;
    void commit_now_and_then();
    void finish();  // Throws Failure.
    Database& database() { return database_; }

private:
    void put(const CaseRecord& record);

    CaseRunner& runner_;
    Database database_;
    CaseStates states_;
    std::size_t known_ = 0, other_input_ = 0;
    std::chrono::steady_clock::time_point committed_;
};

// On the cores of this machine. Throws Interrupted.
void run_on_cores(CaseRunner& runner, Gatherer& gatherer, const StudyOptions& options,
                  const Interruption& interruption, const Context& context);

// As job arrays of Slurm. Throws Interrupted; the jobs go on then, and the next invocation follows them.
void run_by_slurm(CaseRunner& runner, Gatherer& gatherer, const StudyOptions& options,
                  const Interruption& interruption, const Context& context);  // slurm_run.cpp

// The cases of a list, a number a line, without a database: what a task of a job array does.
void run_listed_cases(CaseRunner& runner, const StudyOptions& options, const Interruption& interruption);

// Workers that are asked for, or as many as there are cores.
unsigned worker_count(const StudyOptions& options);

}  // namespace brelan::tool
