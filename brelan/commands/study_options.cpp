// What brelan study takes.
#include "commands/command_parser.h"
#include "commands/commands.h"
#include "commands/examples.h"

namespace brelan::tool {

void add_study(Parser& parser) {
    auto [command, options] = parser.add("study", "Run a deck for many values, and report on all of them",
                                         EXAMPLES_OF_STUDY, study);
    command
        ->add_option("STUDY", options->words,
                     "The study's file; in front of it new, report, csv or status for another work")
        ->required()
        ->expected(1, 2)
        ->type_name("");
    command->add_option("-j,--jobs", options->jobs, "Cases at a time (as many as there are cores)")
        ->type_name("N")
        ->check(CLI::Range(1, 4096));
    command->add_flag("--again", options->again, "Run those that have not finished once more");
    command->add_option("-o,--output", options->output, "csv: file to be written; - is standard output")
        ->type_name("FILE");
    command->add_flag("--no-pictures", options->no_pictures, "report: without new pictures");
    command->add_flag("--force", options->force, "new: replace files that are there");
    CLI::Option* engine = command->add_option("--engine", options->engine, "local (default) or slurm")
                              ->type_name("ENGINE")
                              ->check(CLI::IsMember({"local", "slurm"}));
    command->add_option("--chunk", options->chunk, "slurm: cases of a task (100)")
        ->type_name("N")
        ->check(CLI::Range(1, 1'000'000));
    command->add_option("--partition", options->partition, "slurm: where the jobs run")->type_name("NAME");
    command->add_option("--account", options->account, "slurm: whom they are charged to")->type_name("NAME");
    command->add_option("--sbatch", options->slurm, "slurm: an option for sbatch, behind =")
        ->type_name("OPTION")
        ->allow_extra_args(false);
    for (const char* name : {"--chunk", "--partition", "--account", "--sbatch"})
        command->get_option(name)->needs(engine);
    command->add_option("--cases", options->cases)->group("");  // of a task
}

}  // namespace brelan::tool
