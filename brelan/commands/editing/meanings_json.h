// What the numbers of a deck's cards mean, from the rows of the card table.
#pragma once

#include "cli/json.h"
#include "model/deck.h"

namespace brelan::tool {

// By the number of a card, of those that occur: heading, a note and the fields. Cards of one number that
// differ by the group's kind share an entry, with the fields of all of them.
Json meanings_json(const NotedDeck& deck);

}  // namespace brelan::tool
