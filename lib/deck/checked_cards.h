// What the checker does with each card: check, default, write to the normalised deck.
#pragma once

#include <cstdint>

#include "deck/card_table.h"
#include "deck/deck_tables.h"
#include "mesh/edition.h"
#include "text/channels.h"
#include "text/console.h"

namespace brelan {

// The deck without its comments, and the normalised deck, while the checker runs.
Channel& deck(Channels& channels);
Channel& normalised(Channels& channels);

// A value of the card checked last, cut to an integer.
std::int32_t value_of(const CheckedDeck& checker, std::int32_t position);

// Checks a card and leaves its values, defaults included, in CheckedDeck::values.
void check(Channels& channels, LayoutKind kind, CheckedDeck& checker, Console& console, const Card& card);

// Checks a card and writes it to the normalised deck.
void pass(Channels& channels, LayoutKind kind, CheckedDeck& checker, Console& console, const Card& card);

// The count on the card just passed. Ends the run when it is above the size of the table behind it.
std::int32_t count_on(Channels& channels, const CheckedDeck& checker, const Card& card, std::int32_t most);

// Passes the list of numbers behind a card. Nothing is read for a count of 0 or less, and an empty line
// written.
void pass_integer_list(Channels& channels, CheckedDeck& checker, const Card& card, std::int32_t count);

}  // namespace brelan
