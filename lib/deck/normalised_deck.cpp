#include "deck/normalised_deck.h"

#include <array>

#include "deck/deck_tables.h"
#include "text/layout.h"
#include "text/real_to_integer.h"

namespace brelan {

namespace {

constexpr Layout<"(10(I5,1X))"> INTEGER_LINE;
constexpr Layout<"(10(E12.5,1X))"> REAL_LINE;
constexpr Layout<"(I5,1X)"> INTEGER_FIELD;
constexpr Layout<"(E12.5,1X)"> REAL_FIELD;

}  // namespace

void write_integers(Channel& deck, std::span<const std::int32_t> values) {
    INTEGER_LINE.write_list(deck, values);
}

void write_reals(Channel& deck, std::span<const float> values) {
    REAL_LINE.write_list(deck, values);
}

bool written_alike(float a, float b) {
    std::array<char, REAL_FIELD.columns()> first{}, second{};
    REAL_FIELD.put(first.data(), a);
    REAL_FIELD.put(second.data(), b);
    return first == second;
}

void write_card(const CheckedDeck& checker, Channel& deck, std::string_view form) {
    char* const begin = deck.begin_record(form.size() * REAL_FIELD.columns());
    char* at = begin;
    std::int32_t position = 0;
    for (const char letter : form) {
        const float value = checker.values[++position];
        if (letter == 'I')
            at = INTEGER_FIELD.put(at, to_integer(value));
        else
            at = REAL_FIELD.put(at, value);
    }
    deck.end_record(static_cast<std::size_t>(at - begin));
}

}  // namespace brelan
