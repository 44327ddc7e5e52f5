// Lines of the normalised deck: integers in five columns, reals in twelve, a blank behind each, ten to a
// line.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include "deck/deck_tables.h"
#include "text/channels.h"

namespace brelan {

// I-line: integers, ten to a line. An empty list is one empty line.
void write_integers(Channel& deck, std::span<const std::int32_t> values);

// E-line: reals, ten to a line.
void write_reals(Channel& deck, std::span<const float> values);

// One line of the first values of the card, by the letters of `form`: I cuts the value to an integer, E
// writes the real.
void write_card(const CheckedDeck& checker, Channel& deck, std::string_view form);

// True for reals that the normalised deck does not tell apart.
bool written_alike(float a, float b);

}  // namespace brelan
