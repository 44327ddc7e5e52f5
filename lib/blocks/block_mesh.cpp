#include "blocks/block_mesh.h"

#include <algorithm>
#include <string>

#include "blocks/base_file.h"
#include "blocks/block_file.h"
#include "mesh/block_tables.h"
#include "mesh/edition.h"
#include "text/channel_numbers.h"
#include "text/channels.h"
#include "text/layout.h"
#include "text/run_end.h"

namespace brelan {

namespace {

// The generator's work space in words of 32 bits. A mesh that needs more is refused.
constexpr std::int64_t PROGRAM_DIMENSION = 60000000;

constexpr Layout<"(' PROGRAM DIMENSION =  ',A10)"> PROGRAM_LINE;
constexpr Layout<"('REQUIRED DIMENSION =  ',A10)"> REQUIRED_LINE;

constexpr Layout<"(1X,I6,1X,4(I5,1X),2(E13.6,1X))"> COUPLED_POINT;
constexpr Layout<"(1X,I6,1X,2(I5,1X),2(E13.6,1X))"> SCALAR_POINT;
constexpr Layout<"(1X,I6,1X,3(I5,1X),2(E13.6,1X))"> DISPLACEMENT_POINT;

constexpr Layout<"(9(1X,I6),5I5,E11.4)"> COUPLED_CELL;
constexpr Layout<"(5(1X,I6),I5,I5)"> SCALAR_CELL;
constexpr Layout<"(9(1X,I6),I5,2E11.4)"> DISPLACEMENT_CELL;

constexpr std::int32_t INTEGRATION_OF_CELL = 2;  // INTR and INTS; 0 on a placeholder line
constexpr float REAL_ATTRIBUTE_OF_CELL = 0.0F;

constexpr std::int32_t NO_NODE = 0, UNNUMBERED = -1;

// A field of ten columns; asterisks where the number is wider.
std::string ten_columns(std::int64_t number) {
    const std::string digits = std::to_string(number);
    return digits.size() > 10 ? std::string(10, '*') : std::string(10 - digits.size(), ' ') + digits;
}

std::int32_t sum_of(const std::vector<std::int32_t>& counts) {
    std::int64_t sum = 0;
    for (const std::int32_t count : counts)
        sum += count;
    return static_cast<std::int32_t>(std::min<std::int64_t>(sum, 2000000000));
}

// Words of work space that a mesh takes: key grids, divisions, block data, node and cell grids, scratch.
std::int64_t required_dimension(const BlockFile& in, std::int64_t columns, std::int64_t rows) {
    const std::int64_t key_points = in.key_points;
    const std::int64_t blocks = std::int64_t{in.block_columns} * in.block_rows;
    const std::int64_t widest = *std::max_element(in.column_divisions.begin(), in.column_divisions.end());
    const std::int64_t highest = *std::max_element(in.row_divisions.begin(), in.row_divisions.end());
    // Beyond this the number has more digits than its field, and might have more than 64 bits.
    constexpr double countless = 1.0E17;
    if (static_cast<double>(columns) * static_cast<double>(rows) > countless)
        return static_cast<std::int64_t>(countless);
    const std::int64_t nodes = (rows + 1) * (columns + 1);
    const std::int64_t cells = columns * rows;
    const std::int64_t line_nodes = std::max(widest, highest) + 1;
    const std::int64_t block_nodes = (widest + 1) * (highest + 1);
    return 1 + 2 * key_points + in.block_columns + in.block_rows + 44 * blocks + 7 * nodes + 3 * cells +
           8 * line_nodes + 2 * block_nodes;
}

[[noreturn]] void stop_too_large(Channel& coordinates, std::int64_t required) {
    PROGRAM_LINE.write(coordinates, ten_columns(PROGRAM_DIMENSION));
    REQUIRED_LINE.write(coordinates, ten_columns(required));
    stop_run("100");
}

// A raw node line; the codes follow with the base mesh file.
void write_point(LayoutKind kind, Channel& coordinates, std::int32_t number, float x, float y) {
    switch (kind) {
        case LayoutKind::coupled:
            COUPLED_POINT.write(coordinates, number, 0, 0, 0, 0, x, y);
            break;
        case LayoutKind::temperature:
        case LayoutKind::head:
            SCALAR_POINT.write(coordinates, number, 0, 0, x, y);
            break;
        case LayoutKind::displacement:
            DISPLACEMENT_POINT.write(coordinates, number, 0, 0, 0, x, y);
            break;
    }
}

// A raw element line: corners I1 to I4, then M5 to M8.
void write_cell(LayoutKind kind, Channel& index, std::int32_t number, const std::array<std::int32_t, 8>& n,
                std::int32_t material, const BlockAttributes& a) {
    const std::int32_t integration = number == 0 ? 0 : INTEGRATION_OF_CELL;
    switch (kind) {
        case LayoutKind::coupled:
            COUPLED_CELL.write(index, number, n[0], n[1], n[2], n[3], n[4], n[5], n[6], n[7], material,
                               a.skeleton, a.fluid, integration, integration, REAL_ATTRIBUTE_OF_CELL);
            break;
        case LayoutKind::temperature:
        case LayoutKind::head:
            SCALAR_CELL.write(index, number, n[0], n[1], n[2], n[3], material, a.attribute);
            break;
        case LayoutKind::displacement:
            DISPLACEMENT_CELL.write(index, number, n[0], n[1], n[2], n[3], n[4], n[5], n[6], n[7], material,
                                    a.thickness, a.density);
            break;
    }
}

// The grids of a mesh while it is made.
class Mesher {
public:
    explicit Mesher(const BlockFile& in)
        : in_(in),
          columns_(sum_of(in.column_divisions)),
          rows_(sum_of(in.row_divisions)),
          x_(rows_ + 1, columns_ + 1, 0.0F),
          y_(rows_ + 1, columns_ + 1, 0.0F),
          node_number_(rows_ + 1, columns_ + 1, NO_NODE),
          cell_(rows_, columns_, 0) {}

