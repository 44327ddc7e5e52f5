// Decks that the program makes: their text, which a person can read and run, and beside it the values of
// their cards, which are not read from it again.
#pragma once

#include <cmath>
#include <concepts>
#include <cstdint>
#include <string_view>

#include "deck/deck_tables.h"
#include "text/as_written.h"
#include "text/channels.h"
#include "text/layout.h"

namespace brelan {

inline constexpr Layout<"(2X,I3)"> ONE_NUMBER;  // a card of a single code or count

class DeckWriter {
public:
    DeckWriter(Channel& text, MadeCards& cards) : text_(text), cards_(cards) { cards_ = MadeCards{}; }

    // A comment, a name or a title.
    void line(std::string_view text) { text_.write_line(text); }
    void name(std::string_view name) { text_.write_columns(name); }
    // A heading of comment lines, or what else a layout gives that is no card.
    template <class Form, class... Values>
    void heading(const Form& form, const Values&... values) {
        form.write(text_, values...);
    }

    // A card: as much of the layout as there are values.
    template <class Form, class... Values>
    void card(const Form& form, const Values&... values) {
        form.write_front(text_, values...);
        cards_.values.push_back({shown<Form>(values)...});
        for (const float value : cards_.values.back())
            cards_.stand = cards_.stand && !std::isnan(value);
    }

private:
    // As the text has it; the reals of a layout are written alike.
    template <class Form, class Value>
    static float shown(Value value) {
        if constexpr (std::same_as<Value, std::int32_t>)
            return static_cast<float>(value);
        else if constexpr (has_exponents<Form>())
            return as_written<"(E12.5)">(value);
        else
            return as_written<"(ES12.5)">(value);
    }
    template <class Form>
    static constexpr bool has_exponents() {
        for (int i = 0; i < Form::FIELDS.count; ++i)
            if (Form::field_at(i).kind == FieldKind::exponent)
                return true;
        return false;
    }

    Channel& text_;
    MadeCards& cards_;
};

}  // namespace brelan
