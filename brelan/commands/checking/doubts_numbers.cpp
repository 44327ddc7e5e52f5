// Codes, and numbers that do not arrive as they are written.
#include <fmt/core.h>

#include <charconv>
#include <cmath>

#include "cli/words.h"
#include "commands/card_report.h"
#include "commands/checking/code_meanings.h"
#include "commands/checking/doubts.h"
#include "text/text_line.h"

namespace brelan::tool {

namespace {

// Whole numbers that have room in the normalised deck, and the digits that a real keeps there.
constexpr std::int32_t HIGHEST = 99999, LOWEST = -9999;
constexpr int DIGITS = 5;
// A real that differs by less lies within the digits of its own 32 bits.
constexpr double LOST = 5e-7;

double as_normalised(double value) {
    double rounded = value;
    const std::string text = fmt::format("{:.{}e}", value, DIGITS - 1);
    std::from_chars(text.data(), text.data() + text.size(), rounded);
    return rounded;
}

void doubt_field(Doubts& doubts, const DeckCard& card, const DeckField& field) {
    if (!field.given || field.name == "-" || field.name.empty())
        return;
    const auto value = static_cast<double>(field.value);
    if (field.form != FieldForm::real) {
        if (value != std::trunc(value))
            doubts.doubt("cut-number", &card,
                         fmt::format("{} {}: a whole number is wanted; it is cut to {}", field.name,
                                     field.text, field.integer()));
        if (field.integer() > HIGHEST || field.integer() < LOWEST)
            doubts.end_of_run("too-large", &card,
                              fmt::format("{} {}: whole numbers from {} to {} have room on a card",
                                          field.name, field.text, LOWEST, HIGHEST));
        return;
    }
    const double arrives = as_normalised(value);
    if (std::abs(arrives - value) > LOST * std::abs(value))
        doubts.doubt(
            "lost-digits", &card,
            fmt::format("{} {}: five digits are kept; it arrives as {:g}", field.name, field.text, arrives));
}

void doubt_writing(Doubts& doubts, const DeckCard& card) {
    if (card.type != CardType::values || card.fields.empty() || card.fields.front().name.empty())
        return;
    for (const char* odd : {",,", "*", "/", ";", "\t"})
        if (card.text.find(odd) != std::string::npos) {
            doubts.doubt(
                "odd-separator", &card,
                fmt::format("a \"{}\" on the card: it counts in a way of its own (manual, chapter 3)",
                            *odd == '\t' ? "tab" : odd));
            return;
        }
    const std::size_t first = card.text.find_first_not_of(' ');
    if (first != std::string::npos && card.text[first] == ',')
        doubts.doubt("odd-separator", &card, "a comma before the first value: that value is not given");
}

// Whole lines as they stand in the file: a card's text ends with column 126.
void doubt_line_ends(Doubts& doubts) {
    const std::vector<std::string_view> lines = lines_of(doubts.deck().text);
    for (const DeckCard& card : doubts.deck().cards)
        for (int number = card.line; number <= card.last_line; ++number) {
            const std::string_view line = lines[static_cast<std::size_t>(number) - 1];
            if (line.size() < LINE_COLUMNS ||
                line.find_first_not_of(" \r", LINE_COLUMNS - 1) == std::string::npos)
                continue;
            doubts.doubt(
                "long-line", &card,
                fmt::format("something stands in column {} or behind: it is not seen", LINE_COLUMNS));
            break;
        }
}

}  // namespace

void doubt_codes(Doubts& doubts) {
    for (const DeckCard& card : doubts.deck().cards)
        for (const DeckField& field : card.fields)
            if (const CodeMeaning meaning = meaning_of(card, field); meaning.is_code && !meaning.known) {
                const std::string message =
                    fmt::format("{} {}: {}", field.name, value_text(field), meaning.text);
                if (meaning.ends_run)
                    doubts.end_of_run("unknown-code", &card, message);
                else
                    doubts.doubt("unknown-code", &card, message);
            }
}

void doubt_numbers(Doubts& doubts) {
    const NotedDeck& deck = doubts.deck();
    if (deck.byte_order_mark) {
        DeckCard start;
        start.line = 1;
        doubts.doubt(
            "byte-order-mark", &start,
            "a byte order mark stands in front of the text: brelan passes over it, the batch program "
            "alone refuses the deck");
    }
    for (const DeckCard& card : deck.cards) {
        if (deck.fault && card.line == deck.fault->line)
            continue;  // what the checker refuses is told by its own message
        for (const DeckField& field : card.fields)
            doubt_field(doubts, card, field);
        doubt_writing(doubts, card);
    }
    doubt_line_ends(doubts);
}

}  // namespace brelan::tool