    // Coordinates of all nodes; nodes of blocks that are no holes are marked, and their cells filled.
    void place_nodes() {
        for_each_block([&](std::int32_t p, std::int32_t q, std::int32_t c0, std::int32_t r0) {
            const std::int32_t material = in_.block(q, p).material;
            map_block(values(in_.key_x, p, q), divisions_across(p), divisions_down(q), c0, r0, material, x_);
            map_block(values(in_.key_y, p, q), divisions_across(p), divisions_down(q), c0, r0, material, y_);
        });
        for_each_block([&](std::int32_t p, std::int32_t q, std::int32_t c0, std::int32_t r0) {
            for (std::int32_t c = c0; c <= c0 + divisions_across(p); ++c)
                for (std::int32_t r = r0; r <= r0 + divisions_down(q); ++r)
                    node_number_(r, c) = UNNUMBERED;
            for (std::int32_t c = c0; c < c0 + divisions_across(p); ++c)
                for (std::int32_t r = r0; r < r0 + divisions_down(q); ++r)
                    cell_(r, c) = (p - 1) * in_.block_rows + q;
        });
    }

    // Numbers the marked nodes and lists them. Returns the highest number.
    std::int32_t list_nodes(LayoutKind kind, const FieldBounds& field, Channel& coordinates) {
        for (std::int32_t n = 1; n < in_.first_node; ++n)
            write_point(kind, coordinates, 0, 0.0F, 0.0F);
        std::int32_t number = in_.first_node - 1;
        walk(rows_ + 1, columns_ + 1, [&](std::int32_t r, std::int32_t c) {
            // The centres of quadratic elements are no nodes.
            const bool centre = in_.double_x && in_.double_y && r % 2 == 0 && c % 2 == 0;
            if (node_number_(r, c) >= 0 || centre)
                return;
            node_number_(r, c) = ++number;
            if (in_.rows_first)
                set_on_bounds(field, r, c);
            write_point(kind, coordinates, number, x_(r, c), y_(r, c));
        });
        return number;
    }

