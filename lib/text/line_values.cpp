#include "text/line_values.h"

namespace brelan {

ValueCount count_values(const TextLine& line) {
    const auto used = [&](int column) { return line(column) != ' ' && line(column) != ','; };
    ValueCount found;
    const auto note = [&](int column) {
        ++found.count;
        found.last_column = column;
    };
    walk_words(used, note);
    if (!used(LINE_COLUMNS) && used(LINE_COLUMNS - 1))
        note(LINE_COLUMNS - 1);
    return found;
}

}  // namespace brelan
