// The values on a line, told apart by blanks and commas.
#pragma once

#include <cstdint>

#include "text/text_line.h"

namespace brelan {

// The count of values on a line, and the column where the last of them ends.
struct ValueCount {
    std::int32_t count = 0;
    std::int32_t last_column = 0;
};

// Counts values by their separators, blanks and commas. A value that reaches column 126 is not counted: decks
// rely on nothing standing there.
ValueCount count_values(const TextLine& line);

// Ends of the words that end in columns 1 to 124, as flagged by `used`; `note` is told each.
template <class Used, class Note>
void walk_words(Used used, Note note) {
    bool previous = used(1);
    for (int column = 2; column <= LINE_COLUMNS - 1; ++column) {
        const bool now = used(column);
        if (previous && !now)
            note(column - 1);
        previous = now;
    }
}

}  // namespace brelan
