#include "run/base_mesh_run.h"

#include "blocks/block_deck.h"
#include "blocks/block_mesh.h"
#include "run/run.h"
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

std::int32_t run_base_mesh(Run& run) {
    run.trace.pass(" Pass 4A ", 4.1F);
    run.deck.require(DeckPart::base_mesh);
    check_strips("Card 4.3 (W, DX, AX)", run.deck.blocks.block_columns, run.deck.blocks.columns);
    check_strips("Card 4.4 (H, DY, AY)", run.deck.blocks.block_rows, run.deck.blocks.rows);
    write_block_file(run.channels, run.settings.kind(), run.deck.blocks, run.field);
    make_block_mesh(run.channels, run.settings.kind(), run.deck.blocks, run.field);
    run.trace.pass(" Pass 4B ", 4.2F);
    return run.deck.blocks.edit_follows;
}

}  // namespace brelan
