// The value that a written real leaves, against writing and reading it.

#include "text/as_written.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <limits>
#include <random>
#include <vector>

namespace brelan::test {
namespace {

// Every exponent with chosen and random mantissas, 0 and what lies below the smallest normal number, what is
// no number, and integers and halves that lie half way between two numbers of four to nine digits.
std::vector<float> reals() {
    std::mt19937 random(31);
    std::vector<std::uint32_t> mantissas{0, 1, 0x7FFFFF, 0x7FFFFE, 0x400000};
    for (int i = 0; i < 40; ++i)
        mantissas.push_back(static_cast<std::uint32_t>(random()) & 0x7FFFFFU);
    std::vector<float> values;
    for (std::uint32_t exponent = 0; exponent <= 255; ++exponent)
        for (const std::uint32_t mantissa : mantissas)
            for (const std::uint32_t sign : {0U, 1U})
                values.push_back(std::bit_cast<float>(sign << 31U | exponent << 23U | mantissa));
    for (int power = -44; power <= 38; ++power) {
        const auto ten = static_cast<float>(std::pow(10.0, power));
        for (const float value : {ten, std::nextafter(ten, 0.0F), std::nextafter(ten, 1.0E38F)})
            values.push_back(value);
    }
    for (int i = 0; i < 20000; ++i) {
        const auto whole = static_cast<std::int32_t>(random() % 8388608U);
        values.push_back(static_cast<float>(whole / 10 * 10 + 5));
        values.push_back(static_cast<float>(whole / 1000 * 1000 + 500));
        values.push_back(static_cast<float>(whole) + 0.5F);
        values.push_back(-static_cast<float>(whole / 8) / 8.0F - 0.0625F);
    }
    return values;
}

template <FixedText NOTATION>
float written_and_read(float value) {
    constexpr std::size_t columns = Layout<NOTATION>::columns();
    std::string text(columns, ' ');
    Layout<NOTATION>{}.put(text.data(), value);
    const char* at = text.data() + std::min(text.find_first_not_of(' '), columns);
    const char* const end = text.data() + text.size();
    float read = 0.0F;
    if (scan_number(at, end, read) == NumberScan::ok && at == end)
        return read;
    return std::numeric_limits<float>::quiet_NaN();
}

template <FixedText NOTATION>
void expect_what_is_read() {
    std::size_t wrong = 0, unreadable = 0;
    for (const float value : reals()) {
        const float expected = written_and_read<NOTATION>(value);
        const float found = as_written<NOTATION>(value);
        unreadable += std::isnan(expected);
        const bool same = std::isnan(expected)
                              ? std::isnan(found)
                              : std::bit_cast<std::uint32_t>(expected) == std::bit_cast<std::uint32_t>(found);
        if (!same && ++wrong < 5)
            ADD_FAILURE() << NOTATION.view() << ": " << std::hexfloat << value << " gives " << found
                          << ", not " << expected;
    }
    EXPECT_EQ(wrong, 0U) << NOTATION.view();
    EXPECT_GT(unreadable, 0U) << "infinite ones at least";
}

TEST(AsWritten, IsWhatIsReadBack) {
    expect_what_is_read<"(E13.6)">();
    expect_what_is_read<"(E16.9)">();
    expect_what_is_read<"(E11.4)">();
    expect_what_is_read<"(E12.5)">();
    expect_what_is_read<"(E11.6)">();  // no room for a sign
    expect_what_is_read<"(ES12.5)">();
    expect_what_is_read<"(F10.3)">();
}

TEST(AsWritten, ShowsWhatDigitsTake) {
    EXPECT_EQ(as_written<"(E13.6)">(1.0F / 3.0F), 0.333333F);
    EXPECT_EQ(as_written<"(E13.6)">(1234565.0F), 1234560.0F);  // a tie goes to the even digit
    EXPECT_EQ(as_written<"(E13.6)">(1234575.0F), 1234580.0F);
    EXPECT_EQ(as_written<"(E13.6)">(9999999.0F), 1.0E7F);
    EXPECT_EQ(as_written<"(E16.9)">(1.0F / 3.0F), 1.0F / 3.0F);
    EXPECT_FALSE(std::signbit(as_written<"(E13.6)">(-0.0F)));
    EXPECT_EQ(as_written<"(E13.6)">(1.0E-39F), 0.0F);
    EXPECT_TRUE(std::isnan(as_written<"(E11.6)">(-1.0F)));
    EXPECT_TRUE(std::isnan(as_written<"(E11.4)">(std::numeric_limits<float>::max())));  // 0.3403E+39
}

}  // namespace
}  // namespace brelan::test
