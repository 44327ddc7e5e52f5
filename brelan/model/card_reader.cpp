#include "model/card_reader.h"

#include <cmath>
#include <span>

#include "deck/card_stream.h"
#include "text/free_field.h"
#include "text/real_to_integer.h"
#include "text/run_end.h"

namespace brelan::tool {

namespace {

// A name where no file can be: the text stays in memory.
constexpr int CH_CARDS = 1;
constexpr std::string_view NO_FILE = "/dev/null/cards";

struct Word {
    std::string text;
    int first = 0, last = 0;  // columns
};

// The words of a card as the checker counts them.
std::vector<Word> words_of(const TextLine& line) {
    const auto used = [&](int column) { return line(column) != ' ' && line(column) != ','; };
    std::vector<Word> words;
    for (int column = 1; column <= LINE_COLUMNS; ++column) {
        if (!used(column))
            continue;
        if (column == 1 || !used(column - 1))
            words.push_back({"", column, column});
        words.back().text += line(column);
        words.back().last = column;
    }
    return words;
}

std::vector<std::string> split_names(std::string_view names) {
    std::vector<std::string> list;
    for (const char c : names) {
        if (list.empty() || c == ' ')
            list.emplace_back();
        if (c != ' ')
            list.back() += c;
    }
    return list;
}

std::string joined(const std::vector<std::string>& names) {
    std::string text;
    for (const std::string& name : names)
        if (name != "-")
            text += (text.empty() ? "" : ", ") + name;
    return text;
}

// A tab separates numbers when they are read, but not in the count.
std::string tab_remark(const std::string& line) {
    const std::size_t tab = line.find('\t');
    return tab == std::string::npos
               ? ""
               : "; there is a tab in column " + std::to_string(tab + 1) + ", which does not separate";
}

std::string limits(int minimum, int maximum) {
    const std::string most = std::to_string(maximum) + (maximum == 1 ? " value" : " values");
    return minimum == maximum ? most : std::to_string(minimum) + " to " + most;
}

}  // namespace

CardReader::CardReader(Deck& deck, std::string_view text)
    : deck_(deck), lines_(channels_.open(CH_CARDS, NO_FILE, OpenStatus::scratch)) {
    std::size_t begin = 0;
    while (begin < text.size()) {
        const std::size_t end = std::min(text.find('\n', begin), text.size());
        std::string_view line = text.substr(begin, end - begin);
        begin = end + 1;
        ++lines_of_file_;
        if (!line.empty() && line.back() == '\r')
            line.remove_suffix(1);
        if (!line.empty() && line.front() == '*')
            continue;
        lines_.write_columns(line);
        file_lines_.push_back(lines_of_file_);
    }
    lines_.rewind();
}

int CardReader::file_line(int stripped_line) const {
    const auto place = static_cast<std::size_t>(stripped_line);
    return place < file_lines_.size() ? file_lines_[place]
                                      : (file_lines_.empty() ? 1 : file_lines_.back() + 1);
}

int CardReader::next_line() const {
    return lines_.at_end() ? 0 : file_line(lines_.lines_before());
}

std::int32_t CardReader::integer(std::int32_t position) const {
    return whole_number(value(position));
}

void CardReader::refuse(DeckFault fault) {
    deck_.fault = std::move(fault);
    throw CardsEnd{};
}

void CardReader::fault(const std::string& message, std::optional<std::size_t> field) {
    DeckFault fault;
    fault.message = message;
    fault.field = field;
    fault.line = file_line(lines_.lines_before() - 1);
    if (!deck_.cards.empty() && deck_.cards.back().line == fault.line)
        fault.card = deck_.cards.size() - 1;
    refuse(fault);
}

template <class Read>
void CardReader::reading(Read read) {
    try {
        read();
    } catch (const RunEnd& end) {
        DeckFault fault;
        fault.line = file_line(lines_.lines_before());
        // The reader names its working copy; the person's file is named where the fault is shown.
        const std::string place =
            std::string(NO_FILE) + ", line " + std::to_string(lines_.lines_before() + 1) + ": ";
        fault.message = end.text.starts_with(place) ? end.text.substr(place.size()) : end.text;
        if (!deck_.cards.empty() && deck_.cards.back().line == fault.line)
            fault.card = deck_.cards.size() - 1;
        refuse(fault);
    }
}

DeckCard& CardReader::note(CardType type, std::string_view number, std::string_view heading) {
    DeckCard card;
    card.type = type;
    card.number = number;
    card.label = number;
    card.heading = heading;
    card.line = card.last_line = file_line(lines_.lines_before());
    card.text = std::string(TextLine(lines_.peek_line()).trimmed());
    card.group = group_;
    deck_.cards.push_back(std::move(card));
    return deck_.cards.back();
}

// --- cards with values ---------------------------------------------------------------------------

DeckCard& CardReader::values(const CardForm& form) {
    const Card& known = *form.card;
    const auto kind = static_cast<std::size_t>(deck_.kind);
    for (const FieldDefault& entry : known.defaults)
        for (std::int32_t field = entry.first; field <= entry.last; ++field)
            if (!std::isnan(entry.value[kind]))
                set_value(field, entry.value[kind]);

    TextLine line;
    reading([&] {
        if (lines_.at_end())
            lines_.fail_here("the file ends here; expected Card " + std::string(form.number));
        line = TextLine(lines_.peek_line());
    });
    DeckCard& card = note(CardType::values, form.number, form.heading);
    card.label = known.label;
    const std::vector<std::string> names = split_names(form.names_of(deck_.kind));
    const std::string_view letters = known.written_of(deck_.kind);
    const std::vector<Word> words = words_of(line);
    const int maximum = known.maximum_of(deck_.kind);
    const int minimum = known.minimum == 0 ? maximum : known.minimum;
    const int found = count_values(line).count;

    const std::size_t fields = std::max(names.size(), static_cast<std::size_t>(found));
    for (std::size_t i = 0; i < fields; ++i) {
        DeckField field;
        field.name = i < names.size() ? names[i] : "";
        field.written = i < letters.size();
        field.form = i < letters.size() ? letters[i] : 'I';
        field.given = i < static_cast<std::size_t>(found);
        if (i < words.size() && field.given) {
            field.text = words[i].text;
            field.first_column = words[i].first;
            field.last_column = words[i].last;
        }
        card.fields.push_back(field);
    }
    if (found < minimum || found > maximum) {
        DeckFault fault;
        fault.wrong_count = true;
        fault.minimum = minimum;
        fault.maximum = maximum;
        fault.found = found;
        fault.line = card.line;
        fault.card = deck_.cards.size() - 1;
        fault.field = static_cast<std::size_t>(found > maximum ? maximum : found);
        fault.message = "expected " + limits(minimum, maximum) + " on Card " + card.number + " (" +
                        joined(names) + "), found " +
                        (found == 0 ? "none: a blank line" : std::to_string(found)) + tab_remark(card.text);
        refuse(fault);
    }
    read_values(card, form, found);
    return card;
}

void CardReader::read_values(DeckCard& card, const CardForm& form, int count) {
    const std::string expected = "Card " + std::string(form.number);
    std::size_t field = 0;
    const auto take = [&](std::size_t fields) {
        for (std::size_t i = 0; i < fields; ++i) {
            card.fields[i].value = values_[i + 1];
            card.fields[i].known = true;
        }
    };
    try {
        reading([&] {
            FreeFieldReader reader(lines_, expected, FreeFieldReader::Reach::one_line);
            for (; field < static_cast<std::size_t>(count); ++field)
                reader.read(values_[field + 1]);
            reader.finish();
        });
    } catch (const CardsEnd&) {
        deck_.fault->field = field;
        take(field);
        throw;
    }
    take(card.fields.size());
}

std::int32_t CardReader::count(const CardForm& form, std::int32_t most) {
    const std::int32_t found = integer(1);
    if (found > most)
        fault("Card " + std::string(form.number) + ": expected at most " + std::to_string(most) + " in " +
              deck_.cards.back().fields.front().name + ", found " + std::to_string(found));
    return found;
}

// --- lists, names, titles ------------------------------------------------------------------------

void CardReader::list(const CardForm& form, std::int32_t count, std::string_view heading) {
    if (count <= 0)
        return;
    const std::string expected =
        "the list of " + std::to_string(count) + " values of Card " + std::string(form.number);
    const int first = lines_.lines_before();
    if (!lines_.at_end())
        note(CardType::list, form.number, heading);
    reading([&] {
        read_free_list(lines_, expected, std::span(values_).subspan(1, static_cast<std::size_t>(count)));
    });
    DeckCard& card = deck_.cards.back();
    const int lines = lines_.lines_before() - first;
    card.last_line = file_line(first + lines - 1);
    card.list.assign(values_.begin() + 1, values_.begin() + 1 + count);
    lines_.step_back(lines - 1);
    for (int line = 1; line < lines; ++line)
        card.text += "\n" + std::string(lines_.read_line(expected).trimmed());
}

void CardReader::unused_name(std::string_view number, std::string_view field) {
    const std::string expected =
        "the file name of Card " + std::string(number) + " (" + std::string(field) + ")";
    reading([&] {
        if (lines_.at_end())
            lines_.fail_here("the file ends here; expected " + expected);
    });
    DeckCard& card = note(CardType::name, number, std::string(field) + ", not used by this edit");
    card.name = card.text;
    lines_.skip_lines(1, expected);
}

std::string CardReader::file_name(std::string_view number, std::string_view field) {
    const std::string what = "the file name of Card " + std::string(number) + " (" + std::string(field) + ")";
    TextLine line;
    reading([&] {
        if (lines_.at_end())
            lines_.fail_here("the file ends here; expected " + what);
        line = TextLine(lines_.peek_line());
    });
    note(CardType::name, number, std::string(field));
    lines_.skip_lines(1, what);
    const std::string expected = "expected " + what;
    if (line.blank())
        fault(expected + ", found a blank line");
    if (line.view().find('\0') != std::string_view::npos)
        fault(expected + ", found one that holds a zero byte");
    const bool bare = is_bare_name(line);
    if (bare && TextLine(line.first(LINE_COLUMNS - 3)).blank())
        fault(expected + ", found a line with nothing in its first 123 columns");
    std::string name(line.trimmed());
    if (bare)
        name.erase(0, name.find_first_not_of(' '));
    deck_.cards.back().name = name;
    return name;
}

std::string CardReader::title() {
    reading([&] {
        if (lines_.at_end())
            lines_.fail_here("the file ends here; expected a group's title");
    });
    const TextLine line(lines_.peek_line());
    DeckCard& card = note(CardType::title, "title", "title of the group");
    lines_.skip_lines(1, "a group's title");
    const std::size_t columns = static_cast<std::size_t>(last_title_column(line));
    card.name = line.view().substr(0, columns);
    card.name.erase(0, std::min(card.name.find_first_not_of(' '), card.name.size()));
    return card.name;
}

std::int32_t CardReader::look_ahead_to_edit() {
    constexpr int lines = 4;
    float edit = 0.0F;
    reading([&] {
        lines_.skip_lines(lines - 1, "Cards 3.1-1 to 3.3");
        read_free(lines_, "Card 3.3", edit);
        lines_.step_back(lines);
    });
    return to_integer(edit);
}

}  // namespace brelan::tool
