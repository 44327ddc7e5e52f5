// "..\Boundary.Man" from node words as no deck of this package leaves them: counts that disagree, positions
// outside the list, and runs of trusses by their marks.
#include "mesh/boundary_file.h"

#include "mesh/group_tables.h"
#include "mesh/tables.h"
#include "support/state.h"

namespace brelan::test {
namespace {

namespace fs = std::filesystem;

using Lines = std::vector<std::string>;

class BoundaryWords : public ChannelTest {
protected:
    void SetUp() override {
        // The file lies in the directory above the working directory.
        fs::create_directory(directory.path() / "work");
        fs::current_path(directory.path() / "work");
        reset_mesh(state.mesh);
        state.mesh.node_mark.clear();
        state.listing.pipes = state.listing.convection_lines = state.listing.flow_sections =
            state.deck.groups.count = 0;
        result_ = {};
    }
    void node(std::int32_t n, const NodeCodes& words) {
        state.mesh.node_in_use[NodeNumber(n)] = 1;
        state.mesh.codes[NodeNumber(n)] = words;
        result_.nodes.include(NodeNumber(n));
    }
    void truss(std::int32_t n, std::int32_t i, std::int32_t j) {
        state.mesh.type_in_use[ElementNumber(n)] = ELEMENT_TRUSS;
        state.mesh.words[ElementNumber(n)] = words_of({i, j, j, i});
        result_.elements.include(ElementNumber(n));
    }
    Lines boundary() const {
        state.channels.take_results();
        return lines(directory.read("Boundary.Man"));
    }
    static Lines lines(const std::string& text) {
        Lines all;
        std::size_t at = 0;
        for (std::size_t end = text.find('\n'); end != std::string::npos; end = text.find('\n', at)) {
            all.push_back(text.substr(at, end - at));
            at = end + 1;
        }
        return all;
    }
    // What follows a line, so many lines.
    Lines behind(const std::string& heading, std::size_t count) const {
        const Lines all = boundary();
        const auto found = std::find(all.begin(), all.end(), heading);
        if (all.end() - found <= static_cast<std::ptrdiff_t>(count)) {
            ADD_FAILURE() << "no " << heading;
            return {};
        }
        return {found + 1, found + 1 + static_cast<std::ptrdiff_t>(count)};
    }
    ResultMesh result_;
    Edition edition_{TEMPERATURE};
};

constexpr const char* PIPE_VALUES = "*   IDP   MATP  IDFNP  NODEP";
constexpr const char* NODE_LIST = "* Listing of Nodes --- ";

TEST_F(BoundaryWords, CountOfTheFirstNodeCutsThePipe) {
    state.listing.pipes = 1;
    node(4, {2, 8, 1, 1, 2});
    node(5, {2, 9, 1, 2, 4});
    node(6, {2, 9, 1, 3, 4});
    node(7, {2, 9, 1, 4, 4});
    write_pipes(state.channels, state.mesh, state.listing, result_);
    EXPECT_EQ(behind(PIPE_VALUES, 1), Lines{"      1      8      0      2"});
    EXPECT_EQ(behind(NODE_LIST, 1), Lines{"      4      5"});
    // The scan ends with the second: the others keep their words.
    EXPECT_EQ(state.mesh.codes[NodeNumber(5)][0], 0);
    EXPECT_EQ(state.mesh.codes[NodeNumber(5)][1], 0);
    EXPECT_EQ(state.mesh.codes[NodeNumber(6)][0], 2);
    EXPECT_EQ(state.mesh.codes[NodeNumber(7)][1], 9);
}

TEST_F(BoundaryWords, PositionsThatNoNodeFillsShow0) {
    state.listing.pipes = 1;
    node(4, {2, 8, 1, 4, 5});
    node(9, {2, 8, 1, 2, 5});
    write_pipes(state.channels, state.mesh, state.listing, result_);
    EXPECT_EQ(behind(NODE_LIST, 1), Lines{"      0      9      0      4      0"});
}

TEST_F(BoundaryWords, PositionOutsideTheListIsLeftOutAndItsCodesAreCleared) {
    state.listing.pipes = 1;
    node(4, {2, 8, 1, 0, 3});
    node(5, {2, 8, 1, 4, 3});
    node(6, {2, 8, 1, 2, 3});
    write_pipes(state.channels, state.mesh, state.listing, result_);
    EXPECT_EQ(behind(NODE_LIST, 1), Lines{"      0      6      0"});
    for (const std::int32_t n : {4, 5, 6})
        EXPECT_EQ(state.mesh.codes[NodeNumber(n)][0] + state.mesh.codes[NodeNumber(n)][1], 0) << n;
}

TEST_F(BoundaryWords, NegativeCountIsThatOfAClosedLine) {
    state.listing.convection_lines = 1;
    node(4, {3, 8, 1, 2, -3});
    node(5, {3, 8, 1, 3, -3});
    node(6, {3, 8, 1, 1, -3});
    write_pipes(state.channels, state.mesh, state.listing, result_);
    EXPECT_EQ(behind("*   IDC  IDFNC  IDFNT  NODEC", 1), Lines{"      1      8      0      3"});
    EXPECT_EQ(behind(NODE_LIST, 1), Lines{"      6      4      5"});
}

TEST_F(BoundaryWords, WordsOfOtherNodesAreNotOfALine) {
    state.listing.pipes = state.listing.convection_lines = 1;
    node(4, {2, 8, 1, 1, 1});
    node(5, {2, 7, 0, 1, 1});  // no line
    node(6, {2, 7, 2, 1, 1});  // beyond the count
    node(7, {4, 7, 1, 1, 1});  // neither mark
    node(8, {3, 6, 1, 1, 1});
    state.mesh.codes[NodeNumber(9)] = {2, 5, 1, 1, 1};  // not in the mesh
    result_.nodes.include(NodeNumber(9));
    write_pipes(state.channels, state.mesh, state.listing, result_);
    EXPECT_EQ(behind("* NTNP ", 1), Lines{"     1"});
    EXPECT_EQ(behind("*  MATP       FVOL       SPHL        ROL        HCL", 1),
              Lines{"      8      0.000      0.000      0.000      0.000"});
    EXPECT_EQ(behind(NODE_LIST, 1), Lines{"      4"});
    for (const std::int32_t n : {5, 6, 7, 9})
        EXPECT_NE(state.mesh.codes[NodeNumber(n)][1], 0) << n;
    EXPECT_EQ(state.mesh.codes[NodeNumber(8)][1], 0);
}

TEST_F(BoundaryWords, OnlyTheTemperatureKindWritesLines) {
    for (const std::int32_t number : {COUPLED, HEAD, DISPLACEMENT}) {
        const Edition kind(number);
        state.listing.pipes = 1;
        node(4, {2, 8, 1, 1, 1});
        write_pipes(state.channels, state.mesh, state.listing, result_);
        EXPECT_FALSE(directory.exists("Boundary.Man"));
        EXPECT_EQ(state.mesh.codes[NodeNumber(4)][0], 2);
    }
}

// --- runs of trusses -----------------------------------------------------------------------------

// The lists of nodes, and the titles of the sections.
class FlowRuns : public BoundaryWords {
protected:
    static constexpr const char* ROW =
        "* ====================================================================";

