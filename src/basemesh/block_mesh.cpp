#include "basemesh/block_mesh.h"

#include <algorithm>
#include <string>

#include "basemesh/base_file.h"
#include "basemesh/block_file.h"
#include "basemesh/block_tables.h"
#include "channel/channels.h"
#include "channel/layout.h"
#include "channel/run_end.h"
#include "channel/channel_numbers.h"
#include "mesh/edition.h"

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
constexpr float TBJWL_OF_CELL = 0.0F;

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
std::int64_t required_dimension(const BlockFile& in, std::int64_t NXT, std::int64_t NYT) {
    const std::int64_t K = in.key_points;
    const std::int64_t B = std::int64_t{in.NBX} * in.NBY;
    const std::int64_t widest = *std::max_element(in.ndx.begin(), in.ndx.end());
    const std::int64_t highest = *std::max_element(in.ndy.begin(), in.ndy.end());
    // Beyond this the number has more digits than its field, and might have more than 64 bits.
    constexpr double countless = 1.0E17;
    if (static_cast<double>(NXT) * static_cast<double>(NYT) > countless)
        return static_cast<std::int64_t>(countless);
    const std::int64_t S = (NYT + 1) * (NXT + 1);
    const std::int64_t E = NXT * NYT;
    const std::int64_t MAXD = std::max(widest, highest) + 1;
    const std::int64_t MAXC = (widest + 1) * (highest + 1);
    return 1 + 2 * K + in.NBX + in.NBY + 44 * B + 7 * S + 3 * E + 8 * MAXD + 2 * MAXC;
}

[[noreturn]] void stop_too_large(Channel& coord, std::int64_t required) {
    PROGRAM_LINE.write(coord, ten_columns(PROGRAM_DIMENSION));
    REQUIRED_LINE.write(coord, ten_columns(required));
    STOPRUN("100");
}

// A raw node line; the codes follow with the base mesh file.
void write_point(LayoutKind kind, Channel& coord, std::int32_t number, float x, float y) {
    switch (kind) {
        case LayoutKind::coupled:
            COUPLED_POINT.write(coord, number, 0, 0, 0, 0, x, y);
            break;
        case LayoutKind::temperature:
        case LayoutKind::head:
            SCALAR_POINT.write(coord, number, 0, 0, x, y);
            break;
        case LayoutKind::displacement:
            DISPLACEMENT_POINT.write(coord, number, 0, 0, 0, x, y);
            break;
    }
}

// A raw element line: corners I1 to I4, then M5 to M8.
void write_cell(LayoutKind kind, Channel& index, std::int32_t NEL, const std::array<std::int32_t, 8>& n, std::int32_t material,
                const BlockAttributes& a) {
    const std::int32_t integration = NEL == 0 ? 0 : INTEGRATION_OF_CELL;
    switch (kind) {
        case LayoutKind::coupled:
            COUPLED_CELL.write(index, NEL, n[0], n[1], n[2], n[3], n[4], n[5], n[6], n[7], material, a.KS,
                               a.KF, integration, integration, TBJWL_OF_CELL);
            break;
        case LayoutKind::temperature:
        case LayoutKind::head:
            SCALAR_CELL.write(index, NEL, n[0], n[1], n[2], n[3], material, a.IDH);
            break;
        case LayoutKind::displacement:
            DISPLACEMENT_CELL.write(index, NEL, n[0], n[1], n[2], n[3], n[4], n[5], n[6], n[7], material,
                                    a.THIC, a.DEN);
            break;
    }
}

// The grids of a mesh while it is made.
class Mesher {
public:
    explicit Mesher(const BlockFile& in)
        : in_(in),
          NXT_(sum_of(in.ndx)),
          NYT_(sum_of(in.ndy)),
          x_(NYT_ + 1, NXT_ + 1, 0.0F),
          y_(NYT_ + 1, NXT_ + 1, 0.0F),
          ID_(NYT_ + 1, NXT_ + 1, NO_NODE),
          cell_(NYT_, NXT_, 0) {}

