#include "commands/checking/group_text.h"

#include <fmt/core.h>

#include <algorithm>

namespace brelan::tool {

std::string place_text(const DeckPoint& point) {
    return fmt::format("({:g}, {:g})", point.x, point.y);
}

std::string group_name(const DeckGroup& group) {
    return group.title.empty() ? fmt::format("group {}", group.number)
                               : fmt::format("group {} ({})", group.number, group.title);
}

const DeckCard* card_of(const NotedDeck& deck, const DeckGroup& group, std::string_view number) {
    const auto found = std::find_if(deck.cards.begin(), deck.cards.end(), [&](const DeckCard& card) {
        return card.group == group.number && card.number == number;
    });
    return found == deck.cards.end() ? nullptr : &*found;
}

}  // namespace brelan::tool
