#include "study/expression.h"

#include <fmt/core.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <numbers>
#include <string>
#include <vector>

#include "cli/exit_status.h"
#include "cli/words.h"

namespace brelan::tool {

namespace {

using Arguments = std::vector<double>;

constexpr double DEGREE = std::numbers::pi / 180.0;

struct Function {
    std::string_view name;
    std::size_t least, most;  // counts of arguments
    double (*value)(const Arguments& a);
};

double rounded(const Arguments& a) {
    const double power = a.size() > 1 ? std::pow(10.0, std::trunc(a[1])) : 1.0;
    return std::round(a[0] * power) / power;
}

constexpr std::size_t ANY = 100;
constexpr std::array<Function, 13> FUNCTIONS{
    {{"min", 1, ANY, [](const Arguments& a) { return *std::min_element(a.begin(), a.end()); }},
     {"max", 1, ANY, [](const Arguments& a) { return *std::max_element(a.begin(), a.end()); }},
     {"abs", 1, 1, [](const Arguments& a) { return std::fabs(a[0]); }},
     {"sqrt", 1, 1, [](const Arguments& a) { return std::sqrt(a[0]); }},
     {"floor", 1, 1, [](const Arguments& a) { return std::floor(a[0]); }},
     {"ceil", 1, 1, [](const Arguments& a) { return std::ceil(a[0]); }},
     {"round", 1, 2, rounded},
     {"sin", 1, 1, [](const Arguments& a) { return std::sin(a[0] * DEGREE); }},
     {"cos", 1, 1, [](const Arguments& a) { return std::cos(a[0] * DEGREE); }},
     {"tan", 1, 1, [](const Arguments& a) { return std::tan(a[0] * DEGREE); }},
     {"asin", 1, 1, [](const Arguments& a) { return std::asin(a[0]) / DEGREE; }},
     {"acos", 1, 1, [](const Arguments& a) { return std::acos(a[0]) / DEGREE; }},
     {"atan", 1, 1, [](const Arguments& a) { return std::atan(a[0]) / DEGREE; }}}};

// sum = product {("+"|"-") product}; product = sign {("*"|"/") sign}; sign = ["-"|"+"] sign | power;
// power = atom ["^" sign]; atom = number | name | name "(" sum {"," sum} ")" | "(" sum ")"
class ExpressionReader {
public:
    ExpressionReader(std::string_view text, const NamedValues& values) : text_(text), values_(values) {}

    double value() {
        const double result = sum();
        if (next() != '\0')
            throw Failure(fmt::format("\"{}\": expected the end of the expression, found \"{}\"", text_,
                                      text_.substr(at_)));
        if (!std::isfinite(result))
            throw Failure(fmt::format("\"{}\" is no finite number", text_));
        return result;
    }

private:
    char next() {
        while (at_ < text_.size() && (text_[at_] == ' ' || text_[at_] == '\t'))
            ++at_;
        return at_ < text_.size() ? text_[at_] : '\0';
    }

    bool takes(char c) {
        if (next() != c)
            return false;
        ++at_;
        return true;
    }

    [[noreturn]] void expected(std::string_view what) {
        const std::string found = next() == '\0' ? "its end" : fmt::format("\"{}\"", text_.substr(at_));
        throw Failure(fmt::format("\"{}\": expected {}, found {}", text_, what, found));
    }

    double sum() {
        if (++depth_ > DEEPEST)
            throw Failure("an expression with too many brackets");
        double value = product();
        for (;;) {
            if (takes('+'))
                value += product();
            else if (takes('-'))
                value -= product();
            else
                break;
        }
        --depth_;
        return value;
    }

    double product() {
        double value = sign();
        for (;;) {
            if (takes('*'))
                value *= sign();
            else if (takes('/'))
                value /= sign();
            else
                return value;
        }
    }

    double sign() {
        bool negative = false;
        while (next() == '-' || next() == '+')
            negative = (text_[at_++] == '-') != negative;
        const double value = power();
        return negative ? -value : value;
    }

    double power() {
        const double base = atom();
        if (!takes('^'))
            return base;
        if (++depth_ > DEEPEST)
            throw Failure("an expression with too many powers");
        const double exponent = sign();
        --depth_;
        return std::pow(base, exponent);
    }

    double atom() {
        if (takes('(')) {
            const double value = sum();
            if (!takes(')'))
                expected("\")\"");
            return value;
        }
        const char c = next();
        if ((c >= '0' && c <= '9') || c == '.') {
            double value = 0.0;
            const auto [end, error] = std::from_chars(text_.data() + at_, text_.data() + text_.size(), value);
            if (error != std::errc{})
                expected("a number");
            at_ = static_cast<std::size_t>(end - text_.data());
            return value;
        }
        std::size_t end = at_;
        while (end < text_.size() && is_parameter_name(text_.substr(at_, end - at_ + 1)))
            ++end;
        if (end == at_)
            expected("a number, a parameter or a function");
        const std::string_view name = text_.substr(at_, end - at_);
        at_ = end;
        return next() == '(' ? call(name) : named(name);
    }

    double call(std::string_view name) {
        const auto* const function = std::find_if(FUNCTIONS.begin(), FUNCTIONS.end(),
                                                  [&](const Function& f) { return f.name == name; });
        if (function == FUNCTIONS.end()) {
            std::vector<std::string> names;
            names.reserve(FUNCTIONS.size());
            for (const Function& f : FUNCTIONS)
                names.emplace_back(f.name);
            throw Failure(fmt::format("\"{}\": expected a function ({}), found \"{}\"", text_,
                                      joined(names, ", "), name));
        }
        Arguments arguments;
        takes('(');
        do
            arguments.push_back(sum());
        while (takes(','));
        if (!takes(')'))
            expected("\")\"");
        if (arguments.size() < function->least || arguments.size() > function->most)
            throw Failure(fmt::format("\"{}\": {} takes {}, found {}", text_, name,
                                      function->least == function->most ? "one value" : "one or two values",
                                      arguments.size()));
        return function->value(arguments);
    }

    double named(std::string_view name) {
        for (const auto& [known, value] : values_) {
            if (known != name)
                continue;
            if (const auto* whole = std::get_if<std::int64_t>(&value))
                return static_cast<double>(*whole);
            if (const auto* number = std::get_if<double>(&value))
                return *number;
            throw Failure(fmt::format("\"{}\": {} is the text \"{}\" and no number", text_, name,
                                      text_of_value(value)));
        }
        if (name == "pi")
            return std::numbers::pi;
        throw Failure(unknown(name));
    }

    std::string unknown(std::string_view name) const {
        std::vector<std::string> names;
        names.reserve(values_.size());
        for (const auto& entry : values_)
            names.push_back(entry.first);
        return fmt::format("there is no parameter \"{}\"; expected one of {}", name, joined(names, ", "));
    }

    static constexpr int DEEPEST = 100;
    std::string_view text_;
    const NamedValues& values_;
    std::size_t at_ = 0;
    int depth_ = 0;
};

std::string_view without_blanks(std::string_view text) {
    while (!text.empty() && (text.front() == ' ' || text.front() == '\t'))
        text.remove_prefix(1);
    while (!text.empty() && (text.back() == ' ' || text.back() == '\t'))
        text.remove_suffix(1);
    return text;
}

}  // namespace

StudyValue evaluate(std::string_view expression, const NamedValues& values) {
    const std::string_view text = without_blanks(expression);
    for (const auto& [name, value] : values)
        if (name == text)
            return value;
    return ExpressionReader(text, values).value();
}

}  // namespace brelan::tool
