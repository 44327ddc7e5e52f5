// Base mesh decks that make no mesh, or one that is too large: how the run ends and what it leaves alone.

#include <gtest/gtest.h>

#include <algorithm>

#include "support/mesh.h"
#include "support/project.h"

namespace brelan::test {
namespace {

using Cards = std::vector<std::string>;

// A field of one block.
Cards one_block(const std::string& column, const std::string& row) {
    return {"2", "1 1", "0 0", column, row, "0"};
}

// A project with a base mesh from an earlier run.
void leave_earlier_mesh(const Project& project) {
    project.write("Bmesh.dat", "an earlier base mesh\n");
}

void expect_earlier_mesh(const Project& project) {
    expect_file(project, "Bmesh.dat", {"an earlier base mesh"});
}

TEST(BaseMeshLimits, BlockCountsOutsideOneToAHundredAreRefused) {
    for (const auto& [NBX, NBY] : {std::pair{0, 1}, {1, 0}, {-1, 1}, {101, 1}, {1, 101}, {0, 0}}) {
        const Project project;
        leave_earlier_mesh(project);
        Cards cards{"2", std::to_string(NBX) + " " + std::to_string(NBY), "0 0"};
        for (int row = 0; row < std::max(NBX, 0) + std::max(NBY, 0); ++row)
            cards.emplace_back("1 1 0.5");
        cards.emplace_back("0");
        project.deck(text_of(cards));
        const Snapshot before = project.snapshot();
        expect_failed(project.run(), {"deck.dat", "line 2", "NBX and NBY from 1 to 100"});
        EXPECT_TRUE(project.changed_since(before).empty()) << cards[1];
    }
}

TEST(BaseMeshLimits, MoreRowsThanTheCountsSayAreReportedOnTheCardBehindThem) {
    const Project project;
    leave_earlier_mesh(project);
    project.deck(text_of({"2", "1 1", "0 0", "1 1 0.5", "1 1 0.5", "1 1 0.5", "0"}));
    const RunResult result = project.run();
    EXPECT_EQ(result.status, 1) << result.err;
    EXPECT_EQ(result.out, "300\n");
    EXPECT_EQ(lines_of(project.read_work("T7.TMP")).at(1),
              " Card Group No: 4.5         requires     1 data entry");
    expect_earlier_mesh(project);
}

TEST(BaseMeshLimits, StripsThatCannotBeDividedAreNamedWithTheirRow) {
    // A zero length of elements, an infinite one short of nothing, and one of the wrong sign.
    for (const char* strip : {"4 0 0.5", "4 0 0.4", "4 -1 0.5", "4 -1 0.3", "1E30 1E-30 0.5"}) {
        const Project project;
        leave_earlier_mesh(project);
        project.deck(text_of({"2", "2 1", "0 0", "1 1 0.5", strip, "1 1 0.5", "0"}));
        expect_failed(project.run(), {"Card 4.3", "row 2"});
        expect_earlier_mesh(project);
        project.deck(text_of({"2", "1 2", "0 0", "1 1 0.5", "1 1 0.5", strip, "0"}));
        expect_failed(project.run(), {"Card 4.4", "row 2"});
        expect_earlier_mesh(project);
    }
}

TEST(BaseMeshLimits, AMeshAboveTheWorkSpaceStopsWithItsSizeInTheNodeList) {
    // 2236 by 2236 elements: 1 + 18 + 2 + 44 + 7 * 2237^2 + 3 * 2236^2 + 8 * 2237 + 2 * 2237^2 words.
    for (const Kind kind : ALL_KINDS) {
        const Project project(kind);
        leave_earlier_mesh(project);
        project.write_data("BRELAN2D.DAT", "as an earlier run left it\n");
        project.deck(text_of(one_block("2236 1 0.5", "2236 1 0.5")));
        const RunResult result = project.run();
        EXPECT_EQ(result.status, 1) << name_of(kind);
        EXPECT_EQ(result.out, "100\n");
        EXPECT_EQ(result.err, "");
        expect_work_file(project, "Coord.dat",
                         {" PROGRAM DIMENSION =    60000000", "REQUIRED DIMENSION =    60054570"});
        expect_work_file(project, "Index.dat", {});
        expect_earlier_mesh(project);
        expect_data_file(project, "BRELAN2D.DAT", {"as an earlier run left it"});
        EXPECT_FALSE(project.exists_work("Basic.Tmp")) << name_of(kind);
    }
}

TEST(BaseMeshLimits, TheRequiredSizeIsExactAboveThirtyTwoBits) {
    // 100,000 by 100,000 elements need 120,002,600,082 words, which is too wide for ten columns.
    const Project project;
    leave_earlier_mesh(project);
    project.deck(text_of(one_block("1E5 1 0.5", "1E5 1 0.5")));
    RunResult result = project.run();
    EXPECT_EQ(result.status, 1) << result.err;
    EXPECT_EQ(result.out, "100\n");
    expect_work_file(project, "Coord.dat",
                     {" PROGRAM DIMENSION =    60000000", "REQUIRED DIMENSION =  **********"});
    expect_earlier_mesh(project);

    // 20,000 by 20,000: 1 + 18 + 2 + 44 + 9 * 20001^2 + 3 * 20000^2 + 8 * 20001, above 2^32.
    project.deck(text_of(one_block("2E4 1 0.5", "2E4 1 0.5")));
    result = project.run();
    EXPECT_EQ(result.out, "100\n");
    expect_work_file(project, "Coord.dat",
                     {" PROGRAM DIMENSION =    60000000", "REQUIRED DIMENSION =  4800520082"});
}

TEST(BaseMeshLimits, AMeshBeyondEveryMeasureIsRefusedToo) {
    for (const char* strip : {"1E9 1 0.5", "2E9 1 0.5"}) {
        const Project project;
        leave_earlier_mesh(project);
        project.deck(text_of(one_block(strip, strip)));
        const RunResult result = project.run();
        EXPECT_EQ(result.status, 1) << strip << ", signal " << result.signal << ": " << result.err;
        EXPECT_EQ(result.out, "100\n") << strip;
        expect_earlier_mesh(project);
    }
}

TEST(BaseMeshLimits, ABaseMeshOf99856NodesIsReadBack) {
    const Project project;
    project.deck(text_of(one_block("315 1 0.5", "315 1 0.5")));
    expect_finished(project.run());
    const MeshCheck check = expect_sound_mesh(project, "work/Basic.Tmp", Kind::displacement);
    EXPECT_EQ(check.counts, (std::array<int, 4>{99856, 99225, 0, 0}));
    EXPECT_EQ(check.clockwise, 0);
    EXPECT_NEAR(check.area, 99225.0, 0.5);
}

TEST(BaseMeshLimits, ABaseMeshOf100000NodesIsWrittenButNotReadBack) {
    // 318 by 318 nodes; 99 by 999 elements have 100 by 1000.
    const std::vector<std::array<std::string, 3>> cases = {
        {"317 1 0.5", "317 1 0.5", " *****   *****       0       0   "},
        {"99 1 0.5", "999 1 0.5", " *****   98901       0       0   "}};
    for (const auto& [column, row, counts] : cases) {
        const Project project;
        leave_earlier_mesh(project);
        project.deck(text_of(one_block(column, row)));
        expect_failed(project.run(), {"Bmesh.dat", "100000"});
        const std::vector<std::string> lines = lines_of(project.read("Bmesh.dat"));
        ASSERT_GT(lines.size(), 100000U);
        EXPECT_EQ(lines[2], counts);
        EXPECT_EQ(lines[lines.size() - 1], "     0");
        EXPECT_EQ(lines[lines.size() - 2], "     0");
    }
}

TEST(BaseMeshLimits, ABaseMeshBetweenTheTablesAndTheCountsLineIsRefusedByTheReader) {
    // 2 by 49,998 nodes fit the counts line but not the tables.
    const Project project;
    project.deck(text_of(one_block("1 1 0.5", "49997 1 0.5")));
    expect_failed(project.run(), {"Bmesh.dat", "line 3", "99990"});
    EXPECT_EQ(lines_of(project.read("Bmesh.dat")).at(2), " 99996   49997       0       0   ");
}

TEST(BaseMeshLimits, ADeckThatAsksForNoKnownContinuationFailsAfterTheBaseMesh) {
    const Project project;
    Cards cards = one_block("1 1 0.5", "1 1 0.5");
    cards.back() = "2";
    cards.insert(cards.end(), {"Bmesh.dat", "out.Mes", "1 1", "0", "0 0 0 0", "1 1"});
    project.deck(text_of(cards));
    expect_failed(project.run(), {"deck.dat"});
    EXPECT_EQ(lines_of(project.read("Bmesh.dat")).size(), 14U);
    EXPECT_FALSE(project.exists("out.Mes"));
}

}  // namespace
}  // namespace brelan::test
