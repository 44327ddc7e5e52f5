#include "blocks/block_deck.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <string>
#include <vector>

#include "mesh/edition.h"
#include "text/channel_numbers.h"
#include "text/channels.h"
#include "text/free_field.h"
#include "text/layout.h"
#include "text/real_to_integer.h"
#include "text/run_end.h"

namespace brelan {

namespace {

constexpr Layout<"(9(I5,1X))"> BLOCK_LINE;

constexpr float FINEST_POSITION = 0.3F, EVEN_POSITION = 0.5F;

// What every block of a base mesh is made of; an edit changes it afterwards.
constexpr std::int32_t MATERIAL_OF_BLOCK = 1, SKELETON_OF_BLOCK = 0, FLUID_OF_BLOCK = 1,
                       ATTRIBUTE_OF_BLOCK = 0;
constexpr float THICKNESS_OF_BLOCK = 1.0F, DENSITY_OF_BLOCK = 2.3F;

// Key coordinates along one direction: block edges at even places, mid key points at odd ones.
struct KeyLine {
    std::vector<float> place;
    std::vector<std::int32_t> divisions;
};

// Goes along the strips from a start; direction is +1 or -1.
template <class StripTable>
KeyLine key_line(float start, float direction, const StripTable& strips, std::int32_t count,
                 std::string_view card) {
    KeyLine line;
    float at = start;
    line.place.push_back(at);
    for (std::int32_t i = 1; i <= count; ++i) {
        const BlockDivision division = divide_strip(strips[i]);
        if (division.count < 1)
            fail("Card " + std::string(card) + ", row " + std::to_string(i) +
                 ": expected values that give at least one division");
        line.place.push_back(direction > 0.0F ? at + division.middle : at - division.middle);
        at = direction > 0.0F ? at + strips[i].length : at - strips[i].length;
        line.place.push_back(at);
        line.divisions.push_back(division.count);
    }
    return line;
}

void write_block(LayoutKind kind, Channel& file, std::int32_t block, const std::array<std::int32_t, 9>& key,
                 std::int32_t column_divisions, std::int32_t row_divisions) {
    write_free(file, " BLOCK NO = ", block);
    write_free(file, block);
    BLOCK_LINE.write_list<std::int32_t>(file, key);
    switch (kind) {
        case LayoutKind::coupled:
            BLOCK_LINE.write(file, 12, 12, 12, 12, 12, 12, 12, 12, 12);
            BLOCK_LINE.write_front(file, MATERIAL_OF_BLOCK, column_divisions, row_divisions,
                                   SKELETON_OF_BLOCK, FLUID_OF_BLOCK);
            break;
        case LayoutKind::temperature:
        case LayoutKind::head:
            BLOCK_LINE.write_front(file, MATERIAL_OF_BLOCK, column_divisions, row_divisions,
                                   ATTRIBUTE_OF_BLOCK);
            break;
        case LayoutKind::displacement:
            BLOCK_LINE.write_front(file, 0, 0, 0, 0, 0, 0, 0, 0);
            write_free(file, MATERIAL_OF_BLOCK, column_divisions, row_divisions, THICKNESS_OF_BLOCK,
                       DENSITY_OF_BLOCK);
            break;
    }
    write_free(file, 0);
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

void write_block_file(Channels& channels, LayoutKind kind, const BlockCards& block_cards,
                      FieldBounds& field) {
    const std::int32_t block_columns = block_cards.block_columns;
    const std::int32_t block_rows = block_cards.block_rows;
    float height = 0.0F;
    for (std::int32_t q = 1; q <= block_rows; ++q)
        height = height + block_cards.rows[q].length;
    const KeyLine x = key_line(block_cards.origin_x, 1.0F, block_cards.columns, block_columns, "4.3");
    const KeyLine y = key_line(block_cards.origin_y + height, -1.0F, block_cards.rows, block_rows, "4.4");
    field = {x.place.front(), x.place.back(), y.place.back(), y.place.front()};

    Channel& file = channels.open(CHANNEL_BLOCKS, "Bmesh.Tmp", OpenStatus::work);
    const std::int32_t key_rows = 2 * block_rows + 1;
    write_free(file, " Base Mesh ");
    write_free(file, 0);
    const std::int32_t first_number = 1;
    const float scale = 1.0F;
    if (kind == LayoutKind::temperature || kind == LayoutKind::head)
        write_free(file, block_columns * block_rows, (2 * block_columns + 1) * key_rows, first_number, scale,
                   block_cards.third);
    else
        write_free(file, block_columns * block_rows, (2 * block_columns + 1) * key_rows, first_number, scale);
    write_free(file, block_columns, block_rows, 0, 0, 0, first_number);
    std::int32_t key = 0;
    for (const float column : x.place)
        for (const float row : y.place)
            write_free(file, ++key, column, row);
    for (std::int32_t p = 1; p <= block_columns; ++p) {
        for (std::int32_t q = 1; q <= block_rows; ++q) {
            const auto number = [&](std::int32_t column, std::int32_t row) {
                return column * key_rows + row + 1;
            };
            const std::int32_t left = 2 * (p - 1), middle = left + 1, right = left + 2;
            const std::int32_t top = 2 * (q - 1), centre = top + 1, bottom = top + 2;
            const std::array<std::int32_t, 9> keys{
                number(right, top),     number(left, top),     number(left, bottom),
                number(right, bottom),  number(middle, top),   number(left, centre),
                number(middle, bottom), number(right, centre), number(middle, centre)};
            write_block(kind, file, (p - 1) * block_rows + q, keys,
                        x.divisions[static_cast<std::size_t>(p - 1)],
                        y.divisions[static_cast<std::size_t>(q - 1)]);
        }
    }
    write_free(file, 0);
    channels.close(CHANNEL_BLOCKS);
}

}  // namespace brelan
