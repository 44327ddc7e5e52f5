// The editions of the solver that a mesh is made for, and their four kinds.
#pragma once

#include <cstdint>

namespace brelan {

// The kind of solver. It decides the record layout of nodes and elements throughout; switches over it take
// the kinds in this order.
enum class LayoutKind {
    coupled,       // skeleton and fluid: editions 2, 3, 4, 11, 12
    temperature,   // editions 5, 6
    head,          // editions 9, 10
    displacement,  // editions 1, 7, 8 and any other
};

constexpr LayoutKind kind_of(std::int32_t edition) {
    switch (edition) {
        case 2:
        case 3:
        case 4:
        case 11:
        case 12:
            return LayoutKind::coupled;
        case 5:
        case 6:
            return LayoutKind::temperature;
        case 9:
        case 10:
            return LayoutKind::head;
        default:
            return LayoutKind::displacement;
    }
}

// Read once at start-up.
struct Settings {
    std::int32_t edition = 1;  // IPROGM

    LayoutKind kind() const { return kind_of(edition); }
};

}  // namespace brelan
