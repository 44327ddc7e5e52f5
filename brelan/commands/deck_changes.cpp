#include "commands/deck_changes.h"

#include <fmt/core.h>

#include <algorithm>
#include <iterator>
#include <span>

#include "cli/words.h"
#include "commands/card_report.h"

namespace brelan::tool {

namespace {

using Cards = std::span<const DeckCard>;

bool same(const DeckCard& a, const DeckCard& b) {
    return a.number == b.number && card_line(a) == card_line(b);
}

std::string title_of(const DeckCard& card) {
    return fmt::format("Card {}, {}", card.number, card.heading);
}

std::string change_of(const DeckCard& before, const DeckCard& after) {
    std::vector<std::string> fields;
    if (before.type == CardType::values && before.fields.size() == after.fields.size())
        for (std::size_t k = 0; k < after.fields.size(); ++k) {
            const std::string from = value_text(before.fields[k]), to = value_text(after.fields[k]);
            if (from != to)
                fields.push_back(fmt::format("{} {} -> {}", after.fields[k].name, from, to));
        }
    if (fields.empty())
        fields.push_back(fmt::format("{} -> {}", card_line(before), card_line(after)));
    return fmt::format("line {}: {}: {}", after.line, title_of(after), joined(fields, ", "));
}

}  // namespace

std::vector<std::string> deck_changes(const NotedDeck& before, const NotedDeck& after) {
    Cards a = before.cards, b = after.cards;
    while (!a.empty() && !b.empty() && same(a.front(), b.front())) {
        a = a.subspan(1);
        b = b.subspan(1);
    }
    while (!a.empty() && !b.empty() && same(a.back(), b.back())) {
        a = a.first(a.size() - 1);
        b = b.first(b.size() - 1);
    }
    const bool in_pairs = std::ranges::equal(a, b, {}, &DeckCard::number, &DeckCard::number);
    std::vector<std::string> changes;
    if (in_pairs) {
        for (std::size_t k = 0; k < a.size(); ++k)
            if (!same(a[k], b[k]))
                changes.push_back(change_of(a[k], b[k]));
        return changes;
    }
    const auto cards = [](Cards some) {
        return fmt::format("{} from line {} on, the first is {}", counted(some.size(), "card", "cards"),
                           some.front().line, title_of(some.front()));
    };
    if (!a.empty())
        changes.push_back("gone: " + cards(a));
    if (!b.empty())
        changes.push_back("new: " + cards(b));
    return changes;
}

}  // namespace brelan::tool