    // Coordinates of all nodes; nodes of blocks that are no holes are marked, and their cells filled.
    void place_nodes() {
        for_each_block([&](std::int32_t p, std::int32_t q, std::int32_t c0, std::int32_t r0) {
            const std::int32_t material = in_.block(q, p).material;
            BLOCKMAP(values(in_.key_x, p, q), ndx(p), ndy(q), c0, r0, material, x_);
            BLOCKMAP(values(in_.key_y, p, q), ndx(p), ndy(q), c0, r0, material, y_);
        });
        for_each_block([&](std::int32_t p, std::int32_t q, std::int32_t c0, std::int32_t r0) {
            for (std::int32_t c = c0; c <= c0 + ndx(p); ++c)
                for (std::int32_t r = r0; r <= r0 + ndy(q); ++r)
                    ID_(r, c) = UNNUMBERED;
            for (std::int32_t c = c0; c < c0 + ndx(p); ++c)
                for (std::int32_t r = r0; r < r0 + ndy(q); ++r)
                    cell_(r, c) = (p - 1) * in_.NBY + q;
        });
    }

    // Numbers the marked nodes and lists them. Returns the highest number.
    std::int32_t list_nodes(LayoutKind kind, const FieldBounds& field, Channel& coord) {
        for (std::int32_t n = 1; n < in_.first_node; ++n)
            write_point(kind, coord, 0, 0.0F, 0.0F);
        std::int32_t number = in_.first_node - 1;
        walk(NYT_ + 1, NXT_ + 1, [&](std::int32_t r, std::int32_t c) {
            // The centres of quadratic elements are no nodes.
            const bool centre = in_.double_x && in_.double_y && r % 2 == 0 && c % 2 == 0;
            if (ID_(r, c) >= 0 || centre)
                return;
            ID_(r, c) = ++number;
            if (in_.rows_first)
                set_on_bounds(field, r, c);
            write_point(kind, coord, number, x_(r, c), y_(r, c));
        });
        return number;
    }

    // Lists the elements. Returns the highest number.
    std::int32_t list_elements(LayoutKind kind, Channel& index) {
        for (std::int32_t n = 1; n < in_.first_element; ++n)
            write_cell(kind, index, 0, {}, 0, {});
        NEL_ = in_.first_element - 1;
        walk(in_.double_y ? NYT_ / 2 : NYT_, in_.double_x ? NXT_ / 2 : NXT_,
             [&](std::int32_t i, std::int32_t j) {
                 ELEMOUT(kind, index, in_.double_y ? 2 * i - 1 : i, in_.double_x ? 2 * j - 1 : j);
             });
        return NEL_;
    }

private:
    std::int32_t ndx(std::int32_t p) const { return in_.ndx[static_cast<std::size_t>(p - 1)]; }
    std::int32_t ndy(std::int32_t q) const { return in_.ndy[static_cast<std::size_t>(q - 1)]; }

    // Every block that is no hole, columns outermost, with its first node column and row.
    template <class Action>
    void for_each_block(Action action) const {
        std::int32_t c0 = 1;
        for (std::int32_t p = 1; p <= in_.NBX; ++p) {
            std::int32_t r0 = 1;
            for (std::int32_t q = 1; q <= in_.NBY; ++q) {
                if (in_.block(q, p).material != 0)
                    action(p, q, c0, r0);
                r0 += ndy(q);
            }
            c0 += ndx(p);
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
        const std::int32_t T = 2 * q - 1, C = 2 * q, B = 2 * q + 1;
        const std::int32_t L = 2 * p - 1, M = 2 * p, R = 2 * p + 1;
        return {key(T, L), key(T, M), key(T, R), key(C, L), key(C, M),
                key(C, R), key(B, L), key(B, M), key(B, R)};
    }

    void set_on_bounds(const FieldBounds& field, std::int32_t r, std::int32_t c) {
        if (c == 1)
            x_(r, c) = field.XMIN;
        if (c == NXT_ + 1)
            x_(r, c) = field.XMAX;
        if (r == 1)
            y_(r, c) = field.YTOP;
        if (r == NYT_ + 1)
            y_(r, c) = field.YMIN;
    }

    // Forms the element of a cell, from the top right node anti-clockwise: corners, then the middles of top,
    // left, bottom and right side where a doubling flag makes them.
    void ELEMOUT(LayoutKind kind, Channel& index, std::int32_t i, std::int32_t j) {
        const std::int32_t place = cell_(i, j);
        if (place == 0)
            return;
        const std::int32_t i2 = in_.double_y ? i + 2 : i + 1;
        const std::int32_t j2 = in_.double_x ? j + 2 : j + 1;
        std::array<std::int32_t, 8> n{ID_(i, j2), ID_(i, j), ID_(i2, j), ID_(i2, j2), 0, 0, 0, 0};
        if (in_.double_x) {
            n[4] = ID_(i, j + 1);
            n[6] = ID_(i2, j + 1);
        }
        if (in_.double_y) {
            n[5] = ID_(i + 1, j);
            n[7] = ID_(i + 1, j2);
        }
        const Block& block = in_.block((place - 1) % in_.NBY + 1, (place - 1) / in_.NBY + 1);
        write_cell(kind, index, ++NEL_, n, std::abs(block.material), block.attributes);
    }

    const BlockFile& in_;
    std::int32_t NXT_, NYT_;
    Grid<float> x_, y_;
    Grid<std::int32_t> ID_;    // node numbers
    Grid<std::int32_t> cell_;  // the block that a cell belongs to, 0 for none
    std::int32_t NEL_ = 0;
};

float serendipity(float s, float r, const BlockValues& v) {
    const float corners =
        (1.0F + r) * (1.0F - s) * (r - s - 1.0F) * v.TL + (1.0F + r) * (1.0F + s) * (r + s - 1.0F) * v.TR -
        (1.0F - r) * (1.0F - s) * (1.0F + r + s) * v.BL - (1.0F - r) * (1.0F + s) * (1.0F + r - s) * v.BR;
    const float middles = (1.0F - r * r) * ((1.0F - s) * v.LM + (1.0F + s) * v.RM) +
                          (1.0F - s * s) * ((1.0F + r) * v.TM + (1.0F - r) * v.BM);
    return 0.25F * corners + 0.5F * middles;
}

}  // namespace

