// The patterns by which the rows of a cut are split. Patterns are data: which marks call for one, and its
// parts.
#pragma once

#include <array>
#include <cstdint>
#include <span>

#include "group/cut_table.h"

namespace brelan {

// A corner of a part: one of the row's corners, a side node, the centre node, or none (a triangle's fourth).
enum class At : std::int8_t { none, n1, n2, n3, n4, s1, s2, s3, s4, centre };

using SplitPart = std::array<At, 4>;

constexpr SplitPart triangle_part(At a, At b, At c) {
    return {a, b, c, At::none};
}
constexpr SplitPart quadrilateral_part(At a, At b, At c, At d) {
    return {a, b, c, d};
}

// Marks of a row as bits.
inline constexpr unsigned CORNER_1 = 1, CORNER_2 = 2, CORNER_3 = 4, CORNER_4 = 8;
inline constexpr unsigned SIDE_1 = 16, SIDE_2 = 32, SIDE_3 = 64, SIDE_4 = 128;
inline constexpr unsigned ANY_CORNER = CORNER_1 | CORNER_2 | CORNER_3 | CORNER_4;

// The first pattern of a table whose wanted marks are all there and whose unwanted marks are not applies. A
// pattern without parts leaves the row whole.
struct SplitPattern {
    unsigned wanted = 0, unwanted = 0;
    int count = 0;
    std::array<SplitPart, 5> part{};

