// The main deck of an earth dam: a base mesh, and the groups that make it a dam.
#pragma once

#include <cstdint>

#include "dam/dam_outlines.h"
#include "dam/dam_tables.h"
#include "deck/deck_tables.h"
#include "deck/made_deck.h"
#include "mesh/cut_method.h"
#include "mesh/edition.h"
#include "text/channels.h"

namespace brelan {

// Checks the cards of a dam and writes its decks. Sets prepared_kind_code and the count of decks, fills the
// list of decks for a dam with shells, and makes "..\EarthDam.Meg" the deck of the run. Ends the run at a dam
// that cannot be.
void write_dam_decks(Channels& channels, LayoutKind kind, CutMethod cut, CardMemory& memory, DeckList& decks,
                     DamCards& dam, DamSizes& sizes);

// The meshes of an edit that cuts groups, and the number of the first element.
struct DamEdit {
    std::string_view source, result;
    std::int32_t first_element = 1;
};

// Writes an edit that cuts the groups into a mesh within the dam's limits.
void write_dam_edit(LayoutKind kind, DeckWriter& deck, const DamCards& dam, const DamSizes& sizes,
                    const DamEdit& edit, const std::vector<DamGroup>& groups);

// Writes Card 3.2 in the columns that the element number needs.
void write_start_numbers(DeckWriter& deck, std::int32_t first_element, std::int32_t first_node);

// JK of Card 1.1: the kind of the edition.
std::int32_t kind_of_decks(LayoutKind kind);

}  // namespace brelan