float LAGR9(float s, float r, const BlockValues& v) {
    const float top = r * (r + 1.0F) / 2.0F;
    const float middle = 1.0F - r * r;
    const float bottom = r * (r - 1.0F) / 2.0F;
    const float left = s * (s - 1.0F) / 2.0F;
    const float centre = 1.0F - s * s;
    const float right = s * (s + 1.0F) / 2.0F;
    return (top * left) * v.TL + (top * centre) * v.TM + (top * right) * v.TR + (middle * left) * v.LM +
           (middle * centre) * v.CC + (middle * right) * v.RM + (bottom * left) * v.BL +
           (bottom * centre) * v.BM + (bottom * right) * v.BR;
}

void BLOCKMAP(const BlockValues& v, std::int32_t ndx, std::int32_t ndy, std::int32_t first_column,
              std::int32_t first_row, std::int32_t material, Grid<float>& target) {
    const auto value = [&](float s, float r) { return material < 0 ? LAGR9(s, r, v) : serendipity(s, r, v); };
    const float s_step = 2.0F / static_cast<float>(ndx);
    const float r_step = 2.0F / static_cast<float>(ndy);
    const std::int32_t last_column = first_column + ndx;
    const std::int32_t last_row = first_row + ndy;
    target(first_row, first_column) = v.TL;
    target(first_row, last_column) = v.TR;
    target(last_row, first_column) = v.BL;
    target(last_row, last_column) = v.BR;
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

void BLOCKMESH(Channels& channels, LayoutKind kind, const BlockCards& block_cards, const FieldBounds& field) {
    Channel& file = channels.open(CH_BLOCKS, "Bmesh.Tmp", OpenStatus::old);
    Channel& coord = channels.open(CH_COORD, "Coord.dat", OpenStatus::work);
    Channel& index = channels.open(CH_INDEX, "Index.dat", OpenStatus::work);
    Channel& base = channels.open(CH_BASE, "..\\Bmesh.dat", OpenStatus::result);
    const BlockFile in = BLOCKIN(kind, file);
    const std::int64_t required = required_dimension(in, sum_of(in.ndx), sum_of(in.ndy));
    if (required > PROGRAM_DIMENSION)
        stop_too_large(coord, required);
    RawMesh raw;
    {
        Mesher mesher(in);
        mesher.place_nodes();
        raw.last_node = mesher.list_nodes(kind, field, coord);
        raw.last_element = mesher.list_elements(kind, index);
    }
    raw.first_node = in.first_node;
    raw.first_element = in.first_element;
    raw.title = in.title;
    const BaseCounts counts = BASEOUT(kind, block_cards, field, coord, index, base, raw);
    for (const int number : {CH_BLOCKS, CH_COORD, CH_INDEX, CH_BASE})
        channels.close(number);
    constexpr std::int32_t first_unreadable = 100000;
    if (counts.nodes >= first_unreadable || counts.elements >= first_unreadable)
        FAIL("..\\Bmesh.dat, line 3: expected fewer than 100000 nodes and elements, found " +
             std::to_string(counts.nodes) + " and " + std::to_string(counts.elements) +
             ": the mesh is too large to be read back");
}

}  // namespace brelan
