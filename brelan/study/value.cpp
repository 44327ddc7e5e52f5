#include "study/value.h"

#include <fmt/core.h>

#include <charconv>
#include <cmath>

namespace brelan::tool {

namespace {

struct ValueText {
    std::string operator()(std::monostate) const { return {}; }
    std::string operator()(std::int64_t number) const { return fmt::format("{}", number); }
    std::string operator()(double number) const { return fmt::format("{}", number); }
    std::string operator()(const std::string& text) const { return text; }
};

template <class Number>
bool reads_whole(std::string_view text, Number& number) {
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc{} && end == text.data() + text.size();
}

bool is_letter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_';
}

}  // namespace

std::string text_of_value(const StudyValue& value) {
    return std::visit(ValueText(), value);
}

StudyValue value_of_text(std::string_view text) {
    if (text.empty())
        return {};
    std::int64_t whole = 0;
    if (reads_whole(text, whole))
        return whole;
    double number = 0.0;
    if (reads_whole(text, number) && std::isfinite(number))
        return number;
    return std::string(text);
}

bool is_parameter_name(std::string_view name) {
    if (name.empty() || !is_letter(name.front()))
        return false;
    for (const char c : name)
        if (!is_letter(c) && (c < '0' || c > '9'))
            return false;
    return true;
}

}  // namespace brelan::tool
