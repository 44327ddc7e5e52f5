#include "blocks/raw_mesh.h"

#include <algorithm>
#include <array>
#include <cstdlib>

namespace brelan {

namespace {

constexpr std::int32_t INTEGRATION_OF_CELL = 2;  // INTR and INTS

constexpr NodeNumber UNNUMBERED{-1};

std::int32_t sum_of(const std::vector<std::int32_t>& counts) {
    std::int64_t sum = 0;
    for (const std::int32_t count : counts)
        sum += count;
    return static_cast<std::int32_t>(std::min<std::int64_t>(sum, 2000000000));
}

// The grids of a mesh while it is made.
class Mesher {
public:
    explicit Mesher(const BlockGrid& in)
        : in_(in),
          columns_(sum_of(in.column_divisions)),
          rows_(sum_of(in.row_divisions)),
          x_(rows_ + 1, columns_ + 1, 0.0F),
          y_(rows_ + 1, columns_ + 1, 0.0F),
          node_number_(rows_ + 1, columns_ + 1, NodeNumber{}),
          cell_(rows_, columns_, 0) {}

    // Coordinates of all nodes; nodes of blocks that are no holes are marked, and their cells filled.
    void place_nodes() {
        for_each_block([&](std::int32_t p, std::int32_t q, std::int32_t c0, std::int32_t r0) {
            const std::int32_t material = in_.block(q, p).material;
            map_block(values(in_.key_x, p, q), divisions_across(p), divisions_down(q), c0, r0, material, x_,
                      in_.placing);
            map_block(values(in_.key_y, p, q), divisions_across(p), divisions_down(q), c0, r0, material, y_,
                      in_.placing);
        });
        if (in_.placing == NodePlacing::by_grid)
            straighten_block_lines();
        for_each_block([&](std::int32_t p, std::int32_t q, std::int32_t c0, std::int32_t r0) {
            for (std::int32_t c = c0; c <= c0 + divisions_across(p); ++c)
                for (std::int32_t r = r0; r <= r0 + divisions_down(q); ++r)
                    node_number_(r, c) = UNNUMBERED;
            for (std::int32_t c = c0; c < c0 + divisions_across(p); ++c)
                for (std::int32_t r = r0; r < r0 + divisions_down(q); ++r)
                    cell_(r, c) = (p - 1) * in_.block_rows + q;
        });
    }

    // Numbers the marked nodes.
    std::vector<RawNode> number_nodes() {
        std::vector<RawNode> nodes;
        nodes.reserve(static_cast<std::size_t>(rows_ + 1) * static_cast<std::size_t>(columns_ + 1));
        NodeNumber number = in_.first_node;
        walk(rows_ + 1, columns_ + 1, [&](std::int32_t r, std::int32_t c) {
            // The centres of quadratic elements are no nodes.
            const bool centre = in_.double_x && in_.double_y && r % 2 == 0 && c % 2 == 0;
            if (node_number_(r, c) != UNNUMBERED || centre)
                return;
            node_number_(r, c) = number;
            ++number;
            if (in_.rows_first)
                set_on_bounds(r, c);
            nodes.push_back({x_(r, c), y_(r, c), {c == 1, c == columns_ + 1, r == rows_ + 1, r == 1}});
        });
        return nodes;
    }

    std::vector<ElementRecord> make_elements() const {
        std::vector<ElementRecord> elements;
        elements.reserve(static_cast<std::size_t>(rows_) * static_cast<std::size_t>(columns_));
        ElementNumber number = in_.first_element;
        walk(in_.double_y ? rows_ / 2 : rows_, in_.double_x ? columns_ / 2 : columns_,
             [&](std::int32_t i, std::int32_t j) {
                 i = in_.double_y ? 2 * i - 1 : i;
                 j = in_.double_x ? 2 * j - 1 : j;
                 if (cell_(i, j) == 0)
                     return;
                 elements.push_back(element_of_cell(i, j, number));
                 ++number;
             });
        return elements;
    }

private:
    std::int32_t divisions_across(std::int32_t p) const {
        return in_.column_divisions[static_cast<std::size_t>(p - 1)];
    }
    std::int32_t divisions_down(std::int32_t q) const {
        return in_.row_divisions[static_cast<std::size_t>(q - 1)];
    }

    // Every block that is no hole, columns outermost, with its first node column and row.
    template <class Action>
    void for_each_block(Action action) const {
        std::int32_t c0 = 1;
        for (std::int32_t p = 1; p <= in_.block_columns; ++p) {
            std::int32_t r0 = 1;
            for (std::int32_t q = 1; q <= in_.block_rows; ++q) {
                if (in_.block(q, p).material != 0)
                    action(p, q, c0, r0);
                r0 += divisions_down(q);
            }
            c0 += divisions_across(p);
        }
    }

