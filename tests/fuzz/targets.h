// What is fuzzed. A target takes any bytes and comes back; it throws std::logic_error where a law of what it
// drives does not hold, and whatever else leaves it is a fault as well. The fuzzers and the test of the kept
// corpus enter here.
#pragma once

#include <array>
#include <string_view>

namespace brelan::fuzz {

void deck_text(std::string_view input);      // kind, deck: through the checker, and as brelan reads it
void whole_run(std::string_view input);      // kind and cut, deck, mesh: a run in memory
void project_files(std::string_view input);  // defaults, debug switches, units, start-up files of a run
void mesh_file(std::string_view input);      // kind or none, .Mes file: read, written and read again
void vtu_file(std::string_view input);       // kind or none, VTU file
void gmsh_file(std::string_view input);      // kind or none, MSH file
void page_of_mesh(std::string_view input);   // kind or none, .Mes file: its page for a browser

struct Target {
    std::string_view name;  // of its fuzzer and of its folder in corpus/
    void (*run)(std::string_view input);
};

inline constexpr std::array<Target, 7> TARGETS{{
    {"deck_text", deck_text},
    {"whole_run", whole_run},
    {"project_files", project_files},
    {"mesh_file", mesh_file},
    {"vtu_file", vtu_file},
    {"gmsh_file", gmsh_file},
    {"page_of_mesh", page_of_mesh},
}};

}  // namespace brelan::fuzz
