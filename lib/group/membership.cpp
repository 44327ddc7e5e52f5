#include "group/membership.h"

#include <algorithm>
#include <cstdlib>

#include "group/engine_mesh.h"
#include "plane/polygon_scan.h"
#include "text/layout.h"

namespace brelan {

namespace {

// As a free-field line of integers.
constexpr Layout<"(5(1X,I11))"> MEMBER_RECORD;

std::optional<Box> row_box(const Tolerances& tolerances, const Engine& engine, const ListingRow& row) {
    if (row.points.size() > static_cast<std::size_t>(MOST_POLYGON_POINTS) || !engine.uses_indexes)
        return std::nullopt;
    Box box = box_of(row.points[0], row.points[0]);
    for (const Point& p : row.points)
        box.include(p);
    const float size = std::abs(box.x0) + std::abs(box.x1) + std::abs(box.y0) + std::abs(box.y1);
    const float room = std::abs(tolerances.line) * 1.01F + size * 1.0E-5F;
    return Box{box.x0 - room, box.y0 - room, box.x1 + room, box.y1 + room};
}

Point middle(const Point& a, const Point& b) {
    return {(a.x + b.x) / 2.0F, (a.y + b.y) / 2.0F};
}

bool on_line(const Tolerances& tolerances, const ListingRow& row, const Point& centre) {
    const std::size_t p = row.points.size();
    const std::size_t edges = row.closed == 1 ? p : p - 1;
    for (std::size_t i = 0; i < edges; ++i)
        if (distance(middle(row.points[i], row.points[(i + 1) % p]), centre) <= tolerances.line)
            return true;
    return false;
}

bool in_strip(const Tolerances& tolerances, const ListingRow& row, const Point& centre) {
    const std::size_t p = row.points.size() / 2;
    const std::size_t cells = row.closed == 1 ? p : p - 1;
    for (std::size_t k = 0; k < cells; ++k) {
        const std::size_t next = (k + 1) % p;
        const Point& a = row.points[2 * k];
        const Point& b = row.points[2 * k + 1];
        const Point& c = row.points[2 * next];
        const Point& d = row.points[2 * next + 1];
        const Point strip_centre{(a.x + b.x + c.x + d.x) / 4.0F, (a.y + b.y + c.y + d.y) / 4.0F};
        if (distance(strip_centre, centre) <= tolerances.line)
            return true;
    }
    return false;
}

}  // namespace

Membership begin_membership(const Tolerances& tolerances, const Engine& engine, const GroupListing& listing) {
    Membership membership;
    for (const ListingRow& row : listing.rows) {
        if (row.group_type == 0 || row.group_type == -1 || row.points.empty())
            continue;
        const ScannedRow scanned{row_box(tolerances, engine, row), &row};
        const bool open_line = std::abs(row.group_type) == 2 && row.closed == 0;
        if (row.sub_kind == ROW_OUTLINE && !open_line)
            membership.outlines.push_back({scanned, PolygonScan(engine.uses_indexes, row.points)});
        else if (row.sub_kind == ROW_LINE)
            membership.lines.push_back(scanned);
        else if (row.sub_kind == ROW_JOINT && row.group_type < 0 && row.points.size() >= 2)
            membership.strips.push_back(scanned);
    }
    return membership;
}

std::vector<MemberRecord> members_of(const Membership& membership, const Mesh& mesh,
                                     const Tolerances& tolerances, ElementNumber element, std::int8_t type) {
    const Point centre = centroid(mesh, element, type == ELEMENT_CONTINUUM ? 4 : 2);
    std::vector<MemberRecord> records;
    const auto scan = [&](const auto& rows, auto holds) {
        for (const auto& scanned : rows)
            if ((!scanned.box || scanned.box->holds(centre)) && holds(scanned))
                records.push_back(
                    {scanned.row->group, mesh.words[element].material, element, type, scanned.row->sub_kind});
    };
    scan(membership.outlines, [&](const ScannedOutline& outline) { return outline.polygon.inside(centre); });
    if (type == ELEMENT_CONTINUUM)
        scan(membership.strips,
             [&](const ScannedRow& strip) { return in_strip(tolerances, *strip.row, centre); });
    else
        scan(membership.lines,
             [&](const ScannedRow& line) { return on_line(tolerances, *line.row, centre); });
    return records;
}

void write_member(Channel& file, const MemberRecord& record) {
    MEMBER_RECORD.write(file, record.group, record.material.value, record.element.value, record.type,
                        record.sub_kind);
}

}  // namespace brelan
