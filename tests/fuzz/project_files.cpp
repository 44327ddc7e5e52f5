// The small files of a project and of the package round one deck with a group, its lines, a joint and moves: defaults,
// debug switches, the table of units, and the start-up files.
#include "input.h"
#include "run_in_memory.h"
#include "targets.h"

namespace brelan::fuzz {

namespace {

constexpr std::string_view DECK = R"(2
1 1
0 0 0
4 1 0.5
3 1 0.5
1
Bmesh.dat
out.Mes
1 1
4
0
0
0
1
2
1 1
2
0.5 0.2 0
3.4 2.7 0
)";

}  // namespace

void project_files(std::string_view input) {
    const Header header = take_header(input);
    const std::vector<std::string> parts = parts_of(input, 4);
    const std::string data = "C:\\Vork\\Qx\\Qxdata\\";
    RunInput run;
    run.edition = header.edition();
    run.files = {{"..\\deck.dat", std::string(DECK)},
                 {"..\\DV-BRELAN.dat", parts[0]},
                 {data + "DEBUG\\Brelan_P1.dat", parts[1]},
                 {data + "UNIT.DAT", parts[2]}};
    if (!parts[3].empty())
        run.files.emplace(header.bit_2 ? data + "PROGRAM.DAT" : "TFNAME.TMP", parts[3]);
    run.listings = Listings::kept;
    orderly_run(std::move(run));
}

}  // namespace brelan::fuzz
