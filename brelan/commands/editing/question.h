// What a page's question has to hold. Each throws Failure where it does not.
#pragma once

#include <fmt/core.h>

#include <cstdint>
#include <string>
#include <string_view>
#include <variant>

#include "cli/exit_status.h"
#include "cli/json.h"

namespace brelan::tool {

template <class Value>
const Value& value_in(const Json& question, std::string_view name) {
    const Json* const member = question.find(name);
    const Value* const value = member == nullptr ? nullptr : std::get_if<Value>(&member->value());
    if (value == nullptr)
        throw Failure(fmt::format("the question lacks \"{}\"", name));
    return *value;
}

inline const std::string& text_in(const Json& question, std::string_view name) {
    return value_in<std::string>(question, name);
}

// A number with or without a fraction.
inline double number_of(const Json* value, std::string_view name) {
    if (value != nullptr) {
        if (const auto* whole = std::get_if<std::int64_t>(&value->value()))
            return static_cast<double>(*whole);
        if (const auto* real = std::get_if<double>(&value->value()))
            return *real;
    }
    throw Failure(fmt::format("the question's \"{}\" lacks a number", name));
}

inline double number_in(const Json& question, std::string_view name) {
    return number_of(question.find(name), name);
}

}  // namespace brelan::tool
