// Reals as the text of a record leaves them, without the text.
#pragma once

#include "text/layout.h"

namespace brelan {

// What is read back where a layout of one real field, as in as_written<"(E13.6)">(x), has written a value.
// Not a number where the text cannot be read as one.
template <FixedText NOTATION>
float as_written(float value) {
    using Form = Layout<NOTATION>;
    static_assert(Form::FIELDS.count == 1 && Form::template accepts<float>(), "a layout of one real field");
    constexpr LayoutField field = Form::field_at(0);
    if constexpr (field.kind == FieldKind::exponent) {
        float read = 0.0F;
        if (round_trip_exponent(field.width, field.digits, value, read))
            return read;
    }
    std::array<char, Form::columns()> text;
    Form{}.put(text.data(), value);
    return read_field(text.data(), text.data() + text.size());
}

}  // namespace brelan
