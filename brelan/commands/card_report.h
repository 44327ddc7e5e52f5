// A card as a person reads it: its line, its fields by name, and the one in question marked.
#pragma once

#include <optional>
#include <string>

#include "model/deck.h"

namespace brelan::tool {

// A value as a person would write it.
std::string value_text(const DeckField& field);

// The fields of a card in one line: "NSNEL 1, NSNODE 1, NSBEAM 0 (default)". Of a list, name or title what it
// holds.
std::string card_line(const DeckCard& card);

// The card below the message about it, indented, with a line end each:
//
//       7 |   1  1  1  1  1
//         |               ^
//     Card 3.2, first numbers: 2 to 4 values
//         NSNEL   1
//         ...
//       > (5th)   1   one too many
std::string card_report(const NotedDeck& deck, const DeckFault& fault);

// A name that is taken from the working directory: how to name a file of the project instead.
std::string name_here(std::string_view name);
// The same for the result of a run whose working directory goes with it.
std::string lost_result(std::string_view name);

// The card that stands on a line of the deck's file, its place in NotedDeck::cards.
std::optional<std::size_t> card_at(const NotedDeck& deck, int line);

}  // namespace brelan::tool
