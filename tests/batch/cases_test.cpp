// Whole runs as folders: every folder below tests/batch/cases that has no further one is a run, and what it
// leaves must be the files of `expected/`, to the byte. tests/batch/cases/README.md tells what a folder
// holds.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "support/project.h"

namespace brelan::test {
namespace {

namespace fs = std::filesystem;

const fs::path CASES = fs::path(TEST_DATA_DIR) / "batch" / "cases";
constexpr const char* LIST = "files.txt";  // of all that a run adds

// Folders that hold files of a run, not a run.
bool holds_files(const fs::path& folder) {
    const std::string name = folder.filename().string();
    return name == "expected" || name == "data";
}

void find_runs(const fs::path& folder, std::vector<fs::path>& runs) {
    std::vector<fs::path> inner;
    for (const auto& entry : fs::directory_iterator(folder))
        if (entry.is_directory() && !holds_files(entry.path()))
            inner.push_back(entry.path());
    std::sort(inner.begin(), inner.end());
    for (const fs::path& run : inner)
        find_runs(run, runs);
    if (inner.empty())
        runs.push_back(folder);
}

std::vector<fs::path> all_runs() {
    std::vector<fs::path> runs;
    find_runs(CASES, runs);
    return runs;
}

// Files by their names below a part of the folder; those of the folders around it stand for what it has not
// itself.
std::map<std::string, fs::path> files_of(const fs::path& run, const char* part) {
    std::map<std::string, fs::path> files;
    for (fs::path folder = run; folder != CASES; folder = folder.parent_path()) {
        const fs::path from = folder / part;
        if (!fs::exists(from))
            continue;
        for (auto entry = fs::recursive_directory_iterator(from); entry != fs::recursive_directory_iterator();
             ++entry)
            if (entry->is_directory()) {
                if (*part == '\0')
                    entry.disable_recursion_pending();
            } else {
                files.emplace(fs::relative(entry->path(), from).string(), entry->path());
            }
    }
    return files;
}

Kind kind_of(const fs::path& run) {
    for (const Kind kind : ALL_KINDS)
        for (const fs::path& part : fs::relative(run, CASES))
            if (part.string().starts_with(name_of(kind)))
                return kind;
    return Kind::displacement;
}

// Where a file of the list stands in a project.
fs::path place_of(const Project& project, const std::string& name) {
    return name.starts_with("data/") ? project.data_file(name.substr(5)) : project.file(name);
}

// What the run has added, by the names of the list.
std::string added_files(Snapshot left, const Snapshot& before) {
    for (const auto& [path, content] : before)
        left.erase(path);
    std::vector<std::string> names;
    const std::string data = "C/Vork/Qx/Qxdata/", own = "project/";
    for (const auto& [path, content] : left)
        names.push_back(path.starts_with(data)  ? "data/" + path.substr(data.size())
                        : path.starts_with(own) ? path.substr(own.size())
                                                : path);
    std::sort(names.begin(), names.end());
    return text_of(names);
}

class Case : public ::testing::TestWithParam<fs::path> {};

TEST_P(Case, LeavesTheExpectedFiles) {
    const fs::path run = GetParam();
    const auto inputs = files_of(run, ""), data = files_of(run, "data"), expected = files_of(run, "expected");
    ASSERT_TRUE(inputs.contains("about.txt")) << "one line that says what the case shows";
    ASSERT_TRUE(inputs.contains("deck.dat"));
    ASSERT_TRUE(expected.contains(LIST));
    std::istringstream editions(inputs.contains("editions") ? read_text(inputs.at("editions"))
                                                            : std::to_string(edition_of(kind_of(run))));
    for (int edition = 0; editions >> edition;) {
        SCOPED_TRACE("edition " + std::to_string(edition));
        const Project project(edition);
        for (const auto& [name, path] : inputs)
            if (name != "about.txt" && name != "editions")
                project.write(name, read_text(path));
        for (const auto& [name, path] : data)
            project.write_data(name, read_text(path));
        project.deck(read_text(inputs.at("deck.dat")));
        const Snapshot before = project.snapshot();
        expect_finished(project.run());
        EXPECT_EQ(project.changed_since(before), std::vector<std::string>{});
        const std::string added = added_files(project.snapshot(), before);
        for (const auto& [name, path] : expected) {
            const std::string found = name == LIST ? added : read_text(place_of(project, name));
            if (std::getenv("BRELAN_REWRITE") != nullptr)
                std::ofstream(path, std::ios::binary) << found;
            const std::string wanted = read_text(path);
            EXPECT_EQ(first_difference(lines_of(wanted), lines_of(found)), "") << name;
            EXPECT_TRUE(wanted == found) << name << ": the ends of the lines";
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Folders, Case, ::testing::ValuesIn(all_runs()), [](const auto& test) {
    std::string name = fs::relative(test.param, CASES).string();
    std::replace(name.begin(), name.end(), '/', '_');
    return name;
});

}  // namespace
}  // namespace brelan::test