    std::span<const SplitPart> parts() const {
        return std::span(part).first(static_cast<std::size_t>(count));
    }
};

template <class... Parts>
constexpr SplitPattern when(unsigned wanted, unsigned unwanted, Parts... parts) {
    return {wanted, unwanted, static_cast<int>(sizeof...(parts)), {parts...}};
}

// clang-format off
inline constexpr std::array TRIANGLE_WITH_CENTRE{
    when(SIDE_1, ANY_CORNER, triangle_part(At::n1, At::n2, At::centre), triangle_part(At::centre, At::n2, At::s1), triangle_part(At::centre, At::s1, At::n3), triangle_part(At::n1, At::centre, At::n3)),
    when(SIDE_2, ANY_CORNER, triangle_part(At::n1, At::n2, At::centre), triangle_part(At::centre, At::n2, At::n3), triangle_part(At::s2, At::centre, At::n3), triangle_part(At::n1, At::centre, At::s2)),
    when(SIDE_3, ANY_CORNER, triangle_part(At::n1, At::s3, At::centre), triangle_part(At::centre, At::s3, At::n2), triangle_part(At::centre, At::n2, At::n3), triangle_part(At::n1, At::centre, At::n3)),
    when(0, 0, triangle_part(At::n1, At::n2, At::centre), triangle_part(At::centre, At::n2, At::n3), triangle_part(At::n1, At::centre, At::n3)),
};

inline constexpr std::array TRIANGLE{
    when(SIDE_1 | SIDE_2, 0, quadrilateral_part(At::n1, At::n2, At::s1, At::s2), triangle_part(At::s2, At::s1, At::n3)),
    when(SIDE_1 | SIDE_3, 0, quadrilateral_part(At::n1, At::s3, At::s1, At::n3), triangle_part(At::s3, At::n2, At::s1)),
    when(SIDE_2 | SIDE_3, 0, triangle_part(At::n1, At::s3, At::s2), quadrilateral_part(At::s2, At::s3, At::n2, At::n3)),
    when(CORNER_1 | SIDE_1, 0, triangle_part(At::n1, At::n2, At::s1), triangle_part(At::n1, At::s1, At::n3)),
    when(CORNER_2 | SIDE_2, 0, triangle_part(At::n1, At::n2, At::s2), triangle_part(At::s2, At::n2, At::n3)),
    when(CORNER_3 | SIDE_3, 0, triangle_part(At::n1, At::s3, At::n3), triangle_part(At::s3, At::n2, At::n3)),
    when(0, 0),
};

inline constexpr std::array QUADRILATERAL_WITH_CENTRE{
    when(SIDE_1, ANY_CORNER, triangle_part(At::n1, At::s1, At::centre), triangle_part(At::s1, At::n2, At::centre), triangle_part(At::n2, At::n3, At::centre), triangle_part(At::centre, At::n3, At::n4), triangle_part(At::n1, At::centre, At::n4)),
    when(SIDE_2, ANY_CORNER, triangle_part(At::n1, At::n2, At::centre), triangle_part(At::n2, At::s2, At::centre), triangle_part(At::centre, At::s2, At::n3), triangle_part(At::centre, At::n3, At::n4), triangle_part(At::n1, At::centre, At::n4)),
    when(SIDE_3, ANY_CORNER, triangle_part(At::n1, At::n2, At::centre), triangle_part(At::n2, At::n3, At::centre), triangle_part(At::centre, At::n3, At::s3), triangle_part(At::centre, At::s3, At::n4), triangle_part(At::n1, At::centre, At::n4)),
    when(SIDE_4, ANY_CORNER, triangle_part(At::n1, At::n2, At::centre), triangle_part(At::n2, At::n3, At::centre), triangle_part(At::centre, At::n3, At::n4), triangle_part(At::s4, At::centre, At::n4), triangle_part(At::n1, At::centre, At::s4)),
    when(0, 0, triangle_part(At::n1, At::n2, At::centre), triangle_part(At::n2, At::n3, At::centre), triangle_part(At::centre, At::n3, At::n4), triangle_part(At::n1, At::centre, At::n4)),
};

// No side node: by the count of corners on the line.
inline constexpr std::array QUADRILATERAL_TWO_CORNERS{
    when(CORNER_1 | CORNER_3, 0, triangle_part(At::n1, At::n2, At::n3), triangle_part(At::n1, At::n3, At::n4)),
    when(CORNER_2 | CORNER_4, 0, triangle_part(At::n1, At::n2, At::n4), triangle_part(At::n2, At::n3, At::n4)),
    when(0, 0),
};
inline constexpr std::array QUADRILATERAL_THREE_CORNERS{
    when(CORNER_1 | CORNER_3, 0, triangle_part(At::n1, At::n2, At::n4), triangle_part(At::n2, At::n3, At::n4)),
    when(0, 0, triangle_part(At::n1, At::n2, At::n3), triangle_part(At::n1, At::n3, At::n4)),
};

// Two side nodes or more.
inline constexpr std::array QUADRILATERAL_SIDES_CUT{
    when(SIDE_1 | SIDE_2, 0, triangle_part(At::s1, At::n2, At::s2), quadrilateral_part(At::n1, At::s1, At::s2, At::n3), triangle_part(At::n1, At::n3, At::n4)),
    when(SIDE_1 | SIDE_3, 0, quadrilateral_part(At::s1, At::n2, At::n3, At::s3), quadrilateral_part(At::n1, At::s1, At::s3, At::n4)),
    when(SIDE_1 | SIDE_4, 0, triangle_part(At::n2, At::n3, At::n4), quadrilateral_part(At::s1, At::n2, At::n4, At::s4), triangle_part(At::n1, At::s1, At::s4)),
    when(SIDE_2 | SIDE_4, 0, quadrilateral_part(At::n1, At::n2, At::s2, At::s4), quadrilateral_part(At::s4, At::s2, At::n3, At::n4)),
    when(SIDE_2 | SIDE_3, 0, triangle_part(At::s2, At::n3, At::s3), quadrilateral_part(At::n2, At::s2, At::s3, At::n4), triangle_part(At::n1, At::n2, At::n4)),
    when(SIDE_3 | SIDE_4, 0, triangle_part(At::n1, At::n2, At::n3), quadrilateral_part(At::n1, At::n3, At::s3, At::s4), triangle_part(At::s4, At::s3, At::n4)),
    when(0, 0),
};

// A corner on the line with at most one side node: the first such corner decides.
inline constexpr std::array QUADRILATERAL_CORNER_CUT{
    when(CORNER_1 | CORNER_2 | CORNER_3, 0, triangle_part(At::n1, At::n2, At::n4), triangle_part(At::n2, At::n3, At::n4)),
    when(CORNER_1 | SIDE_2, 0, triangle_part(At::n1, At::n2, At::s2), quadrilateral_part(At::n1, At::s2, At::n3, At::n4)),
    when(CORNER_1 | CORNER_3, 0, triangle_part(At::n1, At::n2, At::n3), triangle_part(At::n1, At::n3, At::n4)),
    when(CORNER_1 | SIDE_3, 0, quadrilateral_part(At::n1, At::n2, At::n3, At::s3), triangle_part(At::n1, At::s3, At::n4)),
    when(CORNER_1, 0),
    when(CORNER_2 | CORNER_3 | CORNER_4, 0, triangle_part(At::n1, At::n2, At::n3), triangle_part(At::n1, At::n3, At::n4)),
    when(CORNER_2 | SIDE_3, 0, triangle_part(At::n2, At::n3, At::s3), quadrilateral_part(At::n1, At::n2, At::s3, At::n4)),
    when(CORNER_2 | CORNER_4, 0, triangle_part(At::n2, At::n3, At::n4), triangle_part(At::n1, At::n2, At::n4)),
    when(CORNER_2 | SIDE_4, 0, triangle_part(At::n1, At::n2, At::s4), quadrilateral_part(At::s4, At::n2, At::n3, At::n4)),
    when(CORNER_2, 0),
    when(CORNER_3 | SIDE_1, 0, triangle_part(At::s1, At::n2, At::n3), quadrilateral_part(At::n1, At::s1, At::n3, At::n4)),
    when(CORNER_3 | SIDE_4, 0, quadrilateral_part(At::n1, At::n2, At::n3, At::s4), triangle_part(At::s4, At::n3, At::n4)),
    when(CORNER_3, 0),
    when(CORNER_4 | SIDE_2, 0, quadrilateral_part(At::n1, At::n2, At::s2, At::n4), triangle_part(At::s2, At::n3, At::n4)),
    when(CORNER_4 | SIDE_1, 0, quadrilateral_part(At::s1, At::n2, At::n3, At::n4), triangle_part(At::n1, At::s1, At::n4)),
    when(0, 0),
};
// clang-format on

// The parts of a row by its marks; none when it stays whole.
std::span<const SplitPart> parts_of(const CutRow& row);

}  // namespace brelan
