// A card deck as the checker sees it: lines of 126 columns, comments, values and their count.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "deck/deck_tables.h"
#include "text/channels.h"
#include "text/line_values.h"
#include "text/run_end.h"
#include "text/text_line.h"

namespace brelan {

// Ends the run where a text that has just been opened begins with a byte order mark: the mark would be data
// of the first line, and make a comment there a card.
void refuse_byte_order_mark(Channel& text);

// Copies the lines of the source that are no comments ("*" in column 1), as 126 columns each. Closes the
// source channel and rewinds the target.
void strip_deck(Channels& channels, int source, int target);

// A card with too few or too many values: a user's error.
struct WrongCount {
    std::string_view label;
    std::int32_t minimum = 0, maximum = 0;
    TextLine line;
    ValueCount found;
    FilePlace place;
};

// Checks and reads the next card on a channel. The values go to `values` from position 1; `known` counts them
// on the way. Throws WrongCount for a count of values outside minimum to maximum; a value that is not a
// number, or the end of the deck, ends the run as a failure that names the card as told.
void read_values(Channel& deck, CardValues& values, const std::string& name, std::string_view label,
                 std::int32_t minimum, std::int32_t maximum, std::int32_t& known);

// The last column of a title line's text, at most 80; 0 for a blank line.
std::int32_t last_title_column(const TextLine& line);

// True for a file name field with no backslash in its first 30 columns.
bool is_bare_name(const TextLine& name);

// Normalises a file name field: a name with no backslash in its first 30 columns is taken from the parent of
// the working directory. `name_field` keeps what stands behind a name that was moved to the left.
TextLine name_from_parent(TextLine& name_field, const TextLine& name);

}  // namespace brelan
