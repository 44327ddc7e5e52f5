#include "support/group_drawing.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <numbers>

namespace brelan::test {

namespace {

std::string text(double value) {
    std::array<char, 40> buffer{};
    std::snprintf(buffer.data(), buffer.size(), "%.6f", value);
    return buffer.data();
}

std::string text(std::initializer_list<int> values) {
    std::string line;
    for (const int v : values)
        line += (line.empty() ? "" : " ") + std::to_string(v);
    return line;
}

Point anywhere(Drawing& drawing, const DrawnMesh& mesh, float beyond) {
    return {drawing.between(-beyond, mesh.width + beyond), drawing.between(-beyond, mesh.height + beyond)};
}

const Point& any_node(Drawing& drawing, const DrawnMesh& mesh) {
    return mesh.nodes[static_cast<std::size_t>(drawing.below(static_cast<int>(mesh.nodes.size())))];
}

int divisions(Drawing& drawing) {
    static constexpr std::array<int, 10> counts{0, 0, 0, 1, 1, -1, 2, -2, 5, -5};
    return drawing.one_of(counts);
}

DrawnSegment straight(Drawing& drawing) {
    DrawnSegment segment;
    segment.NDIV = divisions(drawing);
    if (drawing.one_in(8)) {
        static constexpr std::array<int, 6> ends{1, -1, 0, -2, 3, 7};
        segment.IEND = drawing.one_of(ends);
    }
    return segment;
}

void give_beams(Drawing& drawing, DrawnGroup& group) {
    group.LTi = drawing.one_in(3) ? 3 : 2;
    group.LMi = 4;
    group.MOVE = drawing.below(2);
}

}  // namespace

bool DrawnMesh::is_on_outline(const Point& p) const {
    const float room = 1.0E-5F * std::max(width, height);
    const auto near = [&](float a, float b) { return std::abs(a - b) <= room; };
    return near(p.x, 0.0F) || near(p.x, width) || near(p.y, 0.0F) || near(p.y, height);
}

DrawnMesh draw_mesh(Drawing& drawing, int cells) {
    DrawnMesh mesh;
    mesh.columns = 2 + drawing.below(cells);
    mesh.rows = 2 + drawing.below(cells);
    mesh.width = static_cast<float>(mesh.columns);
    mesh.height = static_cast<float>(mesh.rows);
    const float grade = drawing.one_in(2) ? 0.0F : drawing.between(-0.5F, 0.5F);
    const float shift = drawing.one_in(3) ? 0.0F : drawing.between(0.0F, 0.18F);
    const bool mirrored = drawing.one_in(4);
    const int pattern = drawing.below(4);  // of coded nodes: none, the border, a third, every second
    const int triangles = drawing.below(4);
    for (int row = 0; row <= mesh.rows; ++row)
        for (int column = 0; column <= mesh.columns; ++column) {
            const float share = static_cast<float>(column) / static_cast<float>(mesh.columns);
            const bool inner = row > 0 && row < mesh.rows && column > 0 && column < mesh.columns;
            Point p{(share + grade * share * (share - 1.0F)) * mesh.width, static_cast<float>(row)};
            if (inner && shift > 0.0F) {
                const float room = (1.0F - std::abs(grade)) * shift;
                p = {p.x + drawing.between(-room, room), p.y + drawing.between(-shift, shift)};
            }
            if (mirrored)
                p.x = mesh.width - p.x;
            mesh.nodes.push_back(p);
            const std::array<bool, 4> coded{false, !inner, drawing.one_in(3), (row + column) % 2 == 0};
            mesh.coded.push_back(coded[static_cast<std::size_t>(pattern)]);
        }
    const auto add = [&](std::array<std::int32_t, 4> n) {
        if (mirrored)
            std::swap(n[1], n[n[3] == 0 ? 2 : 3]);
        mesh.elements.push_back(n);
    };
    for (int row = 0; row < mesh.rows; ++row)
        for (int column = 0; column < mesh.columns; ++column) {
            const std::int32_t a = mesh.node_at(column, row), b = a + 1;
            const std::int32_t d = mesh.node_at(column, row + 1), c = d + 1;
            if (drawing.below(4) >= triangles) {
                add({a, b, c, d});
            } else if (drawing.one_in(2)) {
                add({a, b, c, 0});
                add({a, c, d, 0});
            } else {
                add({a, b, d, 0});
                add({b, c, d, 0});
            }
        }
    return mesh;
}

DrawnGroup draw_line(Drawing& drawing, const DrawnMesh& mesh, Course course) {
    DrawnGroup group;
    give_beams(drawing, group);
    const int count = 2 + (drawing.one_in(3) ? drawing.below(3) : 0);
    if (course == Course::along_sides) {
        const bool upright = drawing.one_in(2);
        const int at = drawing.below((upright ? mesh.columns : mesh.rows) + 1);
        const int last = upright ? mesh.rows : mesh.columns;
        for (int i = 0; i <= last; i += drawing.one_in(2) ? last : 1)
            group.points.push_back(mesh.place(upright ? mesh.node_at(at, i) : mesh.node_at(i, at)));
    } else {
        const bool across = drawing.one_in(2);
        for (int i = 0; i < count; ++i)
            group.points.push_back(course == Course::through_corners ? any_node(drawing, mesh)
                                                                     : anywhere(drawing, mesh, 0.0F));
        if (across && course == Course::any_slope) {
            group.points.front().x = -0.5F;
            group.points.back().x = mesh.width + 0.5F;
        }
    }
    if (drawing.one_in(2))
        std::reverse(group.points.begin(), group.points.end());
    while (group.segments.size() + 1 < group.points.size())
        group.segments.push_back(straight(drawing));
    return group;
}

DrawnGroup draw_outline(Drawing& drawing, const DrawnMesh& mesh) {
    DrawnGroup group;
    group.MTYPE = 3;
    group.MAT = 7;
    if (drawing.one_in(2))
        give_beams(drawing, group);
    const Point centre = anywhere(drawing, mesh, -0.3F);
    const float reach = drawing.between(0.3F, 0.7F) * std::min(mesh.width, mesh.height);
    const int count = 3 + drawing.below(4);
    const bool by_nodes = drawing.one_in(4);
    for (int k = 0; k < count; ++k) {
        const double angle = static_cast<double>(static_cast<float>(k) + drawing.between(-0.3F, 0.3F)) /
                             count * 2.0 * std::numbers::pi;
        const float radius = reach * drawing.between(0.5F, 1.2F);
        group.points.push_back(by_nodes ? any_node(drawing, mesh)
                                        : Point{centre.x + radius * static_cast<float>(std::cos(angle)),
                                                centre.y + radius * static_cast<float>(std::sin(angle))});
        group.segments.push_back(straight(drawing));
    }
    if (drawing.one_in(2))
        std::reverse(group.points.begin(), group.points.end());
    return group;
}

DrawnGroup draw_arc(Drawing& drawing, const DrawnMesh& mesh) {
    DrawnGroup group;
    group.MTYPE = 3;
    group.MAT = 7;
    if (drawing.one_in(2))
        give_beams(drawing, group);
    DrawnSegment arc;
    arc.LTYPE = 2;
    const Point centre = anywhere(drawing, mesh, -0.5F);
    arc.Xo = centre.x;
    arc.Yo = centre.y;
    arc.Rx = drawing.between(0.4F, 2.0F);
    arc.Ry = drawing.one_in(3) ? drawing.between(0.4F, 2.0F) : arc.Rx;
    static constexpr std::array<int, 7> parts{6, -6, 12, -12, 24, -24, 0};
    arc.NDIV = drawing.one_of(parts);
    const bool full = drawing.one_in(2);
    arc.Qb = drawing.one_in(2) ? 0.0F : static_cast<float>(drawing.below(18)) * 10.0F;
    arc.Qe = arc.Qb + (full ? 360.0F : 180.0F);
    group.points.push_back({arc.Xo + arc.Rx, arc.Yo});
    group.segments.push_back(arc);
    if (!full) {
        group.points.push_back({arc.Xo - arc.Rx, arc.Yo});
        group.segments.push_back(straight(drawing));
    }
    return group;
}

void make_joint(DrawnGroup& group, float THICj) {
    group.MTYPE = -group.MTYPE;
    group.MATj = 9;
    group.THICj = THICj;
}

std::vector<std::string> cards_of(const DrawnGroup& g) {
    std::vector<std::string> cards{text({g.MTYPE, 0, g.OVERLAY})};
    const std::string lines = text({g.LTi, g.LMi});
    const std::string joint =
        text({g.MATj, g.KFj}) + " " + text(g.THICj) + " " + lines + " " + text({g.LTo, g.LMo});
    const std::string main = text({g.MAT, g.KF}) + " ";
    switch (g.MTYPE) {
        case 1:
        case 2:
            cards.push_back(lines);
            break;
        case 3:
            cards.push_back(main + lines);
            break;
        case 4:
            cards.push_back(main + lines + " " + std::to_string(g.MATold));
            break;
        case -2:
            cards.push_back(joint);
            break;
        case -3:
            cards.push_back(main + joint);
            break;
        case -4:
            cards.push_back(main + joint + " " + std::to_string(g.MATold));
            break;
        default:
            break;
    }
    cards.push_back(text({static_cast<int>(g.points.size()), g.MOVE, 0}) + " 0 0");
    int number = 0;
    for (const Point& p : g.points)
        cards.push_back(std::to_string(++number) + " " + text(p.x) + " " + text(p.y));
    cards.push_back(std::to_string(g.segments.size()));
    number = 0;
    for (const DrawnSegment& s : g.segments) {
        cards.push_back(text({++number, s.LTYPE, s.NDIV, s.IEND}));
        if (s.LTYPE == 2)
            cards.push_back(text(s.Xo) + " " + text(s.Yo) + " " + text(s.Rx) + " " + text(s.Ry) + " " +
                            text(s.Qb) + " " + text(s.Qe));
    }
    return cards;
}

}  // namespace brelan::test
