#include "run_in_memory.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <map>
#include <string>
#include <string_view>
#include <utility>

#include "input.h"

namespace brelan::fuzz {

namespace {

using Texts = std::map<std::string, std::string>;

std::string text_of(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    require(file.is_open(), "no file " + path);
    return {std::istreambuf_iterator<char>(file), {}};
}

// All ten templates would be half a megabyte to be copied for each run.
Texts read_package() {
    Texts texts;
    for (const std::string name : {"DV-BRELAN.dat", "UNIT.DAT", "Slope\\L_2.0.Mes", "Slope_TH\\L_2.0.Mes"}) {
        std::string path = name;
        std::replace(path.begin(), path.end(), '\\', '/');
        texts["C:\\Vork\\Qx\\Qxdata\\" + name] = text_of(BRELAN_SOURCE_DIR "/data/Vork/Qx/Qxdata/" + path);
    }
    return texts;
}

}  // namespace

RunResult orderly_run(RunInput input) {
    static const Texts package = read_package();
    input.files.insert(package.begin(), package.end());
    RunResult result = run_deck(input);
    const RunEnd& end = result.end;
    require(end.status == STATUS_FINISHED || end.status == STATUS_STOPPED || end.status == STATUS_FAILED,
            "exit status " + std::to_string(end.status));
    require((end.status == STATUS_FINISHED) == end.text.empty(), "a run tells what ended it: " + end.text);
    // A fuzzer that has seen these words makes file names of them, which messages begin with as well.
    constexpr std::string_view UNKNOWN = "the run cannot go on: ";
    const bool is_of_input = std::any_of(input.files.begin(), input.files.end(), [&](const auto& file) {
        return file.second.find(UNKNOWN.substr(0, UNKNOWN.find(':'))) != std::string::npos;
    });
    require(is_of_input || !end.text.starts_with(UNKNOWN), end.text);
    return result;
}

const std::string& example(const std::string& name) {
    static const Texts texts{{"stage.dat", text_of(BRELAN_SOURCE_DIR "/examples/stage.dat")}};
    return texts.at(name);
}

}  // namespace brelan::fuzz
