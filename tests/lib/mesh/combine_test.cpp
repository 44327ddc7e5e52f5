// The combination stage by stage: numbers of elements, matching, merging and renaming of nodes.

#include <string>

#include "mesh/combine.h"
#include "support/state.h"

namespace brelan::test {
namespace {

class Combine : public ::testing::Test {
protected:
    Combine() : edition_(DISPLACEMENT) {
        reset_mesh(state.mesh);
        state.mesh.words.clear();
        state.combination.first = Region{};
        state.combination.second = Region{};
        state.combination.first.name = "first.Mes";
        state.combination.second.name = "second.Mes";
        state.deck.combination.list_place = {"deck.dat", 7};
        state.combination.keeps_first_data = false;
        state.deck.combination.pair_count = 0;
    }

    void first(std::int32_t n, float x, float y) {
        tables.node_in_use[NodeNumber(n)] = 1;
        tables.x[NodeNumber(n)] = x;
        tables.y[NodeNumber(n)] = y;
        tables.codes[NodeNumber(n)] = {n, n, n, n, n};
        state.combination.first.nodes.include(NodeNumber(n));
    }
    static void second(std::int32_t n, float x, float y) {
        state.mesh.node_in_use[NodeNumber(n)] = 1;
        state.mesh.x[NodeNumber(n)] = x;
        state.mesh.y[NodeNumber(n)] = y;
        state.mesh.codes[NodeNumber(n)] = {-n, -n, -n, -n, -n};
        state.combination.second.nodes.include(NodeNumber(n));
    }
    static void pair(std::int32_t of_second, std::int32_t of_first) {
        ++state.deck.combination.pair_count;
        state.deck.combination.second_nodes[state.deck.combination.pair_count] = NodeNumber(of_second);
        state.deck.combination.first_nodes[state.deck.combination.pair_count] = NodeNumber(of_first);
    }

    NodeNumbers merge() { return merge_nodes(state.combination, state.mesh, tables, matches); }

    RegionTables tables;  // of the first region
    NodeNumbers matches;

private:
    Edition edition_;
};

// --- element numbers -----------------------------------------------------------------------------

// Lowest and highest numbers of continuum, beam and truss elements; {100000, 0} for none.
struct Range {
    std::int32_t lowest = NO_LOWEST_NUMBER, highest = 0;