    // A side of a block whose key points have one coordinate has it at all of its nodes.
    void straighten_block_lines() {
        for_each_block([&](std::int32_t p, std::int32_t q, std::int32_t c0, std::int32_t r0) {
            const std::int32_t c1 = c0 + divisions_across(p), r1 = r0 + divisions_down(q);
            const BlockValues x = values(in_.key_x, p, q), y = values(in_.key_y, p, q);
            for (std::int32_t r = r0; r <= r1; ++r) {
                if (x.top_left == x.middle_left && x.top_left == x.bottom_left)
                    x_(r, c0) = x.top_left;
                if (x.top_right == x.middle_right && x.top_right == x.bottom_right)
                    x_(r, c1) = x.top_right;
            }
            for (std::int32_t c = c0; c <= c1; ++c) {
                if (y.top_left == y.top_middle && y.top_left == y.top_right)
                    y_(r0, c) = y.top_left;
                if (y.bottom_left == y.bottom_middle && y.bottom_left == y.bottom_right)
                    y_(r1, c) = y.bottom_left;
            }
        });
    }

    // Rows and columns in the order of the order flag.
    template <class Action>
    void walk(std::int32_t rows, std::int32_t columns, Action action) const {
        if (in_.rows_first) {
            for (std::int32_t r = 1; r <= rows; ++r)
                for (std::int32_t c = 1; c <= columns; ++c)
                    action(r, c);
        } else {
            for (std::int32_t c = 1; c <= columns; ++c)
                for (std::int32_t r = 1; r <= rows; ++r)
                    action(r, c);
        }
    }

    static BlockValues values(const Grid<float>& key, std::int32_t p, std::int32_t q) {
        const std::int32_t top = 2 * q - 1, centre = 2 * q, bottom = 2 * q + 1;
        const std::int32_t left = 2 * p - 1, middle = 2 * p, right = 2 * p + 1;
        return {key(top, left),    key(top, middle),    key(top, right),
                key(centre, left), key(centre, middle), key(centre, right),
                key(bottom, left), key(bottom, middle), key(bottom, right)};
    }

    void set_on_bounds(std::int32_t r, std::int32_t c) {
        const FieldBounds& field = in_.field;
        if (c == 1)
            x_(r, c) = field.left;
        if (c == columns_ + 1)
            x_(r, c) = field.right;
        if (r == 1)
            y_(r, c) = field.top;
        if (r == rows_ + 1)
            y_(r, c) = field.bottom;
    }

    // The element of a cell, from the top right node anti-clockwise: corners, then the middles of top, left,
    // bottom and right side where a doubling flag makes them.
    ElementRecord element_of_cell(std::int32_t i, std::int32_t j, ElementNumber number) const {
        const std::int32_t i2 = in_.double_y ? i + 2 : i + 1;
        const std::int32_t j2 = in_.double_x ? j + 2 : j + 1;
        const std::int32_t place = cell_(i, j);
        const Block& block = in_.block((place - 1) % in_.block_rows + 1, (place - 1) / in_.block_rows + 1);
        ElementRecord e{block.attributes, number, {}};
        e.integration_r = e.integration_s = INTEGRATION_OF_CELL;
        ElementWords& w = e.words;
        w.corner_1 = node_number_(i, j2);
        w.corner_2 = node_number_(i, j);
        w.corner_3 = node_number_(i2, j);
        w.corner_4 = node_number_(i2, j2);
        if (in_.double_x) {
            w.midside_5 = node_number_(i, j + 1);
            w.midside_7 = node_number_(i2, j + 1);
        }
        if (in_.double_y) {
            w.midside_6 = node_number_(i + 1, j);
            w.midside_8 = node_number_(i + 1, j2);
        }
        w.material = MaterialNumber(std::abs(block.material));
        return e;
    }

