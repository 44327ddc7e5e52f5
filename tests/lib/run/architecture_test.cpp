// Holds the #include lines of all trees against the storeys that docs/architecture.md draws.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <vector>

namespace brelan::test {
namespace {

namespace fs = std::filesystem;

constexpr int LONGEST_SOURCE = 400;  // lines: a longer file is two stages

const fs::path ROOT = BRELAN_SOURCE_DIR;
const std::vector<std::string> TREES = {"lib", "batch", "brelan", "python"};
const fs::path PICTURE = ROOT / "docs" / "architecture.md";

// By storey, the storeys below that it may include.
using Storeys = std::map<std::string, std::set<std::string>>;

// The lines "storey: storeys that it uses" of the block that is marked as "storeys".
Storeys read_storeys(std::istream& page) {
    Storeys storeys;
    bool inside = false;
    std::string line;
    while (std::getline(page, line)) {
        if (line.starts_with("```")) {
            inside = !inside && line == "```storeys";
            continue;
        }
        const std::size_t colon = line.find(':');
        if (!inside || colon == std::string::npos)
            continue;
        const std::string name = line.substr(0, colon);
        std::istringstream rest(line.substr(colon + 1));
        std::set<std::string>& words = storeys[name];
        for (std::string word; rest >> word;)
            words.insert(word);
    }
    return storeys;
}

const Storeys& storeys() {
    static const Storeys drawn = [] {
        std::ifstream page(PICTURE);
        return read_storeys(page);
    }();
    return drawn;
}

// The storey of "lib/mesh/table.h" is "mesh"; files that stand in a tree itself are a storey of its name.
std::string storey_of(const std::string& path) {
    const std::size_t tree = path.find('/');
    const std::size_t storey = path.find('/', tree + 1);
    return storey == std::string::npos ? path.substr(0, tree) : path.substr(tree + 1, storey - tree - 1);
}

// An include names a storey and a file of it; one that names a file alone stays in its storey.
bool may_include(const Storeys& drawn, const std::string& file, const std::string& header) {
    const auto own = drawn.find(storey_of(file));
    const std::size_t slash = header.find('/');
    if (own == drawn.end() || slash == std::string::npos)
        return own != drawn.end();
    const std::string storey = header.substr(0, slash);
    return storey == own->first || own->second.contains(storey);
}

bool is_there(const std::string& file, const std::string& header) {
    if (header.find('/') == std::string::npos)
        return fs::exists((ROOT / file).parent_path() / header);
    return std::any_of(TREES.begin(), TREES.end(),
                       [&](const std::string& tree) { return fs::exists(ROOT / tree / header); });
}

struct Source {
    std::string path;  // with the tree that it stands in
    std::vector<std::string> headers;
    int lines = 0;
};

Source read_source(const std::string& path, std::istream& file) {
    Source source{path, {}, 0};
    std::string line;
    for (; std::getline(file, line); ++source.lines) {
        std::istringstream words(line);
        std::string directive;
        std::string header;
        words >> directive >> header;
        if (directive == "#include" && header.size() > 2 && header.front() == '"' && header.back() == '"')
            source.headers.push_back(header.substr(1, header.size() - 2));
    }
    return source;
}

const std::vector<Source>& sources() {
    static const std::vector<Source> all = [] {
        std::vector<Source> found;
        for (const std::string& tree : TREES) {
            for (const fs::directory_entry& entry : fs::recursive_directory_iterator(ROOT / tree)) {
                const std::string path = entry.path().lexically_relative(ROOT).generic_string();
                if (!path.ends_with(".cpp") && !path.ends_with(".h"))
                    continue;
                std::ifstream file(entry.path());
                found.push_back(read_source(path, file));
            }
        }
        return found;
    }();
    return all;
}

// --- the sources -------------------------------------------------------------------------------------------

TEST(Architecture, IncludesOnlyWhatThePictureDraws) {
    for (const Source& source : sources())
        for (const std::string& header : source.headers)
            EXPECT_TRUE(may_include(storeys(), source.path, header))
                << source.path << " includes " << header << ": no arrow leads there";
}

TEST(Architecture, IncludesFilesThatAreThere) {
    for (const Source& source : sources())
        for (const std::string& header : source.headers)
            EXPECT_TRUE(is_there(source.path, header)) << source.path << " includes " << header;
}

TEST(Architecture, HasNoFileThatIsTwoStages) {
    for (const Source& source : sources())
        EXPECT_LE(source.lines, LONGEST_SOURCE) << source.path;
}

TEST(Architecture, FilesAreFound) {
    EXPECT_GT(sources().size(), 200U);
    std::size_t headers = 0;
    for (const Source& source : sources())
        headers += source.headers.size();
    EXPECT_GT(headers, 500U);
}

// --- the picture -------------------------------------------------------------------------------------------

TEST(ArchitecturePicture, NamesEveryDirectory) {
    for (const Source& source : sources())
        EXPECT_TRUE(storeys().contains(storey_of(source.path))) << source.path;
}

TEST(ArchitecturePicture, DrawsArrowsToItsOwnStoreysOnly) {
    EXPECT_FALSE(storeys().empty());
    for (const auto& [storey, below] : storeys())
        for (const std::string& name : below)
            EXPECT_TRUE(storeys().contains(name)) << storey << ": " << name;
}

// Takes away, again and again, the storeys that use none that is left.
TEST(ArchitecturePicture, HasNoCircle) {
    auto left = storeys();
    for (bool found = true; found;) {
        found = false;
        for (const auto& [storey, below] : left) {
            bool stands_alone = true;
            for (const std::string& name : below)
                stands_alone = stands_alone && !left.contains(name);
            if (stands_alone) {
                left.erase(storey);
                found = true;
                break;
            }
        }
    }
    for (const auto& [storey, below] : left)
        ADD_FAILURE() << storey << " is part of a circle or stands over one";
}

TEST(ArchitecturePicture, KeepsTextBelowEverything) {
    ASSERT_TRUE(storeys().contains("text"));
    EXPECT_TRUE(storeys().at("text").empty());
}

// Who uses whom stays little: of all pairs of storeys fewer than half are tied.
TEST(ArchitecturePicture, TiesFewerThanHalfOfThePairs) {
    std::size_t tied = 0;
    for (const auto& [storey, below] : storeys())
        tied += below.size();
    const std::size_t pairs = storeys().size() * (storeys().size() - 1) / 2;
    EXPECT_LT(2 * tied, pairs) << tied << " of " << pairs;
}

// An arrow that no include needs is taken out of the picture.
TEST(ArchitecturePicture, DrawsNoArrowThatNobodyUses) {
    Storeys used;
    for (const Source& source : sources())
        for (const std::string& header : source.headers)
            used[storey_of(source.path)].insert(header.substr(0, header.find('/')));
    for (const auto& [storey, below] : storeys())
        for (const std::string& name : below)
            EXPECT_TRUE(used[storey].contains(name)) << storey << ": " << name;
}

// --- the check itself --------------------------------------------------------------------------------------

class ArchitectureCheck : public ::testing::Test {
protected:
    static Storeys picture() {
        std::istringstream page(
            "a: text outside the block\n"
            "```\na: in a drawing\n```\n"
            "```storeys\n"
            "main: top\n"
            "top: middle text\n"
            "middle: text\n"
            "text:\n"
            "```\n"
            "top: elsewhere\n");
        return read_storeys(page);
    }
};

TEST_F(ArchitectureCheck, ReadsTheMarkedBlockOnly) {
    const Storeys drawn = picture();
    EXPECT_EQ(drawn.size(), 4U);
    EXPECT_EQ(drawn.at("top"), (std::set<std::string>{"middle", "text"}));
    EXPECT_TRUE(drawn.at("text").empty());
}

TEST_F(ArchitectureCheck, LetsIncludesGoDownwards) {
    EXPECT_TRUE(may_include(picture(), "main/main.cpp", "top/a.h"));
    EXPECT_TRUE(may_include(picture(), "lib/top/a.cpp", "top/b.h"));
    EXPECT_TRUE(may_include(picture(), "lib/top/a.cpp", "middle/b.h"));
    EXPECT_TRUE(may_include(picture(), "lib/text/a.cpp", "text/b.h"));
}

TEST_F(ArchitectureCheck, FindsIncludesThatGoUpwardsOrPastAStorey) {
    EXPECT_FALSE(may_include(picture(), "lib/middle/a.cpp", "top/b.h"));
    EXPECT_FALSE(may_include(picture(), "lib/text/a.cpp", "middle/b.h"));
    EXPECT_FALSE(may_include(picture(), "main/main.cpp", "middle/b.h"));
    EXPECT_FALSE(may_include(picture(), "lib/unknown/a.cpp", "text/b.h"));
    EXPECT_FALSE(may_include(picture(), "lib/middle/a.cpp", "unknown/b.h"));
}

TEST_F(ArchitectureCheck, ReadsTheIncludesOfAFile) {
    std::istringstream file(
        "#pragma once\n"
        "#include <vector>\n"
        "  #include \"mesh/tables.h\"\n"
        "// #include \"none/none.h\"\n"
        "#include \"text/layout.h\"  // layouts\n");
    const Source source = read_source("lib/mesh/a.h", file);
    EXPECT_EQ(source.headers, (std::vector<std::string>{"mesh/tables.h", "text/layout.h"}));
    EXPECT_EQ(source.lines, 5);
}

}  // namespace
}  // namespace brelan::test
