// From the cards of a base mesh to the block file "Bmesh.Tmp".
#pragma once

#include <cstdint>

#include "mesh/block_tables.h"
#include "mesh/edition.h"
#include "text/channels.h"

namespace brelan {

// Divisions of a block column or row, and the distance of its mid key point from its start.
struct BlockDivision {
    std::int32_t count = 1;
    float middle = 0.0F;
};

// A side of length L whose middle key point lies at a L from its fine end maps equal steps of the local
// coordinate to lengths that grow from that end (quadratic isoparametric mapping, O. C. Zienkiewicz, The
// Finite Element Method, on grading by mid-side nodes). The count makes the first of them the wanted length;
// it comes out below 1, or as the smallest integer, for lengths that make no sense.
BlockDivision divide_strip(const BlockStrip& strip);

// Writes "Bmesh.Tmp" from the cards in BLOCKS and sets FIELD. Ends the run at a division count below 1,
// naming the card row.
void write_block_file(Channels& channels, LayoutKind kind, const BlockCards& block_cards, FieldBounds& field);

}  // namespace brelan
