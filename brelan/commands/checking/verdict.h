// What the batch program's own checker says about a deck.
#pragma once

#include <optional>
#include <string>

#include "analysis/mesh_lists.h"
#include "commands/batch/edition.h"
#include "model/deck.h"

namespace brelan::tool {

struct Verdict {
    int status = 0;  // 0 accepted; else the exit status with which the batch program would end at the cards
    std::string message;  // with the deck's file and line
    int line = 0;         // of the deck, 0 where the message names none

    // The mesh that the cards of a base mesh make, where they are accepted; else why there is none.
    std::optional<MeshLists> base_mesh;
    std::string no_base_mesh;

    // Of a dam with shells that has a core or a wall: the mesh by the rules without its shells.
    std::optional<MeshLists> dam_body;
};

// Checks the deck in memory: no file is read or written.
Verdict verdict_of(const NotedDeck& deck, const Edition& edition);

// Of a deck that is refused while it is read: what was noted then.
Verdict verdict_of_fault(const NotedDeck& deck);

// Of the sizes of an earth dam, without its meshes; all other decks are accepted.
Verdict verdict_of_dam(const NotedDeck& deck, const Edition& edition);

}  // namespace brelan::tool
