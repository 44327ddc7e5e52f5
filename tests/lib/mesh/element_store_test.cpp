// Elements between records and tables, the start numbers of an edit and the copy of a result.
#include <algorithm>
#include <ostream>

#include "mesh/edit_source.h"
#include "mesh/edit_tables.h"
#include "mesh/mesh_records.h"
#include "mesh/result_file.h"
#include "support/state.h"

namespace brelan::test {
namespace {

// --- words and attributes ----------------------------------------------------------------------------------

class ElementStore : public ::testing::Test {
protected:
    static ElementRecord record() {
        ElementRecord e;
        e.words = words_of({11, 12, 13, 14}, 5, {51, 52, 53, 54});
        e.skeleton = 1;
        e.fluid = 2;
        e.integration_r = 3;
        e.integration_s = 4;
        e.real_attribute = 0.5F;
        e.thickness = 0.25F;
        e.density = 1.75F;
        e.attribute = -105;
        return e;
    }
    // What stands in a slot before an element is stored there.
    static void before(std::int32_t n) {
        state.mesh.words[ElementNumber(n)] = words_of({1, 2, 3, 4}, 9, {91, 92, 93, 94});
        state.mesh.skeleton[ElementNumber(n)] = state.mesh.fluid[ElementNumber(n)] =
            state.mesh.integration_r[ElementNumber(n)] = state.mesh.integration_s[ElementNumber(n)] =
                state.mesh.attribute[ElementNumber(n)] = 90;
        state.mesh.real_attribute[ElementNumber(n)] = state.mesh.thickness[ElementNumber(n)] =
            state.mesh.density[ElementNumber(n)] = 90.5F;
    }
};

TEST_F(ElementStore, KindsWithoutMidsidesLeaveThoseOfTheSlot) {
    for (const std::int32_t edition : {TEMPERATURE, HEAD}) {
        const Edition kind(edition);
        before(99990);
        store_element(state.mesh, ElementNumber(99990), ELEMENT_CONTINUUM, record());
        EXPECT_EQ(state.mesh.words[ElementNumber(99990)].corner_4.value, 14);
        EXPECT_EQ(state.mesh.words[ElementNumber(99990)].midside_5.value, 91);
        EXPECT_EQ(state.mesh.words[ElementNumber(99990)].midside_6.value, 92);
        EXPECT_EQ(state.mesh.words[ElementNumber(99990)].midside_7.value, 93);
        EXPECT_EQ(state.mesh.words[ElementNumber(99990)].midside_8.value, 94);
        EXPECT_EQ(state.mesh.words[ElementNumber(99990)].material.value, 5);
        EXPECT_EQ(state.mesh.attribute[ElementNumber(99990)], -105);
        EXPECT_EQ(state.mesh.skeleton[ElementNumber(99990)], 90);
        EXPECT_EQ(state.mesh.thickness[ElementNumber(99990)], 90.5F);
    }
}

TEST_F(ElementStore, KindsWithMidsidesStoreThem) {
    for (const std::int32_t edition : {COUPLED, DISPLACEMENT}) {
        const Edition kind(edition);
        before(1);
        store_element(state.mesh, ElementNumber(1), ELEMENT_CONTINUUM, record());
        EXPECT_EQ(state.mesh.words[ElementNumber(1)].midside_5.value, 51);
        EXPECT_EQ(state.mesh.words[ElementNumber(1)].midside_8.value, 54);
        EXPECT_EQ(state.mesh.attribute[ElementNumber(1)], 90);
    }
}

TEST_F(ElementStore, BeamAndTrussHaveNoMidsidesInAnyKind) {
    for (const std::int32_t edition : {COUPLED, TEMPERATURE, HEAD, DISPLACEMENT}) {
        for (const std::int8_t type : {ELEMENT_BEAM, ELEMENT_TRUSS}) {
            const Edition kind(edition);
            before(7);
            ElementRecord line;
            line.words = words_of({11, 12, 12, 11}, 5);
            store_element(state.mesh, ElementNumber(7), type, line);
            EXPECT_EQ(state.mesh.words[ElementNumber(7)].midside_5.value, 0) << edition;
            EXPECT_EQ(state.mesh.words[ElementNumber(7)].midside_8.value, 0) << edition;
        }
    }
}

TEST_F(ElementStore, AttributesOfTheKindComeBack) {
    {
        const Edition kind(COUPLED);
        store_element(state.mesh, ElementNumber(3), ELEMENT_CONTINUUM, record());
        const ElementRecord e = load_element(state.mesh, ElementNumber(3));
        EXPECT_EQ(e.number.value, 3);
        EXPECT_EQ(e.words.material.value, 5);
        EXPECT_EQ(e.skeleton, 1);
        EXPECT_EQ(e.fluid, 2);
        EXPECT_EQ(e.integration_r, 3);
        EXPECT_EQ(e.integration_s, 4);
        EXPECT_EQ(e.real_attribute, 0.5F);
    }
    {
        const Edition kind(DISPLACEMENT);
        store_element(state.mesh, ElementNumber(3), ELEMENT_CONTINUUM, record());
        EXPECT_EQ(load_element(state.mesh, ElementNumber(3)).thickness, 0.25F);
        EXPECT_EQ(load_element(state.mesh, ElementNumber(3)).density, 1.75F);
    }
    {
        const Edition kind(HEAD);
        store_element(state.mesh, ElementNumber(3), ELEMENT_CONTINUUM, record());
        EXPECT_EQ(load_element(state.mesh, ElementNumber(3)).attribute, -105);
    }
}

// --- start numbers -----------------------------------------------------------------------------------------

class StartNumbers : public ::testing::Test {
protected:
    void TearDown() override {
        state.deck.edit = EditCards{};
        state.source = EditSource{};
    }
    struct Starts {
        std::int32_t beams, trusses;
        bool operator==(const Starts&) const = default;
        friend std::ostream& operator<<(std::ostream& out, const Starts& starts) {
            return out << "beams from " << starts.beams << ", trusses from " << starts.trusses;
        }
    };
    struct Range {
        std::int32_t lowest, highest;
    };
    // The first numbers for a mesh with the ranges of continuum elements, beams and trusses; a range up to 0
    // is a section that is not there.
    static Starts starts(std::int32_t first_element, std::int32_t first_beam, std::int32_t first_truss,
                         Range continuum, Range beams, Range trusses) {
        state.source = EditSource{};
        state.source.counts.continuum_elements = continuum.highest > 0 ? 1 : 0;
        state.source.counts.beams = beams.highest > 0 ? 1 : 0;
        state.source.counts.trusses = trusses.highest > 0 ? 1 : 0;
        const Range ranges[] = {continuum, beams, trusses};
        for (int i = 0; i < 3; ++i) {
            if (ranges[i].highest > 0) {
                state.source.elements[i].include(ElementNumber(ranges[i].lowest));
                state.source.elements[i].include(ElementNumber(ranges[i].highest));
            }
        }
        state.deck.edit.first_element = ElementNumber(first_element);
        state.deck.edit.first_beam = ElementNumber(first_beam);
        state.deck.edit.first_truss = ElementNumber(first_truss);
        fix_start_numbers(state.deck.edit, state.source);
        return {state.deck.edit.first_beam.value, state.deck.edit.first_truss.value};
    }
    static constexpr Range NONE{0, 0};
};

TEST_F(StartNumbers, BeamsThatWouldOverlapAreRaised) {
    EXPECT_EQ(starts(1, 50, 0, {1, 100}, {101, 110}, NONE), (Starts{101, 0}));
    EXPECT_EQ(starts(1, 100, 0, {1, 100}, {101, 110}, NONE), (Starts{101, 0}));
}

TEST_F(StartNumbers, StartBehindTheLastElementStays) {
    EXPECT_EQ(starts(1, 101, 111, {1, 100}, {101, 110}, {111, 120}), (Starts{101, 111}));
    EXPECT_EQ(starts(1, 500, 900, {1, 100}, {101, 110}, {111, 120}), (Starts{500, 900}));
}

TEST_F(StartNumbers, RangeCountsAndNotTheNumberOfElements) {
    // Continuum elements 10 to 30 from number 5: the last is 25.
    EXPECT_EQ(starts(5, 25, 0, {10, 30}, {40, 44}, NONE), (Starts{26, 0}));
    EXPECT_EQ(starts(5, 26, 0, {10, 30}, {40, 44}, NONE), (Starts{26, 0}));
}

TEST_F(StartNumbers, TrussesFollowTheRaisedBeams) {
    // Beams 40 to 44 from 101: the last is 105.
    EXPECT_EQ(starts(1, 50, 60, {1, 100}, {40, 44}, {50, 51}), (Starts{101, 106}));
}

TEST_F(StartNumbers, TrussesFollowBeamsThatWereNotRaised) {
    EXPECT_EQ(starts(1, 200, 150, {1, 100}, {40, 44}, {50, 51}), (Starts{200, 205}));
}

TEST_F(StartNumbers, TrussesFollowTheContinuumWithoutBeams) {
    EXPECT_EQ(starts(1, 0, 7, {1, 100}, NONE, {50, 51}), (Starts{0, 101}));
}

TEST_F(StartNumbers, BeamsBeginAtOneWithoutAContinuum) {
    EXPECT_EQ(starts(77, 0, 0, NONE, {40, 44}, {50, 51}), (Starts{1, 6}));
    EXPECT_EQ(starts(77, 3, 0, NONE, {40, 44}, NONE), (Starts{3, 0}));
}

TEST_F(StartNumbers, StartsOfMissingTypesStay) {
    EXPECT_EQ(starts(1, 5, 6, {1, 100}, NONE, NONE), (Starts{5, 6}));
}

// --- the copy of the result --------------------------------------------------------------------------------

class ResultCopy : public ChannelTest {
protected:
    Channel& mesh = state.channels.open(55, "out.Mes", OpenStatus::result);
    Channel& copy = state.channels.open(8, "MeshFile.Mes", OpenStatus::work);