    // Lists the elements. Returns the highest number.
    std::int32_t list_elements(LayoutKind kind, Channel& index) {
        for (std::int32_t n = 1; n < in_.first_element; ++n)
            write_cell(kind, index, 0, {}, 0, {});
        last_element_ = in_.first_element - 1;
        walk(in_.double_y ? rows_ / 2 : rows_, in_.double_x ? columns_ / 2 : columns_,
             [&](std::int32_t i, std::int32_t j) {
                 write_element(kind, index, in_.double_y ? 2 * i - 1 : i, in_.double_x ? 2 * j - 1 : j);
             });
        return last_element_;
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

    void set_on_bounds(const FieldBounds& field, std::int32_t r, std::int32_t c) {
        if (c == 1)
            x_(r, c) = field.left;
        if (c == columns_ + 1)
            x_(r, c) = field.right;
        if (r == 1)
            y_(r, c) = field.top;
        if (r == rows_ + 1)
            y_(r, c) = field.bottom;
    }

    // Forms the element of a cell, from the top right node anti-clockwise: corners, then the middles of top,
    // left, bottom and right side where a doubling flag makes them.
    void write_element(LayoutKind kind, Channel& index, std::int32_t i, std::int32_t j) {
        const std::int32_t place = cell_(i, j);
        if (place == 0)
            return;
        const std::int32_t i2 = in_.double_y ? i + 2 : i + 1;
        const std::int32_t j2 = in_.double_x ? j + 2 : j + 1;
        std::array<std::int32_t, 8> n{
            node_number_(i, j2), node_number_(i, j), node_number_(i2, j), node_number_(i2, j2), 0, 0, 0, 0};
        if (in_.double_x) {
            n[4] = node_number_(i, j + 1);
            n[6] = node_number_(i2, j + 1);
        }
        if (in_.double_y) {
            n[5] = node_number_(i + 1, j);
            n[7] = node_number_(i + 1, j2);
        }
        const Block& block = in_.block((place - 1) % in_.block_rows + 1, (place - 1) / in_.block_rows + 1);
        write_cell(kind, index, ++last_element_, n, std::abs(block.material), block.attributes);
    }

    const BlockFile& in_;
    std::int32_t columns_, rows_;
    Grid<float> x_, y_;
    Grid<std::int32_t> node_number_;  // node numbers
    Grid<std::int32_t> cell_;         // the block that a cell belongs to, 0 for none
    std::int32_t last_element_ = 0;
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
               std::int32_t first_column, std::int32_t first_row, std::int32_t material,
               Grid<float>& target) {
    const auto value = [&](float s, float r) {
        return material < 0 ? lagrange_value(s, r, v) : serendipity(s, r, v);
    };
    const float s_step = 2.0F / static_cast<float>(column_divisions);
    const float r_step = 2.0F / static_cast<float>(row_divisions);
    const std::int32_t last_column = first_column + column_divisions;
    const std::int32_t last_row = first_row + row_divisions;
    target(first_row, first_column) = v.top_left;
    target(first_row, last_column) = v.top_right;
    target(last_row, first_column) = v.bottom_left;
    target(last_row, last_column) = v.bottom_right;
    float r = 1.0F;
    for (std::int32_t row = first_row + 1; row < last_row; ++row) {
        r = r - r_step;
        target(row, first_column) = value(-1.0F, r);
        target(row, last_column) = value(1.0F, r);
    }
    float s = -1.0F;
    for (std::int32_t column = first_column + 1; column < last_column; ++column) {
        s = s + s_step;
        r = 1.0F;
        for (std::int32_t row = first_row; row <= last_row; ++row) {
            target(row, column) = value(s, r);
            r = r - r_step;
        }
    }
}

void make_block_mesh(Channels& channels, LayoutKind kind, const BlockCards& block_cards,
                     const FieldBounds& field) {
    Channel& file = channels.open(CHANNEL_BLOCKS, "Bmesh.Tmp", OpenStatus::old);
    Channel& coordinates = channels.open(CHANNEL_COORDINATES, "Coord.dat", OpenStatus::work);
    Channel& index = channels.open(CHANNEL_INDEX, "Index.dat", OpenStatus::work);
    Channel& base = channels.open(CHANNEL_BASE, "..\\Bmesh.dat", OpenStatus::result);
    const BlockFile in = read_block_file(kind, file);
    const std::int64_t required =
        required_dimension(in, sum_of(in.column_divisions), sum_of(in.row_divisions));
    if (required > PROGRAM_DIMENSION)
        stop_too_large(coordinates, required);
    RawMesh raw;
    {
        Mesher mesher(in);
        mesher.place_nodes();
        raw.last_node = mesher.list_nodes(kind, field, coordinates);
        raw.last_element = mesher.list_elements(kind, index);
    }
    raw.first_node = in.first_node;
    raw.first_element = in.first_element;
    raw.title = in.title;
    const BaseCounts counts = write_base_file(kind, block_cards, field, coordinates, index, base, raw);
    for (const int number : {CHANNEL_BLOCKS, CHANNEL_COORDINATES, CHANNEL_INDEX, CHANNEL_BASE})
        channels.close(number);
    constexpr std::int32_t first_unreadable = 100000;
    if (counts.nodes >= first_unreadable || counts.elements >= first_unreadable)
        fail("..\\Bmesh.dat, line 3: expected fewer than 100000 nodes and elements, found " +
             std::to_string(counts.nodes) + " and " + std::to_string(counts.elements) +
             ": the mesh is too large to be read back");
}

}  // namespace brelan