    void SetUp() override {
        BoundaryWords::SetUp();
        state.deck.groups.count = 2;
        for (const std::int32_t g : {1, 2}) {
            state.deck.groups.outputs[g] = {};
            state.deck.groups.outputs[g].title = TextLine(g == 1 ? "one" : "two");
        }
    }
    static void mark(std::initializer_list<std::int32_t> nodes, int value) {
        for (const std::int32_t n : nodes)
            state.mesh.node_mark[NodeNumber(n)] = static_cast<std::int8_t>(value);
    }
    // Titles in brackets and lists, as in "[one] 1 2 3; ".
    std::string runs() {
        write_flow_sections(state.channels, state.mesh, state.deck.groups, state.listing, result_);
        const Lines all = boundary();
        std::string text;
        for (std::size_t i = 0; i + 1 < all.size(); ++i) {
            if (all[i] == ROW && all[i + 1] != "*") {
                const std::string title = all[i + 1].substr(2);
                text += "[" + title.substr(0, title.find_last_not_of(' ') + 1) + "]";
            }
            if (all[i] != "* LIST OF NODES")
                continue;
            for (std::size_t k = i + 1; k < all.size() && !all[k].starts_with('*'); ++k)
                for (std::size_t at = 0; at + 7 <= all[k].size(); at += 7)
                    text += " " + std::to_string(std::stoi(all[k].substr(at, 7)));
            text += "; ";
        }
        return text;
    }
};

TEST_F(FlowRuns, TrussGoesOnWhereTheOneBeforeEndsUnderTheSameMark) {
    state.listing.flow_sections = 9;
    mark({1, 2, 3, 4}, 1);
    truss(1, 1, 2);
    truss(2, 2, 3);
    truss(3, 3, 4);
    EXPECT_EQ(runs(), "[one] 1 2 3 4; ");
}

TEST_F(FlowRuns, RunEndsAtAGapAndAtAnotherMark) {
    state.listing.flow_sections = 9;
    mark({1, 2, 3}, 1);
    mark({4, 5}, 2);
    truss(1, 1, 2);
    truss(2, 2, 3);
    truss(4, 3, 4);  // begins at the mark of its run, ends at another: node 4 joins
    truss(7, 4, 5);  // begins at another mark
    truss(8, 2, 1);  // begins elsewhere
    EXPECT_EQ(runs(), "[one] 1 2 3 4; [two] 4 5; [one] 2 1; ");
}

// The mark is that of the first truss's end, for the whole run.
TEST_F(FlowRuns, MarkOfARunIsThatOfItsFirstEnd) {
    state.listing.flow_sections = 9;
    mark({1, 3}, 1);
    mark({2}, 2);
    truss(1, 1, 2);
    truss(2, 2, 3);
    truss(3, 3, 4);
    EXPECT_EQ(runs(), "[two] 1 2 3; [] 3 4; ");
}

TEST_F(FlowRuns, MarkWithoutAGroupHasABlankTitle) {
    state.listing.flow_sections = 9;
    mark({2}, 3);
    mark({4}, 200);  // held in 8 bits
    truss(1, 1, 2);
    truss(2, 3, 4);
    EXPECT_EQ(runs(), "[] 1 2; [] 3 4; ");
    state.deck.groups.count = 200;
    state.deck.groups.outputs[200].title = TextLine("far");
    EXPECT_EQ(runs(), "[] 1 2; [far] 3 4; ");
}

TEST_F(FlowRuns, BeyondTheCountThereIsNoHeadAndNoLastList) {
    mark({2, 4, 6}, 1);
    truss(1, 1, 2);
    truss(2, 3, 4);
    truss(3, 5, 6);
    state.listing.flow_sections = 3;
    EXPECT_EQ(runs(), "[one] 1 2; [one] 3 4; [one] 5 6; ");
    state.listing.flow_sections = 2;
    EXPECT_EQ(runs(), "[one] 1 2; [one] 3 4; ");
    state.listing.flow_sections = 1;
    EXPECT_EQ(runs(), "[one] 1 2;  3 4; ");
}

TEST_F(FlowRuns, CountOf0WritesNothing) {
    truss(1, 1, 2);
    EXPECT_EQ(runs(), "");
    EXPECT_FALSE(directory.exists("Boundary.Man"));
}

}  // namespace
}  // namespace brelan::test
