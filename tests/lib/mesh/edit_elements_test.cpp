// Deletion and new materials: which elements they touch, and what the tables hold behind the read.
#include <array>
#include <map>

#include "mesh/edit_mesh.h"
#include "mesh/edit_source.h"
#include "mesh/edit_tables.h"
#include "mesh/selection.h"
#include "support/state.h"

namespace brelan::test {
namespace {

//   5--60--6-------7--70--8     continuum elements 10, 20, 30 of materials 1, 2, 3
//   |  10  |  20   |  30  |     beams 40, 50 and trusses 60, 70 of materials 1, 2
//   1--40--2-------3--50--4
constexpr std::string_view MESH =
    "three squares\n"
    "heading\n"
    "8 3 2 2\n"
    "heading\n"
    "heading\n"
    "1 1 0 0 1 1 0 0\n"
    "2 0 0 0 1 1 1 0\n"
    "3 0 0 0 1 1 2 0\n"
    "4 0 0 0 1 1 3 0\n"
    "5 0 0 0 1 1 0 1\n"
    "6 0 0 0 1 1 1 1\n"
    "7 0 0 0 1 1 2 1\n"
    "8 0 0 1 1 1 3 1\n"
    "heading\n"
    "heading\n"
    "10 1 2 6 5 0 0 0 0 1 1 1\n"
    "20 2 3 7 6 0 0 0 0 2 1 1\n"
    "30 3 4 8 7 0 0 0 0 3 1 1\n"
    "heading\n"
    "heading\n"
    "40 1 2 1 1\n"
    "50 3 4 2 1\n"
    "heading\n"
    "heading\n"
    "60 5 6 1 1\n"
    "70 7 8 2 1\n";

class EditElements : public ChannelTest {
protected:
    Edition edition{DISPLACEMENT};

    void SetUp() override { clear(); }
    void TearDown() override { clear(); }
    static void clear() {
        reset_mesh(state.mesh);
        state.deck.edit = EditCards{};
        state.source = EditSource{};
    }

