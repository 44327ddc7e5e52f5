// A value of a parameter, or one that was gathered from a case.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace brelan::tool {

// Nothing, where a case has no such value; a whole number, a number, or a text.
using StudyValue = std::variant<std::monostate, std::int64_t, double, std::string>;

// By name, in a fixed order.
using NamedValues = std::vector<std::pair<std::string, StudyValue>>;

// As short as it can be read back to the same value; empty for nothing.
std::string text_of_value(const StudyValue& value);

// A whole number or a number where the text is one as a whole, nothing for an empty one, else the text.
StudyValue value_of_text(std::string_view text);

// True for a name that a placeholder can have: a letter or underscore, then these and digits.
bool is_parameter_name(std::string_view name);

}  // namespace brelan::tool
