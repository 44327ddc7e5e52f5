// Areas and lengths by step, worked out by hand for the pit of stage.dat.

#include "analysis/stage_areas.h"

#include "analysis/mesh_file.h"
#include "lib/run/memory_run.h"

namespace brelan::test {
namespace {

// Eight squares of side 1, materials 1; the two at the upper left are dug out.
class PitInStages : public ::testing::Test {
protected:
    PitInStages() : project(Kind::displacement) {
        lay_out(project, Kind::displacement, example("stage.dat"));
        const brelan::RunResult result = run_deck(input_of(project));
        EXPECT_EQ(result.end.status, STATUS_FINISHED) << result.end.text;
        mesh = *mesh_of_text(result.files->text(result.mesh), "Stage.Mes", LayoutKind::displacement);
        stages = Stages(mesh, result.activity);
        areas = stage_areas(mesh, corners_of(mesh), stages);
    }

    std::string row_text(ElementClass of, std::int32_t material) const {
        std::string text;
        for (const StageRow& row : areas.rows)
            if (row.of == of && row.material == material)
                for (const StageAmount& at : row.amounts)
                    text += std::to_string(at.elements) + ":" + std::to_string(std::lround(at.stands)) + "+" +
                            std::to_string(std::lround(at.comes)) + "-" +
                            std::to_string(std::lround(at.goes)) + " ";
        return text;
    }

    const Project project;
    MeshLists mesh;
    Stages stages;
    StageAreas areas;
};

// The ground of the pit goes at step 2, its back-fill comes at step 6, and the wall of length 2 at step 1.
// The highest material of the deck is 5: those that come or go have 6 and 7 of their own.
TEST_F(PitInStages, AreasComeAndGoByTheirMaterials) {
    EXPECT_EQ(areas.steps, (std::vector<std::int32_t>{0, 1, 2, 6}));
    EXPECT_EQ(row_text(ElementClass::solid, 1), "6:6+0-0 6:6+0-0 6:6+0-0 6:6+0-0 ");
    EXPECT_EQ(row_text(ElementClass::solid, 6), "2:2+0-0 2:2+0-0 0:0+0-2 0:0+0-0 ");
    EXPECT_EQ(row_text(ElementClass::solid, 7), "0:0+0-0 0:0+0-0 0:0+0-0 2:2+2-0 ");
    EXPECT_EQ(row_text(ElementClass::beam, 1), "0:0+0-0 2:2+2-0 2:2+0-0 2:2+0-0 ");
    EXPECT_EQ(areas.rows.size(), 4U);
}

TEST_F(PitInStages, EachStepIsTheOneBeforeWithWhatComesAndWithoutWhatGoes) {
    ASSERT_FALSE(areas.rows.empty());
    bool changes = false;
    for (const StageRow& row : areas.rows)
        for (std::size_t k = 1; k < row.amounts.size(); ++k) {
            const StageAmount &before = row.amounts[k - 1], &at = row.amounts[k];
            EXPECT_DOUBLE_EQ(at.stands, before.stands + at.comes - at.goes) << row.material;
            changes = changes || at.changes();
        }
    EXPECT_TRUE(changes);
}

TEST_F(PitInStages, MeshInAStepMeasuresWhatStandsThere) {
    for (std::size_t k = 0; k < areas.steps.size(); ++k) {
        const MeshLists there = mesh_in_step(mesh, stages, areas.steps[k]);
        double solids = 0.0;
        for (const StageRow& row : areas.rows)
            solids += row.measures_area() ? row.amounts[k].stands : 0.0;
        EXPECT_DOUBLE_EQ(count_mesh(there, corners_of(there)).area, solids) << areas.steps[k];
    }
    // The two squares take the corners along that nothing else has: (0, 2) and (1, 2).
    const MeshLists before = mesh_in_step(mesh, stages, 1), after = mesh_in_step(mesh, stages, 2);
    EXPECT_EQ(after.elements.size() + 2, before.elements.size());
    EXPECT_EQ(after.nodes.size() + 2, before.nodes.size());
    EXPECT_EQ(before.nodes.size(), mesh.nodes.size());
}

TEST(StageAreas, OfAMeshWithoutStagesAreThoseOfStepZero) {
    MeshLists mesh;
    mesh.finish();
    const StageAreas areas = stage_areas(mesh, corners_of(mesh), {});
    EXPECT_EQ(areas.steps, std::vector<std::int32_t>{0});
    EXPECT_TRUE(areas.rows.empty());
}

}  // namespace
}  // namespace brelan::test
