// A deck's text with one value changed: its layout, its comments and all other values stay.
#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "model/deck.h"

namespace brelan::tool {

// Card and field are places in NotedDeck::cards and in their fields. A value that was not given is written
// behind the last one of its card, with the defaults of those between. Each throws Failure where the card has
// no room for it, and where the text is no one value.
std::string with_value(const NotedDeck& deck, std::size_t card, std::size_t field, std::string_view value);

// The name of a file, or the title of a group.
std::string with_name(const NotedDeck& deck, std::size_t card, std::string_view name);

// A list of whole numbers or of thicknesses; it may take more or fewer lines than before.
std::string with_list(const NotedDeck& deck, std::size_t card, std::span<const float> values);

// --- several values at once ----------------------------------------------------------------------

// What a value is to be: its place in NotedDeck::cards, and in the fields of the card or the numbers of a
// list.
struct ValueChange {
    std::size_t card = 0, place = 0;
    std::string text;
};

// What stands in a line from one byte to another becomes a text, which may hold line ends.
struct TextEdit {
    int line = 0;  // from 1
    std::size_t from = 0, to = 0;
    std::string text;
};

// The edits of a deck that change these values, one for each line, from the last line to the first. Throws
// Failure as with_value does, and where a number of a list stands for several.
std::vector<TextEdit> value_edits(const NotedDeck& deck, std::span<const ValueChange> changes);

// A text with edits that do not overlap, from the last to the first.
std::string edited_text(std::string_view text, std::span<const TextEdit> edits);

// --- numbers as texts ----------------------------------------------------------------------------

// A real number with the five digits that a deck keeps, and with as many decimals as it needs: at least one
// where the text whose place it takes has decimals, and as many as that has where it ends with zeros.
std::string text_like(double value, std::string_view old);

// The shortest text that is read back as the value; a real number has its point. Throws Failure for what is
// no finite number.
std::string shortest_text(float value, FieldForm form);

}  // namespace brelan::tool
