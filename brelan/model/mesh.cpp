#include "model/mesh.h"

#include <algorithm>

#include "mesh/kinds.h"

namespace brelan::tool {

namespace {

constexpr std::array<std::string_view, 4> KIND_NAMES{"coupled", "temperature", "head", "displacement"};

// From here on IDH in a file stands for a negative one, the mark of a joint.
constexpr std::int32_t FIRST_JOINT_CODE = 100;

template <class Record>
std::vector<std::int32_t> places_by_number(const std::vector<Record>& records, Number Record::*number) {
    Number last = 0;
    for (const Record& record : records)
        last = std::max(last, record.*number);
    std::vector<std::int32_t> place(static_cast<std::size_t>(last) + 1, Mesh::NONE);
    for (std::size_t i = 0; i < records.size(); ++i)
        if (records[i].*number >= 1)
            place[static_cast<std::size_t>(records[i].*number)] = static_cast<std::int32_t>(i);
    return place;
}

}  // namespace

void Mesh::finish() {
    for (Element& e : elements)
        if (!e.is_line())
            e.of = is_joint(kind, e) ? ElementClass::joint : ElementClass::solid;
    std::stable_sort(nodes.begin(), nodes.end(),
                     [](const Node& a, const Node& b) { return a.number < b.number; });
    std::stable_sort(elements.begin(), elements.end(), [](const Element& a, const Element& b) {
        return a.section() != b.section() ? a.section() < b.section() : a.number < b.number;
    });
    node_place_ = places_by_number(nodes, &Node::number);
    Number last = 0;
    for (const Element& e : elements)
        last = std::max(last, e.number);
    element_place_.assign(static_cast<std::size_t>(last) + 1, NONE);
    for (std::size_t i = 0; i < elements.size(); ++i)
        if (elements[i].number >= 1)
            element_place_[static_cast<std::size_t>(elements[i].number)] = static_cast<std::int32_t>(i);
}

Bounds Mesh::bounds() const {
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

std::size_t Mesh::count(ElementClass of) const {
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
    switch (kind) {
        case LayoutKind::coupled:
            return {"ISX", "ISY", "IFX", "IFY", "IRZ"};
        case LayoutKind::temperature:
        case LayoutKind::head:
            return {"ID", "IDF"};
        case LayoutKind::displacement:
            break;
    }
    return {"IDX", "IDY", "IDT"};
}

std::string_view value_name(LayoutKind kind) {
    return kind == LayoutKind::temperature ? "T" : kind == LayoutKind::head ? "H" : "";
}

std::vector<Attribute> attributes(LayoutKind kind) {
    switch (kind) {
        case LayoutKind::coupled:
            return {{"KS", &ElementRecord::skeleton, nullptr},
                    {"KF", &ElementRecord::fluid, nullptr},
                    {"INTR", &ElementRecord::integration_r, nullptr},
                    {"INTS", &ElementRecord::integration_s, nullptr},
                    {"TBJWL", nullptr, &ElementRecord::real_attribute}};
        case LayoutKind::temperature:
        case LayoutKind::head:
            return {{"IDH", &ElementRecord::attribute, nullptr}};
        case LayoutKind::displacement:
            break;
    }
    return {{"THIC", nullptr, &ElementRecord::thickness}, {"DEN", nullptr, &ElementRecord::density}};
}

bool has_midside_nodes(LayoutKind kind) {
    return kind_row(kind).element_words == 8;
}

bool is_joint(LayoutKind kind, const ElementRecord& element) {
    switch (kind) {
        case LayoutKind::coupled:
            return element.skeleton > 0;
        case LayoutKind::temperature:
        case LayoutKind::head:
            return element.attribute < 0 || element.attribute >= FIRST_JOINT_CODE;
        case LayoutKind::displacement:
            break;
    }
    return element.density < 0.0F;
}

}  // namespace brelan::tool
