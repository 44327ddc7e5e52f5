#include "formats/inp_elements.h"

#include <fmt/core.h>

#include <algorithm>
#include <array>
#include <tuple>

#include "analysis/geometry.h"
#include "cli/exit_status.h"

namespace brelan::tool {

namespace {

std::pair<Number, Number> corners_of_side(Number a, Number b) {
    return {std::min(a, b), std::max(a, b)};
}

// Behind each corner of a solid or joint, 0 for none.
std::vector<Number> midsides_of(const Element& e) {
    const std::array<Number, 4> all{e.words.midside_5.value, e.words.midside_6.value, e.words.midside_7.value,
                                    e.words.midside_8.value};
    std::vector<Number> midsides(all.begin(), all.begin() + e.corner_count());
    for (Number& m : midsides)
        m = std::max(m, 0);
    return midsides;
}

// Corners, then the midside nodes where it has them.
std::vector<Number> nodes_of_solid(const Element& e, bool clockwise) {
    std::vector<Number> corners, midsides = midsides_of(e);
    for (int k = 0; k < e.corner_count(); ++k)
        corners.push_back(e.corner(k));
    if (clockwise) {
        std::reverse(corners.begin() + 1, corners.end());
        std::reverse(midsides.begin(), midsides.end());
    }
    if (midsides.front() != 0)
        corners.insert(corners.end(), midsides.begin(), midsides.end());
    return corners;
}

std::string type_of(const InpSection& section, std::size_t nodes, PlaneForm form) {
    if (section.is_beam)
        return nodes == 3 ? "B32" : "B21";
    if (section.of == ElementClass::truss)
        return nodes == 3 ? "T3D3" : "T2D2";
    return fmt::format("{}{}", form == PlaneForm::axisymmetric ? "CAX" : "CPE", nodes);
}

bool has_attribute(LayoutKind kind, std::string_view name) {
    return std::ranges::any_of(attribute_fields(kind), [&](const auto& a) { return a.name == name; });
}

}  // namespace

SideMiddles::SideMiddles(const MeshLists& mesh) {
    for (const Element& e : mesh.elements) {
        if (e.of != ElementClass::solid)
            continue;
        const std::vector<Number> midsides = midsides_of(e);
        const auto there =
            static_cast<std::size_t>(std::ranges::count_if(midsides, [](Number m) { return m != 0; }));
        if (there != 0 && there != midsides.size())
            throw Failure(fmt::format(
                "{}: expected elements with all of their midside nodes or none, but element {} has "
                "{} of {}",
                mesh.file, e.number.value, there, midsides.size()));
        for (int k = 0; k < e.corner_count(); ++k) {
            const Number middle = midsides[static_cast<std::size_t>(k)];
            if (middle != 0 && mesh.node_place(middle) == MeshLists::NONE)
                throw Failure(fmt::format("{}: element {} names node {}, which is not there", mesh.file,
                                          e.number.value, middle));
            const auto [found, is_new] =
                middles_.try_emplace(corners_of_side(e.corner(k), e.corner((k + 1) % e.corner_count())),
                                     Middle{middle, e.number.value});
            if (found->second.node != middle)
                throw Failure(fmt::format(
                    "{}: expected one midside node, or none, on a side of two elements, but elements {} and "
                    "{} "
                    "have nodes {} and {} there (0 for none)",
                    mesh.file, found->second.element, e.number.value, found->second.node, middle));
        }
    }
}

Number SideMiddles::of(Number a, Number b) const {
    const auto found = middles_.find(corners_of_side(a, b));
    return found == middles_.end() ? 0 : found->second.node;
}

InpElements inp_elements(const MeshLists& mesh, const Stages& stages, PlaneForm form,
                         const SideMiddles& middles) {
    const bool has_thickness = has_attribute(mesh.kind, "THIC"),
               has_density = has_attribute(mesh.kind, "DEN");
    const std::vector<CornerPlaces> corners = corners_of(mesh);
    InpElements made;
    std::map<std::tuple<ElementClass, std::int32_t, float, float, bool>, InpSection> sections;
    for (std::size_t i = 0; i < mesh.elements.size(); ++i) {
        const Element& e = mesh.elements[i];
        if (e.of == ElementClass::joint)
            continue;
        InpElement element{e.number.value, {}};
        InpSection section;
        section.of = e.of;
        section.material = e.words.material.value;
        if (e.is_line()) {
            section.is_beam = e.of == ElementClass::beam || stages.pair_of(e.number.value) != ActivityPair{};
            element.nodes = {e.corner(0), e.corner(1)};
            if (const Number middle = middles.of(e.corner(0), e.corner(1)); middle != 0)
                element.nodes.insert(element.nodes.begin() + 1, middle);
        } else {
            const bool clockwise = signed_area(mesh, corners[i]) < 0.0;
            made.turned += clockwise ? 1 : 0;
            element.nodes = nodes_of_solid(e, clockwise);
            section.old_material = stages.old_material(e.number.value).value;
            if (has_thickness && form == PlaneForm::strain && e.thickness > 0.0F)
                section.thickness = e.thickness;
            if (has_density && e.density > 0.0F)
                section.density = e.density;
        }
        InpSection& kept = sections
                               .try_emplace({section.of, section.material, section.thickness, section.density,
                                             section.is_beam},
                                            section)
                               .first->second;
        const std::string type = type_of(section, element.nodes.size(), form);
        auto block = std::ranges::find(kept.blocks, type, &InpBlock::type);
        if (block == kept.blocks.end())
            block = kept.blocks.insert(block, {type, {}});
        block->elements.push_back(std::move(element));
    }
    std::map<std::pair<ElementClass, std::int32_t>, int> count, number;
    for (const auto& [key, section] : sections)
        ++count[{section.of, section.material}];
    for (auto& [key, section] : sections) {
        const std::pair of{section.of, section.material};
        section.set = set_of(section.of, section.material);
        if (count[of] > 1)
            section.set += fmt::format("_PART_{}", ++number[of]);
        made.sections.push_back(std::move(section));
    }
    return made;
}

std::string set_of(ElementClass of, std::int32_t material) {
    const std::string number = material < 0 ? fmt::format("MINUS_{}", -static_cast<std::int64_t>(material))
                                            : std::to_string(material);
    constexpr std::array<std::string_view, 4> WORDS{"MATERIAL", "JOINT", "BEAM", "TRUSS"};
    return fmt::format("{}_{}", WORDS[static_cast<std::size_t>(of)], number);
}

}  // namespace brelan::tool
