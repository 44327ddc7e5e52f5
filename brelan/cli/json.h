// Values for programs: what --json shows, and what the page for the browser is fed with.
#pragma once

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <variant>
#include <vector>

namespace brelan::tool {

// Null, true or false, a number, a text, an array, or an object whose members stay in their order. Null
// becomes an array or an object when something is put into it.
class Json {
public:
    using Member = std::pair<std::string, Json>;
    using Array = std::vector<Json>;
    using Object = std::vector<Member>;
    using Value = std::variant<std::nullptr_t, bool, std::int64_t, double, std::string, Array, Object>;

    Json() = default;
    Json(const Json& other) : value_(copy_of(other.value_)) {}
    Json(Json&&) = default;
    Json& operator=(const Json& other) {
        value_ = copy_of(other.value_);
        return *this;
    }
    Json& operator=(Json&&) = default;
    ~Json() = default;

    Json(bool value) : value_(value) {}
    Json(std::int32_t value) : value_(std::int64_t{value}) {}
    Json(std::int64_t value) : value_(value) {}
    Json(std::size_t value) : value_(static_cast<std::int64_t>(value)) {}
    Json(double value) : value_(value) {}  // shown as null when it is not finite
    Json(const char* value) : value_(std::string(value)) {}
    Json(std::string_view value) : value_(std::string(value)) {}
    Json(std::string value) : value_(std::move(value)) {}
    Json(Array values) : value_(std::move(values)) {}
    Json(Object members) : value_(std::move(members)) {}
    Json(std::initializer_list<Member> members) : Json(Object(members)) {}

    template <class Values = std::initializer_list<Json>>
    static Json array(const Values& values) {
        return Array(std::begin(values), std::end(values));
    }

    // The value that a text in JSON holds. Throws Failure where it is none, or is nested deeper than anything
    // that is asked for.
    static Json parsed(std::string_view text);

    const Json* find(std::string_view name) const;  // a member of an object; nullptr where there is none
    Json& operator[](std::string_view name);        // of an object, which gets a member of this name
    void push_back(Json value);                     // to an array
    std::size_t size() const { return std::get<Array>(value_).size(); }

    const Value& value() const { return value_; }

    std::string text() const;     // indented, with a line end
    std::string compact() const;  // ASCII without spaces

private:
    // The variant's own copy, by libstdc++ 12, destroys what it has not made yet when memory runs out.
    static Value copy_of(const Value& value) {
        return std::visit(
            [](const auto& held) { return Value(std::in_place_type<std::decay_t<decltype(held)>>, held); },
            value);
    }

    Value value_;
};

}  // namespace brelan::tool
