// Faults that meet a run with groups when it lines up and writes its outputs: the unit table, the switch of
// the line-up, places that cannot be written. Each ends with one message, and what it has not come to stays
// as it was.

#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <ostream>

#include "batch/group_deck.h"

namespace brelan::test {
namespace {

namespace fs = std::filesystem;

const std::string YESTERDAY = "a result of yesterday\n";

struct Fault {
    std::string name;
    std::function<void(const Project&)> set_up;
    Lines fragments;  // what the message must hold
    Lines kept = {};  // results of yesterday that must still be there
    Kind kind = Kind::displacement;
    bool unprivileged = false;
};

void PrintTo(const Fault& fault, std::ostream* stream) {
    *stream << fault.name;
}

// An activity for beams, trusses and continuum, in a kind that has lines in the boundary file.
std::vector<GroupCards> groups() {
    GroupCards wall{.title = "Wall",
                    .MTYPE = 2,
                    .material = "2 6",
                    .line = open_line({{1, 0}, {1, 2}}),
                    .switches = {1, 1, 1, 1, 1, 1, 1}};
    wall.pairs[3] = "1 0";
    GroupCards drain{.title = "Drain", .MTYPE = 2, .material = "3 6", .line = open_line({{2, 0}, {2, 2}})};
    GroupCards region{.title = "Region",
                      .MTYPE = 3,
                      .material = "5 3 0 0",
                      .line = outline({{2, 0}, {4, 0}, {4, 2}, {2, 2}})};
    region.pairs[1] = "2 0";
    return {wall, drain, region};
}

const Lines ALL_RESULTS{"Group.Pos", "Group.Man", "MatAD.Man"};

// A project whose run would finish, with results of yesterday.
struct Prepared : GroupProject {
    explicit Prepared(Kind kind) : GroupProject(kind, grid_mesh(kind, 4, 2), groups()) {
        project.write("DV-BRELAN.dat", project.read_data("DV-BRELAN.dat"));
        for (const std::string& name : ALL_RESULTS)
            project.write(name, YESTERDAY);
        for (const char* name : {"out.Mes", "Boundary.Man"})
            project.write(name, YESTERDAY);
    }
};

using SetUp = std::function<void(const Project&)>;

SetUp units(const std::string& text) {
    return [text](const Project& project) { project.write_data("UNIT.DAT", text); };
}

SetUp switch_file(const std::string& text) {
    return [text](const Project& project) { project.write_work("LineUp.dat", text); };
}

// Something else in the place of a result.
SetUp directory_for(const std::string& name) {
    return [name](const Project& project) {
        fs::remove(project.file(name));
        fs::create_directory(project.file(name));
    };
}
SetUp full_disk_for(const std::string& name) {
    return [name](const Project& project) {
        fs::remove(project.file(name));
        fs::create_symlink("/dev/full", project.file(name));
    };
}
SetUp read_only(const std::string& name) {
    return [name](const Project& project) { fs::permissions(project.file(name), fs::perms::owner_read); };
}

std::vector<Fault> unit_rows() {
    const std::string head = "*\n*\n*\n*\nTitle\n*\n*\n*\n*\n*\n*\n*\n*\n*\n*\n";
    std::vector<Fault> rows{
        {"UnitsMissing", [](const Project& p) { fs::remove(p.data_file("UNIT.DAT")); }, {"UNIT.DAT"}},
        {"UnitsAreADirectory",
         [](const Project& p) {
             fs::remove(p.data_file("UNIT.DAT"));
             fs::create_directory(p.data_file("UNIT.DAT"));
         },
         {"UNIT.DAT"}},
        {"UnitsEmpty", units(""), {"UNIT.DAT, line 1: "}},
        {"UnitsEndBeforeTheTitle", units("*\n*\n*\n*\n"), {"UNIT.DAT, line 5: "}},
        {"UnitsEndBehindTheTitle", units("*\n*\n*\n*\nTitle\n"), {"UNIT.DAT, line 6: "}},
        {"UnitsEndBeforeTheCodes", units(head), {"UNIT.DAT, line 16: "}},
        {"UnitsOfFourCodes", units(head + "1 1 1 1\n"), {"UNIT.DAT, line 17: "}},
        {"UnitsByName", units(head + "KN m day J K\n"), {"UNIT.DAT, line 16: "}},
        {"UnitsOfStars", units(head + "1 1 ***** 1 1\n"), {"UNIT.DAT, line 16: "}},
        {"UnitsOfZeroBytes", units(std::string(5000, '\0')), {"UNIT.DAT"}},
        {"UnitsUnreadable",
         [](const Project& p) { fs::permissions(p.data_file("UNIT.DAT"), fs::perms::none); },
         {"UNIT.DAT"},
         {},
         Kind::displacement,
         true},
    };
    for (Fault& row : rows)
        row.kept = ALL_RESULTS;
    return rows;
}

std::vector<Fault> line_up_rows() {
    std::vector<Fault> rows{
        {"SwitchEmpty", switch_file(""), {"LineUp.dat, line 1: "}},
        {"SwitchBlank", switch_file("  \n\n"), {"LineUp.dat"}},
        {"SwitchIsAWord", switch_file("on\n"), {"LineUp.dat, line 1: "}},
        {"SwitchIsAReal", switch_file("1.0\n"), {"LineUp.dat, line 1: "}},
        {"SwitchBeyondItsType", switch_file("99999999999\n"), {"LineUp.dat, line 1: "}},
        {"SwitchIsADirectory",
         [](const Project& p) { fs::create_directory(p.work_file("LineUp.dat")); },
         {"LineUp.dat"}},
        {"SwitchUnreadable",
         [](const Project& p) {
             p.write_work("LineUp.dat", "1\n");
             fs::permissions(p.work_file("LineUp.dat"), fs::perms::none);
         },
         {"LineUp.dat"},
         {},
         Kind::displacement,
         true},
        {"SwitchThatCannotBeTurnedOff",
         [](const Project& p) {
             p.write_work("LineUp.dat", "1\n");
             fs::permissions(p.work_file("LineUp.dat"), fs::perms::owner_read);
         },
         {"LineUp.dat"},
         {},
         Kind::displacement,
         true},
    };
    for (Fault& row : rows) {
        row.kept = ALL_RESULTS;
        row.kept.push_back("out.Mes");
    }
    return rows;
}

std::vector<Fault> place_rows() {
    std::vector<Fault> rows;
    // In the order in which they are written: the results behind a fault stay.
    const Lines order{"MatAD.Man", "Group.Man", "Group.Pos"};
    for (std::size_t i = 0; i < order.size(); ++i) {
        std::string name = order[i];
        name.erase(name.find('.'), 1);
        const Lines kept(order.begin() + static_cast<std::ptrdiff_t>(i) + 1, order.end());
        rows.push_back({name + "IsADirectory", directory_for(order[i]), {order[i]}, kept});
        rows.push_back({name + "HasNoRoom", full_disk_for(order[i]), {order[i]}, kept});
        rows.push_back(
            {name + "IsReadOnly", read_only(order[i]), {order[i]}, kept, Kind::displacement, true});
        // A directory that takes no new file takes no result either: none is begun.
        Lines others = order;
        std::erase(others, order[i]);
        rows.push_back({name + "CannotBeCreated",
                        [file = order[i]](const Project& p) {
                            fs::remove(p.file(file));
                            fs::permissions(p.file(""), fs::perms::owner_read | fs::perms::owner_exec);
                        },
                        {"out.Mes: its directory cannot hold the file that is to take its place"},
                        others,
                        Kind::displacement,
                        true});
    }
    for (const Kind kind : {Kind::temperature, Kind::head}) {
        rows.push_back({"BoundaryIsADirectory" + name_of(kind),
                        directory_for("Boundary.Man"),
                        {"Boundary.Man"},
                        ALL_RESULTS,
                        kind});
        rows.push_back({"BoundaryHasNoRoom" + name_of(kind),
                        full_disk_for("Boundary.Man"),
                        {"Boundary.Man"},
                        ALL_RESULTS,
                        kind});
    }
    for (const std::string name : {"TEMPMESH.TMP", "GROUP.TMP"})
        rows.push_back({"WorkFileIsADirectory" + name.substr(0, 5),
                        [name](const Project& p) { fs::create_directory(p.work_file(name)); },
                        {name},
                        ALL_RESULTS});
    rows.push_back({"CopyOfTheMeshHasNoRoom",
                    [](const Project& p) { fs::create_symlink("/dev/full", p.work_file("TEMPMESH.TMP")); },
                    {"TEMPMESH.TMP"},
                    ALL_RESULTS});
    rows.push_back({"MaterialBelow0",
                    [](const Project& p) {
                        Mesh mesh = grid_mesh(Kind::displacement, 4, 2);
                        mesh.continuum[2].material = -3;
                        p.write("mesh.Mes", mesh.text());
                        std::vector<GroupCards> cards = groups();
                        cards[2].material = "0 3 0 0";
                        p.deck(group_deck(cards));
                    },
                    {"deck.dat, line ", "Card 3.3.5.4.1", "group 3", "element 3", "material -3"},
                    ALL_RESULTS});
    rows.back().kept.push_back("out.Mes");
    return rows;
}

std::vector<Fault> all_rows() {
    std::vector<Fault> rows = unit_rows();
    for (const auto& more : {line_up_rows(), place_rows()})
        rows.insert(rows.end(), more.begin(), more.end());
    return rows;
}

class BadOutputs : public ::testing::TestWithParam<Fault> {};

TEST_P(BadOutputs, EndWithAMessageAndKeepWhatIsNotWritten) {
    const Fault& fault = GetParam();
    const Prepared run(fault.kind);
    const Project& project = run.project;
    fault.set_up(project);
    const std::string mesh = project.read("mesh.Mes"), deck = project.read("deck.dat");
    RunOptions options;
    options.unprivileged = fault.unprivileged;
    expect_failed(project.run("", options), fault.fragments);
    EXPECT_FALSE(project.exists_data("BRELAN2D.DAT"));
    EXPECT_EQ(project.read("mesh.Mes"), mesh);
    EXPECT_EQ(project.read("deck.dat"), deck);
    for (const std::string& name : fault.kept)
        EXPECT_EQ(project.read(name), YESTERDAY) << name;
}

INSTANTIATE_TEST_SUITE_P(Table, BadOutputs, ::testing::ValuesIn(all_rows()),
                         [](const auto& information) { return information.param.name; });

// The table shows something only if the same project without a fault finishes and writes all its results.
TEST(BadOutputsControl, ProjectWithoutAFaultFinishes) {
    for (const Kind kind : ALL_KINDS) {
        const Prepared run(kind);
        run.project.write_work("LineUp.dat", "1\n");
        RunOptions options;
        options.unprivileged = true;
        expect_finished(run.project.run("", options));
        for (const std::string& name : ALL_RESULTS)
            EXPECT_NE(run.project.read(name), YESTERDAY) << name;
        EXPECT_EQ(run.project.read("Boundary.Man") == YESTERDAY,
                  kind == Kind::coupled || kind == Kind::displacement);
    }
}

TEST(BadOutputsControl, UnitCodesOnSeveralLinesAndOddTitlesAreTaken) {
    for (const char* text :
         {"\n\n\n\n\n\n\n\n\n\n\n\n\n\n\n1\n1\n1\n1\n1",
          "\r\n\r\n\r\n\r\n* no comment\r\n\r\n\r\n\r\n\r\n\r\n\r\n\r\n\r\n\r\n\r\n1,1,1,1,1\r\n",
          "a\nb\nc\nd\n\x01\xFF\te\nf\ng\nh\ni\nj\nk\nl\nm\nn\no\n9 9 9 9 9 9 9 9 text\n"}) {
        const Prepared run(Kind::displacement);
        run.project.write_data("UNIT.DAT", text);
        run.run();
    }
}

}  // namespace
}  // namespace brelan::test
