// Fields of reals hold the correctly rounded digits of the value, a tie going to the even digit: random
// values against all digits of their decimal expansion.
#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <random>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

#include "text/number_text.h"

namespace brelan {
namespace {

// A magnitude as the digits of 0.ddd and a power of ten. Every digit is there: the expansion of m/2**k ends k
// places behind the point.
struct Exact {
    std::string digits;
    int power = 0;
};

// m * 2**e, or m * 5**k / 10**k with k = -e, the product in base 10**9.
Exact exact_decimal(float magnitude) {
    constexpr std::uint64_t BASE = 1000000000;
    const auto bits = std::bit_cast<std::uint32_t>(magnitude);
    const int exponent = static_cast<int>(bits >> 23U);
    const std::uint32_t fraction = bits & 0x7FFFFFU;
    const int e = (exponent == 0 ? 1 : exponent) - 150;
    std::vector<std::uint64_t> limbs{exponent == 0 ? fraction : fraction | 0x800000U};
    for (int k = 0; k < std::abs(e); ++k) {
        std::uint64_t carry = 0;
        for (std::uint64_t& limb : limbs) {
            limb = limb * (e < 0 ? 5 : 2) + carry;
            carry = limb / BASE;
            limb %= BASE;
        }
        if (carry > 0)
            limbs.push_back(carry);
    }
    Exact exact;
    for (auto limb = limbs.rbegin(); limb != limbs.rend(); ++limb) {
        const std::string text = std::to_string(*limb);
        exact.digits += std::string(limb == limbs.rbegin() ? 0 : 9 - text.size(), '0') + text;
    }
    exact.power = static_cast<int>(exact.digits.size()) + std::min(e, 0);
    return exact;
}

// The first `count` digits, rounded: a whole number, of one digit more where the rounding carries.
std::string rounded(const Exact& exact, int count) {
    if (count < 0)
        return "0";
    const auto n = static_cast<std::size_t>(count);
    std::string kept = exact.digits.substr(0, n);
    kept.resize(n, '0');
    const std::string rest = exact.digits.size() > n ? exact.digits.substr(n) : "";
    const bool odd = !kept.empty() && (kept.back() - '0') % 2 == 1;
    const bool tie =
        !rest.empty() && rest.front() == '5' && rest.find_first_not_of('0', 1) == std::string::npos;
    if (rest.empty() || rest.front() < '5' || (tie && !odd))
        return kept.empty() ? "0" : kept;
    const std::size_t last = kept.find_last_not_of('9');
    std::fill(last == std::string::npos ? kept.begin() : kept.begin() + static_cast<std::ptrdiff_t>(last) + 1,
              kept.end(), '0');
    if (last == std::string::npos)
        return "1" + kept;
    ++kept[last];
    return kept;
}

// Right-justified; the zero in front of a point gives way where the field has no room.
std::string in_field(const std::string& sign, std::string text, int width) {
    const auto columns = static_cast<std::size_t>(width);
    if (sign.size() + text.size() == columns + 1 && text.starts_with("0."))
        text.erase(0, 1);
    text = sign + text;
    return text.size() > columns ? std::string(columns, '*') : std::string(columns - text.size(), ' ') + text;
}

enum class Edit { exponent, scientific, fixed };

std::string mantissa_field(Edit edit, int width, int digits, float value, const Exact& exact) {
    const int lead = edit == Edit::scientific ? 1 : 0;
    std::string text(static_cast<std::size_t>(digits + lead), '0');
    int power = 0;
    if (value != 0.0F) {
        text = rounded(exact, digits + lead);
        power = exact.power - lead;
        if (static_cast<int>(text.size()) > digits + lead) {
            text.pop_back();
            ++power;
        }
    }
    text.insert(static_cast<std::size_t>(lead), lead == 0 ? "0." : ".");
    const std::string shown = std::to_string(std::abs(power));
    text += std::string(power < 0 ? "E-" : "E+") + (shown.size() < 2 ? "0" : "") + shown;
    return in_field(value < 0.0F ? "-" : "", text, width);
}

std::string fixed_field(int width, int decimals, float value, const Exact& exact) {
    std::string text = rounded(exact, exact.power + decimals);
    const auto least = static_cast<std::size_t>(decimals) + 1;
    if (text.size() < least)
        text.insert(0, least - text.size(), '0');
    const bool zero = text.find_first_not_of('0') == std::string::npos;
    text.insert(text.size() - static_cast<std::size_t>(decimals), ".");
    return in_field(value < 0.0F && !zero ? "-" : "", text, width);
}

std::string expected_field(Edit edit, int width, int digits, float value, const Exact& exact) {
    return edit == Edit::fixed ? fixed_field(width, digits, value, exact)
                               : mantissa_field(edit, width, digits, value, exact);
}

std::string written_field(Edit edit, int width, int digits, float value) {
    std::string field(static_cast<std::size_t>(width), '?');
    (edit == Edit::exponent     ? put_exponent
     : edit == Edit::scientific ? put_scientific
                                : put_fixed)(field.data(), width, digits, value);
    return field;
}

struct Form {
    Edit edit;
    int width, digits;
};

class Fields {
public:
    void expect(float value) {
        const float magnitude = std::abs(value);
        const Exact exact = magnitude == 0.0F ? Exact{"0", 1} : exact_decimal(magnitude);
        for (const Form& form : USED)
            expect(form, value, exact);
        // Fields of any size, also too small ones.
        const int digits = 1 + static_cast<int>(random_() % 9);
        const int width = digits + 4 + static_cast<int>(random_() % 6);
        for (const Edit edit : {Edit::exponent, Edit::scientific, Edit::fixed})
            expect({edit, width, digits}, value, exact);
    }

