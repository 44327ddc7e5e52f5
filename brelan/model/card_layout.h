// New cards of a deck, laid out as a person does it: the names of the fields as a comment, the values below.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "deck/card.h"
#include "model/deck.h"

namespace brelan::tool {

using CardValueTexts = std::vector<std::string>;

// Lays out cards like those of a deck's group where there is one.
class CardLayout {
public:
    // `like` is a place in NotedDeck::groups.
    explicit CardLayout(const NotedDeck& deck, std::optional<std::size_t> like = {});

    // Lines of one card, or of several of the same kind below each other, each with its end. There are as
    // many names as values.
    std::string lines(const Card& row, const std::vector<CardValueTexts>& cards) const;
    std::string line(const Card& row, const CardValueTexts& values) const { return lines(row, {values}); }

    // Whether comments go with the cards.
    bool has_comments() const { return has_comments_; }

private:
    std::vector<std::size_t> columns_like(const Card& row, std::size_t count) const;

    const NotedDeck& deck_;
    int group_ = 0;  // the group whose layout is taken, 0 none
    bool has_comments_ = true;
};

}  // namespace brelan::tool
