#include "run/base_mesh_run.h"

#include <string>
#include <utility>

#include "blocks/base_file.h"
#include "blocks/base_mesh.h"
#include "blocks/block_file.h"
#include "blocks/block_grid.h"
#include "blocks/raw_mesh.h"
#include "mesh/result_names.h"
#include "run/run.h"
#include "text/channel_numbers.h"
#include "text/run_end.h"
#include "text/trace.h"

namespace brelan {

namespace {

template <class Strips>
void check_strips(std::string_view card, std::int32_t count, const Strips& strips) {
    for (std::int32_t i = 1; i <= count; ++i)
        if (divide_strip(strips[i]).count < 1)
            fail_at(strips[i].place, std::string(card) + ", row " + std::to_string(i) +
                                         ": expected values that give at least one division");
}

}  // namespace

BaseMesh generate_base_mesh(Run& run, const BlockPlan& plan) {
    const LayoutKind kind = run.settings.kind();
    const auto open = [&](int number, std::string_view name, OpenStatus status) -> Channel& {
        Channel& file = run.channels.open(number, name, status);
        file.set_write_only(true);
        return file;
    };
    write_block_file(kind, plan, run.deck.blocks.third, open(CHANNEL_BLOCKS, "Bmesh.Tmp", OpenStatus::work));
    run.channels.close(CHANNEL_BLOCKS);
    Channel& coordinates = open(CHANNEL_COORDINATES, "Coord.dat", OpenStatus::work);
    Channel& index = open(CHANNEL_INDEX, "Index.dat", OpenStatus::work);
    Channel& base = open(CHANNEL_BASE, BASE_MESH_FILE, OpenStatus::result);
    refuse_unwritable(kind, plan);
    const BlockGrid grid = lay_out_blocks(plan);
    if (const std::int64_t required = work_space_of(grid); required > WORK_SPACE) {
        write_work_space(required, coordinates);
        stop_run("100");
    }
    RawMesh raw = make_raw_mesh(grid);
    write_raw_nodes(kind, raw, coordinates);
    write_raw_elements(kind, raw, index);
    run.channels.close(CHANNEL_COORDINATES);
    run.channels.close(CHANNEL_INDEX);
    refuse_unwritable(raw);
    BaseMesh mesh = make_base_mesh(kind, run.deck.blocks, std::move(raw));
    if (plan.placing == NodePlacing::by_grid)
        refuse_flat(mesh);
    write_base_file(kind, mesh, base);
    run.channels.close(CHANNEL_BASE);
    refuse_too_large(mesh);
    return mesh;
}

BaseMesh run_base_mesh(Run& run) {
    run.trace.pass(" Pass 4A ", 4.1F);
    run.deck.require(DeckPart::base_mesh);
    check_strips("Card 4.3 (W, DX, AX)", run.deck.blocks.block_columns, run.deck.blocks.columns);
    check_strips("Card 4.4 (H, DY, AY)", run.deck.blocks.block_rows, run.deck.blocks.rows);
    BaseMesh mesh = generate_base_mesh(
        run, plan_blocks(run.deck.blocks,
                         run.cut == CutMethod::sound ? NodePlacing::by_grid : NodePlacing::summed));
    run.trace.pass(" Pass 4B ", 4.2F);
    return mesh;
}

}  // namespace brelan
