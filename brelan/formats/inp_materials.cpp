#include "formats/inp_materials.h"

#include <algorithm>
#include <cmath>

#include "cli/words.h"

namespace brelan::tool {

namespace {

struct Found {
    Properties values;
    bool has_placeholders = false;
};

class Finder {
public:
    Finder(const PropertyTable& table, const InpSection& section)
        : own_(table.find(section.of, section.material)),
          old_(section.old_material != 0 ? table.find(section.of, section.old_material) : nullptr),
          section_(section) {}

    Found find() {
        found_.values = placeholders(section_.of);
        take(&PropertyRow::young, found_.values.young);
        take(&PropertyRow::poisson, found_.values.poisson);
        if (section_.density > 0.0F)
            found_.values.density = std::stod(fmt::format("{}", section_.density));
        take(&PropertyRow::density, found_.values.density, section_.density > 0.0F);
        if (section_.of != ElementClass::solid)
            take(&PropertyRow::area, found_.values.area);
        if (section_.of == ElementClass::beam)
            take(&PropertyRow::inertia, found_.values.inertia);
        else
            found_.values.inertia = found_.values.area * found_.values.area / 12.0;  // of a square
        return found_;
    }

private:
    void take(std::optional<double> PropertyRow::*member, double& value, bool is_known = false) {
        for (const PropertyRow* row : {own_, old_})
            if (row != nullptr && row->*member) {
                value = *(row->*member);
                return;
            }
        found_.has_placeholders |= !is_known;
    }

    const PropertyRow* own_;
    const PropertyRow* old_;
    const InpSection& section_;
    Found found_;
};

void add_material(FormattedText& text, std::string_view set, double young, double poisson, double density) {
    text.add("*MATERIAL, NAME={}\n*ELASTIC\n{}, {}\n*DENSITY\n{}\n", set, real_text(young),
             real_text(poisson), real_text(density));
}

// The rectangle of this area and moment of inertia: its width across the plane, then its depth.
void add_beam_section(FormattedText& text, std::string_view set, const Properties& p) {
    const double depth = std::sqrt(12.0 * p.inertia / p.area);
    text.add("*BEAM SECTION, ELSET={}, MATERIAL={}, SECTION=RECT\n{}, {}\n0., 0., -1.\n", set, set,
             real_text(p.area / depth), real_text(depth));
}

std::string title_of(const MeshLists& mesh, const InpSection& section, const PropertyTable& table) {
    std::string title = group_name(section.of, section.material);
    std::string name = mesh.names.of(section.of, section.material);
    if (const PropertyRow* row = table.find(section.of, section.material);
        row != nullptr && !row->name.empty())
        name = row->name;
    if (!name.empty())
        title += ": " + name;
    if (section.old_material != 0)
        title += fmt::format(" (was {})", group_name(section.of, section.old_material));
    return title;
}

}  // namespace

void add_materials(FormattedText& text, const MeshLists& mesh, const InpElements& elements,
                   const PropertyTable& table, const std::function<void(const std::string&)>& remark) {
    std::vector<std::string> with_placeholders;
    for (const InpSection& section : elements.sections) {
        const Found found = Finder(table, section).find();
        const Properties& p = found.values;
        text.add("** {}{}\n", title_of(mesh, section, table),
                 found.has_placeholders ? ", with placeholders" : "");
        add_material(text, section.set, p.young, p.poisson, p.density);
        if (section.is_beam) {
            add_beam_section(text, section.set, p);
        } else {
            text.add("*SOLID SECTION, ELSET={}, MATERIAL={}\n", section.set, section.set);
            if (section.of == ElementClass::truss)
                text.add("{}\n", real_text(p.area));
            else
                text.add("{:#}\n", section.thickness);
        }
        if (found.has_placeholders)
            with_placeholders.push_back(group_name(section.of, section.material));
    }
    const auto last = std::unique(with_placeholders.begin(), with_placeholders.end());
    with_placeholders.erase(last, with_placeholders.end());
    if (!with_placeholders.empty())
        remark(fmt::format("placeholders stand for properties of {}; --materials gives them",
                           joined(with_placeholders, ", ")));
    for (const PropertyRow& row : table.rows) {
        const bool is_used =
            std::ranges::any_of(
                mesh.elements,
                [&](const Element& e) { return e.of == row.of && e.words.material.value == row.material; }) ||
            std::ranges::any_of(elements.sections, [&](const InpSection& s) {
                return s.of == row.of && s.old_material == row.material;
            });
        if (!is_used)
            remark(fmt::format("{}, line {}: the mesh has no elements of {}", table.file, row.line,
                               group_name(row.of, row.material)));
    }
}

void add_stand_ins(FormattedText& text, const InpElements& elements, const Stages& stages,
                   const PropertyTable& table, Number first, SetNames& names) {
    constexpr double SOFTNESS = 1.0E-6;  // of the beams' modulus
    for (const InpSection& section : elements.sections) {
        if (!section.is_beam)
            continue;
        std::string set;
        for (const InpBlock& block : section.blocks) {
            std::vector<InpElement> staged = block.elements;
            std::erase_if(staged,
                          [&](const InpElement& e) { return stages.pair_of(e.number) == ActivityPair{}; });
            if (staged.empty())
                continue;
            if (set.empty()) {
                set = names.take("STAND_INS_OF_" + section.set);
                text.add("** Soft beams in the place of those that come or go, whose nodes they hold\n");
            }
            for (InpElement& e : staged)
                e.number = first++;
            add_block(text, {block.type, std::move(staged)}, set);
        }
        if (set.empty())
            continue;
        const Properties p = Finder(table, section).find().values;
        add_material(text, set, SOFTNESS * p.young, p.poisson, 0.0);
        add_beam_section(text, set, p);
    }
}

}  // namespace brelan::tool
