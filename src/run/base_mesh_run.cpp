#include "run/base_mesh_run.h"

#include "basemesh/block_deck.h"
#include "basemesh/block_mesh.h"
#include "run/read_cards.h"
#include "run/trace.h"

namespace brelan {

std::int32_t run_base_mesh() {
    TRACE(" Pass 4A ", 4.1F);
    read_base_mesh_cards();
    BLOCKDECK();
    BLOCKMESH();
    TRACE(" Pass 4B ", 4.2F);
    return BLOCKS.IGMOD;
}

}  // namespace brelan
