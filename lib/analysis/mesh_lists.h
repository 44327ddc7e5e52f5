// A mesh as lists of its records, found by number: what a mesh file holds, as large as the mesh. A run edits
// a mesh in tables that have room for every number (mesh/tables.h); what is measured, compared, drawn or
// converted afterwards is read into these lists.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "analysis/element_class.h"
#include "analysis/material_names.h"
#include "mesh/edition.h"
#include "mesh/mesh_records.h"

namespace brelan {

using Number = std::int32_t;

struct Element : ElementRecord {
    ElementClass of = ElementClass::solid;

    bool is_line() const { return of == ElementClass::beam || of == ElementClass::truss; }

    // 2 for beams and trusses, 3 for triangles, 4 for quadrilaterals.
    int corner_count() const { return is_line() ? 2 : words.corner_4.names_one() ? 4 : 3; }

    // Corner k from 0, in order round the element.
    Number corner(int k) const {
        return (k == 0   ? words.corner_1
                : k == 1 ? words.corner_2
                : k == 2 ? words.corner_3
                         : words.corner_4)
            .value;
    }

    // Type of its section in a mesh file.
    std::int8_t section() const {
        return of == ElementClass::beam    ? ELEMENT_BEAM
               : of == ElementClass::truss ? ELEMENT_TRUSS
                                           : ELEMENT_CONTINUUM;
    }
};

using Node = NodeRecord;

// A point in 64 bits.
struct Position {
    double x = 0.0, y = 0.0;
};

struct Bounds {
    Position low{0.0, 0.0}, high{0.0, 0.0};

    double width() const { return high.x - low.x; }
    double height() const { return high.y - low.y; }
    double extent() const { return width() > height() ? width() : height(); }
};

class MeshLists {
public:
    std::string file;  // as the user named it, for messages
    std::string name;  // first line of a mesh file
    LayoutKind kind = LayoutKind::displacement;
    std::vector<Node> nodes;        // in ascending number
    std::vector<Element> elements;  // solids and joints, then beams, then trusses; each in ascending number
    MaterialNames names;            // of its materials, from comment lines of a file
    bool flow_lines = false;        // head kind: the trusses are flow lines, which the head of a file hides
    bool byte_order_mark = false;   // in front of the file, passed over
    Number deleted = 0;             // element records of the file that were marked as deleted

    // Sorts, marks joints and makes the index; called when the lists are filled.
    void finish();

    static constexpr std::int32_t NONE = -1;

    // Place of a node in the list; NONE where there is none of the number.
    std::int32_t node_place(Number number) const {
        return number >= 1 && static_cast<std::size_t>(number) < node_place_.size()
                   ? node_place_[static_cast<std::size_t>(number)]
                   : NONE;
    }
    std::int32_t element_place(Number number) const {
        return number >= 1 && static_cast<std::size_t>(number) < element_place_.size()
                   ? element_place_[static_cast<std::size_t>(number)]
                   : NONE;
    }

    Position point(std::int32_t place) const {
        const Node& node = nodes[static_cast<std::size_t>(place)];
        return {node.x, node.y};
    }

    // Elements of a class and material as a person knows them: "material 5: Sand", "flow line 2".
    std::string group_title(ElementClass of, std::int32_t material) const;

    // Of all nodes; zero when there is none.
    Bounds bounds() const;

    std::size_t count(ElementClass of) const;

private:
    std::vector<std::int32_t> node_place_, element_place_;  // by number
};

// "coupled", "temperature", "head", "displacement".
std::string_view name_of(LayoutKind kind);
std::optional<LayoutKind> kind_named(std::string_view name);
inline constexpr std::array<LayoutKind, 4> ALL_KINDS{LayoutKind::coupled, LayoutKind::temperature,
                                                     LayoutKind::head, LayoutKind::displacement};

// Names of the node codes in use, as in the headings of a mesh file.
std::vector<std::string_view> code_names(LayoutKind kind);

// "T" or "H" for the kinds whose nodes carry a value and CF; empty for the others.
std::string_view value_name(LayoutKind kind);

// A whole or real attribute of continuum elements.
struct AttributeField {
    std::string_view name;
    std::int32_t ElementRecord::*whole;  // one of the two
    float ElementRecord::*real;
};
std::vector<AttributeField> attribute_fields(LayoutKind kind);

// Not a number is the same as itself here.
bool same_real(double a, double b);

// True when two elements of a kind have the same attributes.
bool same_attributes(LayoutKind kind, const ElementRecord& a, const ElementRecord& b);

bool has_midside_nodes(LayoutKind kind);

// As a file tells it.
bool is_joint_in_file(LayoutKind kind, const ElementRecord& element);

}  // namespace brelan
