// Projects of the tests, run in memory.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <string>

#include "run/run_deck.h"
#include "support/project.h"

namespace brelan::test {

// The files of a project by their names as a deck has them.
inline std::map<std::string, std::string> files_of(const Project& project) {
    namespace fs = std::filesystem;
    std::map<std::string, std::string> files;
    const auto add = [&](const fs::path& directory, const std::string& prefix, const fs::path& apart) {
        for (fs::recursive_directory_iterator it(directory), end; it != end; ++it) {
            if (it->path() == apart)
                it.disable_recursion_pending();
            else if (it->is_regular_file())
                files[prefix + it->path().lexically_relative(directory).generic_string()] =
                    read_text(it->path());
        }
    };
    const fs::path work = project.work_file("").parent_path();
    add(project.drive(), "C:\\", {});
    add(work.parent_path(), "..\\", work);
    add(work, "", {});
    return files;
}

inline RunInput input_of(const Project& project, Listings listings = Listings::kept) {
    RunInput input;
    input.files = files_of(project);
    input.listings = listings;
    return input;
}

// The package's decks, templates and defaults in a project.
inline void lay_out(const Project& project, Kind kind, std::string_view deck) {
    namespace fs = std::filesystem;
    const fs::path source = BRELAN_SOURCE_DIR, data = source / "data" / "Vork" / "Qx" / "Qxdata";
    const bool scalar = kind == Kind::temperature || kind == Kind::head;
    for (const char* file : {"DV-BRELAN.dat", "UNIT.DAT"})
        project.write_data(file, read_text(data / file));
    for (const auto& entry : fs::directory_iterator(data / (scalar ? "Slope_TH" : "Slope")))
        project.write_data("Slope/" + entry.path().filename().string(), read_text(entry.path()));
    project.deck(deck);
}

inline std::string example(std::string_view name) {
    return read_text(std::filesystem::path(BRELAN_SOURCE_DIR) / "examples" / name);
}

}  // namespace brelan::test
