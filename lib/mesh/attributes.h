// The attributes of continuum elements, by kind.
#pragma once

#include <string_view>

#include "mesh/edition.h"
#include "mesh/mesh_records.h"
#include "mesh/tables.h"

namespace brelan {

// What an attribute says about its element being a joint.
enum class JointMark { none, positive, negative };

// One attribute: its name, its member of a record and its table of a mesh. Cards give some; the others stand
// in mesh files alone.
template <class Number, class Column>
struct Attribute {
    std::string_view name;
    Number ElementAttributes::*member;
    Column Mesh::*column;
    bool on_cards = false;
    JointMark joint = JointMark::none;

    bool marks_joint(Number value) const {
        return (joint == JointMark::positive && value > 0) || (joint == JointMark::negative && value < 0);
    }
};
template <class Number, class Column, class... Further>
Attribute(const char*, Number ElementAttributes::*, Column Mesh::*, Further...) -> Attribute<Number, Column>;

// Calls `action` with each attribute of the kind, in the order of its records.
template <class Action>
void for_each_attribute(LayoutKind kind, const Action& action) {
    using A = ElementAttributes;
    switch (kind) {
        case LayoutKind::coupled:
            action(Attribute{"KS", &A::skeleton, &Mesh::skeleton, true, JointMark::positive});
            action(Attribute{"KF", &A::fluid, &Mesh::fluid, true});
            action(Attribute{"INTR", &A::integration_r, &Mesh::integration_r});
            action(Attribute{"INTS", &A::integration_s, &Mesh::integration_s});
            action(Attribute{"TBJWL", &A::real_attribute, &Mesh::real_attribute});
            break;
        case LayoutKind::temperature:
        case LayoutKind::head:
            action(Attribute{"IDH", &A::attribute, &Mesh::attribute, true, JointMark::negative});
            break;
        case LayoutKind::displacement:
            action(Attribute{"THIC", &A::thickness, &Mesh::thickness, true});
            action(Attribute{"DEN", &A::density, &Mesh::density, true, JointMark::negative});
            break;
    }
}

// From here on IDH in a file stands for a negative one, the mark of a joint.
inline constexpr std::int32_t FIRST_JOINT_CODE = 100;

// True for the attributes of a joint element, and of a mesh's element at a number.
inline bool is_joint(LayoutKind kind, const ElementAttributes& attributes) {
    bool joint = false;
    for_each_attribute(kind, [&](const auto& a) { joint = joint || a.marks_joint(attributes.*a.member); });
    return joint;
}
inline bool is_joint(const Mesh& mesh, ElementNumber number) {
    bool joint = false;
    for_each_attribute(mesh.kind,
                       [&](const auto& a) { joint = joint || a.marks_joint((mesh.*a.column)[number]); });
    return joint;
}

// The attributes of a mesh's element at a number; those of other kinds are left out.
inline void store_attributes(Mesh& mesh, ElementNumber number, const ElementAttributes& attributes) {
    for_each_attribute(mesh.kind, [&](const auto& a) { (mesh.*a.column)[number] = attributes.*a.member; });
}
inline ElementAttributes load_attributes(const Mesh& mesh, ElementNumber number) {
    ElementAttributes attributes;
    for_each_attribute(mesh.kind, [&](const auto& a) { attributes.*a.member = (mesh.*a.column)[number]; });
    return attributes;
}

}  // namespace brelan
