// The numbers of nodes, elements and materials: one type for each, so that none is taken for another, for a
// count or for a place in a list.
#pragma once

#include <compare>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace brelan {

// A number as records and cards show it. The words of an element that name no node are 0 or below.
template <class Tag>
struct NumberOf {
    std::int32_t value = 0;

    constexpr NumberOf() = default;
    constexpr explicit NumberOf(std::int32_t number) : value(number) {}

    constexpr bool names_one() const { return value > 0; }
    constexpr bool is_none() const { return value <= 0; }

    // The place in a list that has one for each number from 0 on.
    constexpr std::size_t place() const { return static_cast<std::size_t>(value); }

    // A number put out of sight by its sign, and back again.
    constexpr NumberOf hidden() const { return NumberOf(-value); }
    constexpr NumberOf in_sight() const { return value < 0 ? hidden() : *this; }

    constexpr NumberOf& operator++() {
        ++value;
        return *this;
    }
    constexpr NumberOf& operator--() {
        --value;
        return *this;
    }

    friend constexpr bool operator==(NumberOf a, NumberOf b) { return a.value == b.value; }
    friend constexpr auto operator<=>(NumberOf a, NumberOf b) { return a.value <=> b.value; }

    // The number so many behind it, and how many it is behind another.
    friend constexpr NumberOf operator+(NumberOf number, std::int32_t count) {
        return NumberOf(number.value + count);
    }
    friend constexpr std::int32_t operator-(NumberOf number, NumberOf other) {
        return number.value - other.value;
    }
};

using NodeNumber = NumberOf<struct NodeTag>;
using ElementNumber = NumberOf<struct ElementTag>;
using MaterialNumber = NumberOf<struct MaterialTag>;

template <class Tag>
std::string to_string(NumberOf<Tag> number) {
    return std::to_string(number.value);
}

// Numbers as a record's list of integers.
template <class Tag>
std::vector<std::int32_t> values_of(const std::vector<NumberOf<Tag>>& numbers) {
    std::vector<std::int32_t> values;
    values.reserve(numbers.size());
    for (const NumberOf<Tag> number : numbers)
        values.push_back(number.value);
    return values;
}

}  // namespace brelan

template <class Tag>
struct std::hash<brelan::NumberOf<Tag>> {
    std::size_t operator()(brelan::NumberOf<Tag> number) const noexcept { return number.place(); }
};
