#include "deck/normalised_deck.h"

#include <array>

#include "text/as_written.h"
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

float shown_real(float value) {
    return as_written<"(E12.5)">(value);
}

bool fits_shown_integer(std::int32_t value) {
    return value >= -9999 && value <= 99999;
}

bool written_alike(float a, float b) {
    std::array<char, REAL_FIELD.columns()> first{}, second{};
    REAL_FIELD.put(first.data(), a);
    REAL_FIELD.put(second.data(), b);
    return first == second;
}

void write_card(const CardValues& values, Channel& deck, const CardFields& fields) {
    const std::int32_t shown = fields.shown();
    char* const begin = deck.begin_record(static_cast<std::size_t>(shown) * REAL_FIELD.columns());
    char* at = begin;
    for (std::int32_t position = 1; position <= shown; ++position)
        at = fields[position].form == FieldForm::integer ? INTEGER_FIELD.put(at, to_integer(values[position]))
                                                         : REAL_FIELD.put(at, values[position]);
    deck.end_record(static_cast<std::size_t>(at - begin));
}

}  // namespace brelan
