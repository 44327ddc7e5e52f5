// The small files of a project and of the package, round a deck with a stage, a wall and their outputs:
// defaults, debug switches, the table of units, the edition and the name of the deck. A part that is empty is
// the usual file.
#include <array>

#include "input.h"
#include "run_in_memory.h"
#include "targets.h"

namespace brelan::fuzz {

void project_files(std::string_view input) {
    constexpr std::array<std::string_view, 5> NAMES{
        "..\\DV-BRELAN.dat", "C:\\Vork\\Qx\\Qxdata\\DEBUG\\Brelan_P1.dat", "C:\\Vork\\Qx\\Qxdata\\UNIT.DAT",
        "C:\\Vork\\Qx\\Qxdata\\PROGRAM.DAT", "TFNAME.TMP"};
    const std::vector<std::string> parts = parts_of(input, NAMES.size());
    RunInput run;
    run.files.emplace("..\\deck.dat", example("stage.dat"));
    for (std::size_t k = 0; k < NAMES.size(); ++k)
        if (!parts[k].empty())
            run.files.emplace(NAMES[k], parts[k]);
    run.listings = Listings::kept;
    orderly_run(std::move(run));
}

}  // namespace brelan::fuzz
