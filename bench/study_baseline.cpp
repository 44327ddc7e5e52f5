// The decks of a study run one after the other in this process, with their decks and meshes written: what a
// study costs above it is measured against this (study_bench.py).
//
//   study_baseline BRELAN STUDY_DIRECTORY DECK FIRST LAST OUTPUT
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>

#include "cli/input_file.h"
#include "commands/memory_run.h"
#include "study/case_record.h"

using namespace brelan;
using namespace brelan::tool;

namespace {

void write_plainly(const std::filesystem::path& path, std::string_view text) {
    std::FILE* file = std::fopen(path.c_str(), "wb");
    if (file == nullptr || std::fwrite(text.data(), 1, text.size(), file) != text.size() ||
        std::fclose(file) != 0)
        std::exit(2);
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 7)
        return 2;
    const std::filesystem::path study = argv[2], output = argv[6];
    const TextsByName data = package_data(argv[1], LayoutKind::displacement);
    const std::size_t last = std::stoul(argv[5]);
    for (std::size_t number = std::stoul(argv[4]); number <= last; ++number) {
        const std::filesystem::path from = study / CASES / folder_of_case(number);
        const std::filesystem::path to = output / folder_of_case(number);
        std::filesystem::create_directories(to);
        const NotedDeck deck =
            read_deck({argv[3], read_file(from / argv[3]), false}, LayoutKind::displacement);
        const RunResult result = run_deck(run_input(deck, {}, {from, {}}, data));
        write_plainly(to / argv[3], deck.text);
        if (result.files != nullptr && result.files->contains(result.mesh))
            write_plainly(to / name_of_result(result), result.files->text(result.mesh));
    }
    return 0;
}
