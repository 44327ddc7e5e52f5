// A card of the deck language as one row: what a person calls it, its fields by name, how many of them a deck
// must give, what stands for the others, and how the normalised deck shows them.
//
// The fields stand in a notation of their own, checked when compiled:
//
//     "I: NBX NBY IB_LEFT=1 E: Xo Yo -: GCOLOR=0"
//
// I: integers, E: reals, -: values that go no further. A field may have a default; one that has none and is
// not given keeps what an earlier card left at its position. A field called "-" has no effect.
#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

#include "mesh/edition.h"

namespace brelan {

// One entry for each kind, in the order of LayoutKind.
template <class T>
using ByKind = std::array<T, 4>;

template <class T>
constexpr ByKind<T> each_kind(T value) {
    return {value, value, value, value};
}

enum class FieldForm : char { integer = 'I', real = 'E', dropped = '-' };

struct CardField {
    std::string_view name;
    FieldForm form = FieldForm::integer;
    std::optional<float> otherwise;  // where a deck does not give it
};

// The fields of a card, positions from 1.
class CardFields {
public:
    constexpr CardFields() = default;
    template <std::size_t N>
    constexpr CardFields(const char (&notation)[N])  // NOLINT: the notation is the fields
        : CardFields(std::string_view(notation, N - 1)) {}
    constexpr explicit CardFields(std::string_view notation) {
        FieldForm form = FieldForm::integer;
        while (!notation.empty()) {
            const std::size_t end = std::min(notation.find(' '), notation.size());
            const std::string_view word = notation.substr(0, end);
            notation.remove_prefix(std::min(end + 1, notation.size()));
            if (word.back() == ':')
                form = form_of(word);
            else
                add(word, form);
        }
    }

    constexpr std::int32_t count() const { return count_; }
    constexpr const CardField& operator[](std::int32_t position) const {
        return fields_[static_cast<std::size_t>(position - 1)];
    }
    // Fields that the normalised deck shows; they are the first ones.
    constexpr std::int32_t shown() const {
        std::int32_t shown = 0;
        while (shown < count_ && (*this)[shown + 1].form != FieldForm::dropped)
            ++shown;
        return shown;
    }

    constexpr const CardField* begin() const { return fields_.data(); }
    constexpr const CardField* end() const { return fields_.data() + count_; }

private:
    static constexpr std::size_t MOST = 10;

    static constexpr FieldForm form_of(std::string_view word) {
        for (const FieldForm form : {FieldForm::integer, FieldForm::real, FieldForm::dropped})
            if (word.size() == 2 && word.front() == static_cast<char>(form))
                return form;
        throw std::logic_error("a card's fields are I:, E: or -:");
    }

    // -10, 1 or -1E30.
    static constexpr float value_of(std::string_view text) {
        const bool negative = text.front() == '-';
        text.remove_prefix(negative ? 1 : 0);
        double value = 0.0;
        int exponent = 0;
        bool behind_letter = false;
        for (const char c : text) {
            if (c == 'E')
                behind_letter = true;
            else if (c < '0' || c > '9')
                throw std::logic_error("a default is a number");
            else if (behind_letter)
                exponent = 10 * exponent + (c - '0');
            else
                value = 10.0 * value + (c - '0');
        }
        for (; exponent > 0; --exponent)
            value *= 10.0;
        return static_cast<float>(negative ? -value : value);
    }

    constexpr void add(std::string_view word, FieldForm form) {
        const std::size_t equals = word.find('=');
        CardField& field = fields_.at(static_cast<std::size_t>(count_++));
        field.name = word.substr(0, equals);
        field.form = form;
        if (equals != std::string_view::npos)
            field.otherwise = value_of(word.substr(equals + 1));
    }

    std::array<CardField, MOST> fields_{};
    std::int32_t count_ = 0;
};

struct Card {
    std::string_view label;   // in the report of a wrong count and in messages of a run
    std::string_view number;  // in the manual
    std::string_view heading;
    std::int32_t minimum;  // values that a deck must give; 0: all
    ByKind<CardFields> fields;
    std::int32_t most = 0;      // of the first field, where it counts what follows; 0: no count
    std::string_view called{};  // in messages about a value, where the number tells too little
    std::optional<LayoutKind> not_shown_in{};  // the kind whose normalised deck does not have the card

    constexpr const CardFields& fields_of(LayoutKind kind) const {
        return fields[static_cast<std::size_t>(kind)];
    }
    constexpr std::int32_t maximum_of(LayoutKind kind) const { return fields_of(kind).count(); }
    constexpr std::int32_t minimum_of(LayoutKind kind) const {
        return minimum == 0 ? maximum_of(kind) : minimum;
    }

    // "NBX, NBY": the names of the first fields, as far as they have an effect.
    std::string names(LayoutKind kind, std::int32_t count) const {
        std::string text;
        for (std::int32_t position = 1; position <= count; ++position)
            if (const std::string_view name = fields_of(kind)[position].name; name != "-")
                text += (text.empty() ? "" : ", ") + std::string(name);
        return text;
    }
    std::string names(LayoutKind kind) const { return names(kind, maximum_of(kind)); }
    // What a message calls the card behind "expected a number in": it names the fields that go on.
    std::string in_messages(LayoutKind kind) const {
        if (!called.empty())
            return std::string(called);
        return "Card " + std::string(number) + " (" + names(kind, fields_of(kind).shown()) + ")";
    }
};

}  // namespace brelan
