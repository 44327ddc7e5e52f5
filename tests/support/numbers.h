// Numbers of nodes, elements and materials as a test writes them down: plain integers.
#pragma once

#include <array>
#include <cstdint>
#include <ostream>
#include <vector>

#include "mesh/tables.h"

namespace brelan {

// Shown by the messages of failed expectations.
template <class Tag>
std::ostream& operator<<(std::ostream& stream, NumberOf<Tag> number) {
    return stream << number.value;
}

}  // namespace brelan

namespace brelan::test {

using FourNodes = std::array<std::int32_t, 4>;

inline ElementWords words_of(const FourNodes& corners, std::int32_t material = 1,
                             const FourNodes& midsides = {}) {
    ElementWords w;
    w.corner_1 = NodeNumber(corners[0]);
    w.corner_2 = NodeNumber(corners[1]);
    w.corner_3 = NodeNumber(corners[2]);
    w.corner_4 = NodeNumber(corners[3]);
    w.midside_5 = NodeNumber(midsides[0]);
    w.midside_6 = NodeNumber(midsides[1]);
    w.midside_7 = NodeNumber(midsides[2]);
    w.midside_8 = NodeNumber(midsides[3]);
    w.material = MaterialNumber(material);
    return w;
}

inline FourNodes corner_words(const ElementWords& w) {
    return {w.corner_1.value, w.corner_2.value, w.corner_3.value, w.corner_4.value};
}

inline std::vector<NodeNumber> node_numbers(const std::vector<std::int32_t>& values) {
    std::vector<NodeNumber> numbers;
    for (const std::int32_t value : values)
        numbers.emplace_back(value);
    return numbers;
}

}  // namespace brelan::test
