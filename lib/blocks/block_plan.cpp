#include "blocks/block_plan.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "text/real_to_integer.h"
#include "text/run_end.h"

namespace brelan {

namespace {

constexpr std::string_view TITLE = "  Base Mesh ";

constexpr float FINEST_POSITION = 0.3F, EVEN_POSITION = 0.5F;

// What every block of a base mesh is made of; an edit changes it afterwards.
constexpr std::int32_t MATERIAL_OF_BLOCK = 1, FLUID_OF_BLOCK = 1;
constexpr float THICKNESS_OF_BLOCK = 1.0F, DENSITY_OF_BLOCK = 2.3F;

// Key coordinates along one direction: block edges at even places, mid key points at odd ones.
struct KeyLine {
    std::vector<float> place;
    std::vector<std::int32_t> divisions;
};

// Goes along the strips from a start; direction is +1 or -1.
template <class Real, class StripTable>
KeyLine key_line(Real start, Real direction, const StripTable& strips, std::int32_t count,
                 std::string_view card) {
    KeyLine line;
    Real at = start;
    line.place.push_back(static_cast<float>(at));
    for (std::int32_t i = 1; i <= count; ++i) {
        const BlockDivision division = divide_strip(strips[i]);
        if (division.count < 1)
            fail("Card " + std::string(card) + ", row " + std::to_string(i) +
                 ": expected values that give at least one division");
        line.place.push_back(static_cast<float>(at + direction * static_cast<Real>(division.middle)));
        at = at + direction * static_cast<Real>(strips[i].length);
        line.place.push_back(static_cast<float>(at));
        line.divisions.push_back(division.count);
    }
    return line;
}

// Across, and downwards. In 64 bits the last of each is as exact as the first.
template <class Real>
std::pair<KeyLine, KeyLine> key_lines(const BlockCards& cards) {
    Real height = 0;
    for (std::int32_t q = 1; q <= cards.block_rows; ++q)
        height = height + static_cast<Real>(cards.rows[q].length);
    return {
        key_line(static_cast<Real>(cards.origin_x), Real{1}, cards.columns, cards.block_columns, "4.3"),
        key_line(static_cast<Real>(cards.origin_y) + height, Real{-1}, cards.rows, cards.block_rows, "4.4")};
}

}  // namespace

BlockDivision divide_strip(const BlockStrip& strip) {
    const float width = strip.length;
    const float smallest = strip.smallest;
    if (smallest >= width)
        return {1, width / 2.0F};
    const float position = std::clamp(std::abs(strip.position), FINEST_POSITION, EVEN_POSITION);
    const float b = (4.0F * position - 1.0F) * width / (2.0F * smallest);
    const float n = b + std::sqrt(b * b - width * (4.0F * position - 2.0F) / smallest);
    return {to_integer(n), strip.position >= 0.0F ? position * width : width - position * width};
}

BlockPlan plan_blocks(const BlockCards& block_cards, NodePlacing placing) {
    const auto [x, y] =
        placing == NodePlacing::by_grid ? key_lines<double>(block_cards) : key_lines<float>(block_cards);
    BlockPlan plan;
    plan.title = TITLE;
    plan.placing = placing;
    plan.field = {x.place.front(), x.place.back(), y.place.back(), y.place.front()};
    plan.block_columns = block_cards.block_columns;
    plan.block_rows = block_cards.block_rows;
    for (const float column : x.place)
        for (const float row : y.place)
            plan.key_points.push_back({column, row});
    const std::int32_t key_rows = 2 * plan.block_rows + 1;
    for (std::int32_t p = 0; p < plan.block_columns; ++p) {
        for (std::int32_t q = 0; q < plan.block_rows; ++q) {
            const auto key = [&](std::int32_t column, std::int32_t row) {
                return (2 * p + column) * key_rows + 2 * q + row + 1;
            };
            PlannedBlock block;
            block.key = {key(2, 0), key(0, 0), key(0, 2), key(2, 2), key(1, 0),
                         key(0, 1), key(1, 2), key(2, 1), key(1, 1)};
            block.material = MATERIAL_OF_BLOCK;
            block.column_divisions = x.divisions[static_cast<std::size_t>(p)];
            block.row_divisions = y.divisions[static_cast<std::size_t>(q)];
            block.attributes.fluid = FLUID_OF_BLOCK;
            block.attributes.thickness = THICKNESS_OF_BLOCK;
            block.attributes.density = DENSITY_OF_BLOCK;
            plan.blocks.push_back(block);
        }
    }
    return plan;
}

}  // namespace brelan
