// Whole runs that delete elements or change their materials: which are taken, and how the
// numbering closes up.
//
//   6-----7-----8-----9        continuum 11, 12, 14 of materials 1, 2, 3     13 and 15 to 20: no elements
//   | 11  | 12  | 14  |        beam 21 from 1 to 2, beam 23 from 3 to 4      materials 1, 2
//   1-----2-----3-----4   5    truss 31 from 6 to 7, truss 32 from 8 to 9    materials 1, 2; node 5 is no
//   corner

#include <gtest/gtest.h>

#include <map>

#include "support/mesh.h"
#include "support/project.h"

namespace brelan::test {
namespace {

using Cards = std::vector<std::string>;

MeshNode node_of(Kind kind, int number, double x, double y) {
    MeshNode node{number, {}, x, y, 0.0, 0.0};
    const int count = kind == Kind::coupled ? 5 : kind == Kind::displacement ? 3 : 2;
    for (int k = 0; k < count; ++k)
        node.codes.push_back(10 * number + k);
    if (kind == Kind::temperature || kind == Kind::head) {
        node.value = 100.0 * number;
        node.factor = 1000.0 * number;
    }
    return node;
}

// The middle on the left side tells the element.
MeshElement compacted_element(Kind kind, int number, std::array<int, 4> corners, int material) {
    MeshElement element{number, corners, {}, material, {}, {}};
    if (kind == Kind::coupled) {
        element.codes = {number, number + 1, number + 2, number + 3};
        element.reals = {number + 0.5};
    } else if (kind == Kind::displacement) {
        element.reals = {number + 0.25, number + 0.75};
    } else {
        element.codes = {number};
    }
    return element;
}

Mesh source(Kind kind) {
    Mesh mesh;
    mesh.kind = kind;
    mesh.nodes = {node_of(kind, 1, 0, 0), node_of(kind, 2, 1, 0), node_of(kind, 3, 2, 0),
                  node_of(kind, 4, 3, 0), node_of(kind, 5, 4, 0), node_of(kind, 6, 0, 1),
                  node_of(kind, 7, 1, 1), node_of(kind, 8, 2, 1), node_of(kind, 9, 3, 1)};
    mesh.continuum = {compacted_element(kind, 11, {1, 2, 7, 6}, 1),
                      compacted_element(kind, 12, {2, 3, 8, 7}, 2),
                      compacted_element(kind, 14, {3, 4, 9, 8}, 3)};
    mesh.beams = {{21, 1, 2, 1}, {23, 3, 4, 2}};
    mesh.trusses = {{31, 6, 7, 1}, {32, 8, 9, 2}};
    return mesh;
}

// The source with the elements in `kept` alone, closed up from the start numbers.
Mesh closed_up(Kind kind, const std::vector<int>& kept, int NSNEL, int NSNODE) {
    const Mesh whole = source(kind);
    Mesh mesh;
    mesh.kind = kind;
    mesh.name = "..\\out.Mes";
    const auto place = [&](int number) {
        const auto found = std::find(kept.begin(), kept.end(), number);
        return found == kept.end() ? -1 : NSNEL + static_cast<int>(found - kept.begin());
    };
    std::map<int, int> node;
    for (MeshElement element : whole.continuum) {
        if (place(element.number) < 0)
            continue;
        for (const int corner : element.corners)
            node[corner];
        element.number = place(element.number);
        mesh.continuum.push_back(element);
    }
    const auto keep_lines = [&](const std::vector<MeshLine>& lines, std::vector<MeshLine>& left) {
        for (MeshLine line : lines) {
            if (place(line.number) < 0)
                continue;
            node[line.i];
            node[line.j];
            line.number = place(line.number);
            left.push_back(line);
        }
    };
    keep_lines(whole.beams, mesh.beams);
    keep_lines(whole.trusses, mesh.trusses);
    int position = 0;
    for (auto& [old, renamed] : node) {
        renamed = NSNODE + position++;
        MeshNode moved = whole.nodes[static_cast<std::size_t>(old - 1)];
        // Heads stay behind where the numbers have a gap.
        const MeshNode& value_of =
            kind == Kind::head ? whole.nodes[static_cast<std::size_t>(position - 1)] : moved;
        const double value = value_of.value, factor = value_of.factor;
        moved.number = renamed;
        moved.value = value;
        moved.factor = factor;
        mesh.nodes.push_back(moved);
    }
    for (MeshElement& element : mesh.continuum)
        for (int& corner : element.corners)
            corner = node.at(corner);
    for (auto* lines : {&mesh.beams, &mesh.trusses})
        for (MeshLine& line : *lines) {
            line.i = node.at(line.i);
            line.j = node.at(line.j);
        }
    return mesh;
}

void expect_result(Kind kind, const Mesh& from, const Cards& edit_cards, const Mesh& expected) {
    const Project project(kind);
    project.write("mesh.Mes", from.text());
    Cards cards{"1", "mesh.Mes", "out.Mes"};
    cards.insert(cards.end(), edit_cards.begin(), edit_cards.end());
    project.deck(text_of(cards));
    expect_finished(project.run());
    const std::vector<std::string> lines = lines_of(expected.text());
    expect_file(project, "out.Mes", lines);
    Cards copy;
    for (const std::string& line : lines)
        copy.push_back(padded(line));
    expect_work_file(project, "MeshFile.Mes", copy);
}

const std::vector<int> ALL_ELEMENTS = {11, 12, 14, 21, 23, 31, 32};

class CompactionRun : public ::testing::TestWithParam<Kind> {
protected:
    // IEDIT 2 with the given cards from 3.2 on leaves the elements of the list.
    static void expect_left(const Cards& cards, const std::vector<int>& kept, int NSNEL = 1, int NSNODE = 1) {
        SCOPED_TRACE(text_of(cards));
        expect_result(GetParam(), source(GetParam()), cards, closed_up(GetParam(), kept, NSNEL, NSNODE));
    }
};

TEST_P(CompactionRun, DeletesInsideAWindow) {
    // Centroid of 12 and middle of nothing else.
    expect_left({"1 1", "2", "0", "1 0.25 2 0.75", "0"}, {11, 14, 21, 23, 31, 32});
    // Lower half of the left element: beam 21; the upper edge of the mesh: both trusses.
    expect_left({"1 1", "2", "0", "0 -1 1 0.25", "0"}, {11, 12, 14, 23, 31, 32});
    expect_left({"1 1", "2", "0", "-1 0.75 9 2", "0"}, {11, 12, 14, 21, 23});
}

TEST_P(CompactionRun, DeletesOutsideAWindow) {
    expect_left({"1 1", "2", "0", "1 0.25 2 0.75", "1"}, {12});
    expect_left({"1 1", "2", "0", "-1 -1 1.25 2", "1"}, {11, 21, 31});
}

TEST_P(CompactionRun, AWindowIsOpenAtItsEdges) {
    // The centroid of 12 lies at (1.5, 0.5).
    expect_left({"1 1", "2", "0", "1.5 0.25 2 0.75", "0"}, ALL_ELEMENTS);
    expect_left({"1 1", "2", "0", "1 0.25 2 0.5", "0"}, ALL_ELEMENTS);
}

TEST_P(CompactionRun, DeletesListedNumbersOfAnyType) {
    expect_left({"1 1", "2", "1", "3", "12 21 32", "0"}, {11, 14, 23, 31});
    expect_left({"1 1", "2", "1", "2", "11 -31", "0"}, {32});
    expect_left({"1 1", "2", "1", "2", "14 23", "1"}, {14, 23});
    expect_left({"1 1", "2", "1", "2", "13 99990", "0"}, ALL_ELEMENTS);  // no elements of the mesh
}

TEST_P(CompactionRun, SelectionsOfNodesTakeNoElement) {
    for (const char* ILOC : {"2", "3", "7"}) {
        expect_left({"1 1", "2", ILOC, "2", "1 2", "0"}, ALL_ELEMENTS);
        expect_left({"1 1", "2", ILOC, "2", "1 2", "1"}, {});
    }
}

TEST_P(CompactionRun, AnUnknownSideTakesNothing) {
    for (const char* side : {"2", "-1"}) {
        expect_left({"1 1", "2", "0", "-9 -9 9 9", side}, ALL_ELEMENTS);
        expect_left({"1 1", "2", "1", "1", "11", side}, ALL_ELEMENTS);
    }
}

TEST_P(CompactionRun, ExcludedMaterialsStay) {
    expect_left({"1 1", "2 1 3 9 2 1", "0", "-9 -9 9 9", "0"}, {11, 14, 23, 31});
    expect_left({"1 1", "2 0 0 2 0 0", "0", "-9 -9 9 9", "0"}, {12});
    expect_left({"1 1", "2 0 0 0 1 2", "1", "1", "99", "1"}, {21, 32});
}

TEST_P(CompactionRun, EverythingDeletedLeavesHeadingsAlone) {
    expect_left({"1 1", "2", "0", "-9 -9 9 9", "0"}, {});
    expect_left({"500 600", "2", "1", "1", "99", "1"}, {}, 500, 600);
}

TEST_P(CompactionRun, NumbersCloseUpFromTheStartNumbers) {
    expect_left({"301 1000", "2", "1", "2", "12 21", "0"}, {11, 14, 23, 31, 32}, 301, 1000);
    // Shifts by one and up to the end of the tables.
    expect_left({"2 2", "2", "1", "1", "11", "0"}, {12, 14, 21, 23, 31, 32}, 2, 2);
    expect_left({"99985 99983", "2", "1", "1", "11", "0"}, {12, 14, 21, 23, 31, 32}, 99985, 99983);
}

TEST_P(CompactionRun, StartNumbersOfBeamsAndTrussesPlayNoPart) {
    expect_left({"1 1 900 950", "2", "1", "1", "12", "0"}, {11, 14, 21, 23, 31, 32});
}

TEST_P(CompactionRun, NodesOfNoElementAreDropped) {
    // Node 5 in the first, 4, 5 and 9 in the second.
    expect_left({"1 1", "2", "1", "1", "99", "0"}, ALL_ELEMENTS);
    expect_left({"1 1", "2", "1", "3", "14 23 32", "0"}, {11, 12, 21, 31});
}

// --- materials -----------------------------------------------------------------------------------

TEST_P(CompactionRun, ChangesMaterialsByTypeAndClosesUp) {
    const auto renamed = [](std::array<int, 3> continuum, std::array<int, 2> beams,
                            std::array<int, 2> trusses) {
        Mesh mesh = closed_up(GetParam(), ALL_ELEMENTS, 1, 1);
        for (std::size_t k = 0; k < 3; ++k)
            mesh.continuum[k].material = continuum[k];
        for (std::size_t k = 0; k < 2; ++k) {
            mesh.beams[k].material = beams[k];
            mesh.trusses[k].material = trusses[k];
        }
        return mesh;
    };
    const auto expect = [](const Cards& cards, const Mesh& expected) {
        SCOPED_TRACE(text_of(cards));
        expect_result(GetParam(), source(GetParam()), cards, expected);
    };
    expect({"1 1", "3", "0", "1 0.25 2 0.75", "0", "7 8 9"}, renamed({1, 7, 3}, {1, 2}, {1, 2}));
    expect({"1 1", "3", "0", "1 0.25 2 0.75", "1", "7 8 9"}, renamed({7, 2, 7}, {8, 8}, {9, 9}));
    expect({"1 1", "3", "1", "3", "11 23 31", "0", "7 8 9"}, renamed({7, 2, 3}, {1, 8}, {9, 2}));
    expect({"1 1", "3", "1", "2", "11 -32", "0", "7 0 9"},
           renamed({7, 7, 7}, {1, 2}, {9, 9}));  // 0: as it was
    expect({"1 1", "3 2 0 0 1 2", "1", "2", "11 -32", "0", "7 8 9"}, renamed({7, 2, 7}, {1, 8}, {9, 2}));
    expect({"1 1", "3", "1", "1", "11", "2", "7 8 9"}, renamed({1, 2, 3}, {1, 2}, {1, 2}));
    expect({"1 1", "3", "2", "1", "1", "0", "7 8 9"}, renamed({1, 2, 3}, {1, 2}, {1, 2}));
    expect({"1 1", "3", "3", "1", "1", "1", "7 8 9"}, renamed({7, 7, 7}, {8, 8}, {9, 9}));
    expect({"1 1", "3", "1", "1", "14", "0", "-4 0 0"}, renamed({1, 2, -4}, {1, 2}, {1, 2}));
}

INSTANTIATE_TEST_SUITE_P(Kinds, CompactionRun, ::testing::ValuesIn(ALL_KINDS),
                         [](const auto& test) { return name_of(test.param); });

// --- what the kinds do not share -----------------------------------------------------------------

TEST(CompactionFiles, MidsideWordsStayAtThePositionsOfTheElements) {
    for (const Kind kind : {Kind::coupled, Kind::displacement}) {
        // Elements 1, 2 and 3; the first goes. The others come to 1 and 2, where the
        // middles of 1 and 2 stand.
        Mesh from = source(kind);
        for (std::size_t k = 0; k < 3; ++k) {
            from.continuum[k].number = static_cast<int>(k) + 1;
            from.continuum[k].midsides = {0, 11 + static_cast<int>(k), 0, 21 + static_cast<int>(k)};
        }
        from.beams.clear();
        from.trusses.clear();
        Mesh expected = closed_up(kind, {12, 14}, 1, 1);
        expected.continuum[0].midsides = {0, 11, 0, 21};
        expected.continuum[1].midsides = {0, 12, 0, 22};
        expect_result(kind, from, {"1 1", "2", "1", "1", "1", "0"}, expected);
    }
}

TEST(CompactionFiles, NumbersThatLeaveTheTablesAreRefused) {
    struct Case {
        const char* card;
        const char* what;
    };
    // Seven elements and eight nodes are kept.
    for (const Case& c : {Case{"99985 1", "element"}, Case{"1 99984", "node"}, Case{"0 1", "element"},
                          Case{"1 0", "node"}, Case{"-5 1", "element"}, Case{"1 -5", "node"}}) {
        const Project project;
        project.write("mesh.Mes", source(Kind::displacement).text());
        project.write("out.Mes", "an earlier result\n");
        project.deck(text_of({"1", "mesh.Mes", "out.Mes", c.card, "2", "1", "1", "99", "0"}));
        const Snapshot before = project.snapshot();
        expect_failed(project.run(), {"deck.dat", "line 4", "Card 3.2", c.what, "1 to 99990"});
        EXPECT_TRUE(project.changed_since(before).empty()) << c.card;
    }
}

TEST(CompactionFiles, TracesItsPasses) {
    for (const char* IEDIT : {"2", "3"}) {
        const Project project;
        project.write("mesh.Mes", source(Kind::displacement).text());
        project.write_data("DEBUG/Brelan_P1.dat", "1 20\n");
        project.deck(text_of({"1", "mesh.Mes", "out.Mes", "1 1", IEDIT, "1", "1", "99", "0", "1 1 1"}));
        expect_finished(project.run());
        const std::vector<std::string> trace = lines_of(project.read_work("Brelan_P1.deb"));
        const std::vector<std::string> expected = {*IEDIT == '2' ? "  Pass 5C " : "  Pass 5D ",
                                                   "  Pass 6 ",
                                                   "  Pass 8 ",
                                                   "  Pass 9 ",
                                                   "  Pass 10 ",
                                                   "  Pass 11 ",
                                                   "  Pass 12 ",
                                                   "  Pass 13 ",
                                                   "  Pass 14.7  NMOVE =            0",
                                                   "  Pass 15 ",
                                                   "  Pass 16 ",
                                                   "  Pass 17 ",
                                                   "  Pass 18 ",
                                                   "  Pass 19 ",
                                                   "  Pass 20 "};
        ASSERT_EQ(trace.size(), 6 + expected.size());
        EXPECT_EQ(first_difference(expected, {trace.begin() + 6, trace.end()}), "") << IEDIT;
    }
}

}  // namespace
}  // namespace brelan::test