    NumberRange<ElementNumber> numbers() const { return {ElementNumber(lowest), ElementNumber(highest)}; }
};
struct Ranges {
    Range continuum, beam, truss;
};
constexpr Range NONE{};

struct Starts {
    std::int32_t second_continuum, first_continuum, second_beam, first_beam, second_truss, first_truss;
    bool operator==(const Starts&) const = default;
};

std::ostream& operator<<(std::ostream& out, const Starts& s) {
    return out << s.second_continuum << " " << s.first_continuum << " " << s.second_beam << " "
               << s.first_beam << " " << s.second_truss << " " << s.first_truss;
}

Starts starts_of(const Ranges& second, const Ranges& first) {
    const auto set = [](Region& region, const Ranges& ranges) {
        region.old_elements[0] = ranges.continuum.numbers();
        region.old_elements[1] = ranges.beam.numbers();
        region.old_elements[2] = ranges.truss.numbers();
    };
    set(state.combination.first, first);
    set(state.combination.second, second);
    fix_region_numbers(state.combination);
    return {state.combination.second.start[0].value, state.combination.first.start[0].value,
            state.combination.second.start[1].value, state.combination.first.start[1].value,
            state.combination.second.start[2].value, state.combination.first.start[2].value};
}

TEST_F(Combine, NumbersThatRiseFromRegionToRegionAndTypeToTypeStay) {
    EXPECT_EQ(starts_of({{1, 4}, {9, 9}, {20, 22}}, {{5, 8}, {10, 15}, {30, 30}}),
              (Starts{1, 5, 9, 10, 20, 30}));
    // Gaps are no matter.
    EXPECT_EQ(starts_of({{11, 20}, {300, 310}, {500, 500}}, {{100, 200}, {400, 400}, {600, 99990}}),
              (Starts{11, 100, 300, 400, 500, 600}));
    // Where a type is missing its start is that of no number at all.
    EXPECT_EQ(starts_of({{1, 4}, NONE, NONE}, {{5, 8}, NONE, NONE}),
              (Starts{1, 5, 100000, 100000, 100000, 100000}));
    EXPECT_EQ(starts_of({{1, 4}, NONE, {7, 8}}, {NONE, {5, 6}, NONE}),
              (Starts{1, 100000, 100000, 5, 7, 100000}));
}

TEST_F(Combine, AnyOverlapCountsAllElementsFromOne) {
    // Extents 3, 3, 0, 5, 2, 0: 1-4, 5-8, 9, 10-15, 16-18, 19.
    const Starts counted{1, 5, 9, 10, 16, 19};
    EXPECT_EQ(starts_of({{1, 4}, {9, 9}, {20, 22}}, {{4, 7}, {10, 15}, {30, 30}}), counted);
    EXPECT_EQ(starts_of({{1, 4}, {8, 8}, {20, 22}}, {{5, 8}, {10, 15}, {30, 30}}), counted);
    EXPECT_EQ(starts_of({{1, 4}, {10, 10}, {20, 22}}, {{5, 8}, {10, 15}, {30, 30}}), counted);
    EXPECT_EQ(starts_of({{1, 4}, {9, 9}, {15, 17}}, {{5, 8}, {10, 15}, {30, 30}}), counted);
    EXPECT_EQ(starts_of({{1, 4}, {9, 9}, {20, 22}}, {{5, 8}, {10, 15}, {22, 22}}), counted);
    // The first region below the second is an overlap too.
    EXPECT_EQ(starts_of({{5, 8}, {9, 9}, {20, 22}}, {{1, 4}, {10, 15}, {30, 30}}), counted);
    EXPECT_EQ(starts_of({{101, 104}, {109, 109}, {120, 122}}, {{101, 104}, {110, 115}, {130, 130}}), counted);
}

TEST_F(Combine, GapsInsideASetAreKept) {
    // 3 and 30, 7 and 9: extents 27 and 2.
    EXPECT_EQ(starts_of({{3, 30}, NONE, NONE}, {{7, 9}, NONE, NONE}).first_continuum, 29);
}

TEST_F(Combine, AnEmptySetTakesItsStartValuesOffWhatFollows) {
    // 0 - 100000 for the second region's continuum: -100000 + 2, then 4 more and a beam of 0.
    EXPECT_EQ(starts_of({NONE, {1, 1}, {2, 2}}, {{1, 4}, {5, 5}, {6, 6}}),
              (Starts{1, -99998, -99994, -99993, -99992, -99991}));
    // First continuum missing.
    EXPECT_EQ(starts_of({{1, 4}, {4, 4}, {2, 2}}, {NONE, {5, 5}, {6, 6}}),
              (Starts{1, 5, -99994, -99993, -99992, -99991}));
    // Beams missing in the second region, then in the first, then in both: what stands before them is right.
    EXPECT_EQ(starts_of({{1, 4}, NONE, {8, 8}}, {{4, 7}, {5, 5}, {9, 9}}),
              (Starts{1, 5, 9, -99990, -99989, -99988}));
    EXPECT_EQ(starts_of({{1, 4}, {5, 5}, {8, 8}}, {{4, 7}, NONE, {9, 9}}),
              (Starts{1, 5, 9, 10, -99989, -99988}));
    EXPECT_EQ(starts_of({{1, 4}, NONE, {8, 8}}, {{4, 7}, NONE, {9, 9}}),
              (Starts{1, 5, 9, -99990, -199989, -199988}));
    // Second trusses missing.
    EXPECT_EQ(starts_of({{1, 4}, {5, 5}, NONE}, {{4, 7}, {5, 5}, {9, 9}}), (Starts{1, 5, 9, 10, 11, -99988}));
    // Nothing but overlapping continuum: the rest is not asked for.
    const Starts continuum_only = starts_of({{1, 1}, NONE, NONE}, {{1, 1}, NONE, NONE});
    EXPECT_EQ(continuum_only.second_continuum, 1);
    EXPECT_EQ(continuum_only.first_continuum, 2);
}

TEST_F(Combine, OnlyTheLowestNewNumbersAreHeldAgainstEachOther) {
    state.combination.first.elements = Range{5, 9}.numbers();
    state.combination.second.elements = Range{5, 7}.numbers();
    EXPECT_TRUE(regions_collide(state.combination));
    state.combination.second.elements = Range{6, 7}.numbers();
    EXPECT_FALSE(regions_collide(state.combination));
    state.combination.first.elements = {};
    EXPECT_FALSE(regions_collide(state.combination));
    state.combination.second.elements = {};
    EXPECT_TRUE(regions_collide(state.combination)) << "two regions without elements";
}

// --- matching ------------------------------------------------------------------------------------

TEST_F(Combine, TheSmallestSpacingIsThatOfEitherRegion) {
    first(1, 0, 0);
    first(2, 3, 4);
    EXPECT_EQ(smallest_spacing(state.combination, state.mesh, tables), 5.0F);
    second(1, 100, 0);
    EXPECT_EQ(smallest_spacing(state.combination, state.mesh, tables), 5.0F)
        << "between the regions nothing is measured";
    second(7, 100, 2);
    EXPECT_EQ(smallest_spacing(state.combination, state.mesh, tables), 2.0F);
    second(9, 100, 2);
    EXPECT_EQ(smallest_spacing(state.combination, state.mesh, tables), 0.0F);
}

TEST_F(Combine, OneNodeInEachRegionHasNoSpacing) {
    first(1, 0, 0);
    second(1, 0, 0);
    EXPECT_EQ(smallest_spacing(state.combination, state.mesh, tables), 1.0E35F);
}

TEST_F(Combine, NodesWithinHalfTheSpacingMatch) {
    second(4, 0, 0);
    second(5, 1, 0);
    first(10, 0.5F, 0.0F);     // half way: both are within reach, the higher number wins
    first(11, -0.25F, 0.25F);  // near 4
    first(12, -0.5F, 0.0F);    // exactly at the reach of 4
    first(13, -0.50000006F, 0.0F);
    matches = match_nearest_nodes(state.combination, state.mesh, tables, 1.0F);
    EXPECT_EQ(matches[NodeNumber(10)].value, 5);
    EXPECT_EQ(matches[NodeNumber(11)].value, 4);
    EXPECT_EQ(matches[NodeNumber(12)].value, 4);
    EXPECT_EQ(matches[NodeNumber(13)].value, 0);
}

TEST_F(Combine, WithoutAReachOnlyCoincidentNodesMatch) {
    second(4, 1, 2);
    second(5, 1, 2);
    second(6, 2, 2);
    first(10, 1, 2);
    first(11, 1.0000001F, 2);
    matches = match_nearest_nodes(state.combination, state.mesh, tables, 0.0F);
    EXPECT_EQ(matches[NodeNumber(10)].value, 5);
    EXPECT_EQ(matches[NodeNumber(11)].value, 0);
}

TEST_F(Combine, ListedPairsMatchWhereverTheyAre) {
    second(4, 0, 0);
    second(5, 1, 0);
    first(10, 70, 70);
    first(11, 80, 80);
    pair(5, 10);
    pair(4, 99);  // no node of the first region
    matches = match_listed_nodes(state.deck.combination, state.mesh, tables);
    EXPECT_EQ(matches[NodeNumber(10)].value, 5);
    EXPECT_EQ(matches[NodeNumber(11)].value, 0);
    EXPECT_EQ(matches[NodeNumber(99)].value, 0);
    pair(4, 10);
    matches = match_listed_nodes(state.deck.combination, state.mesh, tables);
    EXPECT_EQ(matches[NodeNumber(10)].value, 4) << "the last pair of a node counts";
}

TEST_F(Combine, AListedNodeThatIsNotThereEndsTheRun) {
    second(4, 0, 0);
    first(10, 0, 0);
    for (const std::int32_t missing : {10, 5, 0, -4, 99991}) {
        state.deck.combination.pair_count = 0;
        pair(missing, 10);
        const std::string message =
            failure_of([&] { match_listed_nodes(state.deck.combination, state.mesh, tables); });
        EXPECT_EQ(message.rfind("deck.dat, line 7", 0), 0U) << message;
        EXPECT_NE(message.find("Card 2.3"), std::string::npos) << message;
        EXPECT_NE(message.find(std::to_string(missing)), std::string::npos) << message;
    }
}

// --- merging -------------------------------------------------------------------------------------

// Nodes 3 and 8 of the first region; 3 falls on node 5 of the second, whose highest is 6.
class CombineNodes : public Combine {
protected:
    CombineNodes() {
        second(5, 1, 2);
        second(6, 3, 4);
        first(3, 1.125F, 2.125F);
        first(8, 30, 40);
        first(9, 50, 60);
        matches[NodeNumber(3)] = NodeNumber(5);
    }
};

TEST_F(CombineNodes, TheOthersGoOnBehindTheSecondRegion) {
    const NodeNumbers new_numbers = merge();
    EXPECT_EQ(new_numbers[NodeNumber(3)].value, 5);
    EXPECT_EQ(new_numbers[NodeNumber(8)].value, 7);
    EXPECT_EQ(new_numbers[NodeNumber(9)].value, 8);
    EXPECT_EQ(state.mesh.x[NodeNumber(7)], 30.0F);
    EXPECT_EQ(state.mesh.y[NodeNumber(8)], 60.0F);
    EXPECT_EQ(state.mesh.codes[NodeNumber(7)][2], 8);
    EXPECT_EQ(state.mesh.node_in_use[NodeNumber(7)], 1);
    EXPECT_EQ(state.mesh.node_in_use[NodeNumber(8)], 1);
    EXPECT_EQ(state.mesh.node_in_use[NodeNumber(9)], 0);
}

TEST_F(CombineNodes, AMergedNodeHasTheDataOfTheSecondRegion) {
    merge();
    EXPECT_EQ(state.mesh.x[NodeNumber(5)], 1.0F);
    EXPECT_EQ(state.mesh.codes[NodeNumber(5)][0], -5);
}

TEST_F(CombineNodes, AMergedNodeTakesTheDataOfTheFirstRegionWhereTheDeckSaysSo) {
    state.combination.keeps_first_data = true;
    merge();
    EXPECT_EQ(state.mesh.x[NodeNumber(5)], 1.125F);
    EXPECT_EQ(state.mesh.y[NodeNumber(5)], 2.125F);
    EXPECT_EQ(state.mesh.codes[NodeNumber(5)], (NodeCodes{3, 3, 3, -5, -5}))
        << "the displacement kind has three codes";
    EXPECT_EQ(state.mesh.x[NodeNumber(7)], 30.0F);
}

TEST_F(CombineNodes, NodesBeyondTheTableEndTheRun) {
    second(99989, 0, 0);
    const std::string message = failure_of([&] { merge(); });
    EXPECT_NE(message.find("99990"), std::string::npos) << message;
    EXPECT_NE(message.find("first.Mes"), std::string::npos) << message;
}

TEST_F(CombineNodes, TheLastPlaceOfTheTableCanBeTaken) {
    second(99988, 0, 0);
    const NodeNumbers new_numbers = merge();
    EXPECT_EQ(new_numbers[NodeNumber(9)].value, 99990);
    EXPECT_EQ(state.mesh.x[NodeNumber(99990)], 50.0F);
}

TEST_F(CombineNodes, CornersAndMidsidesOfTheFirstRegionAreRenamed) {
    const NodeNumbers new_numbers = merge();
    tables.type_in_use[ElementNumber(20)] = ELEMENT_CONTINUUM;
    state.mesh.type_in_use[ElementNumber(21)] = ELEMENT_CONTINUUM;
    for (const std::int32_t n : {20, 21})
        state.mesh.words[ElementNumber(n)] = words_of({3, 8, 9, 0}, 1, {8, -2, 0, 9});
    state.combination.first.elements = Range{20, 21}.numbers();
    renumber_first_elements(state.combination, state.mesh, tables, new_numbers);
    const ElementWords& w = state.mesh.words[ElementNumber(20)];
    EXPECT_EQ(w.corner_1.value, 5);
    EXPECT_EQ(w.corner_2.value, 7);
    EXPECT_EQ(w.corner_3.value, 8);
    EXPECT_EQ(w.corner_4.value, 0);
    EXPECT_EQ(w.midside_5.value, 7);
    EXPECT_EQ(w.midside_6.value, -2) << "no node";
    EXPECT_EQ(w.midside_8.value, 8);
    EXPECT_EQ(state.mesh.words[ElementNumber(21)].corner_1.value, 3) << "an element of the second region";
}

TEST_F(CombineNodes, KindsWithoutMidsidesRenameFourWords) {
    for (const std::int32_t edition : {TEMPERATURE, HEAD}) {
        const Edition kind(edition);
        NodeNumbers new_numbers;
        new_numbers[NodeNumber(3)] = NodeNumber(5);
        tables.type_in_use[ElementNumber(20)] = ELEMENT_CONTINUUM;
        state.mesh.words[ElementNumber(20)] = words_of({3, 3, 3, 3}, 1, {3, 3, 3, 3});
        state.combination.first.elements = Range{20, 20}.numbers();
        renumber_first_elements(state.combination, state.mesh, tables, new_numbers);
        EXPECT_EQ(state.mesh.words[ElementNumber(20)].corner_4.value, 5);
        EXPECT_EQ(state.mesh.words[ElementNumber(20)].midside_5.value, 3);
    }
}

TEST_F(CombineNodes, CountsTakeTheFirstRegionsTypeFirst) {
    tables.type_in_use[ElementNumber(20)] = ELEMENT_TRUSS;
    state.mesh.type_in_use[ElementNumber(20)] = ELEMENT_CONTINUUM;
    state.mesh.type_in_use[ElementNumber(30)] = ELEMENT_BEAM;
    state.mesh.type_in_use[ElementNumber(31)] = ELEMENT_CONTINUUM;
    const ResultMesh result = count_combined(state.mesh, tables);
    EXPECT_EQ(result.counts.nodes, 2);
    EXPECT_EQ(result.nodes.lowest.value, 5);
    EXPECT_EQ(result.nodes.highest.value, 6);
    EXPECT_EQ(result.counts.continuum_elements, 1);
    EXPECT_EQ(result.counts.beams, 1);
    EXPECT_EQ(result.counts.trusses, 1);
    EXPECT_EQ(result.elements.lowest.value, 20);
    EXPECT_EQ(result.elements.highest.value, 31);
}

}  // namespace
}  // namespace brelan::test
