// A deck as values: what its cards say, in the digits that the normalised deck shows.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "deck/dam_cards.h"
#include "mesh/block_tables.h"
#include "mesh/combine_tables.h"
#include "mesh/edit_tables.h"
#include "mesh/group_tables.h"
#include "text/run_end.h"
#include "text/text_line.h"

namespace brelan {

// The parts of a deck that a run takes one after the other.
enum class DeckPart { mode, combination, base_mesh, edit, operation, groups, nothing };

struct MeshNames {
    TextLine first;   // FILEA
    TextLine second;  // FILEB
    TextLine result;  // FILEC or FILEM
};

struct Deck {
    std::int32_t mode = 0;            // IMOD
    std::int32_t kind_code = 0;       // JK
    FilePlace mode_place, end_place;  // of Card 1.1, and behind the last card

    MeshNames names;
    bool has_edit = false;       // the cards of an edit are there
    bool uses_template = false;  // IEDIT 5: a slope template stands for FILEA
    CombinationCards combination;
    BlockCards blocks;
    EditCards edit;
    GroupCards groups;
    DamCards dam;

    bool is_dam() const { return mode == 3; }

    // The first fault of a value that is none of the cards' form: a run meets it when it takes the part.
    struct Fault {
        DeckPart part = DeckPart::nothing;
        RunEnd end;
    };
    std::optional<Fault> fault;

    // Ends the run at the fault of a part.
    void require(DeckPart part) const {
        if (fault && fault->part == part)
            throw fault->end;
    }
};

}  // namespace brelan
