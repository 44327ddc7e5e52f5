#include "basemesh/block_deck.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <string>
#include <vector>

#include "channel/channels.h"
#include "channel/free_field.h"
#include "channel/layout.h"
#include "channel/real_to_integer.h"
#include "channel/run_end.h"
#include "channel/channel_numbers.h"
#include "mesh/edition.h"

namespace brelan {

namespace {

constexpr Layout<"(9(I5,1X))"> BLOCK_LINE;

constexpr float FINEST_POSITION = 0.3F, EVEN_POSITION = 0.5F;

// What every block of a base mesh is made of; an edit changes it afterwards.
constexpr std::int32_t MATERIAL = 1, KS_OF_BLOCK = 0, KF_OF_BLOCK = 1, IDH_OF_BLOCK = 0;
constexpr float THIC_OF_BLOCK = 1.0F, DEN_OF_BLOCK = 2.3F;

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
            FAIL("Card " + std::string(card) + ", row " + std::to_string(i) +
                 ": expected values that give at least one division");
        line.place.push_back(direction > 0.0F ? at + division.middle : at - division.middle);
        at = direction > 0.0F ? at + strips[i].length : at - strips[i].length;
        line.place.push_back(at);
        line.divisions.push_back(division.count);
    }
    return line;
}

void write_block(LayoutKind kind, Channel& file, std::int32_t block, const std::array<std::int32_t, 9>& key, std::int32_t ndx,
                 std::int32_t ndy) {
    write_free(file, " BLOCK NO = ", block);
    write_free(file, block);
    BLOCK_LINE.write_list<std::int32_t>(file, key);
    switch (kind) {
        case LayoutKind::coupled:
            BLOCK_LINE.write(file, 12, 12, 12, 12, 12, 12, 12, 12, 12);
            BLOCK_LINE.write_front(file, MATERIAL, ndx, ndy, KS_OF_BLOCK, KF_OF_BLOCK);
            break;
        case LayoutKind::temperature:
        case LayoutKind::head:
            BLOCK_LINE.write_front(file, MATERIAL, ndx, ndy, IDH_OF_BLOCK);
            break;
        case LayoutKind::displacement:
            BLOCK_LINE.write_front(file, 0, 0, 0, 0, 0, 0, 0, 0);
            write_free(file, MATERIAL, ndx, ndy, THIC_OF_BLOCK, DEN_OF_BLOCK);
            break;
    }
    write_free(file, 0);
}

}  // namespace

BlockDivision divide_strip(const BlockStrip& strip) {
    const float W = strip.length;
    const float DX = strip.smallest;
    if (DX >= W)
        return {1, W / 2.0F};
    const float A = std::clamp(std::abs(strip.position), FINEST_POSITION, EVEN_POSITION);
    const float b = (4.0F * A - 1.0F) * W / (2.0F * DX);
    const float n = b + std::sqrt(b * b - W * (4.0F * A - 2.0F) / DX);
    return {TRUNCATE(n), strip.position >= 0.0F ? A * W : W - A * W};
}

void BLOCKDECK(Channels& channels, LayoutKind kind, const BlockCards& block_cards, FieldBounds& field) {
    const std::int32_t NBX = block_cards.NBX;
    const std::int32_t NBY = block_cards.NBY;
    float height = 0.0F;
    for (std::int32_t q = 1; q <= NBY; ++q)
        height = height + block_cards.rows[q].length;
    const KeyLine x = key_line(block_cards.Xo, 1.0F, block_cards.columns, NBX, "4.3");
    const KeyLine y = key_line(block_cards.Yo + height, -1.0F, block_cards.rows, NBY, "4.4");
    field = {x.place.front(), x.place.back(), y.place.back(), y.place.front()};

    Channel& file = channels.open(CH_BLOCKS, "Bmesh.Tmp", OpenStatus::work);
    const std::int32_t NY = 2 * NBY + 1;
    write_free(file, " Base Mesh ");
    write_free(file, 0);
    const std::int32_t first_number = 1;
    const float scale = 1.0F;
    if (kind == LayoutKind::temperature || kind == LayoutKind::head)
        write_free(file, NBX * NBY, (2 * NBX + 1) * NY, first_number, scale, block_cards.third);
    else
        write_free(file, NBX * NBY, (2 * NBX + 1) * NY, first_number, scale);
    write_free(file, NBX, NBY, 0, 0, 0, first_number);
    std::int32_t key = 0;
    for (const float column : x.place)
        for (const float row : y.place)
            write_free(file, ++key, column, row);
    for (std::int32_t p = 1; p <= NBX; ++p) {
        for (std::int32_t q = 1; q <= NBY; ++q) {
            const auto number = [&](std::int32_t column, std::int32_t row) { return column * NY + row + 1; };
            const std::int32_t L = 2 * (p - 1), M = L + 1, R = L + 2;
            const std::int32_t T = 2 * (q - 1), C = T + 1, B = T + 2;
            const std::array<std::int32_t, 9> keys{number(R, T), number(L, T), number(L, B),
                                                   number(R, B), number(M, T), number(L, C),
                                                   number(M, B), number(R, C), number(M, C)};
            write_block(kind, file, (p - 1) * NBY + q, keys, x.divisions[static_cast<std::size_t>(p - 1)],
                        y.divisions[static_cast<std::size_t>(q - 1)]);
        }
    }
    write_free(file, 0);
    channels.close(CH_BLOCKS);
}

}  // namespace brelan
