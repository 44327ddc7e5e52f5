#include "commands/card_report.h"

#include <fmt/core.h>

#include <algorithm>
#include <cmath>

#include "cli/console.h"

namespace brelan::tool {

namespace {

constexpr std::size_t LIST_SHOWN = 20;  // numbers of a long list

std::string ordinal(std::size_t number) {
    const char* const end = number % 10 == 1 && number != 11   ? "st"
                            : number % 10 == 2 && number != 12 ? "nd"
                            : number % 10 == 3 && number != 13 ? "rd"
                                                               : "th";
    return fmt::format("{}{}", number, end);
}

std::string number_text(double value) {
    return value == std::floor(value) && std::abs(value) < 1e6 ? fmt::format("{:.0f}", value)
                                                               : fmt::format("{:.6g}", value);
}

std::string counts_wanted(const DeckFault& fault) {
    const char* const values = fault.maximum == 1 ? "value" : "values";
    return fault.minimum == fault.maximum ? fmt::format("{} {}", fault.maximum, values)
                                          : fmt::format("{} to {} {}", fault.minimum, fault.maximum, values);
}

std::string remark(const DeckFault& fault, std::size_t field) {
    if (!fault.field || field != *fault.field)
        return "";
    if (!fault.wrong_count)
        return fault.message.find("too large") != std::string::npos ? "too large"
               : fault.message.starts_with("expected a number")     ? "no number"
                                                                    : "not possible";
    if (fault.found > fault.maximum)
        return fault.found == fault.maximum + 1
                   ? "one too many"
                   : fmt::format("the first of {} too many", fault.found - fault.maximum);
    return "missing";
}

// The line with its columns, and a mark below the field in question.
std::string marked_line(const DeckCard& card, const DeckFault& fault) {
    const std::string number = std::to_string(fault.line);
    const std::string line = card.text.substr(0, card.text.find('\n')), text = printable(line);
    std::string report = fmt::format("  {:>6} | {}\n", number, text);
    if (!fault.field || *fault.field >= card.fields.size())
        return report;
    const DeckField& field = card.fields[*fault.field];
    const bool there = field.first_column > 0;
    // A tab is shown in several columns.
    const auto before = static_cast<std::size_t>(field.first_column) - 1;
    const std::size_t at = there ? printable(line.substr(0, before)).size() : text.size() + 1;
    const std::size_t width = there ? printable(field.text).size() : 1;
    return report + fmt::format("         | {}{}\n", std::string(at, ' '),
                                inked(stderr, Ink::red, std::string(width, '^')));
}

}  // namespace

std::string value_text(const DeckField& field) {
    if (field.form != FieldForm::real)
        return std::to_string(field.integer());
    return number_text(static_cast<double>(field.value));
}

std::string card_line(const DeckCard& card) {
    if (card.type == CardType::name || card.type == CardType::title)
        return card.name;
    std::string line;
    if (card.type == CardType::list) {
        for (std::size_t i = 0; i < std::min(card.list.size(), LIST_SHOWN); ++i)
            line += (i == 0 ? "" : " ") + number_text(static_cast<double>(card.list[i]));
        if (card.list.size() > LIST_SHOWN)
            line += fmt::format(" ... ({} numbers)", card.list.size());
        return line;
    }
    for (const DeckField& field : card.fields) {
        if (!field.given && !field.written)
            continue;
        line += (line.empty() ? "" : ", ") + (field.name == "-" ? "(no effect)" : field.name) + " " +
                value_text(field) + (field.given ? "" : " (default)");
    }
    return line;
}

std::string card_report(const NotedDeck& deck, const DeckFault& fault) {
    if (!fault.card)
        return "";
    const DeckCard& card = deck.cards[*fault.card];
    std::string report = marked_line(card, fault);
    if (card.type != CardType::values)
        return report + fmt::format("    Card {}, {}\n", card.number, card.heading);
    report += fmt::format("    Card {}, {}{}\n", card.number, card.heading,
                          fault.wrong_count ? ": " + counts_wanted(fault) : "");
    for (std::size_t i = 0; i < card.fields.size(); ++i) {
        const DeckField& field = card.fields[i];
        const bool marked = fault.field && *fault.field == i;
        const std::string name = field.name.empty() ? fmt::format("({})", ordinal(i + 1)) : field.name;
        std::string line = fmt::format("    {} {:<9} {:<12} {}", marked ? '>' : ' ', name,
                                       printable(field.text), remark(fault, i));
        line.erase(line.find_last_not_of(' ') + 1);
        report += (marked ? inked(stderr, Ink::bold, line) : line) + "\n";
    }
    return report;
}

std::string name_here(std::string_view name) {
    return fmt::format(
        "{0} is taken from the working directory, which each run makes anew (--work names one that "
        "stays); a file of the project is ..\\{0}",
        name.starts_with(".\\") ? name.substr(2) : name);
}

std::string lost_result(std::string_view name) {
    return fmt::format(
        "{} lies in the working directory, which goes when the run ends (--work or --keep leaves it)", name);
}

std::optional<std::size_t> card_at(const NotedDeck& deck, int line) {
    for (std::size_t i = 0; i < deck.cards.size(); ++i)
        if (deck.cards[i].line <= line && line <= deck.cards[i].last_line)
            return i;
    return std::nullopt;
}

}  // namespace brelan::tool
