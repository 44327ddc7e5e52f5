#include "group/membership.h"

#include <algorithm>
#include <cstdlib>

#include "channel/layout.h"
#include "group/engine_mesh.h"
#include "group/indexes.h"
#include "group/polygon_scan.h"

namespace brelan {

namespace {

// As a free-field line of integers.
constexpr Layout<"(5(1X,I11))"> MEMBER_RECORD;

// Where a row lies, with room for TOLLINE and rounding: an element outside belongs to no piece of the row.
struct RowBox {
    float x0 = 0.0F, y0 = 0.0F, x1 = 0.0F, y1 = 0.0F;
    bool always = true;

    bool may_hold(const Point& G) const {
        return always || (G.x >= x0 && G.x <= x1 && G.y >= y0 && G.y <= y1);
    }
};

// The rows that take part in each of the three scans.
struct ScannedRow {
    RowBox box;
    std::int32_t row;
};
struct ScannedOutline : ScannedRow {
    PolygonScan polygon;
};
std::vector<ScannedOutline> outlines;
std::vector<ScannedRow> lines, strips;

RowBox box_of(const ListingRow& row) {
    RowBox box;
    const bool tested = row.points.size() > 0 && row.points.size() <= static_cast<std::size_t>(MAXPOLYGON);
    if (!tested || !indexes_are_on)
        return box;
    box = {row.points[0].x, row.points[0].y, row.points[0].x, row.points[0].y, false};
    for (const Point& p : row.points) {
        box.x0 = std::min(box.x0, p.x);
        box.y0 = std::min(box.y0, p.y);
        box.x1 = std::max(box.x1, p.x);
        box.y1 = std::max(box.y1, p.y);
    }
    const float size = std::abs(box.x0) + std::abs(box.x1) + std::abs(box.y0) + std::abs(box.y1);
    const float room = std::abs(TOLLINE) * 1.01F + size * 1.0E-5F;
    return {box.x0 - room, box.y0 - room, box.x1 + room, box.y1 + room, false};
}

// Mean of the first words with a positive number.
Point mean_of(const ElementWords& w, int count) {
    const std::int32_t nodes[4] = {w.I1, w.I2, w.I3, w.I4};
    Point sum;
    float found = 0.0F;
    for (int i = 0; i < count; ++i) {
        if (nodes[i] <= 0)
            continue;
        sum = {sum.x + XC[nodes[i]], sum.y + YC[nodes[i]]};
        found = found + 1.0F;
    }
    return {sum.x / found, sum.y / found};
}

Point middle(const Point& a, const Point& b) {
    return {(a.x + b.x) / 2.0F, (a.y + b.y) / 2.0F};
}

bool on_line(const ListingRow& row, const Point& G) {
    const std::size_t p = row.points.size();
    const std::size_t edges = row.closed == 1 ? p : p - 1;
    for (std::size_t i = 0; i < edges; ++i)
        if (distance(middle(row.points[i], row.points[(i + 1) % p]), G) <= TOLLINE)
            return true;
    return false;
}

bool in_strip(const ListingRow& row, const Point& G) {
    const std::size_t p = row.points.size() / 2;
    const std::size_t cells = row.closed == 1 ? p : p - 1;
    for (std::size_t k = 0; k < cells; ++k) {
        const std::size_t next = (k + 1) % p;
        const Point& a = row.points[2 * k];
        const Point& b = row.points[2 * k + 1];
        const Point& c = row.points[2 * next];
        const Point& d = row.points[2 * next + 1];
        const Point G4{(a.x + b.x + c.x + d.x) / 4.0F, (a.y + b.y + c.y + d.y) / 4.0F};
        if (distance(G4, G) <= TOLLINE)
            return true;
    }
    return false;
}

// Calls the action with the number of each row that an element belongs to.
template <class Action>
void for_rows_of(const ElementWords& words, std::int8_t type, Action action) {
    const Point centre = mean_of(words, type == EL_CONTINUUM ? 4 : 2);
    const auto scan = [&](const auto& rows, auto holds) {
        for (const auto& scanned : rows)
            if (scanned.box.may_hold(centre) && holds(scanned))
                action(scanned.row);
    };
    scan(outlines, [&](const ScannedOutline& outline) { return outline.polygon.inside(centre); });
    if (type == EL_CONTINUUM)
        scan(strips, [&](const ScannedRow& strip) { return in_strip(LISTING[strip.row], centre); });
    else
        scan(lines, [&](const ScannedRow& line) { return on_line(LISTING[line.row], centre); });
}

void count_material(std::int8_t type, std::int32_t material) {
    std::int32_t& highest = type == EL_CONTINUUM ? NMATC : type == EL_BEAM ? NMATB : NMATT;
    highest = std::max(highest, material);
    if (type != EL_TRUSS || material <= 0)
        return;
    if (NTRUSM.size() <= static_cast<std::size_t>(material))
        NTRUSM.resize(static_cast<std::size_t>(material) + 1, 0);
    ++NTRUSM[static_cast<std::size_t>(material)];
}

}  // namespace

void begin_membership() {
    NMEMBER = NMATC = NMATB = NMATT = 0;
    NTRUSM.clear();
    outlines.clear();
    lines.clear();
    strips.clear();
    for (std::int32_t i = 1; i <= NGRP; ++i) {
        const ListingRow& row = LISTING[i];
        if (row.MTYPE == 0 || row.MTYPE == -1 || row.points.empty())
            continue;
        const ScannedRow scanned{box_of(row), i};
        const bool open_line = std::abs(row.MTYPE) == 2 && row.closed == 0;
        if (row.sub_kind == ROW_OUTLINE && !open_line)
            outlines.push_back({scanned, PolygonScan(row.points)});
        else if (row.sub_kind == ROW_LINE)
            lines.push_back(scanned);
        else if (row.sub_kind == ROW_JOINT && row.MTYPE < 0 && row.points.size() >= 2)
            strips.push_back(scanned);
    }
}

std::vector<std::int32_t> listing_rows_of(const ElementWords& words, std::int8_t type) {
    std::vector<std::int32_t> rows;
    for_rows_of(words, type, [&](std::int32_t row) { rows.push_back(row); });
    return rows;
}

void GROUPMEMBER(Channel& file, std::int32_t element, const ElementWords& words, std::int8_t type) {
    count_material(type, words.MATNO);
    for_rows_of(words, type, [&](std::int32_t i) {
        ListingRow& row = LISTING[i];
        ++row.members;
        ++NMEMBER;
        MEMBER_RECORD.write(file, row.group, words.MATNO, element, static_cast<std::int32_t>(type),
                            row.sub_kind);
    });
}

}  // namespace brelan
