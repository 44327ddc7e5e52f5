// What the tests of soundness share.
#pragma once

#include <gtest/gtest.h>

#include <initializer_list>
#include <utility>

#include "analysis/soundness.h"
#include "support/mesh_sample.h"

namespace brelan::test {

inline Soundness soundness_of(const MeshLists& mesh) {
    return check_soundness(mesh, corners_of(mesh));
}
inline Soundness soundness_of(const Sample& sample) {
    return soundness_of(sample.mesh());
}

// Checks that only the findings named here have places, and how many.
inline void expect_only(const Soundness& soundness,
                        std::initializer_list<std::pair<Check, std::size_t>> expected,
                        const char* source = __builtin_FILE(), int line = __builtin_LINE()) {
    const testing::ScopedTrace trace(source, line, "expected here");
    for (const Finding& finding : soundness.findings) {
        std::size_t count = 0;
        for (const auto& [check, places] : expected)
            if (check == finding.check)
                count = places;
        EXPECT_EQ(finding.places.size(), count) << finding.id;
    }
}

//  4---5---6
//  | 1 | 2 |
//  1---2---3
inline Sample two_squares() {
    return Sample()
        .nodes({{0, 0}, {1, 0}, {2, 0}, {0, 1}, {1, 1}, {2, 1}})
        .solid({1, 2, 5, 4})
        .solid({2, 3, 6, 5});
}

//  4---5 7---8    two squares that do not share their middle nodes
//  | 1 | | 2 |
//  1---2 3---6
inline Sample parted_squares() {
    return Sample()
        .nodes({{0, 0}, {1, 0}, {1, 0}, {0, 1}, {1, 1}, {2, 0}, {1, 1}, {2, 1}})
        .solid({1, 2, 5, 4})
        .solid({3, 6, 8, 7});
}

//  7---8---9
//  | 3 | 4 |
//  4---5---6
//  | 1 | 2 |
//  1---2---3
inline Sample four_squares(LayoutKind kind = LayoutKind::displacement) {
    return Sample(kind)
        .nodes({{0, 0}, {1, 0}, {2, 0}, {0, 1}, {1, 1}, {2, 1}, {0, 2}, {1, 2}, {2, 2}})
        .solid({1, 2, 5, 4})
        .solid({2, 3, 6, 5})
        .solid({4, 5, 8, 7})
        .solid({5, 6, 9, 8});
}

}  // namespace brelan::test
