// Job arrays of Slurm, by its own commands: sbatch submits, squeue follows, sacct tells how a task ended.
#pragma once

#include <cstddef>
#include <filesystem>
#include <set>
#include <string>
#include <vector>

namespace brelan::tool {

struct SlurmWishes {
    std::string partition, account;    // empty: the scheduler's own choice
    std::vector<std::string> options;  // of sbatch, as they are: "--time=2:00:00"
};

// Submits an array of tasks 1 to `tasks`, each of which runs the script. Returns the job's number. Throws
// Failure with what sbatch says.
std::string submit_array(const SlurmWishes& wishes, std::size_t tasks, const std::filesystem::path& script,
                         const std::filesystem::path& logs);

// The tasks of a job that wait or run. Throws Failure where squeue does not answer.
std::set<std::size_t> living_tasks(const std::string& job);

// "NODE_FAIL" and its like where sacct knows it; empty where it does not.
std::string state_of_task(const std::string& job, std::size_t task);

void cancel_job(const std::string& job);

}  // namespace brelan::tool
