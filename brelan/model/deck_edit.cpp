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

std::string with_line(const NotedDeck& deck, const DeckCard& card, const LineSpan& span,
                      const std::string& line) {
    std::string text = deck.text;
    const std::string_view old = std::string_view(text).substr(span.begin, span.size);
    // A remark behind the last column that is read stays where it was too far already.
    if (line.find_last_not_of(' ') + 1 > COLUMNS && old.find_last_not_of(' ') + 1 <= COLUMNS)
        throw Failure(fmt::format("{}: expected a line of at most {} columns, found one of {}",
                                  place_of(deck, card), COLUMNS, line.size()));
    text.replace(span.begin, span.size, line);
    return text;
}

void require_one_value(const NotedDeck& deck, const DeckCard& card, std::string_view value) {
    if (value.empty() || value.find_first_of(" ,\t\r\n*/") != std::string_view::npos)
        throw Failure(fmt::format("{}: expected one value, found '{}'", place_of(deck, card), value));
}

// Puts a value in the place of the one in some columns. Words behind it keep theirs as long as there is room.
void replace_word(std::string& line, const DeckField& field, std::string_view value) {
    const auto first = static_cast<std::size_t>(field.first_column - 1);
    const auto behind = static_cast<std::size_t>(field.last_column);
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

std::string with_value(const NotedDeck& deck, std::size_t card, std::size_t field, std::string_view value) {
    const DeckCard& changed = deck.cards.at(card);
    require_kind(deck, changed, changed.type == CardType::values, "card with values");
    require_one_value(deck, changed, value);
    const DeckField& target = changed.fields.at(field);
    const LineSpan span = span_of_line(deck.text, changed.line);
    std::string line = deck.text.substr(span.begin, span.size);
    if (target.given && target.first_column > 0) {
        replace_word(line, target, value);
        return with_line(deck, changed, span, line);
    }
    // Behind the last word, with what stands for those that are not given.
    std::size_t end = 0, next = 0;
    for (; next < changed.fields.size() && changed.fields[next].given; ++next)
        end = static_cast<std::size_t>(changed.fields[next].last_column);
    std::string added = end == 0 ? "  " : "";
    for (; next < field; ++next)
        added += "  " + shortest_text(changed.fields[next].value, changed.fields[next].form);
    added += fmt::format("  {}", value);
    line.insert(std::min(end, line.size()), added);
    return with_line(deck, changed, span, line);
}

std::string with_name(const NotedDeck& deck, std::size_t card, std::string_view name) {
    const DeckCard& changed = deck.cards.at(card);
    require_kind(deck, changed, changed.type == CardType::name || changed.type == CardType::title,
                 "name or title");
    if (name.empty() || name.front() == '*' || name.find_first_of("\r\n") != std::string_view::npos)
        throw Failure(fmt::format("{}: expected a name in one line that does not begin with *, found '{}'",
                                  place_of(deck, changed), name));
    return with_line(deck, changed, span_of_line(deck.text, changed.line), std::string(name));
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
