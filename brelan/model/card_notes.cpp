#include "model/card_notes.h"

#include <algorithm>

#include "deck/card_stream.h"

namespace brelan::tool {

namespace {

struct Word {
    std::string text;
    int first = 0, last = 0;  // columns
};

// The words of a card as they are counted.
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

// The names of the fields that have one, as "NBX, NBY".
std::string names_of(const DeckCard& card, int maximum) {
    std::string text;
    for (std::size_t i = 0; i < static_cast<std::size_t>(maximum); ++i)
        if (card.fields[i].name != "-")
            text += (text.empty() ? "" : ", ") + card.fields[i].name;
    return text;
}

std::string without_blanks_in_front(std::string_view text) {
    return std::string(text.substr(std::min(text.find_first_not_of(' '), text.size())));
}

}  // namespace

DeckCard& CardNotes::note(CardType type, std::string_view number, std::string_view heading,
                          const Channel& lines) {
    DeckCard card;
    card.type = type;
    card.number = number;
    card.label = number;
    card.heading = heading;
    card.line = card.last_line = lines.place_here().line;
    card.text = std::string(TextLine(lines.peek_line()).trimmed());
    card.group = group_;
    known_ = 0;
    deck_.cards.push_back(std::move(card));
    return deck_.cards.back();
}

// --- cards with values ---------------------------------------------------------------------------

void CardNotes::card(const Card& card, const Channel& lines) {
    const TextLine line(lines.peek_line());
    DeckCard& noted = note(CardType::values, card.number, card.heading, lines);
    noted.label = card.label;
    noted.row = &card;
    const CardFields& known = card.fields_of(deck_.kind);
    const std::vector<Word> words = words_of(line);
    const std::int32_t found = count_values(line).count;
    for (std::int32_t position = 1; position <= std::max(known.count(), found); ++position) {
        DeckField field;
        if (position <= known.count()) {
            field.name = known[position].name;
            field.form = known[position].form;
        }
        field.written = position <= known.shown();
        field.given = position <= found;
        if (field.given && static_cast<std::size_t>(position) <= words.size()) {
            const Word& word = words[static_cast<std::size_t>(position) - 1];
            field.text = word.text;
            field.first_column = word.first;
            field.last_column = word.last;
        }
        noted.fields.push_back(field);
    }
}

void CardNotes::values(std::span<const float> values) {
    DeckCard& card = deck_.cards.back();
    known_ = values.size();
    for (std::size_t i = 0; i < known_; ++i) {
        card.fields[i].value = values[i];
        card.fields[i].known = true;
    }
}

void CardNotes::value_is(std::int32_t position, float value) {
    deck_.cards.back().fields[static_cast<std::size_t>(position) - 1].value = value;
}

// --- lists, names, titles ------------------------------------------------------------------------

void CardNotes::list(const Card& card, std::string_view heading, const Channel& lines) {
    note(CardType::list, card.number, heading, lines).row = &card;
    first_line_ = lines.lines_before();
}

void CardNotes::list_values(std::span<const float> values, Channel& lines) {
    DeckCard& card = deck_.cards.back();
    card.last_line = lines.place_behind().line;
    card.list.assign(values.begin(), values.end());
    const int more = lines.lines_before() - first_line_ - 1;
    lines.step_back(more);
    for (int line = 0; line < more; ++line)
        card.text += "\n" + std::string(lines.read_line("a line of the list").trimmed());
}

void CardNotes::name(std::string_view number, std::string_view heading, const Channel& lines) {
    note(CardType::name, number, heading, lines);
}

void CardNotes::name_is(const TextLine& line) {
    deck_.cards.back().name =
        is_bare_name(line) ? without_blanks_in_front(line.trimmed()) : std::string(line.trimmed());
}

void CardNotes::title(const Channel& lines) {
    note(CardType::title, "title", "title of the group", lines);
}

void CardNotes::title_is(std::string_view text) {
    deck_.cards.back().name = without_blanks_in_front(text);
}

// --- faults --------------------------------------------------------------------------------------

void CardNotes::refuse(const WrongCount& card) {
    const DeckCard& noted = deck_.cards.back();
    DeckFault fault;
    fault.wrong_count = true;
    fault.minimum = card.minimum;
    fault.maximum = card.maximum;
    fault.found = card.found.count;
    fault.line = card.place.line;
    fault.card = deck_.cards.size() - 1;
    fault.field = static_cast<std::size_t>(std::min(fault.found, fault.maximum));
    fault.message = "expected " + limits(fault.minimum, fault.maximum) + " on Card " + noted.number + " (" +
                    names_of(noted, fault.maximum) + "), found " +
                    (fault.found == 0 ? "none: a blank line" : std::to_string(fault.found)) +
                    tab_remark(noted.text);
    deck_.fault = std::move(fault);
}

void CardNotes::refuse(const RunEnd& end) {
    DeckFault fault;
    fault.message = end.message();
    fault.line = end.place ? end.place->line : 0;
    fault.field = end.field;
    if (!deck_.cards.empty() && deck_.cards.back().line == fault.line) {
        fault.card = deck_.cards.size() - 1;
        const DeckCard& card = deck_.cards.back();
        if (card.type == CardType::values && known_ < card.fields.size())
            fault.field = known_;
    }
    deck_.fault = std::move(fault);
}

}  // namespace brelan::tool
