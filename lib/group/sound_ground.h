// The ground as the sound cut sees it: solids, who shares a side, which nodes may move, and how good a shape
// is.
#pragma once

#include <array>
#include <span>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

#include "group/engine.h"
#include "group/engine_mesh.h"
#include "mesh/few.h"
#include "mesh/tables.h"
#include "plane/point.h"

namespace brelan {

// A side by its nodes, the lower one first.
using Side = std::pair<NodeNumber, NodeNumber>;

constexpr Side side_between(NodeNumber a, NodeNumber b) {
    return a < b ? Side{a, b} : Side{b, a};
}

struct SideHash {
    std::size_t operator()(const Side& side) const noexcept {
        return side.first.place() * 0x9E3779B1U + side.second.place();
    }
};
using Sides = std::unordered_set<Side, SideHash>;

// What groups of this deck have drawn: the sides stay on their lines, and the nodes where they are. So do the
// sides between materials that the deck found, whatever becomes of the materials.
struct Drawn {
    Sides sides;
    std::unordered_set<NodeNumber> nodes;
    Sides found;  // those of the sides that were there before: as straight as the digits of a file

    // The straight line that a node was placed on: it slides along this, so that it does not drift away with
    // the rounding of its neighbours' places.
    std::unordered_map<NodeNumber, std::pair<Point, Point>> lines;

    // A side is in parts now, along the nodes from its first end to its second.
    void divide(const Side& side, std::span<const NodeNumber> nodes_between);
};

// A continuum element that is no joint.
struct Solid {
    ElementNumber element;
    std::array<NodeNumber, 4> node{};  // counter-clockwise
    std::size_t count = 0;             // 3 or 4

    NodeNumber behind(std::size_t i) const { return node[(i + 1) % count]; }
    NodeNumber before(std::size_t i) const { return node[(i + count - 1) % count]; }
    std::span<const NodeNumber> nodes() const { return {node.data(), count}; }
};

// Where the corners of a solid are.
struct Outline {
    std::array<Point, 4> corner;
    std::size_t count = 0;

    operator std::span<const Point>() const { return {corner.data(), count}; }
};
Outline outline_of(const Mesh& mesh, const Solid& solid);
// The same with a node at another place.
Outline outline_of(const Mesh& mesh, const Solid& solid, NodeNumber node, const Point& place);

// A mesh file of the temperature and head kinds shows the negative IDH of its joints as its absolute value
// less 100, which is 100 or more: gives them back the value that tells them from solids.
void hold_joints_of_file(Mesh& mesh, const Engine& engine);

inline bool is_solid(const Mesh& mesh, ElementNumber e) {
    return mesh.type[e] == ELEMENT_CONTINUUM && !is_joint(mesh, e);
}

inline Solid solid_of(const Mesh& mesh, ElementNumber e) {
    const Corners corners = corners_of(mesh, e);
    Solid solid{e, {corners.n[0], corners.n[1], corners.n[2], {}}, 3};
    if (corners.n[3].names_one()) {
        solid.node[3] = corners.n[3];
        solid.count = 4;
    }
    return solid;
}

// The nodes of a solid in ascending order. Doubles have the same.
using CornerKey = std::array<NodeNumber, 4>;
CornerKey key_of(const Solid& solid);

// The sides between solids of different materials.
Sides sides_between_materials(const Mesh& mesh, const Engine& engine);

// True for ground that a line may cut: workable solids, and those that lie over one.
bool is_cuttable(const Mesh& mesh, const Engine& engine, ElementNumber e);

// All elements that have a side, in ascending number.
struct SideUsers {
    std::vector<ElementNumber> solids, joints, lines;
};
SideUsers users_of(const Mesh& mesh, const Engine& engine, const Side& side);

// The solids that have a node, in ascending number.
using Solids = Few<Solid, 8>;
Solids solids_with(const Mesh& mesh, const Engine& engine, NodeNumber node);

// What a node may do without leaving the border, a change of material, a line or what was drawn.
enum class Freedom { stays, slides, moves };
struct NodeFreedom {
    Freedom freedom = Freedom::stays;
    Point from, to;  // of one that slides: it stays between these
};
NodeFreedom freedom_of(const Mesh& mesh, const Engine& engine, const Drawn& drawn, NodeNumber node);

// How good the solids round a node are with the node at a place: the smallest opening
// (plane/openings.h), below 0 where one would be inverted. A quadrilateral counts as its two triangles
// where these are better.
double worst_shape(const Mesh& mesh, std::span<const Solid> solids, NodeNumber node, const Point& place);

// True for a quadrilateral that is better as two triangles: a corner is flat or nearly so.
bool is_better_split(std::span<const Point> corners);

// "(x, y)", for messages.
std::string text_of(const Point& point);

}  // namespace brelan
