// Reads the cards of a deck one after the other, as the batch program's checker does, and notes each of them.
#pragma once

#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "deck/deck_tables.h"
#include "model/card_forms.h"
#include "model/deck.h"
#include "text/channels.h"

namespace brelan::tool {

// Thrown where the checker would end the run. The fault is noted in the deck before.
struct CardsEnd {};

class CardReader {
public:
    // `text` is that of the deck's file. Cards are noted in the deck.
    CardReader(Deck& deck, std::string_view text);

    // The next card. Its values are then those of value_of.
    DeckCard& values(const CardForm& form);

    // The list of numbers behind a card. Nothing is read for a count of 0 or less.
    void list(const CardForm& form, std::int32_t count, std::string_view heading);

    // A count on the card read last; faulty when it is above the size of the table behind it.
    std::int32_t count(const CardForm& form, std::int32_t most);

    std::string file_name(std::string_view number, std::string_view field);
    // A line for a file name that is not used.
    void unused_name(std::string_view number, std::string_view field);
    std::string title();

    // IEDIT of Card 3.3 as the checker finds it in advance, before Card 3.1-1.
    std::int32_t look_ahead_to_edit();

    // Value of the card read last, from position 1.
    float value(std::int32_t position) const { return values_[static_cast<std::size_t>(position)]; }
    std::int32_t integer(std::int32_t position) const;
    void set_value(std::int32_t position, float value) {
        values_[static_cast<std::size_t>(position)] = value;
    }

    // Ends the cards at the one read last, for one of its fields (from 0) where that is known.
    [[noreturn]] void fault(const std::string& message, std::optional<std::size_t> field = std::nullopt);

    // The group that the next cards belong to.
    void set_group(int group) { group_ = group; }

    // First line that no card has taken; 0 where there is none.
    int next_line() const;

private:
    DeckCard& note(CardType type, std::string_view number, std::string_view heading);
    void read_values(DeckCard& card, const CardForm& form, int count);
    // Carries out a read of the batch program's own; what it cannot read becomes the fault.
    template <class Read>
    void reading(Read read);
    [[noreturn]] void refuse(DeckFault fault);
    int file_line(int stripped_line) const;

    Deck& deck_;
    Channels channels_;
    Channel& lines_;               // the deck without its comments
    std::vector<int> file_lines_;  // for each of them, from 0
    int lines_of_file_ = 0;
    int group_ = 0;
    // As the checker's own: what an earlier card left at a position stays where a value is not given.
    std::array<float, MOST_CARD_VALUES + 1> values_{};
};

}  // namespace brelan::tool
