// A mesh as other programs hold it: points, cells, groups and data arrays. Readers and writers of their
// formats work on this form alone.
#pragma once

#include <array>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "analysis/mesh_lists.h"
#include "formats/wanted_codes.h"

namespace brelan::tool {

// Shapes by their VTK number.
enum class Shape2D : std::uint8_t {
    vertex = 1,
    line = 3,
    triangle = 5,
    quad = 9,
    line3 = 21,
    triangle6 = 22,
    quad8 = 23,
    quad9 = 28,
};

// Nodes and corners of a shape; 0 for a number that is none of the above.
int nodes_of(Shape2D shape);
int corners_of(Shape2D shape);

// One value for each point or cell.
struct DataArray {
    std::string name;
    bool whole = true;  // 32-bit integers, else 32-bit reals
    std::vector<double> values;
};

// A physical group of Gmsh. Tag and dimension name it; that of a material is called as MeshLists::group_title
// has it.
struct CellGroup {
    int dimension = 2;
    std::int32_t tag = 0;
    std::string name;
};

struct CellMesh {
    std::string file;  // for messages
    std::string name;
    std::vector<float> points;             // x, y, z of each
    std::vector<Shape2D> shapes;           // of each cell
    std::vector<std::int32_t> offsets;     // behind each cell's nodes
    std::vector<std::int32_t> nodes;       // of all cells, as places of points
    std::vector<std::int64_t> point_tags;  // numbers of points and cells; empty where the format has none
    std::vector<std::int64_t> cell_tags;
    std::vector<std::int32_t> group_of;  // of each cell, a place in groups or -1; empty without groups
    std::vector<CellGroup> groups;
    std::vector<std::pair<std::size_t, std::int32_t>> further_groups;  // a cell, and a group besides that one
    std::vector<DataArray> point_data, cell_data;
    bool flow_lines = false;
    std::size_t straightened =
        0;                // of a mesh's elements with midside nodes on some sides alone: cells without them
    MaterialNames names;  // besides those that the names of groups give

    std::size_t point_count() const { return points.size() / 3; }
    std::size_t cell_count() const { return shapes.size(); }
    std::int32_t first_node(std::size_t cell) const { return cell == 0 ? 0 : offsets[cell - 1]; }
    const DataArray* point_array(std::string_view name_wanted) const;
    const DataArray* cell_array(std::string_view name_wanted) const;
    void require_plane() const;  // throws Failure where points lie off one plane of constant z
    void add_cell(Shape2D shape, const std::int32_t* cell_nodes);
};

// Names of the arrays that every mesh of ours carries besides its codes and attributes.
inline constexpr std::string_view NUMBER = "number", MATERIAL = "material", CLASS = "class";

// The arrays of the midside nodes, whose values are numbers.
inline constexpr std::array<std::pair<std::string_view, NodeNumber ElementWords::*>, 4> MIDSIDES{
    {{"M5", &ElementWords::midside_5},
     {"M6", &ElementWords::midside_6},
     {"M7", &ElementWords::midside_7},
     {"M8", &ElementWords::midside_8}}};

// The name under which another kind holds the same code; empty where none does.
std::string_view same_code(std::string_view name);

// Throws Failure where an element has a corner that is no node, or a number stands twice.
CellMesh cells_of(const MeshLists& mesh);

// The way back. The kind is found from the names of the codes when it is not given. What the arrays do not
// tell takes the values of a base mesh; lines are beams or trusses by their class or the name of their group,
// others are left out and counted in `left_out`, but
// for those whose nodes get codes by the name of their group, or by `codes`. Points of an element's cell that
// no element can name (the centre of a quadrilateral, midside nodes in a kind without them) become no nodes.
// Throws Failure for what a mesh file cannot hold.
struct FromCells {
    MeshLists mesh;
    std::optional<LayoutKind> source_kind;  // that the names of the codes tell
    std::size_t left_out = 0;               // points and lines that are no elements
    std::size_t turned = 0;                 // clockwise elements of other programs that were turned
    std::size_t centres = 0, midsides = 0;  // points that became no nodes
    bool flow_lines_lost = false;           // they became trusses: only the head kind has flow lines
    std::vector<std::string> unused;        // curves and points of which nothing came
    std::vector<std::string> unmatched;     // names and tags of `codes` that no group has
};
FromCells mesh_of(const CellMesh& cells, std::optional<LayoutKind> kind,
                  const std::vector<GroupCodes>& codes = {});

}  // namespace brelan::tool
