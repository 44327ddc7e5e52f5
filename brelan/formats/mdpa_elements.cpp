#include "formats/mdpa_elements.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <map>
#include <utility>

#include "analysis/geometry.h"
#include "analysis/joined_nodes.h"

namespace brelan::tool {

namespace {

// Solids by count of nodes; the kinds without midside nodes have no others.
struct SolidTypes {
    std::string_view triangle, quad, triangle6, quad8;
};

// Displacement goes without water: its project file holds the water pressure at 0.
constexpr SolidTypes MECHANICAL{"UPwSmallStrainElement2D3N", "UPwSmallStrainElement2D4N",
                                "SmallStrainUPwDiffOrderElement2D6N", "SmallStrainUPwDiffOrderElement2D8N"};
constexpr SolidTypes THERMAL{"GeoTransientThermalElement2D3N", "GeoTransientThermalElement2D4N", "", ""};
constexpr SolidTypes FLOW{"SteadyStatePwElement2D3N", "SteadyStatePwElement2D4N", "", ""};

constexpr std::string_view JOINT = "Geo_ULineInterfacePlaneStrainElement2Plus2N";
constexpr std::string_view BEAM = "GeoCrBeamElement2D2N", TRUSS = "GeoLinearTrussElement2D2N";
constexpr std::string_view CABLE = "GeoCableElement2D2N";

const SolidTypes& solid_types(LayoutKind kind) {
    return kind == LayoutKind::temperature ? THERMAL : kind == LayoutKind::head ? FLOW : MECHANICAL;
}

std::string_view solid_type(LayoutKind kind, Shape2D shape) {
    const SolidTypes& types = solid_types(kind);
    return shape == Shape2D::triangle    ? types.triangle
           : shape == Shape2D::triangle6 ? types.triangle6
           : shape == Shape2D::quad8     ? types.quad8
                                         : types.quad;
}

using Side = std::pair<std::int32_t, std::int32_t>;  // places of two nodes, the lower first

Side side_of(std::int32_t a, std::int32_t b) {
    return {std::min(a, b), std::max(a, b)};
}

// Places of a joint's nodes: from a to b along its first side, from d to c along its second.
struct JointSides {
    std::int32_t a, b, c, d;

    bool closed() const { return a == b || b == c || c == d || d == a; }
};

bool names_one_twice(const TypedElement& typed) {
    std::vector<Number> nodes = typed.nodes;
    std::sort(nodes.begin(), nodes.end());
    return std::adjacent_find(nodes.begin(), nodes.end()) != nodes.end();
}

class Typing {
public:
    Typing(const MeshLists& mesh, const CellMesh& cells, const std::vector<std::int32_t>& cables)
        : mesh_(mesh), cells_(cells), cables_(cables), corners_(corners_of(mesh)) {}

    TypedElements all() {
        find_solids_at_joints();
        for (std::size_t i = 0; i < mesh_.elements.size(); ++i) {
            const ElementClass of = mesh_.elements[i].of;
            typed_.elements.push_back(of == ElementClass::solid   ? solid(i)
                                      : of == ElementClass::joint ? joint(i)
                                                                  : line(i));
            if (TypedElement& typed = typed_.elements.back(); !typed.type.empty() && names_one_twice(typed)) {
                typed.type = {};
                ++typed_.folded;
            }
        }
        return std::move(typed_);
    }

private:
    Number number(std::int32_t place) const {
        return mesh_.nodes[static_cast<std::size_t>(place)].number.value;
    }

    TypedElement solid(std::size_t i) {
        const Shape2D shape = cells_.shapes[i];
        const auto from = cells_.nodes.begin() + cells_.first_node(i);
        std::vector<std::int32_t> places(from, from + nodes_of(shape));
        const double area = signed_area(mesh_, corners_[i]);
        if (area == 0.0)
            ++typed_.flat;
        if (area < 0.0) {  // the first corner stays; the side behind it becomes the last one
            const auto corners = places.begin() + corners_of(shape);
            std::reverse(places.begin() + 1, corners);
            std::reverse(corners, places.end());
            ++typed_.turned;
        }
        const bool second = shape == Shape2D::triangle6 || shape == Shape2D::quad8;
        typed_.second_order = typed_.second_order || second;
        const ElementWords& words = mesh_.elements[i].words;
        if (!second && std::any_of(MIDSIDES.begin(), MIDSIDES.end(),
                                   [&](const auto& midside) { return (words.*midside.second).names_one(); }))
            ++typed_.partly_second;
        TypedElement typed{solid_type(mesh_.kind, shape), {}};
        for (const std::int32_t place : places)
            typed.nodes.push_back(number(place));
        return typed;
    }