    void fill(std::int32_t count) const {
        for (std::int32_t i = 1; i <= count; ++i)
            mesh.write_line(std::to_string(i));
    }
    static std::size_t lines_in(const std::string& text) {
        return static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n'));
    }
};

TEST_F(ResultCopy, HasFullLinesAndLeavesTheSourceAtItsStart) {
    fill(3);
    copy_result(mesh, copy);
    EXPECT_EQ(mesh.read_whole_line("a line"), "1");
    state.channels.take_results();
    state.channels.close_all();
    const std::string blanks(125, ' ');
    EXPECT_EQ(directory.read("MeshFile.Mes"), "1" + blanks + "\n2" + blanks + "\n3" + blanks + "\n");
    EXPECT_EQ(directory.read("out.Mes"), "1\n2\n3\n");
}

TEST_F(ResultCopy, OfNothingIsEmpty) {
    copy_result(mesh, copy);
    state.channels.close_all();
    EXPECT_EQ(directory.read("MeshFile.Mes"), "");
}

TEST_F(ResultCopy, Of320000LinesIsWhole) {
    fill(320000);
    copy_result(mesh, copy);
    state.channels.close_all();
    EXPECT_EQ(lines_in(directory.read("MeshFile.Mes")), 320000U);
}

TEST_F(ResultCopy, OfMoreLinesIsCutWhileTheResultStaysWhole) {
    fill(320001);
    copy_result(mesh, copy);
    EXPECT_EQ(mesh.lines_before(), 0);
    state.channels.take_results();
    state.channels.close_all();
    const std::string copied = directory.read("MeshFile.Mes");
    EXPECT_EQ(lines_in(copied), 320000U);
    EXPECT_EQ(copied.substr(copied.size() - 127), "320000" + std::string(120, ' ') + "\n");
    EXPECT_EQ(lines_in(directory.read("out.Mes")), 320001U);
}

}  // namespace
}  // namespace brelan::test
