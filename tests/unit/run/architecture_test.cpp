// Holds the #include lines of src/ against the storeys that docs/architecture.md draws.
#include <gtest/gtest.h>

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

const fs::path SOURCES = fs::path(BRELAN_SOURCE_DIR) / "src";
const fs::path PICTURE = fs::path(BRELAN_SOURCE_DIR) / "docs" / "architecture.md";

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

// The first directory of a path below src/, "main" for a file that stands in src/ itself.
std::string storey_of(const std::string& path) {
    const std::size_t slash = path.find('/');
    return slash == std::string::npos ? "main" : path.substr(0, slash);
}

bool may_include(const Storeys& drawn, const std::string& file, const std::string& header) {
    const auto own = drawn.find(storey_of(file));
    return own != drawn.end() && (storey_of(header) == own->first || own->second.contains(storey_of(header)));
}

struct Source {
    std::string path;  // below src/
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
        for (const fs::directory_entry& entry : fs::recursive_directory_iterator(SOURCES)) {
            if (!entry.is_regular_file())
                continue;
            std::ifstream file(entry.path());
            found.push_back(read_source(entry.path().lexically_relative(SOURCES).generic_string(), file));
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
                << "src/" << source.path << " includes " << header << ": no arrow leads there";
}

TEST(Architecture, IncludesFilesThatAreThere) {
    for (const Source& source : sources())
        for (const std::string& header : source.headers)
            EXPECT_TRUE(fs::exists(SOURCES / header)) << "src/" << source.path << " includes " << header;
}

TEST(Architecture, HasNoFileThatIsTwoStages) {
    for (const Source& source : sources())
        EXPECT_LE(source.lines, LONGEST_SOURCE) << "src/" << source.path;
}

TEST(Architecture, FilesAreFound) {
    EXPECT_GT(sources().size(), 40U);
    std::size_t headers = 0;
    for (const Source& source : sources())
        headers += source.headers.size();
    EXPECT_GT(headers, 100U);
}

// --- the picture -------------------------------------------------------------------------------------------

TEST(ArchitecturePicture, NamesEveryDirectory) {
    for (const Source& source : sources())
        EXPECT_TRUE(storeys().contains(storey_of(source.path))) << "src/" << source.path;
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

TEST(ArchitecturePicture, KeepsChannelBelowEverything) {
    ASSERT_TRUE(storeys().contains("channel"));
    EXPECT_TRUE(storeys().at("channel").empty());
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
            "top: middle channel\n"
            "middle: channel\n"
            "channel:\n"
            "```\n"
            "top: elsewhere\n");
        return read_storeys(page);
    }
};

TEST_F(ArchitectureCheck, ReadsTheMarkedBlockOnly) {
    const Storeys drawn = picture();
    EXPECT_EQ(drawn.size(), 4U);
    EXPECT_EQ(drawn.at("top"), (std::set<std::string>{"channel", "middle"}));
    EXPECT_TRUE(drawn.at("channel").empty());
}

TEST_F(ArchitectureCheck, LetsIncludesGoDownwards) {
    EXPECT_TRUE(may_include(picture(), "main.cpp", "top/a.h"));
    EXPECT_TRUE(may_include(picture(), "top/a.cpp", "top/b.h"));
    EXPECT_TRUE(may_include(picture(), "top/a.cpp", "middle/b.h"));
    EXPECT_TRUE(may_include(picture(), "channel/a.cpp", "channel/b.h"));
}

TEST_F(ArchitectureCheck, FindsIncludesThatGoUpwardsOrPastAStorey) {
    EXPECT_FALSE(may_include(picture(), "middle/a.cpp", "top/b.h"));
    EXPECT_FALSE(may_include(picture(), "channel/a.cpp", "middle/b.h"));
    EXPECT_FALSE(may_include(picture(), "main.cpp", "middle/b.h"));
    EXPECT_FALSE(may_include(picture(), "unknown/a.cpp", "channel/b.h"));
    EXPECT_FALSE(may_include(picture(), "middle/a.cpp", "unknown/b.h"));
}

TEST_F(ArchitectureCheck, ReadsTheIncludesOfAFile) {
    std::istringstream file(
        "#pragma once\n"
        "#include <vector>\n"
        "  #include \"mesh/tables.h\"\n"
        "// #include \"none/none.h\"\n"
        "#include \"channel/layout.h\"  // layouts\n");
    const Source source = read_source("mesh/a.h", file);
    EXPECT_EQ(source.headers, (std::vector<std::string>{"mesh/tables.h", "channel/layout.h"}));
    EXPECT_EQ(source.lines, 5);
}

}  // namespace
}  // namespace brelan::test
