// Plans of blocks written by hand: they say what the cards cannot.
#pragma once

#include <array>
#include <filesystem>
#include <sstream>
#include <utility>

#include "blocks/block_plan.h"
#include "lib/blocks/listing.h"
#include "run/base_mesh_run.h"
#include "support/state.h"

namespace brelan::test {

// A block of a plan, with the attributes that a base mesh gives its elements.
inline PlannedBlock hand_block(const std::array<int, 9>& key, int material = 1, int across = 1,
                               int down = 1) {
    PlannedBlock block{key, material, across, down, {}};
    block.attributes.fluid = 1;
    block.attributes.thickness = 1.0F;
    block.attributes.density = 2.3F;
    return block;
}

inline BlockPlan hand_plan(std::vector<KeyPoint> points, std::vector<PlannedBlock> blocks) {
    BlockPlan plan;
    plan.title = "by hand";
    plan.field = {-1000.0F, 1000.0F, -1000.0F, 1000.0F};  // out of reach
    plan.block_columns = plan.block_rows = 1;
    plan.key_points = std::move(points);
    plan.blocks = std::move(blocks);
    return plan;
}

// Key points of one block with straight sides and the mid points in the middles, by columns from the top; and
// the block's keys among them.
inline std::vector<KeyPoint> rectangle(float left, float right, float bottom, float top) {
    std::vector<KeyPoint> points;
    for (const float x : {left, (left + right) / 2.0F, right})
        for (const float y : {top, (bottom + top) / 2.0F, bottom})
            points.push_back({x, y});
    return points;
}
inline constexpr std::array<int, 9> RECTANGLE_KEYS{7, 1, 3, 9, 4, 2, 6, 8, 5};

// A working directory below a project directory, so that "..\Bmesh.dat" has its place.
class BlockMeshTest : public ::testing::Test {
protected:
    BlockMeshTest() {
        std::filesystem::create_directory("work");
        std::filesystem::current_path("work");
        state.deck.blocks.fixes_left = state.deck.blocks.fixes_right = state.deck.blocks.fixes_top =
            state.deck.blocks.fixes_bottom = 0;
        state.deck.blocks.third = 0.0F;
    }

    void generate(const BlockPlan& plan) const {
        generate_base_mesh(state, plan);
        state.channels.take_results();
    }
    const WorkDirectory& directory() const { return directory_; }
    std::string coord() const { return directory_.read("work/Coord.dat"); }
    std::string index() const { return directory_.read("work/Index.dat"); }
    std::string base() const { return directory_.read("Bmesh.dat"); }

    // Lines of "..\Bmesh.dat" from the nodes on, without the headings of the elements.
    std::vector<std::string> records() const {
        std::vector<std::string> lines;
        std::istringstream text(base());
        for (std::string line; std::getline(text, line);)
            lines.push_back(line);
        lines.erase(lines.begin(), lines.begin() + 5);
        for (auto at = lines.begin(); at != lines.end(); ++at) {
            if (*at == "    ELEMENT INDEX ") {
                lines.erase(at, at + 2);
                break;
            }
        }
        return lines;
    }

private:
    WorkDirectory directory_;
    Edition edition_{DISPLACEMENT};
};

}  // namespace brelan::test
