#include "run_in_memory.h"

#include <fstream>
#include <iterator>
#include <string>
#include <utility>

#include "input.h"

namespace brelan::fuzz {

namespace {

using Texts = std::map<std::string, std::string>;

// All five templates are a quarter of a megabyte to be copied for each run.
Texts read_package() {
    Texts texts;
    for (const std::string name :
         {"DV-BRELAN.dat", "UNIT.DAT", "Slope\\L_2.0.Mes", "Slope_TH\\L_2.0.Mes"}) {
        std::string path = std::string(PACKAGE_DATA) + "/" + name;
        for (char& c : path)
            c = c == '\\' ? '/' : c;
        std::ifstream file(path, std::ios::binary);
        texts["C:\\Vork\\Qx\\Qxdata\\" + name] = std::string((std::istreambuf_iterator<char>(file)), {});
    }
    return texts;
}

const Texts& package() {
    static const Texts texts = read_package();
    return texts;
}

}  // namespace

RunResult orderly_run(RunInput input) {
    input.files.insert(package().begin(), package().end());
    RunResult result = run_deck(input);
    const RunEnd& end = result.end;
    require(end.status == STATUS_FINISHED || end.status == STATUS_STOPPED || end.status == STATUS_FAILED,
            "exit status " + std::to_string(end.status));
    require((end.status == STATUS_FINISHED) == end.text.empty(), "a run tells what ended it: " + end.text);
    require(end.text.find("the run cannot go on") == std::string::npos, end.text);
    return result;
}

}  // namespace brelan::fuzz
