// Studies of many decks.
#include "bindings.h"
#include "commands/commands.h"
#include "study/database.h"
#include "study/study_file.h"

namespace brelan::python {

namespace py = pybind11;

void bind_study(py::module_& module) {
    // Runs what is missing; `place` is near the data of runs. An interruption comes again when it returns.
    module.def("run_study", [](const std::string& file, const std::string& place, unsigned jobs, bool again) {
        const py::gil_scoped_release unlocked;
        return reported(file, [&] {
            tool::StudyOptions options;
            options.words = {"run", file};
            options.jobs = jobs;
            options.again = again;
            return tool::study(options, {true, place});
        });
    });
    module.def("results_of_study", [](const std::string& file) {
        return reported(file,
                        [&] { return (tool::read_study_file(file).directory / tool::DATABASE).string(); });
    });
}

}  // namespace brelan::python
