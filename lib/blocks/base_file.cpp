#include "blocks/base_file.h"

#include <array>
#include <cstdlib>
#include <vector>

#include "mesh/block_tables.h"
#include "mesh/edition.h"
#include "plane/point_grid.h"
#include "text/free_field.h"
#include "text/layout.h"

namespace brelan {

namespace {

constexpr float SAME_NODE = 0.0001F;  // nodes at most this far apart become one
constexpr float ON_BOUND = 0.0001F;   // a node at most this far from a bound is set on it

constexpr Layout<"(A60)"> TITLE_LINE;
constexpr Layout<"(1X,4(I5,3X))"> COUNTS_LINE;

constexpr Layout<"(1X,I6,7I5,1X,2(E13.6,1X))"> COUPLED_NODE;
constexpr Layout<"(1X,I6,2I5,1X,4(E13.6,1X))"> SCALAR_NODE;
constexpr Layout<"(1X,I6,5I5,1X,2(E13.6,1X))"> DISPLACEMENT_NODE;

constexpr Layout<"(9(1X,I6),I5,2I3,2I5,E11.4)"> COUPLED_ELEMENT;
constexpr Layout<"(5(1X,I6),I5,I5)"> SCALAR_ELEMENT;
constexpr Layout<"(9(1X,I6),I5,2E11.4)"> DISPLACEMENT_ELEMENT;

// The code of a fixed node in the temperature kind; the others have 1.
constexpr std::int32_t FIXED_TEMPERATURE = -100;

constexpr float COEFFICIENT_OF_NODE = 1.0F;

int raw_codes(LayoutKind kind) {
    switch (kind) {
        case LayoutKind::coupled:
            return 4;
        case LayoutKind::temperature:
        case LayoutKind::head:
            return 2;
        default:
            return 3;
    }
}

// --- nodes ---------------------------------------------------------------------------------------

struct Point {
    float x = 0.0F, y = 0.0F;
};

// The nodes of the raw list, in its order.
std::vector<Point> read_points(LayoutKind kind, Channel& coordinates, const RawMesh& raw) {
    coordinates.rewind();
    coordinates.skip_lines(raw.first_node - 1, "a placeholder line");
    std::vector<Point> points(static_cast<std::size_t>(raw.last_node - raw.first_node + 1));
    for (Point& point : points) {
        FreeFieldReader reader(coordinates, "a raw node line");
        std::int32_t passed_over = 0;
        for (int i = 0; i <= raw_codes(kind); ++i)
            reader.read(passed_over);
        reader.read(point.x);
        reader.read(point.y);
        reader.finish();
    }
    return points;
}

// The new number of each raw node, counted from 1 in the order of the list; a node that falls on an earlier
// one takes the number of the last such.
struct Merge {
    std::vector<std::int32_t> number;  // by raw node from 0
    std::vector<std::size_t> kept;     // raw node by new number - 1
};

Merge merge_points(const std::vector<Point>& points) {
    Merge merge;
    merge.number.resize(points.size());
    PointGrid grid(SAME_NODE, points.size());
    for (std::size_t i = 0; i < points.size(); ++i) {
        const std::int32_t ordinal = static_cast<std::int32_t>(i) + 1;
        const std::int32_t earlier = grid.highest_within_reach(points[i].x, points[i].y);
        grid.add({ordinal, points[i].x, points[i].y});
        if (earlier == 0) {
            merge.kept.push_back(i);
            merge.number[i] = static_cast<std::int32_t>(merge.kept.size());
        } else {
            merge.number[i] = merge.number[static_cast<std::size_t>(earlier - 1)];
        }
    }
    return merge;
}

// A node set on the bounds, with what it lies on.
struct BoundNode {
    float x, y;
    bool fixed_x = false, fixed_y = false;         // the codes of Card 4.1's switches
    bool closed_side = false, closed_end = false;  // on a fixed left or right side, on a fixed bottom or top
};

BoundNode set_on_bounds(const BlockCards& block_cards, const FieldBounds& field, const Point& point) {
    BoundNode node{point.x, point.y};
    if (!(node.x > field.left + ON_BOUND)) {
        node.x = field.left;
        node.fixed_x = block_cards.fixes_left == 1;
    } else if (!(node.x < field.right - ON_BOUND)) {
        node.x = field.right;
        node.fixed_x = block_cards.fixes_right == 1;
    }
    if (!(node.y > field.bottom + ON_BOUND)) {
        node.y = field.bottom;
        node.fixed_y = block_cards.fixes_bottom == 1;
    } else if (!(node.y < field.top - ON_BOUND)) {
        node.y = field.top;
        node.fixed_y = block_cards.fixes_top == 1;
    }
    const bool left = !(node.x > field.left + ON_BOUND);
    const bool right = !(node.x < field.right - ON_BOUND);
    const bool bottom = !(node.y > field.bottom + ON_BOUND);
    const bool top = !(node.y < field.top - ON_BOUND);
    node.closed_side = (left && block_cards.fixes_left == 1) || (right && block_cards.fixes_right == 1);
    node.closed_end = (bottom && block_cards.fixes_bottom == 1) || (top && block_cards.fixes_top == 1);
    return node;
}

void write_node(LayoutKind kind, const BlockCards& block_cards, Channel& base, std::int32_t number,
                const BoundNode& node) {
    const std::int32_t code_x = node.fixed_x ? 1 : 0;
    const std::int32_t code_y = node.fixed_y ? 1 : 0;
    switch (kind) {
        case LayoutKind::coupled: {
            const bool dry = node.y >= block_cards.third + ON_BOUND;
            const std::int32_t fluid_code_x = dry || node.closed_side ? 1 : 0;
            const std::int32_t fluid_code_y = dry || node.closed_end ? 1 : 0;
            COUPLED_NODE.write(base, number, code_x, code_y, fluid_code_x, fluid_code_y, 1, 1, 1, node.x,
                               node.y);
            break;
        }
        case LayoutKind::temperature:
            SCALAR_NODE.write(base, number, code_x * FIXED_TEMPERATURE, code_y * FIXED_TEMPERATURE, node.x,
                              node.y, block_cards.third, COEFFICIENT_OF_NODE);
            break;
        case LayoutKind::head:
            SCALAR_NODE.write(base, number, code_x, code_y, node.x, node.y, block_cards.third,
                              COEFFICIENT_OF_NODE);
            break;
        case LayoutKind::displacement:
            DISPLACEMENT_NODE.write(base, number, code_x, code_y, 1, 1, 1, node.x, node.y);
            break;
    }
}

void write_node_heading(LayoutKind kind, Channel& base) {
    write_free(base, "   NODAL COORDINATES ");
    switch (kind) {
        case LayoutKind::coupled:
            write_free(base, "   NODE  ISX  ISY  IFX  IFY  IRZ  IEX  IEY", "       XC            YC ");
            break;
        case LayoutKind::temperature:
            write_free(base, "   NODE   ID  IDF            XC            YC             T ",
                       "           CF ");
            break;
        case LayoutKind::head:
            write_free(base, "   NODE   ID  IDF            XC            YC             H ",
                       "           CF ");
            break;
        case LayoutKind::displacement:
            write_free(base, "   NODE  IDX  IDY  IDT  IEX  IEY       XC            YC ");
            break;
    }
}

// --- elements ------------------------------------------------------------------------------------

void write_element_heading(LayoutKind kind, Channel& base) {
    write_free(base, "   ELEMENT INDEX ");
    switch (kind) {
        case LayoutKind::coupled:
            base.write_line(
                "    NEL     I1     I2     I3     I4     M5     M6     M7     M8 MATC KS KF INTR INTS   "
                "TBJWL");
            break;
        case LayoutKind::temperature:
        case LayoutKind::head:
            write_free(base, "   NEL      I      J      K      L  MATNO    IDH");
            break;
        case LayoutKind::displacement:
            base.write_line(
                "   NEL     I1     I2     I3     I4     M5     M6     M7     M8  MATC   THIC        DEN");
            break;
    }
}

// Reads a raw element line and writes it with the merged node numbers.
void pass_element(LayoutKind kind, Channel& index, Channel& base, const RawMesh& raw, const Merge& merge) {
    constexpr std::string_view expected = "a raw element line";
    std::int32_t number = 0, material = 0;
    std::array<std::int32_t, 8> n{};
    FreeFieldReader reader(index, expected);
    reader.read(number);
    const bool scalar = kind == LayoutKind::temperature || kind == LayoutKind::head;
    for (std::size_t i = 0; i < (scalar ? 4U : 8U); ++i) {
        reader.read(n[i]);
        if (n[i] > 0)
            n[i] = merge.number[static_cast<std::size_t>(n[i] - raw.first_node)];
    }
    reader.read(material);
    switch (kind) {
        case LayoutKind::coupled: {
            std::int32_t skeleton = 0, fluid = 0, integration_r = 0, integration_s = 0;
            float real_attribute = 0.0F;
            for (std::int32_t* attribute : {&skeleton, &fluid, &integration_r, &integration_s})
                reader.read(*attribute);
            reader.read(real_attribute);
            COUPLED_ELEMENT.write(base, number, n[0], n[1], n[2], n[3], n[4], n[5], n[6], n[7], material,
                                  skeleton, fluid, integration_r, integration_s, real_attribute);
            break;
        }
        case LayoutKind::temperature:
        case LayoutKind::head: {
            std::int32_t attribute = 0;
            reader.read(attribute);
            SCALAR_ELEMENT.write(base, number, n[0], n[1], n[2], n[3], material, attribute);
            break;
        }
        case LayoutKind::displacement: {
            float thickness = 0.0F, density = 0.0F;
            reader.read(thickness);
            reader.read(density);
            DISPLACEMENT_ELEMENT.write(base, number, n[0], n[1], n[2], n[3], n[4], n[5], n[6], n[7], material,
                                       thickness, density);
            break;
        }
    }
    reader.finish();
}

}  // namespace

BaseCounts write_base_file(LayoutKind kind, const BlockCards& block_cards, const FieldBounds& field,
                           Channel& coordinates, Channel& index, Channel& base, const RawMesh& raw) {
    const std::vector<Point> points = read_points(kind, coordinates, raw);
    const Merge merge = merge_points(points);
    const BaseCounts counts{static_cast<std::int32_t>(merge.kept.size()),
                            raw.last_element - raw.first_element + 1};

    TITLE_LINE.write(base, raw.title);
    write_free(base, " NUMNP   NCONT   NBEAM   NTRUS ");
    COUNTS_LINE.write(base, counts.nodes, counts.elements, 0, 0);
    write_node_heading(kind, base);
    std::int32_t number = 0;
    for (const std::size_t node : merge.kept)
        write_node(kind, block_cards, base, ++number, set_on_bounds(block_cards, field, points[node]));

    index.rewind();
    index.skip_lines(raw.first_element - 1, "a placeholder line");
    write_element_heading(kind, base);
    for (std::int32_t i = 0; i < counts.elements; ++i)
        pass_element(kind, index, base, raw, merge);
    write_free(base, "    0");
    write_free(base, "    0");
    return counts;
}

}  // namespace brelan