    const BlockGrid& in_;
    std::int32_t columns_, rows_;
    Grid<float> x_, y_;
    Grid<NodeNumber> node_number_;
    Grid<std::int32_t> cell_;  // the block that a cell belongs to, 0 for none
};

float serendipity(float s, float r, const BlockValues& v) {
    const float corners = (1.0F + r) * (1.0F - s) * (r - s - 1.0F) * v.top_left +
                          (1.0F + r) * (1.0F + s) * (r + s - 1.0F) * v.top_right -
                          (1.0F - r) * (1.0F - s) * (1.0F + r + s) * v.bottom_left -
                          (1.0F - r) * (1.0F + s) * (1.0F + r - s) * v.bottom_right;
    const float middles = (1.0F - r * r) * ((1.0F - s) * v.middle_left + (1.0F + s) * v.middle_right) +
                          (1.0F - s * s) * ((1.0F + r) * v.top_middle + (1.0F - r) * v.bottom_middle);
    return 0.25F * corners + 0.5F * middles;
}

}  // namespace

float lagrange_value(float s, float r, const BlockValues& v) {
    const float top = r * (r + 1.0F) / 2.0F;
    const float middle = 1.0F - r * r;
    const float bottom = r * (r - 1.0F) / 2.0F;
    const float left = s * (s - 1.0F) / 2.0F;
    const float centre = 1.0F - s * s;
    const float right = s * (s + 1.0F) / 2.0F;
    return (top * left) * v.top_left + (top * centre) * v.top_middle + (top * right) * v.top_right +
           (middle * left) * v.middle_left + (middle * centre) * v.centre +
           (middle * right) * v.middle_right + (bottom * left) * v.bottom_left +
           (bottom * centre) * v.bottom_middle + (bottom * right) * v.bottom_right;
}

void map_block(const BlockValues& v, std::int32_t column_divisions, std::int32_t row_divisions,
               std::int32_t first_column, std::int32_t first_row, std::int32_t material, Grid<float>& target,
               NodePlacing placing) {
    const auto value = [&](float s, float r) {
        return material < 0 ? lagrange_value(s, r, v) : serendipity(s, r, v);
    };
    const float s_step = 2.0F / static_cast<float>(column_divisions);
    const float r_step = 2.0F / static_cast<float>(row_divisions);
    // The place of a step, counted from the first, in local coordinates.
    const auto next = [&](float at, float step, std::int32_t number, std::int32_t divisions) {
        if (placing == NodePlacing::summed)
            return at + step;
        const float place = 2.0F * static_cast<float>(number) / static_cast<float>(divisions) - 1.0F;
        return step > 0.0F ? place : -place;
    };
    const std::int32_t last_column = first_column + column_divisions;
    const std::int32_t last_row = first_row + row_divisions;
    target(first_row, first_column) = v.top_left;
    target(first_row, last_column) = v.top_right;
    target(last_row, first_column) = v.bottom_left;
    target(last_row, last_column) = v.bottom_right;
    float r = 1.0F;
    for (std::int32_t row = first_row + 1; row < last_row; ++row) {
        r = next(r, -r_step, row - first_row, row_divisions);
        target(row, first_column) = value(-1.0F, r);
        target(row, last_column) = value(1.0F, r);
    }
    float s = -1.0F;
    for (std::int32_t column = first_column + 1; column < last_column; ++column) {
        s = next(s, s_step, column - first_column, column_divisions);
        r = 1.0F;
        for (std::int32_t row = first_row; row <= last_row; ++row) {
            target(row, column) = value(s, r);
            r = next(r, -r_step, row - first_row + 1, row_divisions);
        }
    }
}

std::int64_t work_space_of(const BlockGrid& grid) {
    const std::int64_t columns = sum_of(grid.column_divisions), rows = sum_of(grid.row_divisions);
    const std::int64_t key_points = grid.key_points;
    const std::int64_t blocks = std::int64_t{grid.block_columns} * grid.block_rows;
    const std::int64_t widest = *std::max_element(grid.column_divisions.begin(), grid.column_divisions.end());
    const std::int64_t highest = *std::max_element(grid.row_divisions.begin(), grid.row_divisions.end());
    // Beyond this the number has more digits than its field, and might have more than 64 bits.
    constexpr double countless = 1.0E17;
    if (static_cast<double>(columns) * static_cast<double>(rows) > countless)
        return static_cast<std::int64_t>(countless);
    const std::int64_t nodes = (rows + 1) * (columns + 1);
    const std::int64_t cells = columns * rows;
    const std::int64_t line_nodes = std::max(widest, highest) + 1;
    const std::int64_t block_nodes = (widest + 1) * (highest + 1);
    // Key grids, divisions, block data, node and cell grids, scratch.
    return 1 + 2 * key_points + grid.block_columns + grid.block_rows + 44 * blocks + 7 * nodes + 3 * cells +
           8 * line_nodes + 2 * block_nodes;
}

RawMesh make_raw_mesh(const BlockGrid& grid) {
    RawMesh raw{grid.title, grid.field, grid.first_node, grid.first_element, {}, {}, grid.placing};
    Mesher mesher(grid);
    mesher.place_nodes();
    raw.nodes = mesher.number_nodes();
    raw.elements = mesher.make_elements();
    return raw;
}

}  // namespace brelan
