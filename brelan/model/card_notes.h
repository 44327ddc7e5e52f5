// Notes the cards of a deck as a person sees them, while the library reads them.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "deck/deck_notes.h"
#include "model/deck.h"

namespace brelan::tool {

class CardNotes : public DeckNotes {
public:
    explicit CardNotes(NotedDeck& deck) : deck_(deck) {}

    void card(const Card& card, const Channel& lines) override;
    void list(const Card& card, std::string_view heading, const Channel& lines) override;
    void name(std::string_view number, std::string_view heading, const Channel& lines) override;
    void title(const Channel& lines) override;
    void values(std::span<const float> values) override;
    void value_is(std::int32_t position, float value) override;
    void list_values(std::span<const float> values, Channel& lines) override;
    void name_is(const TextLine& line) override;
    void title_is(std::string_view text) override;
    void group(std::int32_t number) override { group_ = number; }

    // The deck is refused at a card of too few or too many values, and at anything else.
    void refuse(const WrongCount& card);
    void refuse(const RunEnd& end);

private:
    DeckCard& note(CardType type, std::string_view number, std::string_view heading, const Channel& lines);

    NotedDeck& deck_;
    int group_ = 0;
    int first_line_ = 0;     // of the list, among the cards
    std::size_t known_ = 0;  // values of the card noted last
};

}  // namespace brelan::tool
