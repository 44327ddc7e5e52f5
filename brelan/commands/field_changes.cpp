#include "commands/field_changes.h"

#include <fmt/core.h>

namespace brelan::tool {

namespace {

std::string midsides_text(const ElementWords& w) {
    return fmt::format("({} {} {} {})", w.midside_5.value, w.midside_6.value, w.midside_7.value,
                       w.midside_8.value);
}

std::string nodes_text(const Element& e) {
    const ElementWords& w = e.words;
    std::string text = fmt::format("{} {}", w.corner_1.value, w.corner_2.value);
    if (e.is_line())
        return text;
    text += fmt::format(" {} {}", w.corner_3.value, w.corner_4.value);
    if (w.midside_5.value != 0 || w.midside_6.value != 0 || w.midside_7.value != 0 || w.midside_8.value != 0)
        text += " " + midsides_text(w);
    return text;
}

}  // namespace

FieldChange midside_change(const MeshLists& a, const MeshLists& b, PlacePair elements) {
    return {"midside nodes", midsides_text(a.elements[static_cast<std::size_t>(elements.first)].words),
            midsides_text(b.elements[static_cast<std::size_t>(elements.second)].words)};
}

std::vector<FieldChange> node_changes(const MeshLists& a, const MeshLists& b, PlacePair nodes) {
    const Node& x = a.nodes[static_cast<std::size_t>(nodes.first)];
    const Node& y = b.nodes[static_cast<std::size_t>(nodes.second)];
    std::vector<FieldChange> changes;
    const std::vector<std::string_view> names = code_names(a.kind);
    for (std::size_t k = 0; k < names.size(); ++k)
        if (x.codes[k] != y.codes[k])
            changes.push_back(
                {std::string(names[k]), std::to_string(x.codes[k]), std::to_string(y.codes[k])});
    if (!same_real(x.head, y.head))
        changes.push_back(
            {std::string(value_name(a.kind)), fmt::format("{}", x.head), fmt::format("{}", y.head)});
    if (!same_real(x.coefficient, y.coefficient))
        changes.push_back({"CF", fmt::format("{}", x.coefficient), fmt::format("{}", y.coefficient)});
    return changes;
}

std::vector<FieldChange> element_changes(const MeshLists& a, const MeshLists& b, PlacePair elements,
                                         bool nodes) {
    const Element& x = a.elements[static_cast<std::size_t>(elements.first)];
    const Element& y = b.elements[static_cast<std::size_t>(elements.second)];
    std::vector<FieldChange> changes;
    if (x.of != y.of)
        changes.push_back({"class", std::string(name_of(x.of)), std::string(name_of(y.of))});
    if (nodes && !same_nodes(x.words, y.words))
        changes.push_back({"nodes", nodes_text(x), nodes_text(y)});
    if (x.words.material != y.words.material)
        changes.push_back(
            {"material", std::to_string(x.words.material.value), std::to_string(y.words.material.value)});
    if (x.is_line() || y.is_line() || a.kind != b.kind)
        return changes;
    for (const AttributeField& attribute : attribute_fields(a.kind))
        if (attribute.whole != nullptr && x.*attribute.whole != y.*attribute.whole)
            changes.push_back({std::string(attribute.name), std::to_string(x.*attribute.whole),
                               std::to_string(y.*attribute.whole)});
        else if (attribute.real != nullptr && !same_real(x.*attribute.real, y.*attribute.real))
            changes.push_back({std::string(attribute.name), fmt::format("{}", x.*attribute.real),
                               fmt::format("{}", y.*attribute.real)});
    return changes;
}

}  // namespace brelan::tool
