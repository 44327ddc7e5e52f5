// Lines of the normalised deck: integers in five columns, reals in twelve, a blank behind each, ten to a
// line.
#pragma once

#include <cstdint>
#include <span>

#include "deck/card.h"
#include "deck/deck_tables.h"
#include "text/channels.h"

namespace brelan {

// I-line: integers, ten to a line. An empty list is one empty line.
void write_integers(Channel& deck, std::span<const std::int32_t> values);

// E-line: reals, ten to a line.
void write_reals(Channel& deck, std::span<const float> values);

// One line of the values of a card, by the form of its fields.
void write_card(const CardValues& values, Channel& deck, const CardFields& fields);

// A real as the deck shows it: rounded to five digits.
float shown_real(float value);

// True for an integer that five columns show.
bool fits_shown_integer(std::int32_t value);

// True for reals that the normalised deck does not tell apart.
bool written_alike(float a, float b);

}  // namespace brelan
