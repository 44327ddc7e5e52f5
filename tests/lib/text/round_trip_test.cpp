// Numbers that are written and read back: the same 32 bits, whatever the number.
#include <bit>
#include <cmath>
#include <limits>
#include <random>
#include <span>
#include <type_traits>

#include "support/state.h"
#include "text/free_field.h"
#include "text/layout.h"

namespace brelan::test {
namespace {

constexpr int COUNT = 50000;
constexpr int ON_A_LINE = 8;

// Bit patterns of finite reals: at random, and round the places where the count of digits changes.
std::vector<float> drawn_reals() {
    std::mt19937 random(20240607);
    std::vector<float> values{0.0F, -0.0F, 1.0F, -1.0F, 0.1F, 1.0F / 3.0F, 16777216.0F, 16777215.0F};
    for (const float limit : {std::numeric_limits<float>::min(), std::numeric_limits<float>::max()})
        for (const float sign : {1.0F, -1.0F})
            values.push_back(sign * limit);
    for (int power = -37; power <= 38; ++power) {
        const auto ten = static_cast<float>(std::pow(10.0, power));
        for (const float value : {ten, std::nextafter(ten, 0.0F), std::nextafter(ten, 1.0E38F)})
            values.push_back(value);
    }
    while (values.size() < static_cast<std::size_t>(COUNT)) {
        const auto value = std::bit_cast<float>(static_cast<std::uint32_t>(random()));
        if (std::isfinite(value))
            values.push_back(value);
    }
    while (values.size() % ON_A_LINE != 0)
        values.push_back(0.5F);
    return values;
}

// What is read back: a number below the smallest normal one is 0.
float as_read(float value) {
    return std::abs(value) < std::numeric_limits<float>::min() ? 0.0F : value;
}

std::vector<std::int32_t> integers() {
    std::mt19937 random(20240608);
    std::vector<std::int32_t> values;
    for (std::int64_t power = 1; power < 10000000000; power *= 10)
        for (const std::int64_t value : {power - 1, power, -power, -power + 1})
            if (value >= std::numeric_limits<std::int32_t>::min() &&
                value <= std::numeric_limits<std::int32_t>::max())
                values.push_back(static_cast<std::int32_t>(value));
    values.push_back(std::numeric_limits<std::int32_t>::min());
    values.push_back(std::numeric_limits<std::int32_t>::max());
    while (values.size() < static_cast<std::size_t>(COUNT) || values.size() % ON_A_LINE != 0)
        values.push_back(static_cast<std::int32_t>(random() >> (random() % 32U)));
    return values;
}

class RoundTrip : public ChannelTest {
protected:
    // Writes the values, eight with each call, and compares what a free-field read of the file gives.
    template <class Number, class Write>
    void expect_same(const std::vector<Number>& values, Write write) const {
        Channel& channel = state.channels.open(7, "values.txt", OpenStatus::work);
        for (std::size_t i = 0; i < values.size(); i += ON_A_LINE)
            write(channel, std::span<const Number, ON_A_LINE>(&values[i], ON_A_LINE));
        channel.rewind();
        std::vector<Number> read(values.size());
        for (std::size_t i = 0; i < values.size(); i += ON_A_LINE)
            read_free_list<Number>(channel, "eight values", std::span<Number>(&read[i], ON_A_LINE));
        EXPECT_TRUE(channel.at_end());
        int wrong = 0;
        for (std::size_t i = 0; i < values.size(); ++i)
            if (!same(values[i], read[i]) && ++wrong <= 10)
                ADD_FAILURE() << "wrote " << shown(values[i]) << ", read " << shown(read[i]);
        EXPECT_EQ(wrong, 0);
    }
    template <FixedText NOTATION>
    void expect_same_through_layout() const {
        expect_same(drawn_reals(), [](Channel& channel, std::span<const float, ON_A_LINE> v) {
            Layout<NOTATION>{}.write(channel, v[0], v[1], v[2], v[3], v[4], v[5], v[6], v[7]);
        });
    }

private:
    static bool same(std::int32_t written, std::int32_t read) { return written == read; }
    static bool same(float written, float read) {
        // Zero is written without a sign.
        return as_read(written) == 0.0F
                   ? read == 0.0F
                   : std::bit_cast<std::uint32_t>(written) == std::bit_cast<std::uint32_t>(read);
    }
    static std::string shown(std::int32_t value) { return std::to_string(value); }
    static std::string shown(float value) {
        char text[64];
        std::snprintf(text, sizeof text, "%.9g (%08x)", static_cast<double>(value),
                      std::bit_cast<std::uint32_t>(value));
        return text;
    }
};

TEST_F(RoundTrip, RealsComeBackFromFreeFieldLines) {
    expect_same(drawn_reals(), [](Channel& channel, std::span<const float, ON_A_LINE> v) {
        write_free(channel, v[0], v[1], v[2], v[3], v[4], v[5], v[6], v[7]);
    });
}

TEST_F(RoundTrip, IntegersComeBackFromFreeFieldLines) {
    expect_same(integers(), [](Channel& channel, std::span<const std::int32_t, ON_A_LINE> v) {
        write_free(channel, v[0], v[1], v[2], v[3], v[4], v[5], v[6], v[7]);
    });
}

TEST_F(RoundTrip, RealsComeBackFromNineDigitsOfAMantissa) {
    expect_same_through_layout<"(8(E16.9,1X))">();
    expect_same_through_layout<"(8(1X,E16.9))">();
    expect_same_through_layout<"(8E20.9)">();
}

TEST_F(RoundTrip, RealsComeBackFromNineDigitsWithOneBeforeThePoint) {
    expect_same_through_layout<"(8(ES15.8,1X))">();
    expect_same_through_layout<"(8ES20.8)">();
}

TEST_F(RoundTrip, RealsComeBackFromTouchingFields) {
    // A negative value fills its field, so that its sign directly follows the exponent before it.
    std::vector<float> negative = drawn_reals();
    for (float& value : negative)
        value = as_read(value) == 0.0F ? -1.0F : -std::abs(value);
    expect_same(negative, [](Channel& channel, std::span<const float, ON_A_LINE> v) {
        Layout<"(8E16.9)">{}.write(channel, v[0], v[1], v[2], v[3], v[4], v[5], v[6], v[7]);
    });
}

TEST_F(RoundTrip, IntegersComeBackFromElevenColumnsAndABlank) {
    expect_same(integers(), [](Channel& channel, std::span<const std::int32_t, ON_A_LINE> v) {
        Layout<"(8(I11,1X))">{}.write(channel, v[0], v[1], v[2], v[3], v[4], v[5], v[6], v[7]);
    });
}

TEST_F(RoundTrip, SixDigitsComeBackAsTheSameSixDigits) {
    // What a mesh file holds stays what it is however often the mesh is read and written.
    constexpr float lowest = 1.2E-38F;    // six digits of a smaller number may be below every normal one
    constexpr float highest = 3.402E38F;  // and those of a larger number above every number
    Channel& channel = state.channels.open(7, "values.txt", OpenStatus::work);
    constexpr Layout<"(E13.6)"> six_digits;
    for (const float value : drawn_reals()) {
        if (std::abs(value) < lowest || std::abs(value) > highest)
            continue;
        channel.rewind();
        six_digits.write(channel, value);
        channel.rewind();
        const std::string written(channel.peek_line());
        float read = 0.0F;
        read_free(channel, "a value", read);
        six_digits.write(channel, read);
        channel.step_back(1);
        ASSERT_EQ(channel.peek_line(), written);
    }
}

}  // namespace
}  // namespace brelan::test
