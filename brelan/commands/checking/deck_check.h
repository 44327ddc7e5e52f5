// All that is said of a deck before it runs: what the batch program's checker says, and what may be wrong.
#pragma once

#include <optional>
#include <vector>

#include "commands/batch/edition.h"
#include "commands/checking/doubts.h"
#include "commands/checking/verdict.h"
#include "model/deck.h"

namespace brelan::tool {

struct DeckCheck {
    NotedDeck deck;
    Edition edition;
    Verdict verdict;
    std::vector<Doubt> doubts;            // in the order of the deck
    std::optional<MeshLists> first_mesh;  // FILEA, or the base mesh, where it could be read

    // The batch program will finish, as far as can be seen without running it.
    bool accepted() const;
};

// True for what the cut by the rules alone brings about.
bool is_of_rules(const Doubt& doubt);

// The meshes that the deck reads are those of its place.
DeckCheck check_of(NotedDeck deck, const Edition& edition, const DeckPlace& place);

// What the text alone tells: no file is looked at, and no mesh made. It is quick enough for each key that is
// struck.
DeckCheck text_check_of(NotedDeck deck, const Edition& edition);

}  // namespace brelan::tool
