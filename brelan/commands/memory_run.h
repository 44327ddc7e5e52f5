// What a run in memory begins with: its deck, the meshes that it reads, and the package's data.
#pragma once

#include <filesystem>
#include <map>
#include <string>

#include "commands/batch/edition.h"
#include "commands/checking/doubts.h"
#include "run/run_deck.h"

namespace brelan::tool {

// Texts by their names in a run.
using TextsByName = std::map<std::string, std::string>;

// The deck's own name in a run in memory.
inline constexpr std::string_view MEMORY_DECK = "..\\deck.dat";

// Defaults, units and slope templates of a kind from the package's masters, which lie near the program.
// Throws Failure where they are not there.
TextsByName package_data(const std::filesystem::path& program, LayoutKind kind);

// The deck, the meshes of its place by the names on its cards, what the project has of its own, and what the
// deck can use of the data.
RunInput run_input(const NotedDeck& deck, const Edition& edition, const DeckPlace& place,
                   const TextsByName& data);

// The name of a file of the project as a run has it: "X" is "..\X".
std::string name_in_run(std::string_view name);

// The name of a result for a person: "..\X" is "X".
std::string name_of_result(const RunResult& result);

}  // namespace brelan::tool
