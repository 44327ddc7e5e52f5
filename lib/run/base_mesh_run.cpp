#include "run/base_mesh_run.h"

#include "blocks/block_deck.h"
#include "blocks/block_mesh.h"
#include "run/read_cards.h"
#include "run/run.h"
#include "text/trace.h"

namespace brelan {

std::int32_t run_base_mesh(Run& run) {
    run.trace.pass(" Pass 4A ", 4.1F);
    read_base_mesh_cards(run);
    write_block_file(run.channels, run.settings.kind(), run.block_cards, run.field);
    make_block_mesh(run.channels, run.settings.kind(), run.block_cards, run.field);
    run.trace.pass(" Pass 4B ", 4.2F);
    return run.block_cards.edit_follows;
}

}  // namespace brelan
