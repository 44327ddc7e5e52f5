#include "blocks/block_file.h"

#include <cmath>
#include <span>

#include "mesh/block_tables.h"
#include "mesh/edition.h"
#include "text/free_field.h"

namespace brelan {

namespace {

// A key value of this magnitude or less counts as absent: a middle that truly lies at 0 is moved to the mean
// of its neighbours.
constexpr float ABSENT = 1.0E-15F;

struct KeyPoint {
    float x = 0.0F, y = 0.0F;
};

constexpr std::int32_t MOST_KEY_POINTS = (2 * MOST_BLOCK_ROWS + 1) * (2 * MOST_BLOCK_ROWS + 1);

void require(const Channel& file, bool holds, const std::string& expected) {
    if (!holds)
        file.fail_behind("expected " + expected);
}

std::vector<KeyPoint> read_key_points(Channel& file, std::int32_t count, float scale) {
    std::vector<KeyPoint> points(static_cast<std::size_t>(count) + 1);
    for (std::int32_t i = 0; i < count; ++i) {
        std::int32_t number = 0;
        KeyPoint point;
        read_free(file, "a key point (number, x, y)", number, point.x, point.y);
        require(file, number >= 1 && number <= count,
                "a key point number from 1 to " + std::to_string(count));
        points[static_cast<std::size_t>(number)] = {point.x * scale, point.y * scale};
    }
    return points;
}

// The divisions of a block and what its elements take.
void read_block_values(LayoutKind kind, Channel& file, Block& block, std::int32_t& column_divisions,
                       std::int32_t& row_divisions) {
    BlockAttributes& a = block.attributes;
    switch (kind) {
        case LayoutKind::coupled:
            file.skip_lines(1, "the side codes of a block");
            read_free(file, "a block (material, ndx, ndy, KS, KF)", block.material, column_divisions,
                      row_divisions, a.skeleton, a.fluid);
            break;
        case LayoutKind::temperature:
        case LayoutKind::head:
            read_free(file, "a block (material, ndx, ndy, IDH)", block.material, column_divisions,
                      row_divisions, a.attribute);
            break;
        case LayoutKind::displacement:
            file.skip_lines(1, "the side codes of a block");
            read_free(file, "a block (material, ndx, ndy, THIC, DEN)", block.material, column_divisions,
                      row_divisions, a.thickness, a.density);
            break;
    }
    require(file, column_divisions >= 1 && row_divisions >= 1, "division counts of at least 1");
}

// Middles that the file leaves open lie half way between their neighbours.
void fill_absent_middles(Grid<float>& key, std::int32_t rows, std::int32_t columns) {
    for (std::int32_t c = 2; c < columns; c += 2)
        for (std::int32_t r = 1; r <= rows; r += 2)
            if (std::abs(key(r, c)) <= ABSENT)
                key(r, c) = (key(r, c - 1) + key(r, c + 1)) / 2.0F;
    for (std::int32_t c = 1; c <= columns; c += 2)
        for (std::int32_t r = 2; r < rows; r += 2)
            if (std::abs(key(r, c)) <= ABSENT)
                key(r, c) = (key(r - 1, c) + key(r + 1, c)) / 2.0F;
}

}  // namespace

BlockFile read_block_file(LayoutKind kind, Channel& file) {
    BlockFile in;
    constexpr std::size_t title_columns = 60;
    in.title = file.read_whole_line("the title").substr(0, title_columns);
    file.skip_lines(1, "a line that is ignored");
    std::int32_t blocks = 0, double_x = 0, double_y = 0, order = 0;
    float scale = 1.0F;
    read_free(file, "the count line (blocks, key points, first element number, scale)", blocks, in.key_points,
              in.first_element, scale);
    require(file, in.key_points >= 1 && in.key_points <= MOST_KEY_POINTS,
            "a count of key points from 1 to " + std::to_string(MOST_KEY_POINTS));
    require(file, in.first_element >= 1, "a first element number of at least 1");
    read_free(file, "the layout line (NBX, NBY, two doubling flags, order flag, first node number)",
              in.block_columns, in.block_rows, double_x, double_y, order, in.first_node);
    require(file,
            in.block_columns >= 1 && in.block_columns <= MOST_BLOCK_ROWS && in.block_rows >= 1 &&
                in.block_rows <= MOST_BLOCK_ROWS,
            "NBX and NBY from 1 to " + std::to_string(MOST_BLOCK_ROWS));
    require(file, blocks == in.block_columns * in.block_rows,
            "NBX times NBY to be the count of blocks, " + std::to_string(blocks));
    require(file, in.first_node >= 1, "a first node number of at least 1");
    in.double_x = double_x == 1;
    in.double_y = double_y == 1;
    in.rows_first = order == 1;

    const std::vector<KeyPoint> points = read_key_points(file, in.key_points, scale);
    const std::int32_t key_rows = 2 * in.block_rows + 1;
    const std::int32_t key_columns = 2 * in.block_columns + 1;
    in.key_x = Grid<float>(key_rows, key_columns, 0.0F);
    in.key_y = Grid<float>(key_rows, key_columns, 0.0F);
    in.block = Grid<Block>(in.block_rows, in.block_columns, Block{});
    in.column_divisions.resize(static_cast<std::size_t>(in.block_columns));
    in.row_divisions.resize(static_cast<std::size_t>(in.block_rows));
    for (std::int32_t p = 1; p <= in.block_columns; ++p) {
        for (std::int32_t q = 1; q <= in.block_rows; ++q) {
            file.skip_lines(1, "a block's title");
            std::int32_t number = 0;
            read_free(file, "a block number", number);
            require(file, number == (p - 1) * in.block_rows + q,
                    "block " + std::to_string((p - 1) * in.block_rows + q));
            std::array<std::int32_t, 9> key{};
            read_free_list(file, "the nine key point numbers of a block", std::span<std::int32_t>(key));
            for (const std::int32_t k : key)
                require(file, k >= 0 && k <= in.key_points,
                        "key point numbers of at most " + std::to_string(in.key_points));
            Block& block = in.block(q, p);
            std::int32_t column_divisions = 0, row_divisions = 0;
            read_block_values(kind, file, block, column_divisions, row_divisions);
            file.skip_lines(1, "the line that ends a block");
            if (key[8] != 0)
                block.material = -block.material;
            // The last block of a column or row decides its divisions.
            in.column_divisions[static_cast<std::size_t>(p - 1)] =
                in.double_x ? 2 * column_divisions : column_divisions;
            in.row_divisions[static_cast<std::size_t>(q - 1)] =
                in.double_y ? 2 * row_divisions : row_divisions;
            // Key row and column of the block's nine positions, from its top left corner.
            constexpr int row_of[9] = {0, 0, 2, 2, 0, 1, 2, 1, 1};
            constexpr int column_of[9] = {2, 0, 0, 2, 1, 0, 1, 2, 1};
            for (std::size_t i = 0; i < key.size(); ++i) {
                require(file, i >= 4 || key[i] != 0, "a key point at each corner of a block");
                if (key[i] == 0)
                    continue;
                const std::int32_t row = 2 * q - 1 + row_of[i];
                const std::int32_t column = 2 * p - 1 + column_of[i];
                in.key_x(row, column) = points[static_cast<std::size_t>(key[i])].x;
                in.key_y(row, column) = points[static_cast<std::size_t>(key[i])].y;
            }
        }
    }
    file.skip_lines(1, "the last line of the block file");
    fill_absent_middles(in.key_x, key_rows, key_columns);
    fill_absent_middles(in.key_y, key_rows, key_columns);
    return in;
}

}  // namespace brelan
