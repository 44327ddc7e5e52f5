#include "model/card_layout.h"

#include <algorithm>

#include "cli/words.h"

namespace brelan::tool {

namespace {

constexpr std::size_t INDENT = 2, BETWEEN = 2;

std::string line_of(const CardValueTexts& words, const std::vector<std::size_t>& columns, std::string text) {
    for (std::size_t i = 0; i < words.size(); ++i) {
        text.resize(std::max(columns[i], text.empty() ? 0 : text.size() + 1), ' ');
        text += words[i];
    }
    return text + "\n";
}

}  // namespace

CardLayout::CardLayout(const NotedDeck& deck, std::optional<std::size_t> like) : deck_(deck) {
    if (!like)
        return;
    group_ = deck.groups.at(*like).number;
    const std::vector<std::string_view> text = lines_of(deck.text);
    int last = 0;
    has_comments_ = false;
    for (const DeckCard& card : deck.cards) {
        if (card.group != group_)
            continue;
        for (int number = last + 1; last > 0 && number < card.line; ++number)
            has_comments_ = has_comments_ || text[static_cast<std::size_t>(number) - 1].starts_with('*');
        last = card.last_line;
    }
}

// Where the values of such a card begin in the group, as far as it has them; from 0.
std::vector<std::size_t> CardLayout::columns_like(const Card& row, std::size_t count) const {
    std::vector<std::size_t> columns;
    const auto card = std::find_if(deck_.cards.begin(), deck_.cards.end(), [&](const DeckCard& candidate) {
        return candidate.group == group_ && candidate.number == row.number &&
               candidate.type == CardType::values;
    });
    if (group_ == 0 || card == deck_.cards.end())
        return columns;
    for (std::size_t i = 0; i < std::min(count, card->fields.size()); ++i) {
        if (card->fields[i].first_column == 0)
            break;
        columns.push_back(static_cast<std::size_t>(card->fields[i].first_column) - 1);
    }
    return columns;
}

std::string CardLayout::lines(const Card& row, const std::vector<CardValueTexts>& cards) const {
    const std::size_t count = cards.empty() ? 0 : cards.front().size();
    CardValueTexts names;
    for (std::size_t i = 0; i < count; ++i)
        names.emplace_back(row.fields_of(deck_.kind)[static_cast<std::int32_t>(i) + 1].name);
    const std::vector<std::size_t> wanted = columns_like(row, count);
    std::vector<std::size_t> columns;
    for (std::size_t i = 0, free = INDENT; i < count; ++i) {
        columns.push_back(i < wanted.size() ? std::max(wanted[i], i == 0 ? 0 : free - 1) : free);
        std::size_t width = has_comments_ ? names[i].size() : 0;
        for (const CardValueTexts& values : cards)
            width = std::max(width, values[i].size());
        free = columns.back() + width + BETWEEN;
    }
    std::string text;
    if (has_comments_ && count > 0)
        text += line_of(names, columns, "*");
    for (const CardValueTexts& values : cards)
        text += line_of(values, columns, "");
    return text;
}

}  // namespace brelan::tool
