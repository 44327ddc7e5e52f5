#include "blocks/block_file.h"

#include <cmath>
#include <string>

#include "mesh/kinds.h"
#include "text/free_field.h"
#include "text/layout.h"
#include "text/run_end.h"

namespace brelan {

namespace {

constexpr Layout<"(9(I5,1X))"> BLOCK_LINE;
constexpr std::int32_t WIDEST = 99999;  // in a field of that line

constexpr std::size_t HEAD_LINES = 4;

bool has_side_codes(LayoutKind kind) {
    return !has_node_values(kind);
}

// The code of a side of a coupled block; no stage reads it.
constexpr std::int32_t SIDE_CODE = 12;

void write_block(LayoutKind kind, const PlannedBlock& block, std::int32_t number, Channel& file) {
    write_free(file, " BLOCK NO = ", number);
    write_free(file, number);
    BLOCK_LINE.write_list<std::int32_t>(file, block.key);
    const std::int32_t material = block.material, across = block.column_divisions, down = block.row_divisions;
    const ElementAttributes& a = block.attributes;
    if (kind == LayoutKind::coupled) {
        BLOCK_LINE.write(file, SIDE_CODE, SIDE_CODE, SIDE_CODE, SIDE_CODE, SIDE_CODE, SIDE_CODE, SIDE_CODE,
                         SIDE_CODE, SIDE_CODE);
        BLOCK_LINE.write_front(file, material, across, down, a.skeleton, a.fluid);
    } else if (kind == LayoutKind::displacement) {
        BLOCK_LINE.write_front(file, 0, 0, 0, 0, 0, 0, 0, 0);
        write_free(file, material, across, down, a.thickness, a.density);
    } else {
        BLOCK_LINE.write_front(file, material, across, down, a.attribute);
    }
    write_free(file, 0);
}

[[noreturn]] void fail_at(std::size_t line, const std::string& expected, int width) {
    fail("Bmesh.Tmp, line " + std::to_string(line) + ": expected " + expected + ", found \"" +
         std::string(static_cast<std::size_t>(width), '*') + "\"");
}

}  // namespace

void write_block_file(LayoutKind kind, const BlockPlan& plan, float third, Channel& file) {
    file.write_line(plan.title);
    write_free(file, 0);
    const auto blocks = static_cast<std::int32_t>(plan.blocks.size());
    const auto key_points = static_cast<std::int32_t>(plan.key_points.size());
    if (has_node_values(kind))
        write_free(file, blocks, key_points, plan.first_element.value, plan.scale, third);
    else
        write_free(file, blocks, key_points, plan.first_element.value, plan.scale);
    write_free(file, plan.block_columns, plan.block_rows, plan.double_x ? 1 : 0, plan.double_y ? 1 : 0,
               plan.rows_first ? 1 : 0, plan.first_node.value);
    std::int32_t number = 0;
    for (const KeyPoint& point : plan.key_points)
        write_free(file, ++number, point.x, point.y);
    number = 0;
    for (const PlannedBlock& block : plan.blocks)
        write_block(kind, block, ++number, file);
    write_free(file, 0);
}

void refuse_unwritable(LayoutKind kind, const BlockPlan& plan) {
    std::size_t line = HEAD_LINES;
    for (const KeyPoint& point : plan.key_points) {
        ++line;
        if (!std::isfinite(point.x) || !std::isfinite(point.y))
            fail_at(line, "a number in a key point (number, x, y)", 16);
    }
    if (kind == LayoutKind::displacement)  // whose divisions are written free-field
        return;
    const char* const fields = kind == LayoutKind::coupled ? "KS, KF" : "IDH";
    for (const PlannedBlock& block : plan.blocks) {
        line += has_side_codes(kind) ? 5 : 4;
        if (block.column_divisions > WIDEST || block.row_divisions > WIDEST)
            fail_at(line, std::string("an integer in a block (material, ndx, ndy, ") + fields + ")", 5);
        ++line;
    }
}

}  // namespace brelan
