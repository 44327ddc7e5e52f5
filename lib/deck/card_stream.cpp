#include "deck/card_stream.h"

#include <algorithm>
#include <string>

#include "deck/deck_tables.h"
#include "text/free_field.h"

namespace brelan {

void refuse_byte_order_mark(Channel& text) {
    if (text.pass_byte_order_mark())
        text.fail_here("expected text, found a byte order mark in front of it; save the file without one");
}

void strip_deck(Channels& channels, int source, int target) {
    Channel& from = channels.at(source);
    refuse_byte_order_mark(from);
    Channel& to = channels.at(target);
    to.follow(from);
    while (!from.at_end()) {
        const std::string_view line = from.read_whole_line("a line");
        if (line.empty() || line.front() != '*')
            to.write_columns(line);
    }
    channels.close(source);
    to.rewind();
}

void read_values(Channel& deck, CardValues& values, const std::string& name, std::string_view label,
                 std::int32_t minimum, std::int32_t maximum, std::int32_t& known) {
    const TextLine line = deck.read_line(name);
    const ValueCount found = count_values(line);
    if (found.count < minimum || found.count > maximum)
        throw WrongCount{label, minimum, maximum, line, found, deck.place_behind()};
    deck.step_back(1);
    FreeFieldReader reader(deck, name, FreeFieldReader::Reach::one_line);
    for (known = 0; known < found.count; ++known)
        reader.read(values[known + 1]);
    reader.finish();
}

std::int32_t last_title_column(const TextLine& line) {
    constexpr std::int32_t longest_title = 80;
    const auto used = [&](int column) { return line(column) != ' '; };
    std::int32_t last = 0;
    walk_words(used, [&](int column) { last = column; });
    if ((!used(LINE_COLUMNS) && used(LINE_COLUMNS - 1)) || last > longest_title)
        return longest_title;
    return last;
}

bool is_bare_name(const TextLine& name) {
    constexpr std::size_t columns_searched = 30;
    return name.view().substr(0, columns_searched).find('\\') == std::string_view::npos;
}

TextLine name_from_parent(TextLine& name_field, const TextLine& name) {
    constexpr std::string_view parent = "..\\";
    if (!is_bare_name(name))
        return name;
    // The columns behind a name that was moved to the left keep what an earlier long name left there.
    const std::size_t start = name.view().find_first_not_of(' ');
    int column = 1;
    for (const char c : parent)
        name_field(column++) = c;
    const std::string_view copied = name.view().substr(0, LINE_COLUMNS - parent.size());
    for (const char c : copied.substr(std::min(start, copied.size())))
        name_field(column++) = c;
    return name_field;
}

}  // namespace brelan