    TypedElement line(std::size_t i) const {
        const Element& e = mesh_.elements[i];
        const bool cable = e.of == ElementClass::truss &&
                           std::find(cables_.begin(), cables_.end(), e.words.material.value) != cables_.end();
        const std::string_view type = line_type(mesh_.kind, e.of);
        return {cable && !type.empty() ? CABLE : type, {e.corner(0), e.corner(1)}};
    }

    TypedElement joint(std::size_t i) {
        const CornerPlaces& corners = corners_[i];
        TypedElement typed{line_type(mesh_.kind, ElementClass::joint), {}};
        JointSides j{corners[0], corners[1], corners[2], corners[3]};
        if (corners.count == 4)
            j = sides_of(corners);
        if (corners.count < 4 || j.closed()) {
            typed_.closed_joints += typed.type.empty() ? 0 : 1;
            typed.type = {};
            for (int k = 0; k < corners.count; ++k)
                typed.nodes.push_back(number(corners[k]));
            return typed;
        }
        if (is_reversed(j))
            j = {j.b, j.a, j.d, j.c};
        typed.nodes = {number(j.a), number(j.b), number(j.d), number(j.c)};
        return typed;
    }

    JointSides sides_of(const CornerPlaces& corners) const {
        const JointPairs pairs = joint_pairs(mesh_, corners);
        const bool along_the_pair = pairs.pair[0][1] == 1;  // 0 and 1 face each other, not 0 and 3
        return along_the_pair ? JointSides{corners[0], corners[3], corners[2], corners[1]}
                              : JointSides{corners[0], corners[1], corners[2], corners[3]};
    }

    // True when the second side lies on the right of the first. Where the joint has no width the solids at
    // its sides tell.
    bool is_reversed(const JointSides& j) const {
        const Position a = mesh_.point(j.a), b = mesh_.point(j.b), c = mesh_.point(j.c), d = mesh_.point(j.d);
        const double twice_the_area = cross(a, b, c) + cross(a, c, d);
        if (std::abs(twice_the_area) > 2.0 * resolution_ * distance(a, b))
            return twice_the_area < 0.0;
        return solids_on_the_left(j.d, j.c) < solids_on_the_left(j.a, j.b);
    }

    // Of the direction from one node to the next; those on the right count against them.
    int solids_on_the_left(std::int32_t from, std::int32_t to) const {
        const auto found = at_side_.find(side_of(from, to));
        if (found == at_side_.end())
            return 0;
        int count = 0;
        for (const std::size_t i : found->second)
            count += cross(mesh_.point(from), mesh_.point(to), middle(mesh_, corners_[i])) > 0.0 ? 1 : -1;
        return count;
    }

    void find_solids_at_joints() {
        for (std::size_t i = 0; i < corners_.size(); ++i)
            if (mesh_.elements[i].of == ElementClass::joint && corners_[i].count == 4) {
                const JointSides j = sides_of(corners_[i]);
                at_side_[side_of(j.a, j.b)];
                at_side_[side_of(j.c, j.d)];
            }
        if (at_side_.empty())
            return;
        for (std::size_t i = 0; i < corners_.size(); ++i)
            if (const CornerPlaces& c = corners_[i]; mesh_.elements[i].of == ElementClass::solid)
                for (int k = 0; k < c.count; ++k)
                    if (const auto found = at_side_.find(side_of(c[k], c[(k + 1) % c.count]));
                        found != at_side_.end())
                        found->second.push_back(i);
    }

    const MeshLists& mesh_;
    const CellMesh& cells_;
    const std::vector<std::int32_t>& cables_;
    const std::vector<CornerPlaces> corners_;
    const double resolution_ = resolution(mesh_.bounds());
    std::map<Side, std::vector<std::size_t>> at_side_;  // solids at the sides of joints
    TypedElements typed_;
};

}  // namespace

std::string_view line_type(LayoutKind kind, ElementClass of) {
    if (has_midside_nodes(kind))  // the kinds of stresses
        return of == ElementClass::joint ? JOINT : of == ElementClass::beam ? BEAM : TRUSS;
    return {};
}

TypedElements typed_elements(const MeshLists& mesh, const CellMesh& cells,
                             const std::vector<std::int32_t>& cables) {
    return Typing(mesh, cells, cables).all();
}

}  // namespace brelan::tool