    // A window over the left square, its beam and its truss.
    static void left_window(std::int32_t operation) {
        state.deck.edit.operation = operation;
        state.deck.edit.window_left = -1.0F;
        state.deck.edit.window_bottom = -1.0F;
        state.deck.edit.window_right = 1.2F;
        state.deck.edit.window_top = 2.0F;
    }
    // Reads the mesh as the edit does; gives the types of all elements.
    std::map<std::int32_t, std::int32_t> types() const {
        directory.write("in.Mes", MESH);
        Channel& mesh = state.channels.open(5, "in.Mes", OpenStatus::old);
        state.source.stripped.field_count = 8;
        scan_nodes(state.settings.kind(), state.source, mesh);
        const Selection selection = prepare_selection(state.deck.edit);
        edit_nodes(state.deck.edit, state.source, state.mesh, selection, mesh);
        scan_elements(state.settings.kind(), state.source, mesh);
        fix_start_numbers(state.deck.edit, state.source);
        for (const std::int8_t type : ELEMENT_TYPES)
            edit_elements(state.deck.edit, state.source, state.mesh, selection, mesh, type);
        std::map<std::int32_t, std::int32_t> result;
        for (const std::int32_t n : {10, 20, 30, 40, 50, 60, 70})
            result[n] = state.mesh.type[ElementNumber(n)];
        return result;
    }
    static std::vector<std::int32_t> materials() {
        std::vector<std::int32_t> result;
        for (const std::int32_t n : {10, 20, 30, 40, 50, 60, 70})
            result.push_back(state.mesh.words[ElementNumber(n)].material.value);
        return result;
    }
};

using Types = std::map<std::int32_t, std::int32_t>;
using Materials = std::vector<std::int32_t>;

constexpr std::int32_t DELETE = 2, RENAME = 3;
const Types ALL_KEPT{{10, 1}, {20, 1}, {30, 1}, {40, 2}, {50, 2}, {60, 3}, {70, 3}};
const Materials AS_READ{1, 2, 3, 1, 2, 1, 2};

TEST_F(EditElements, DeletionTakesWhatLiesInTheWindow) {
    left_window(DELETE);
    EXPECT_EQ(types(), (Types{{10, 0}, {20, 1}, {30, 1}, {40, 0}, {50, 2}, {60, 0}, {70, 3}}));
}

TEST_F(EditElements, SideOneTakesTheComplement) {
    left_window(DELETE);
    state.deck.edit.side = 1;
    EXPECT_EQ(types(), (Types{{10, 1}, {20, 0}, {30, 0}, {40, 2}, {50, 0}, {60, 3}, {70, 0}}));
}

TEST_F(EditElements, AnyOtherSideTakesNothing) {
    left_window(DELETE);
    state.deck.edit.side = 2;
    EXPECT_EQ(types(), ALL_KEPT);
}

TEST_F(EditElements, ListTakesElementsOfAnyType) {
    state.deck.edit.operation = DELETE;
    state.deck.edit.selection_mode = 1;
    state.deck.edit.list_count = 3;
    state.deck.edit.list[1] = 30;
    state.deck.edit.list[2] = -50;
    state.deck.edit.list[3] = 70;
    EXPECT_EQ(types(), (Types{{10, 1}, {20, 1}, {30, 0}, {40, 0}, {50, 0}, {60, 3}, {70, 0}}));
}

TEST_F(EditElements, ExcludedMaterialSurvivesInsideTheWindow) {
    left_window(DELETE);
    state.deck.edit.excluded_material_3 = MaterialNumber(1);
    EXPECT_EQ(types(), (Types{{10, 1}, {20, 1}, {30, 1}, {40, 0}, {50, 2}, {60, 0}, {70, 3}}));
    clear();
    left_window(DELETE);
    state.deck.edit.excluded_beam_material = MaterialNumber(1);
    EXPECT_EQ(types(), (Types{{10, 0}, {20, 1}, {30, 1}, {40, 2}, {50, 2}, {60, 0}, {70, 3}}));
    clear();
    left_window(DELETE);
    state.deck.edit.excluded_truss_material = MaterialNumber(1);
    EXPECT_EQ(types(), (Types{{10, 0}, {20, 1}, {30, 1}, {40, 0}, {50, 2}, {60, 3}, {70, 3}}));
}

TEST_F(EditElements, ThreeContinuumMaterialsCanBeExcluded) {
    left_window(DELETE);
    state.deck.edit.side = 1;
    state.deck.edit.excluded_material_1 = MaterialNumber(2);
    state.deck.edit.excluded_material_2 = MaterialNumber(3);
    EXPECT_EQ(types(), (Types{{10, 1}, {20, 1}, {30, 1}, {40, 2}, {50, 0}, {60, 3}, {70, 0}}));
}

TEST_F(EditElements, NewMaterialOfEachTypeGoesToWhatIsSelected) {
    left_window(RENAME);
    state.deck.edit.new_continuum_material = MaterialNumber(9);
    state.deck.edit.new_beam_material = MaterialNumber(8);
    state.deck.edit.new_truss_material = MaterialNumber(7);
    EXPECT_EQ(types(), ALL_KEPT);
    EXPECT_EQ(materials(), (Materials{9, 2, 3, 8, 2, 7, 2}));
}

TEST_F(EditElements, NewMaterialZeroLeavesTheOldOne) {
    left_window(RENAME);
    state.deck.edit.new_beam_material = MaterialNumber(8);
    EXPECT_EQ(types(), ALL_KEPT);
    EXPECT_EQ(materials(), (Materials{1, 2, 3, 8, 2, 1, 2}));
}

TEST_F(EditElements, ExcludedMaterialIsNotRenamed) {
    left_window(RENAME);
    state.deck.edit.new_continuum_material = MaterialNumber(9);
    state.deck.edit.new_beam_material = MaterialNumber(8);
    state.deck.edit.new_truss_material = MaterialNumber(7);
    state.deck.edit.excluded_material_1 = state.deck.edit.excluded_truss_material = MaterialNumber(1);
    types();
    EXPECT_EQ(materials(), (Materials{1, 2, 3, 8, 2, 1, 2}));
}

TEST_F(EditElements, OtherSideLeavesAllMaterials) {
    left_window(RENAME);
    state.deck.edit.new_continuum_material = state.deck.edit.new_beam_material =
        state.deck.edit.new_truss_material = MaterialNumber(9);
    state.deck.edit.side = 3;
    types();
    EXPECT_EQ(materials(), AS_READ);
}

TEST_F(EditElements, DeletionAndNewMaterialsKeepAllNumbers) {
    for (const std::int32_t operation : {DELETE, RENAME}) {
        clear();
        left_window(operation);
        state.deck.edit.first_node = NodeNumber(1000);
        state.deck.edit.first_element = ElementNumber(2000);
        types();
        EXPECT_EQ(state.mesh.x[NodeNumber(8)], 3.0F);
        EXPECT_EQ(state.mesh.codes[NodeNumber(8)], (NodeCodes{0, 0, 1, 0, 0}));
        EXPECT_EQ(state.mesh.words[ElementNumber(30)].corner_3.value, 8);
        EXPECT_EQ(state.mesh.node_in_use[NodeNumber(8)], 0) << "the numbering closes up later";
        EXPECT_EQ(state.mesh.type_in_use[ElementNumber(30)], -1) << "the numbering closes up later";
    }
}

TEST_F(EditElements, UnknownOperationStoresNothing) {
    for (const std::int32_t operation : {7, -1, 100}) {
        clear();
        state.mesh.words[ElementNumber(10)] = ElementWords{};
        state.deck.edit.operation = operation;
        EXPECT_EQ(types(), (Types{{10, 0}, {20, 0}, {30, 0}, {40, 0}, {50, 0}, {60, 0}, {70, 0}}));
        EXPECT_EQ(state.mesh.x[NodeNumber(4)], 0.0F);
        EXPECT_EQ(state.mesh.words[ElementNumber(10)].corner_1.value, 0);
        EXPECT_EQ(state.mesh.node_in_use[NodeNumber(1)], 0);
        EXPECT_EQ(state.mesh.type_in_use[ElementNumber(10)], -1);
    }
}

TEST_F(EditElements, CodesOfAnOldSelectionGoToTheNewNumber) {
    state.deck.edit.operation = 1;
    state.deck.edit.selection_mode = 1;
    state.deck.edit.first_node = NodeNumber(2);
    state.deck.edit.list_count = 1;
    state.deck.edit.list[1] = 4;
    state.deck.edit.new_codes = {5, 6, 7, 0, 0};
    types();
    EXPECT_EQ(state.mesh.codes[NodeNumber(5)], (NodeCodes{5, 6, 7, 0, 0}));
    EXPECT_EQ(state.mesh.codes[NodeNumber(4)], (NodeCodes{0, 0, 0, 0, 0}));
    EXPECT_EQ(state.mesh.codes[NodeNumber(9)], (NodeCodes{0, 0, 1, 0, 0}));
    EXPECT_EQ(state.mesh.node_in_use[NodeNumber(1)], 0);
    EXPECT_EQ(state.mesh.node_in_use[NodeNumber(9)], 1);
}

}  // namespace
}  // namespace brelan::test
