#include "text/number_text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstring>
#include <limits>
#include <string>

namespace brelan {

namespace {

// --- writing -------------------------------------------------------------------------------------

// The largest count of significant digits that a layout asks for, and the powers of ten that bring a 32-bit
// real to that many digits before the point.
constexpr int MOST_DIGITS = 10;
constexpr int LARGEST_POWER = 48;

constexpr std::array<double, LARGEST_POWER + 1> powers_of_ten() {
    std::array<double, LARGEST_POWER + 1> powers{};
    double power = 1.0;
    for (double& entry : powers) {
        entry = power;
        power *= 10.0;
    }
    return powers;
}
constexpr std::array<double, LARGEST_POWER + 1> POWERS = powers_of_ten();

// A value as d significant digits and the exponent of the mantissa 0.ddd.
struct Decimal {
    std::uint64_t digits;
    int exponent;
};

// Rounds by multiplication in 64 bits. Gives up (false) where the product lies so near a tie that its own
// rounding might decide: its relative error is below 5e-15, so below 5e-5 on at most 1e10, and nothing within
// 1e-4 of a tie is decided here.
bool quick_decimal(double magnitude, int digits, Decimal& result) {
    if (digits > MOST_DIGITS || magnitude < static_cast<double>(std::numeric_limits<float>::min()))
        return false;
    std::uint64_t bits = 0;
    std::memcpy(&bits, &magnitude, sizeof bits);
    const int binary_exponent = static_cast<int>(bits >> 52) - 1023;
    // floor(binary_exponent * log10(2)) + 1, exact for every exponent of a 32-bit real: never more than the
    // decimal exponent, and one less at the most.
    int exponent = ((binary_exponent * 78913) >> 18) + 1;
    for (int attempt = 0; attempt < 2; ++attempt) {
        const int scale = digits - exponent;
        if (scale > LARGEST_POWER || scale < -LARGEST_POWER)
            return false;
        const double scaled = scale >= 0 ? magnitude * POWERS[static_cast<std::size_t>(scale)]
                                         : magnitude / POWERS[static_cast<std::size_t>(-scale)];
        const double limit = POWERS[static_cast<std::size_t>(digits)];
        if (scaled >= limit) {
            ++exponent;
            continue;
        }
        const auto whole = static_cast<std::uint64_t>(scaled);
        const double fraction = scaled - static_cast<double>(whole);
        if (std::abs(fraction - 0.5) < 1e-4)
            return false;
        result.digits = whole + (fraction > 0.5 ? 1U : 0U);
        result.exponent = exponent;
        if (static_cast<double>(result.digits) >= limit) {
            result.digits /= 10;
            ++result.exponent;
        }
        return static_cast<double>(result.digits) * 10.0 >= limit;
    }
    return false;
}

Decimal decimal(double magnitude, int digits) {
    Decimal result{0, 0};
    if (magnitude == 0.0 || quick_decimal(magnitude, digits, result))
        return result;
    std::array<char, 64> text{};
    const auto end = std::to_chars(text.data(), text.data() + text.size(), magnitude,
                                   std::chars_format::scientific, digits - 1);
    const char* at = text.data();
    for (; *at != 'e'; ++at)
        if (*at != '.')
            result.digits = result.digits * 10 + static_cast<std::uint64_t>(*at - '0');
    ++at;
    if (*at == '+')
        ++at;
    std::from_chars(at, end.ptr, result.exponent);
    ++result.exponent;
    return result;
}

// Columns of an Ew.d without the zero in front of its point: sign, point, digits, E+00.
int columns_of(int digits, int lead, bool negative) {
    return digits + 5 + (negative ? 1 : 0) + lead;
}

void fill(char* field, int width, char c) {
    std::memset(field, c, static_cast<std::size_t>(width));
}

// The mantissa forms: `lead` digits before the point, the others behind it, then E and the exponent. The zero
// of a mantissa 0.ddd is left out where the field has no room for it.
void put_mantissa(char* field, int width, int digits, int lead, float value) {
    if (!std::isfinite(value)) {
        fill(field, width, '*');
        return;
    }
    const bool negative = value < 0.0F;
    const Decimal number = decimal(std::abs(static_cast<double>(value)), digits + lead);
    const int exponent = value == 0.0F ? 0 : number.exponent - lead;
    const int needed = columns_of(digits, lead, negative);
    if (needed > width) {
        fill(field, width, '*');
        return;
    }
    char* at = field + width;
    const int shown = std::abs(exponent);
    *--at = static_cast<char>('0' + shown % 10);
    *--at = static_cast<char>('0' + shown / 10);
    *--at = exponent < 0 ? '-' : '+';
    *--at = 'E';
    std::uint64_t rest = number.digits;
    for (int i = 0; i < digits; ++i, rest /= 10)
        *--at = static_cast<char>('0' + rest % 10);
    *--at = '.';
    if (lead == 1)
        *--at = static_cast<char>('0' + rest % 10);
    else if (needed < width)
        *--at = '0';
    if (negative)
        *--at = '-';
    fill(field, static_cast<int>(at - field), ' ');
}

}  // namespace

void put_integer(char* field, int width, std::int32_t value) {
    char* at = field + width;
    std::uint32_t rest =
        value < 0 ? 0U - static_cast<std::uint32_t>(value) : static_cast<std::uint32_t>(value);
    do {
        if (at == field) {
            fill(field, width, '*');
            return;
        }
        *--at = static_cast<char>('0' + rest % 10);
        rest /= 10;
    } while (rest != 0);
    if (value < 0) {
        if (at == field) {
            fill(field, width, '*');
            return;
        }
        *--at = '-';
    }
    while (at != field)
        *--at = ' ';
}

void put_exponent(char* field, int width, int digits, float value) {
    put_mantissa(field, width, digits, 0, value);
}

void put_scientific(char* field, int width, int digits, float value) {
    put_mantissa(field, width, digits, 1, value);
}

void put_fixed(char* field, int width, int digits, float value) {
    std::array<char, 128> text{};
    const auto end =
        std::to_chars(text.data(), text.data() + text.size(), value, std::chars_format::fixed, digits);
    const char* begin = text.data();
    const char* const last = end.ptr;
    const bool shows_zero = std::none_of(begin, last, [](char c) { return c >= '1' && c <= '9'; });
    if (*begin == '-' && shows_zero)
        ++begin;
    bool drop_zero = false;  // the zero before the point is left out where the field has no room for it
    const char* zero = *begin == '-' ? begin + 1 : begin;
    if (last - begin == width + 1 && *zero == '0' && digits > 0)
        drop_zero = true;
    if (!std::isfinite(value) || last - begin > width + (drop_zero ? 1 : 0)) {
        fill(field, width, '*');
        return;
    }
    char* at = field + width;
    for (const char* from = last; from != begin;) {
        --from;
        if (!(drop_zero && from == zero))
            *--at = *from;
    }
    fill(field, static_cast<int>(at - field), ' ');
}

// --- reading -------------------------------------------------------------------------------------

namespace {

constexpr bool is_digit(char c) {
    return c >= '0' && c <= '9';
}
constexpr bool is_sign(char c) {
    return c == '+' || c == '-';
}

const char* past_digits(const char* at, const char* end) {
    while (at != end && is_digit(*at))
        ++at;
    return at;
}

// The decimal exponent of the first digit that is not 0, for text that from_chars found out of range.
bool is_below_one(const char* mantissa, const char* mantissa_end, std::ptrdiff_t exponent) {
    const char* point = std::find(mantissa, mantissa_end, '.');
    const char* first = std::find_if(mantissa, mantissa_end, [](char c) { return c >= '1' && c <= '9'; });
    const std::ptrdiff_t place =
        first < point ? point - first : point - first + 1;  // 1 for units, 0 for tenths
    return place + exponent <= 0;
}

// Up to 19 digits and a small power of ten: both are exact in 64 bits, so one operation rounds correctly to
// 64 bits; the 32-bit value follows when it is not near the middle between two neighbours.
bool quick_real(std::uint64_t digits, std::ptrdiff_t exponent, float& value) {
    if (digits >= (std::uint64_t{1} << 53) || exponent < -22 || exponent > 22)
        return false;
    const double exact = static_cast<double>(digits);
    const double wide = exponent < 0 ? exact / POWERS[static_cast<std::size_t>(-exponent)]
                                     : exact * POWERS[static_cast<std::size_t>(exponent)];
    if (digits != 0 && (wide < 1e-30 || wide > 1e30))
        return false;
    std::uint64_t bits = 0;
    std::memcpy(&bits, &wide, sizeof bits);
    const std::uint64_t tail = bits & 0x1FFFFFFFU;  // what the 32-bit mantissa has no room for
    if (tail >= 0x0FFFFFF0U && tail <= 0x10000010U)
        return false;
    value = static_cast<float>(wide);
    return true;
}

}  // namespace

NumberScan scan_number(const char*& text, const char* end, std::int32_t& value) {
    const char* at = text;
    const bool negative = at != end && *at == '-';
    if (at != end && is_sign(*at))
        ++at;
    const char* first = at;
    std::int64_t magnitude = 0;
    bool too_large = false;
    for (; at != end && is_digit(*at); ++at) {
        magnitude = magnitude * 10 + (*at - '0');
        if (magnitude > std::int64_t{2147483648}) {
            too_large = true;
            magnitude = 2147483648;
        }
    }
    if (at == first || (at != end && !separates(*at) && !is_sign(*at)))
        return NumberScan::not_a_number;
    if (too_large || (!negative && magnitude == std::int64_t{2147483648}))
        return NumberScan::too_large;
    value = static_cast<std::int32_t>(negative ? -magnitude : magnitude);
    text = at;
    return NumberScan::ok;
}

NumberScan scan_number(const char*& text, const char* end, float& value) {
    const char* at = text;
    const bool negative = at != end && *at == '-';
    if (at != end && is_sign(*at))
        ++at;
    // The mantissa, gathered as one integer as long as it has room.
    const char* const mantissa = at;
    std::uint64_t digits = 0;
    for (; at != end && is_digit(*at); ++at)
        digits = digits * 10 + static_cast<std::uint64_t>(*at - '0');
    std::ptrdiff_t count = at - mantissa;
    std::ptrdiff_t point_shift = 0;
    if (at != end && *at == '.') {
        const char* fraction = ++at;
        for (; at != end && is_digit(*at); ++at)
            digits = digits * 10 + static_cast<std::uint64_t>(*at - '0');
        point_shift = at - fraction;
        count += point_shift;
    }
    if (count == 0)
        return NumberScan::not_a_number;
    const char* const mantissa_end = at;
    // The exponent: a letter and an integer, or an integer with its sign.
    std::ptrdiff_t exponent = 0;
    bool has_exponent = false;
    if (at != end && (*at == 'E' || *at == 'e' || *at == 'D' || *at == 'd')) {
        ++at;
        has_exponent = true;
    } else if (at != end && is_sign(*at)) {
        has_exponent = true;
    }
    if (has_exponent) {
        const bool down = at != end && *at == '-';
        if (at != end && is_sign(*at))
            ++at;
        const char* first = at;
        at = past_digits(at, end);
        if (at == first)
            return NumberScan::not_a_number;
        constexpr std::ptrdiff_t LARGEST = 100000000;  // beyond all real numbers
        for (; first != at; ++first)
            exponent = std::min(exponent * 10 + (*first - '0'), LARGEST);
        if (down)
            exponent = -exponent;
    }
    if (at != end && !separates(*at) && !(has_exponent && is_sign(*at)))
        return NumberScan::not_a_number;

    float magnitude = 0.0F;
    if (count > 19 || !quick_real(digits, exponent - point_shift, magnitude)) {
        std::string plain(mantissa, mantissa_end);
        plain += 'e';
        plain += std::to_string(exponent);
        const auto [ignored, error] = std::from_chars(plain.data(), plain.data() + plain.size(), magnitude);
        const bool out_of_range = error == std::errc::result_out_of_range;
        if ((out_of_range && !is_below_one(mantissa, mantissa_end, exponent)) || std::isinf(magnitude))
            return NumberScan::too_large;
        if (out_of_range || magnitude < std::numeric_limits<float>::min())
            magnitude = 0.0F;
    }
    value = negative ? -magnitude : magnitude;
    text = at;
    return NumberScan::ok;
}

bool round_trip_exponent(int width, int digits, float value, float& read) {
    const bool negative = value < 0.0F;
    if (!std::isfinite(value) || columns_of(digits, 0, negative) > width)
        return false;
    const Decimal shown = decimal(std::abs(static_cast<double>(value)), digits);
    if (!quick_real(shown.digits, shown.exponent - digits, read))
        return false;
    read = negative ? -read : read;
    return true;
}

float read_field(const char* text, const char* end) {
    while (text != end && *text == ' ')
        ++text;
    float value = 0.0F;
    return scan_number(text, end, value) == NumberScan::ok && text == end
               ? value
               : std::numeric_limits<float>::quiet_NaN();
}

}  // namespace brelan