    int fields() const { return fields_; }

private:
    static constexpr Form USED[] = {
        {Edit::exponent, 11, 4},   {Edit::exponent, 12, 5}, {Edit::exponent, 13, 6}, {Edit::exponent, 16, 9},
        {Edit::scientific, 12, 5}, {Edit::fixed, 6, 2},     {Edit::fixed, 10, 3},
    };

    void expect(const Form& form, float value, const Exact& exact) {
        constexpr int SHOWN = 20;
        ++fields_;
        const std::string text = written_field(form.edit, form.width, form.digits, value);
        const std::string right = expected_field(form.edit, form.width, form.digits, value, exact);
        if (text != right && ++wrong_ <= SHOWN)
            ADD_FAILURE() << "bits " << std::hex << std::bit_cast<std::uint32_t>(value) << std::dec
                          << ", width " << form.width << ", " << form.digits << " digits\n  written  ["
                          << text << "]\n  expected [" << right << "]";
    }

    std::mt19937 random_{17};
    int fields_ = 0, wrong_ = 0;
};

float random_finite(std::mt19937& random) {
    for (;;)
        if (const auto value = std::bit_cast<float>(static_cast<std::uint32_t>(random()));
            std::isfinite(value))
            return value;
}

// The calculation itself, by values whose digits are known.
TEST(NumberText, ExactDigits) {
    const auto digits = [](float value) {
        const Exact exact = exact_decimal(value);
        return exact.digits + " " + std::to_string(exact.power);
    };
    EXPECT_EQ(digits(1.0F), "100000000000000000000000 1");  // 2**23 / 2**23, with all 23 places
    EXPECT_EQ(digits(0.1F).substr(0, 27), "100000001490116119384765625");
    EXPECT_EQ(digits(16777216.0F), "16777216 8");
    EXPECT_EQ(digits(0x1p100F), "1267650600228229401496703205376 31");
    EXPECT_EQ(rounded({"125", 1}, 2), "12");
    EXPECT_EQ(rounded({"135", 1}, 2), "14");
    EXPECT_EQ(rounded({"12501", 1}, 2), "13");
    EXPECT_EQ(rounded({"9996", 1}, 3), "1000");
    EXPECT_EQ(rounded({"5", 0}, 0), "0");
    EXPECT_EQ(rounded({"51", 0}, 0), "1");
    EXPECT_EQ(rounded({"9", -1}, -1), "0");
}

TEST(NumberText, RandomValuesAreRoundedCorrectly) {
    std::mt19937 random(20240229);
    Fields fields;
    for (int i = 0; i < 4000; ++i)
        fields.expect(random_finite(random));
    // Coordinates and stiffnesses: 2**-10 to 2**18.
    for (int i = 0; i < 4000; ++i) {
        const auto exponent = static_cast<std::uint32_t>(117 + random() % 28);
        fields.expect(
            std::bit_cast<float>((static_cast<std::uint32_t>(random()) & 0x807FFFFFU) | exponent << 23U));
    }
    EXPECT_EQ(fields.fields(), 80000);
}

// Short binary fractions: of a layout with few digits many are exact ties.
TEST(NumberText, TiesGoToTheEvenDigit) {
    std::mt19937 random(5);
    Fields fields;
    for (int i = 0; i < 4000; ++i) {
        const auto odd =
            static_cast<float>((static_cast<std::uint32_t>(random()) >> (8U + random() % 23U)) | 1U);
        const float value = std::ldexp(odd, -static_cast<int>(random() % 13));
        fields.expect(i % 2 == 0 ? value : -value);
    }
    EXPECT_EQ(fields.fields(), 40000);
}

TEST(NumberText, ValuesBesideAPowerOfTenAreRoundedCorrectly) {
    Fields fields;
    for (int power = -45; power <= 38; ++power) {
        const std::string text = "1e" + std::to_string(power);
        float value = 0.0F;
        std::from_chars(text.data(), text.data() + text.size(), value);
        for (std::int64_t step = -4; step <= 4; ++step) {
            const std::int64_t bits = std::bit_cast<std::uint32_t>(value) + step;
            if (bits < 0)
                continue;
            fields.expect(std::bit_cast<float>(static_cast<std::uint32_t>(bits)));
            fields.expect(std::bit_cast<float>(static_cast<std::uint32_t>(bits) | 0x80000000U));
        }
    }
    EXPECT_GE(fields.fields(), 80 * 9 * 2 * 10);
}

TEST(NumberText, RandomIntegersAreRightJustifiedOrAsterisks) {
    std::mt19937 random(3);
    for (int i = 0; i < 4000; ++i) {
        const auto value =
            static_cast<std::int32_t>(static_cast<std::uint32_t>(random())) >> (random() % 31U);
        const int width = 1 + static_cast<int>(random() % 12);
        std::string field(static_cast<std::size_t>(width), '?');
        put_integer(field.data(), width, value);
        EXPECT_EQ(field, in_field("", std::to_string(value), width)) << value;
    }
}

// The zero in front of the point goes where the field has no room for it, and no other digit does.
TEST(NumberText, FixedFieldsLeaveOutAZeroAlone) {
    const std::tuple<int, float, std::string> fields[] = {
        {6, 0.125F, " 0.125"}, {5, 0.125F, "0.125"}, {4, 0.125F, ".125"}, {3, 0.125F, "***"},
        {5, -0.125F, "-.125"}, {4, -0.125F, "****"}, {4, 1.125F, "****"}, {4, -0.0001F, ".000"}};
    for (const auto& [width, value, expected] : fields) {
        std::string field(static_cast<std::size_t>(width), '?');
        put_fixed(field.data(), width, 3, value);
        EXPECT_EQ(field, expected);
    }
}

TEST(NumberText, NumbersOfNoTextAreNone) {
    const std::string_view none;
    const char* text = none.data();
    std::int32_t integer = 0;
    float real = 0.0F;
    EXPECT_EQ(scan_number(text, text, integer), NumberScan::not_a_number);
    EXPECT_EQ(scan_number(text, text, real), NumberScan::not_a_number);
}

TEST(NumberText, FieldHoldsOneNumberAlone) {
    const auto read = [](std::string_view field) {
        return read_field(field.data(), field.data() + field.size());
    };
    EXPECT_EQ(read("  1.5"), 1.5F);
    for (const std::string_view field : {"", "   ", "1.5 ", "1 2", "x", "*****"})
        EXPECT_TRUE(std::isnan(read(field))) << '"' << field << '"';
}

// Sixteen digits and a power of ten that is exact make more than 32 bits hold.
TEST(NumberText, LargeNumbersOfManyDigitsAreRounded) {
    const auto read = [](std::string_view field) {
        return read_field(field.data(), field.data() + field.size());
    };
    EXPECT_EQ(read("1000000000000000E20"), 1.0E35F);
    EXPECT_TRUE(std::isnan(read("9000000000000000E23")));  // 9E38
}

}  // namespace
}  // namespace brelan
