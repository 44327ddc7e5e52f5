#include "analysis/mesh_lists.h"

#include <algorithm>
#include <cmath>

#include "mesh/attributes.h"
#include "mesh/kinds.h"

namespace brelan {

namespace {

constexpr std::array<std::string_view, 4> KIND_NAMES{"coupled", "temperature", "head", "displacement"};

template <class Record, class Numbered>
std::vector<std::int32_t> places_by_number(const std::vector<Record>& records, Numbered Record::*number) {
    Numbered last;
    for (const Record& record : records)
        last = std::max(last, record.*number);
    std::vector<std::int32_t> place(last.place() + 1, MeshLists::NONE);
    for (std::size_t i = 0; i < records.size(); ++i)
        if ((records[i].*number).names_one())
            place[(records[i].*number).place()] = static_cast<std::int32_t>(i);
    return place;
}

}  // namespace

void MeshLists::finish() {
    for (Element& e : elements)
        if (!e.is_line())
            e.of = is_joint_in_file(kind, e) ? ElementClass::joint : ElementClass::solid;
    std::stable_sort(nodes.begin(), nodes.end(),
                     [](const Node& a, const Node& b) { return a.number < b.number; });
    std::stable_sort(elements.begin(), elements.end(), [](const Element& a, const Element& b) {
        return a.section() != b.section() ? a.section() < b.section() : a.number < b.number;
    });
    node_place_ = places_by_number(nodes, &Node::number);
    Number last = 0;
    for (const Element& e : elements)
        last = std::max(last, e.number.value);
    element_place_.assign(static_cast<std::size_t>(last) + 1, NONE);
    for (std::size_t i = 0; i < elements.size(); ++i)
        if (elements[i].number.names_one())
            element_place_[elements[i].number.place()] = static_cast<std::int32_t>(i);
}

std::string MeshLists::group_title(ElementClass of, std::int32_t material) const {
    const std::string group = of == ElementClass::truss && flow_lines
                                  ? "flow line " + std::to_string(material)
                                  : group_name(of, material);
    const std::string& known = names.of(of, material);
    return known.empty() ? group : group + ": " + known;
}

Bounds MeshLists::bounds() const {
    Bounds b;
    if (nodes.empty())
        return b;
    b.low = b.high = point(0);
    for (const Node& node : nodes) {
        b.low.x = std::min(b.low.x, double{node.x});
        b.low.y = std::min(b.low.y, double{node.y});
        b.high.x = std::max(b.high.x, double{node.x});
        b.high.y = std::max(b.high.y, double{node.y});
    }
    return b;
}

std::size_t MeshLists::count(ElementClass of) const {
    return static_cast<std::size_t>(
        std::count_if(elements.begin(), elements.end(), [of](const Element& e) { return e.of == of; }));
}

std::string group_name(ElementClass of, std::int32_t material) {
    const std::string_view word = of == ElementClass::solid ? "material" : name_of(of);
    return std::string(word) + " " + std::to_string(material);
}

std::string_view name_of(LayoutKind kind) {
    return KIND_NAMES[static_cast<std::size_t>(kind)];
}

std::optional<LayoutKind> kind_named(std::string_view name) {
    for (const LayoutKind kind : ALL_KINDS)
        if (name_of(kind) == name)
            return kind;
    return std::nullopt;
}

std::vector<std::string_view> code_names(LayoutKind kind) {
    const auto& names = kind_row(kind).code_names;
    return {names.begin(), names.begin() + kind_row(kind).node_codes};
}

std::string_view value_name(LayoutKind kind) {
    return kind == LayoutKind::temperature ? "T" : kind == LayoutKind::head ? "H" : "";
}

std::vector<AttributeField> attribute_fields(LayoutKind kind) {
    std::vector<AttributeField> all;
    for_each_attribute(kind, [&](const auto& a) {
        if constexpr (std::is_same_v<decltype(a.member), std::int32_t ElementAttributes::*>)
            all.push_back({a.name, a.member, nullptr});
        else
            all.push_back({a.name, nullptr, a.member});
    });
    return all;
}

bool same_real(double a, double b) {
    return a == b || (std::isnan(a) && std::isnan(b));
}

bool same_attributes(LayoutKind kind, const ElementRecord& a, const ElementRecord& b) {
    bool same = true;
    for_each_attribute(kind, [&](const auto& attribute) {
        same = same && same_real(a.*attribute.member, b.*attribute.member);
    });
    return same;
}

bool has_midside_nodes(LayoutKind kind) {
    return kind_row(kind).element_words == 8;
}

bool is_joint_in_file(LayoutKind kind, const ElementRecord& element) {
    return is_joint(kind, element) || (has_node_values(kind) && element.attribute >= FIRST_JOINT_CODE);
}

}  // namespace brelan
