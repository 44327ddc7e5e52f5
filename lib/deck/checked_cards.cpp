#include "deck/checked_cards.h"

#include <array>
#include <cmath>
#include <span>
#include <string>

#include "deck/card_stream.h"
#include "deck/deck_tables.h"
#include "deck/normalised_deck.h"
#include "text/channel_numbers.h"
#include "text/free_field.h"
#include "text/real_to_integer.h"

namespace brelan {

namespace {

// The checker's own use of the channels while it runs.
constexpr int CHANNEL_STRIPPED = CHANNEL_MESH_A;
constexpr int CHANNEL_NORMALISED = CHANNEL_MESH_B;

}  // namespace

Channel& deck(Channels& channels) {
    return channels.at(CHANNEL_STRIPPED);
}

Channel& normalised(Channels& channels) {
    return channels.at(CHANNEL_NORMALISED);
}

std::int32_t value_of(const CheckedDeck& checker, std::int32_t position) {
    return to_integer(checker.values[position]);
}

void check(Channels& channels, LayoutKind kind, CheckedDeck& checker, Console& console, const Card& card) {
    const auto place = static_cast<std::size_t>(kind);
    for (const FieldDefault& entry : card.defaults)
        for (std::int32_t field = entry.first; field <= entry.last; ++field)
            if (!std::isnan(entry.value[place]))
                checker.values[field] = entry.value[place];
    const std::int32_t maximum = card.maximum_of(kind);
    check_card(channels, checker, console, CHANNEL_STRIPPED, card.label,
               card.minimum == 0 ? maximum : card.minimum, maximum);
}

void pass(Channels& channels, LayoutKind kind, CheckedDeck& checker, Console& console, const Card& card) {
    check(channels, kind, checker, console, card);
    write_card(checker, normalised(channels), card.written_of(kind));
}

std::int32_t count_on(Channels& channels, const CheckedDeck& checker, const Card& card, std::int32_t most) {
    const std::int32_t count = value_of(checker, 1);
    if (count > most)
        deck(channels).fail_behind("Card " + std::string(card.label) + ": expected at most " +
                                   std::to_string(most) + " in " + std::string(card.fields) + ", found " +
                                   std::to_string(count));
    return count;
}

void pass_integer_list(Channels& channels, CheckedDeck& checker, const Card& card, std::int32_t count) {
    std::array<std::int32_t, MOST_CARD_VALUES> numbers{};
    if (count <= 0) {
        write_integers(normalised(channels), {});
        return;
    }
    const std::string expected =
        "the list of " + std::to_string(count) + " values of Card " + std::string(card.label);
    read_free_list<float>(deck(channels), expected,
                          std::span(&checker.values[1], static_cast<std::size_t>(count)));
    for (std::int32_t i = 1; i <= count; ++i)
        numbers[static_cast<std::size_t>(i - 1)] = value_of(checker, i);
    write_integers(normalised(channels), std::span(numbers).first(static_cast<std::size_t>(count)));
}

}  // namespace brelan
