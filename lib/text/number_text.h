// Numbers as text, in fields of fixed width, and text as numbers.
//
// Every field is right-justified. A value that does not fit fills its field with asterisks. Digits are the
// correctly rounded decimal digits of the stored 32-bit value, exact ties going to the even digit. A field
// that shows zero shows it without a sign.
#pragma once

#include <cstdint>

namespace brelan {

// In: an integer.
void put_integer(char* field, int width, std::int32_t value);

// Ew.d: mantissa 0.ddd and a two-digit exponent, as 0.123456E+02.
void put_exponent(char* field, int width, int digits, float value);

// ESw.d: one digit before the point, as 1.23456E+01.
void put_scientific(char* field, int width, int digits, float value);

// Fw.d: fixed point.
void put_fixed(char* field, int width, int digits, float value);

// What is read back of an Ew.d, without the text. False where only the text can tell.
bool round_trip_exponent(int width, int digits, float value, float& read);

enum class NumberScan {
    ok,
    not_a_number,  // another text, or digits that a separator or a sign does not end
    too_large,     // beyond the 32-bit type
};

// Reads the number that begins at `text`, and moves `text` behind it. A number is ended by a blank, a tab, a
// comma, a slash or the end of the text. A sign that directly follows the digits of an integer, or a complete
// exponent, ends it too and begins the next number: that is how lines with touching fields stay readable.
// Reals: 5, 5., .5, +3, 1.5E3, 1.5D+3, 1.5+3; one below the smallest normal number is 0.
NumberScan scan_number(const char*& text, const char* end, std::int32_t& value);
NumberScan scan_number(const char*& text, const char* end, float& value);

// The real that a field holds alone, in front of it blanks; not a number for any other text.
float read_field(const char* text, const char* end);

// True for a character that ends a number.
constexpr bool separates(char c) {
    return c == ' ' || c == ',' || c == '/' || c == '\t' || c == '\n' || c == '\r';
}

}  // namespace brelan
