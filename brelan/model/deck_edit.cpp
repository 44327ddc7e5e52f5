#include "model/deck_edit.h"

#include <fmt/core.h>

#include <algorithm>
#include <cmath>

#include "cli/exit_status.h"
#include "text/text_line.h"

namespace brelan::tool {

namespace {

constexpr auto COLUMNS = static_cast<std::size_t>(LINE_COLUMNS) - 1;  // a value in the last one is not seen

// The text of a deck with the span of one of its lines, its end left out.
struct LineSpan {
    std::size_t begin = 0, size = 0;
};

LineSpan span_of_line(std::string_view text, int line) {
    std::size_t begin = 0;
    for (int passed = 1; passed < line; ++passed)
        begin = text.find('\n', begin) + 1;
    std::size_t end = std::min(text.find('\n', begin), text.size());
    if (end > begin && text[end - 1] == '\r')
        --end;
    return {begin, end - begin};
}

std::string place_of(const NotedDeck& deck, const DeckCard& card) {
    return fmt::format("{}, line {}", deck.file.string(), card.line);
}

// The edit that makes one line another: what the two begin and end with alike stays.
TextEdit line_edit(const NotedDeck& deck, const DeckCard& card, int number, const std::string& line) {
    const LineSpan span = span_of_line(deck.text, number);
    const std::string_view old = std::string_view(deck.text).substr(span.begin, span.size);
    // A remark behind the last column that is read stays where it was too far already.
    if (line.find_last_not_of(' ') + 1 > COLUMNS && old.find_last_not_of(' ') + 1 <= COLUMNS)
        throw Failure(fmt::format("{}: expected a line of at most {} columns, found one of {}",
                                  place_of(deck, card), COLUMNS, line.size()));
    const std::size_t shorter = std::min(old.size(), line.size());
    std::size_t front = 0, back = 0;
    while (front < shorter && old[front] == line[front])
        ++front;
    while (back < shorter - front && old[old.size() - 1 - back] == line[line.size() - 1 - back])
        ++back;
    return {number, front, old.size() - back, line.substr(front, line.size() - back - front)};
}

void require_one_value(const NotedDeck& deck, const DeckCard& card, std::string_view value) {
    if (value.empty() || value.find_first_of(" ,\t\r\n*/") != std::string_view::npos)
        throw Failure(fmt::format("{}: expected one value, found '{}'", place_of(deck, card), value));
}

// Puts a value in the place of the word in some bytes. Words behind it keep their places as long as there is
// room.
void replace_word(std::string& line, std::size_t first, std::size_t behind, std::string_view value) {
    const std::size_t old_size = behind - first;
    const std::size_t next = std::min(line.find_first_not_of(' ', behind), line.size());
    std::string word(value);
    std::size_t taken = old_size;
    if (word.size() < old_size && next < line.size()) {
        word.resize(old_size, ' ');
    } else if (word.size() > old_size && next > behind) {
        // One blank stays between it and the next word.
        const std::size_t room = next < line.size() ? next - behind - 1 : next - behind;
        taken += std::min(room, word.size() - old_size);
    }
    line.replace(first, taken, word);
}

void require_kind(const NotedDeck& deck, const DeckCard& card, bool is_kind, std::string_view expected) {
    if (!is_kind)
        throw Failure(fmt::format("{}: Card {} is no {}", place_of(deck, card), card.number, expected));
}

// --- the lines of a card -------------------------------------------------------------------------

std::string line_text(const NotedDeck& deck, int number) {
    const LineSpan span = span_of_line(deck.text, number);
    return deck.text.substr(span.begin, span.size);
}

// The changes of one card, from the last place to the first, so that the columns in front stay.
using Changes = std::vector<const ValueChange*>;

// Values that were not given go behind the last word, with what stands for those between.
void append_values(std::string& line, const DeckCard& card, const Changes& changes) {
    std::size_t end = 0, next = 0;
    for (; next < card.fields.size() && card.fields[next].given; ++next)
        end = static_cast<std::size_t>(card.fields[next].last_column);
    std::string added = end == 0 ? "  " : "";
    for (; next <= changes.front()->place; ++next) {
        const auto change = std::find_if(changes.begin(), changes.end(),
                                         [&](const ValueChange* c) { return c->place == next; });
        added +=
            "  " + (change != changes.end() ? (*change)->text
                                            : shortest_text(card.fields[next].value, card.fields[next].form));
    }
    line.insert(std::min(end, line.size()), added);
}

TextEdit fields_edit(const NotedDeck& deck, const DeckCard& card, const Changes& changes) {
    std::string line = line_text(deck, card.line);
    Changes appended;
    for (const ValueChange* const change : changes) {
        const DeckField& field = card.fields.at(change->place);
        if (!field.given || field.first_column == 0)
            appended.push_back(change);
    }
    if (!appended.empty())
        append_values(line, card, appended);
    for (const ValueChange* const change : changes) {
        const DeckField& field = card.fields[change->place];
        if (field.given && field.first_column > 0)
            replace_word(line, static_cast<std::size_t>(field.first_column) - 1,
                         static_cast<std::size_t>(field.last_column), change->text);
    }
    return line_edit(deck, card, card.line, line);
}

// The numbers of a list, in their order.
struct ListWord {
    int line = 0;
    std::size_t first = 0, behind = 0;
};

std::vector<ListWord> words_of_list(const NotedDeck& deck, const DeckCard& card) {
    constexpr std::string_view separators = " ,\t";
    std::vector<ListWord> words;
    for (int number = card.line; number <= card.last_line; ++number) {
        const std::string line = line_text(deck, number);
        if (line.starts_with('*'))
            continue;
        const bool odd =
            line.find_first_of("*/;") != std::string::npos || line.find(",,") != std::string::npos;
        if (odd)
            throw Failure(fmt::format("{}, line {}: expected a list whose numbers all stand there one by one",
                                      deck.file.string(), number));
        for (std::size_t at = line.find_first_not_of(separators); at < line.size();) {
            const std::size_t behind = std::min(line.find_first_of(separators, at), line.size());
            words.push_back({number, at, behind});
            at = line.find_first_not_of(separators, behind);
        }
    }
    return words;
}

void list_edits(const NotedDeck& deck, const DeckCard& card, const Changes& changes,
                std::vector<TextEdit>& edits) {
    const std::vector<ListWord> words = words_of_list(deck, card);
    for (std::size_t i = 0; i < changes.size();) {
        const int number = words.at(changes[i]->place).line;
        std::string line = line_text(deck, number);
        for (; i < changes.size() && words.at(changes[i]->place).line == number; ++i) {
            const ListWord& word = words[changes[i]->place];
            replace_word(line, word.first, word.behind, changes[i]->text);
        }
        edits.push_back(line_edit(deck, card, number, line));
    }
}

}  // namespace

std::string shortest_text(float value, FieldForm form) {
    if (!std::isfinite(value))
        throw Failure(fmt::format("expected a number, found {}", value));
    if (form != FieldForm::real && std::trunc(value) == value && std::fabs(value) < 16777216.0F)
        return fmt::format("{}", static_cast<std::int32_t>(value));
    std::string text = fmt::format("{}", value);
    if (form == FieldForm::real && text.find_first_of(".e") == std::string::npos)
        text += ".0";
    return text;
}

std::string text_like(double value, std::string_view old) {
    constexpr double large = 1e6, small = 1e-4, nothing = 1e-30;
    const double kept = std::fabs(value) < nothing ? 0.0 : std::stod(fmt::format("{:.4e}", value));
    if (std::fabs(kept) >= large || (kept != 0.0 && std::fabs(kept) < small) || !std::isfinite(kept))
        return shortest_text(static_cast<float>(kept), FieldForm::real);
    const std::size_t point = old.find('.');
    const bool plain = old.find_first_not_of("+-.0123456789") == std::string_view::npos;
    // Zeros at the end are how a person writes; other decimals are but those that a value needed.
    std::size_t decimals = !plain || point == std::string_view::npos ? 0 : old.size() - point - 1;
    if (decimals > 1 && old.back() != '0')
        decimals = 1;
    std::string text;
    do
        text = fmt::format("{:.{}f}", kept + 0.0, decimals++);
    while (std::stod(text) != kept);
    if (text.starts_with('-') && kept == 0.0)
        text.erase(0, 1);
    return text.find('.') == std::string::npos && (point != std::string_view::npos || !plain) ? text + "."
                                                                                              : text;
}

std::vector<TextEdit> value_edits(const NotedDeck& deck, std::span<const ValueChange> changes) {
    Changes ordered;
    for (const ValueChange& change : changes) {
        require_one_value(deck, deck.cards.at(change.card), change.text);
        ordered.push_back(&change);
    }
    std::sort(ordered.begin(), ordered.end(), [](const ValueChange* a, const ValueChange* b) {
        return a->card != b->card ? a->card > b->card : a->place > b->place;
    });
    std::vector<TextEdit> edits;
    for (auto first = ordered.begin(); first != ordered.end();) {
        const auto behind = std::find_if(
            first, ordered.end(), [&](const ValueChange* change) { return change->card != (*first)->card; });
        const DeckCard& card = deck.cards[(*first)->card];
        const Changes of_card(first, behind);
        if (card.type == CardType::list) {
            list_edits(deck, card, of_card, edits);
        } else {
            require_kind(deck, card, card.type == CardType::values, "card with values");
            edits.push_back(fields_edit(deck, card, of_card));
        }
        first = behind;
    }
    return edits;
}

std::string edited_text(std::string_view text, std::span<const TextEdit> edits) {
    std::string edited(text);
    for (const TextEdit& edit : edits)
        edited.replace(span_of_line(edited, edit.line).begin + edit.from, edit.to - edit.from, edit.text);
    return edited;
}

std::string with_value(const NotedDeck& deck, std::size_t card, std::size_t field, std::string_view value) {
    const DeckCard& changed = deck.cards.at(card);
    require_kind(deck, changed, changed.type == CardType::values, "card with values");
    const ValueChange change{card, field, std::string(value)};
    return edited_text(deck.text, value_edits(deck, {&change, 1}));
}

std::string with_name(const NotedDeck& deck, std::size_t card, std::string_view name) {
    const DeckCard& changed = deck.cards.at(card);
    require_kind(deck, changed, changed.type == CardType::name || changed.type == CardType::title,
                 "name or title");
    if (name.empty() || name.front() == '*' || name.find_first_of("\r\n") != std::string_view::npos)
        throw Failure(fmt::format("{}: expected a name in one line that does not begin with *, found '{}'",
                                  place_of(deck, changed), name));
    const TextEdit edit = line_edit(deck, changed, changed.line, std::string(name));
    return edited_text(deck.text, {&edit, 1});
}

std::string with_list(const NotedDeck& deck, std::size_t card, std::span<const float> values) {
    const DeckCard& changed = deck.cards.at(card);
    require_kind(deck, changed, changed.type == CardType::list, "list");
    const bool whole =
        std::all_of(changed.list.begin(), changed.list.end(),
                    [](float value) { return std::trunc(value) == value; }) &&
        std::all_of(values.begin(), values.end(), [](float value) { return std::trunc(value) == value; });
    std::string lines, line;
    for (const float value : values) {
        const std::string word = "  " + shortest_text(value, whole ? FieldForm::integer : FieldForm::real);
        if (line.size() + word.size() > COLUMNS) {
            lines += line + '\n';
            line.clear();
        }
        line += word;
    }
    lines += line;
    // Comments between its lines stay, behind it.
    std::string text = deck.text;
    for (int number = changed.last_line; number > changed.line; --number) {
        const LineSpan span = span_of_line(text, number);
        if (span.size > 0 && text[span.begin] == '*')
            continue;
        const std::size_t before = span.begin - 1;  // the end of the line before it goes with it
        const bool two = before > 0 && text[before - 1] == '\r';
        text.erase(two ? before - 1 : before, span.size + (two ? 2 : 1));
    }
    const LineSpan span = span_of_line(text, changed.line);
    text.replace(span.begin, span.size, lines);
    return text;
}

}  // namespace brelan::tool
