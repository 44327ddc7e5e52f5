// The patterns by which the rows of a cut are split. Patterns are data: which marks call for one, and its
// parts.
#pragma once

#include <array>
#include <cstdint>
#include <span>

#include "group/cut_table.h"

namespace brelan {

// A corner of a part: one of the row's corners, a side node, the centre node, or none (a triangle's fourth).
enum class At : std::int8_t { none, N1, N2, N3, N4, S1, S2, S3, S4, C };

using Part = std::array<At, 4>;

constexpr Part tri(At a, At b, At c) {
    return {a, b, c, At::none};
}
constexpr Part quad(At a, At b, At c, At d) {
    return {a, b, c, d};
}

// Marks of a row as bits.
inline constexpr unsigned MV1 = 1, MV2 = 2, MV3 = 4, MV4 = 8;
inline constexpr unsigned MS1 = 16, MS2 = 32, MS3 = 64, MS4 = 128;
inline constexpr unsigned ANY_V = MV1 | MV2 | MV3 | MV4;

// The first pattern of a table whose wanted marks are all there and whose unwanted marks are not applies. A
// pattern without parts leaves the row whole.
struct SplitPattern {
    unsigned wanted = 0, unwanted = 0;
    int count = 0;
    std::array<Part, 5> part{};

    std::span<const Part> parts() const { return std::span(part).first(static_cast<std::size_t>(count)); }
};

template <class... Parts>
constexpr SplitPattern when(unsigned wanted, unsigned unwanted, Parts... parts) {
    return {wanted, unwanted, static_cast<int>(sizeof...(parts)), {parts...}};
}

// clang-format off
inline constexpr std::array TRIANGLE_WITH_CENTRE{
    when(MS1, ANY_V, tri(At::N1, At::N2, At::C), tri(At::C, At::N2, At::S1), tri(At::C, At::S1, At::N3), tri(At::N1, At::C, At::N3)),
    when(MS2, ANY_V, tri(At::N1, At::N2, At::C), tri(At::C, At::N2, At::N3), tri(At::S2, At::C, At::N3), tri(At::N1, At::C, At::S2)),
    when(MS3, ANY_V, tri(At::N1, At::S3, At::C), tri(At::C, At::S3, At::N2), tri(At::C, At::N2, At::N3), tri(At::N1, At::C, At::N3)),
    when(0, 0, tri(At::N1, At::N2, At::C), tri(At::C, At::N2, At::N3), tri(At::N1, At::C, At::N3)),
};

inline constexpr std::array TRIANGLE{
    when(MS1 | MS2, 0, quad(At::N1, At::N2, At::S1, At::S2), tri(At::S2, At::S1, At::N3)),
    when(MS1 | MS3, 0, quad(At::N1, At::S3, At::S1, At::N3), tri(At::S3, At::N2, At::S1)),
    when(MS2 | MS3, 0, tri(At::N1, At::S3, At::S2), quad(At::S2, At::S3, At::N2, At::N3)),
    when(MV1 | MS1, 0, tri(At::N1, At::N2, At::S1), tri(At::N1, At::S1, At::N3)),
    when(MV2 | MS2, 0, tri(At::N1, At::N2, At::S2), tri(At::S2, At::N2, At::N3)),
    when(MV3 | MS3, 0, tri(At::N1, At::S3, At::N3), tri(At::S3, At::N2, At::N3)),
    when(0, 0),
};

inline constexpr std::array QUADRILATERAL_WITH_CENTRE{
    when(MS1, ANY_V, tri(At::N1, At::S1, At::C), tri(At::S1, At::N2, At::C), tri(At::N2, At::N3, At::C), tri(At::C, At::N3, At::N4), tri(At::N1, At::C, At::N4)),
    when(MS2, ANY_V, tri(At::N1, At::N2, At::C), tri(At::N2, At::S2, At::C), tri(At::C, At::S2, At::N3), tri(At::C, At::N3, At::N4), tri(At::N1, At::C, At::N4)),
    when(MS3, ANY_V, tri(At::N1, At::N2, At::C), tri(At::N2, At::N3, At::C), tri(At::C, At::N3, At::S3), tri(At::C, At::S3, At::N4), tri(At::N1, At::C, At::N4)),
    when(MS4, ANY_V, tri(At::N1, At::N2, At::C), tri(At::N2, At::N3, At::C), tri(At::C, At::N3, At::N4), tri(At::S4, At::C, At::N4), tri(At::N1, At::C, At::S4)),
    when(0, 0, tri(At::N1, At::N2, At::C), tri(At::N2, At::N3, At::C), tri(At::C, At::N3, At::N4), tri(At::N1, At::C, At::N4)),
};

// No side node: by the count of corners on the line.
inline constexpr std::array QUADRILATERAL_TWO_CORNERS{
    when(MV1 | MV3, 0, tri(At::N1, At::N2, At::N3), tri(At::N1, At::N3, At::N4)),
    when(MV2 | MV4, 0, tri(At::N1, At::N2, At::N4), tri(At::N2, At::N3, At::N4)),
    when(0, 0),
};
inline constexpr std::array QUADRILATERAL_THREE_CORNERS{
    when(MV1 | MV3, 0, tri(At::N1, At::N2, At::N4), tri(At::N2, At::N3, At::N4)),
    when(0, 0, tri(At::N1, At::N2, At::N3), tri(At::N1, At::N3, At::N4)),
};

// Two side nodes or more.
inline constexpr std::array QUADRILATERAL_SIDES_CUT{
    when(MS1 | MS2, 0, tri(At::S1, At::N2, At::S2), quad(At::N1, At::S1, At::S2, At::N3), tri(At::N1, At::N3, At::N4)),
    when(MS1 | MS3, 0, quad(At::S1, At::N2, At::N3, At::S3), quad(At::N1, At::S1, At::S3, At::N4)),
    when(MS1 | MS4, 0, tri(At::N2, At::N3, At::N4), quad(At::S1, At::N2, At::N4, At::S4), tri(At::N1, At::S1, At::S4)),
    when(MS2 | MS4, 0, quad(At::N1, At::N2, At::S2, At::S4), quad(At::S4, At::S2, At::N3, At::N4)),
    when(MS2 | MS3, 0, tri(At::S2, At::N3, At::S3), quad(At::N2, At::S2, At::S3, At::N4), tri(At::N1, At::N2, At::N4)),
    when(MS3 | MS4, 0, tri(At::N1, At::N2, At::N3), quad(At::N1, At::N3, At::S3, At::S4), tri(At::S4, At::S3, At::N4)),
    when(0, 0),
};

// A corner on the line with at most one side node: the first such corner decides.
inline constexpr std::array QUADRILATERAL_CORNER_CUT{
    when(MV1 | MV2 | MV3, 0, tri(At::N1, At::N2, At::N4), tri(At::N2, At::N3, At::N4)),
    when(MV1 | MS2, 0, tri(At::N1, At::N2, At::S2), quad(At::N1, At::S2, At::N3, At::N4)),
    when(MV1 | MV3, 0, tri(At::N1, At::N2, At::N3), tri(At::N1, At::N3, At::N4)),
    when(MV1 | MS3, 0, quad(At::N1, At::N2, At::N3, At::S3), tri(At::N1, At::S3, At::N4)),
    when(MV1, 0),
    when(MV2 | MV3 | MV4, 0, tri(At::N1, At::N2, At::N3), tri(At::N1, At::N3, At::N4)),
    when(MV2 | MS3, 0, tri(At::N2, At::N3, At::S3), quad(At::N1, At::N2, At::S3, At::N4)),
    when(MV2 | MV4, 0, tri(At::N2, At::N3, At::N4), tri(At::N1, At::N2, At::N4)),
    when(MV2 | MS4, 0, tri(At::N1, At::N2, At::S4), quad(At::S4, At::N2, At::N3, At::N4)),
    when(MV2, 0),
    when(MV3 | MS1, 0, tri(At::S1, At::N2, At::N3), quad(At::N1, At::S1, At::N3, At::N4)),
    when(MV3 | MS4, 0, quad(At::N1, At::N2, At::N3, At::S4), tri(At::S4, At::N3, At::N4)),
    when(MV3, 0),
    when(MV4 | MS2, 0, quad(At::N1, At::N2, At::S2, At::N4), tri(At::S2, At::N3, At::N4)),
    when(MV4 | MS1, 0, quad(At::S1, At::N2, At::N3, At::N4), tri(At::N1, At::S1, At::N4)),
    when(0, 0),
};
// clang-format on

// The parts of a row by its marks; none when it stays whole.
std::span<const Part> parts_of(const CutRow& row);

}  // namespace brelan
