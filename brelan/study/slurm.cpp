#include "study/slurm.h"

#include <fmt/core.h>

#include <charconv>

#include "cli/exit_status.h"
#include "cli/words.h"
#include "study/program_output.h"

namespace brelan::tool {

namespace {

std::string first_line(const std::string& text) {
    const std::size_t from = std::min(text.find_first_not_of(" \n"), text.size());
    return text.substr(from, text.find('\n', from) - from);
}

}  // namespace

std::string submit_array(const SlurmWishes& wishes, std::size_t tasks, const std::filesystem::path& script,
                         const std::filesystem::path& logs) {
    std::vector<std::string> words{"sbatch", "--parsable", fmt::format("--array=1-{}", tasks),
                                   "--job-name=brelan-study", "--output=" + (logs / "%a.log").string()};
    if (!wishes.partition.empty())
        words.push_back("--partition=" + wishes.partition);
    if (!wishes.account.empty())
        words.push_back("--account=" + wishes.account);
    words.insert(words.end(), wishes.options.begin(), wishes.options.end());
    words.push_back(script.string());
    const ProgramOutput said = output_of_program(words);
    if (said.status != 0)
        throw Failure(fmt::format("sbatch: {}", first_line(said.err)));
    const std::string job = first_line(said.out);
    return job.substr(0, job.find(';'));  // "123;cluster"
}

std::set<std::size_t> living_tasks(const std::string& job) {
    const ProgramOutput said =
        output_of_program({"squeue", "--noheader", "--array", "--jobs=" + job, "--format=%K %T"});
    // A job that has ended some time ago is not known any more.
    if (said.status != 0 && said.err.find("Invalid job id") != std::string::npos)
        return {};
    if (said.status != 0)
        throw Failure(fmt::format("squeue: {}", first_line(said.err)));
    static const std::set<std::string_view> ENDED{"COMPLETED",  "CANCELLED",     "FAILED",    "TIMEOUT",
                                                  "NODE_FAIL",  "PREEMPTED",     "BOOT_FAIL", "DEADLINE",
                                                  "COMPLETING", "OUT_OF_MEMORY", "REVOKED"};
    std::set<std::size_t> tasks;
    for (const std::string_view line : lines_of(said.out)) {
        std::size_t task = 0;
        const auto [end, error] = std::from_chars(line.data(), line.data() + line.size(), task);
        if (error != std::errc{})
            continue;
        std::string_view state = line.substr(static_cast<std::size_t>(end - line.data()));
        state.remove_prefix(std::min(state.find_first_not_of(' '), state.size()));
        if (!ENDED.contains(state))
            tasks.insert(task);
    }
    return tasks;
}

std::string state_of_task(const std::string& job, std::size_t task) {
    const ProgramOutput said = output_of_program({"sacct", "--noheader", "--parsable2", "--allocations",
                                                  "--format=State", fmt::format("--jobs={}_{}", job, task)});
    return said.status == 0 ? first_line(said.out) : std::string();
}

void cancel_job(const std::string& job) {
    output_of_program({"scancel", job});
}

}  // namespace brelan::tool
