#include <fmt/core.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <map>

#include "analysis/geometry.h"
#include "analysis/soundness.h"
#include "cli/exit_status.h"
#include "cli/formatted_text.h"
#include "cli/words.h"
#include "formats/cell_mesh.h"
#include "formats/inp.h"
#include "formats/inp_elements.h"
#include "formats/inp_joints.h"
#include "formats/inp_materials.h"
#include "formats/inp_sets.h"
#include "formats/inp_steps.h"

namespace brelan::tool {

namespace {

void require_kind(const MeshLists& mesh) {
    if (mesh.kind == LayoutKind::temperature || mesh.kind == LayoutKind::head)
        throw Failure(
            fmt::format("{}: expected a mesh of the displacement or coupled kind for .inp, found the {} "
                        "kind; with --kind "
                        "displacement its nodes get the codes of a base mesh",
                        mesh.file, name_of(mesh.kind)));
}

void require_form(const MeshLists& mesh, const InpOptions& options) {
    if (options.form != PlaneForm::axisymmetric)
        return;
    for (const ElementClass of : {ElementClass::beam, ElementClass::truss})
        if (mesh.count(of) > 0)
            throw Failure(
                fmt::format("{}: expected a mesh without {} for --axisymmetric: a line of them would be "
                            "a shell or a disc",
                            mesh.file, CLASS_PLURALS[static_cast<std::size_t>(of)]));
    if (mesh.count(ElementClass::joint) > 0 && options.joints.form == JointForm::springs)
        throw Failure(fmt::format("{}: expected --joints tie with --axisymmetric", mesh.file));
    if (mesh.bounds().low.x < 0.0)
        throw Failure(fmt::format(
            "{}: expected nodes with an x of 0 or more for --axisymmetric: it is the radius", mesh.file));
}

class InpWriter {
public:
    InpWriter(const MeshLists& mesh, const Stages& stages, const InpOptions& options,
              const std::function<void(const std::string&)>& remark)
        : mesh_(mesh),
          stages_(stages),
          options_(options),
          remark_(
              [&mesh, remark](const std::string& text) { remark(fmt::format("{}: {}", mesh.file, text)); }),
          middles_(mesh),
          joints_(inp_joints(mesh, options, middles_)),
          elements_(inp_elements(mesh, stages, options.form, middles_)) {}

    void write(const std::filesystem::path& path) {
        OutputFile out(path);
        FormattedText text(out);
        text.add("*HEADING\n{}\n", mesh_.name);
        add_nodes(text);
        add_elements(text);
        add_springs(text);
        add_stand_ins(text, elements_, stages_, options_.materials, joints_.next_number, names_);
        const std::vector<InpStageSet> sets = add_stage_sets(text, stages_, joints_, names_);
        add_supports(text, mesh_, elements_, names_, remark_);
        add_ties(text);
        add_materials(text, mesh_, elements_, options_.materials, remark_);
        add_steps(text, sets, stages_, heavy_sets_, options_.gravity);
        text.flush();
        out.commit();
        remark_on_the_rest();
    }

private:
    void add_nodes(FormattedText& text) {
        text.add("*NODE, NSET={}\n", names_.take("ALL_NODES"));
        for (const Node& node : mesh_.nodes)
            text.add("{}, {:#}, {:#}\n", node.number.value, node.x, node.y);
    }

    // Elements, then their sets: by material where one has several sections, by name, by class.
    void add_elements(FormattedText& text) {
        std::map<std::pair<ElementClass, std::int32_t>, std::vector<std::string>> of_material;
        for (InpSection& section : elements_.sections) {
            section.set = names_.take(section.set);
            of_material[{section.of, section.material}].push_back(section.set);
            for (const InpBlock& block : section.blocks)
                add_block(text, block, section.set);
        }
        std::array<std::vector<std::string>, CLASS_NAMES.size()> of_class;
        std::map<std::string, std::vector<std::string>> of_name;
        for (auto& [key, sets] : of_material) {
            if (sets.size() > 1)
                sets = {add_set(text, set_of(key.first, key.second), sets)};
            of_class[static_cast<std::size_t>(key.first)].push_back(sets.front());
            if (const std::string name = name_of_material(key.first, key.second); !name.empty())
                of_name[name].push_back(sets.front());
        }
        for (const auto& [name, sets] : of_name)
            add_set(text, name, sets);
        for (const ElementClass of : {ElementClass::solid, ElementClass::beam, ElementClass::truss})
            if (const auto& sets = of_class[static_cast<std::size_t>(of)]; !sets.empty())
                heavy_sets_.push_back(add_set(text, CLASS_PLURALS[static_cast<std::size_t>(of)], sets));
    }

    std::string name_of_material(ElementClass of, std::int32_t material) const {
        const PropertyRow* row = options_.materials.find(of, material);
        return row != nullptr && !row->name.empty() ? row->name : mesh_.names.of(of, material);
    }

    std::string add_set(FormattedText& text, std::string_view wanted, const std::vector<std::string>& sets) {
        std::string name = names_.take(wanted);
        text.add("*ELSET, ELSET={}\n", name);
        add_names(text, sets);
        return name;
    }

    void add_springs(FormattedText& text) {
        for (std::size_t s = 0; s < joints_.systems.size(); ++s) {
            const Position& along = joints_.systems[s];
            text.add("*ORIENTATION, NAME=JOINT_DIRECTION_{}\n{}, {}, 0., {}, {}, 0.\n", s + 1,
                     real_text(-along.y), real_text(along.x), real_text(along.x), real_text(along.y));
        }
        std::vector<std::string> sets;
        for (const InpSprings& springs : joints_.springs) {
            const std::string set = names_.take(springs.direction == 1 ? "ACROSS_JOINT" : "ALONG_JOINT");
            text.add("*ELEMENT, TYPE=SPRING2, ELSET={}\n", set);
            for (const InpSpring& spring : springs.springs)
                text.add("{}, {}, {}\n", spring.number, spring.first, spring.second);
            text.add("*SPRING, ELSET={}, ORIENTATION=JOINT_DIRECTION_{}\n{}, {}\n{}\n", set,
                     springs.system + 1, springs.direction, springs.direction, real_text(springs.stiffness));
            sets.push_back(set);
        }
        if (sets.empty())
            return;
        std::map<std::int32_t, std::vector<Number>> of_material;
        for (const auto& [joint, springs] : joints_.of_joint) {
            const Element& e = mesh_.elements[static_cast<std::size_t>(mesh_.element_place(joint))];
            std::vector<Number>& all = of_material[e.words.material.value];
            all.insert(all.end(), springs.begin(), springs.end());
        }
        for (const auto& [material, springs] : of_material) {
            text.add("*ELSET, ELSET={}\n", names_.take(set_of(ElementClass::joint, material)));
            add_numbers(text, springs);
        }
        add_set(text, CLASS_PLURALS[static_cast<std::size_t>(ElementClass::joint)], sets);
    }

    void add_ties(FormattedText& text) const {
        for (const InpTie& tie : joints_.ties)
            text.add("*EQUATION\n2\n{}, {}, 1., {}, {}, -1.\n", tie.dependent, tie.direction, tie.leader,
                     tie.direction);
    }

    void remark_on_the_rest() const {
        if (mesh_.kind == LayoutKind::coupled)
            remark_("codes of the fluid and its attributes have no place in .inp: the ground is drained");
        if (elements_.turned > 0)
            remark_(counted(elements_.turned, "clockwise element was", "clockwise elements were") +
                    " turned");
        for (const StageSet& set : stages_.sets()) {
            const std::string_view plural = CLASS_PLURALS[static_cast<std::size_t>(set.of)];
            if (set.never_there())
                remark_(fmt::format("{} with NAC {} and NDAC {} in no step: they go before they come",
                                    counted(set.elements.size(), name_of(set.of), plural), set.pair.activated,
                                    set.pair.deactivated));
            if (set.of != ElementClass::joint)
                continue;
            if (options_.joints.form == JointForm::tied)
                remark_(counted(set.elements.size(), "joint that comes or goes is",
                                "joints that come or go are") +
                        " tied in all steps");
            else if (set.comes() > 0)
                remark_(counted(set.elements.size(), "joint that comes later has its springs",
                                "joints that come later have their springs") +
                        " from the start");
        }
        if (!check_soundness(mesh_, corners_of(mesh_)).sound())
            remark_("the mesh is unsound: a solver may refuse it or compute another body; see brelan info");
    }

    const MeshLists& mesh_;
    const Stages& stages_;
    const InpOptions& options_;
    const std::function<void(const std::string&)> remark_;
    const SideMiddles middles_;
    const InpJoints joints_;
    InpElements elements_;
    SetNames names_;
    std::vector<std::string> heavy_sets_;  // those that have a weight
};

}  // namespace

JointChoice joint_choice(const std::string& text) {
    constexpr std::string_view SPRING = "spring:";
    JointChoice choice;
    if (text.empty())
        return choice;
    if (text == "tie") {
        choice.form = JointForm::tied;
        return choice;
    }
    choice.form = JointForm::springs;
    const std::size_t comma = text.find(',');
    if (text.starts_with(SPRING) && comma != std::string::npos)
        try {
            std::size_t first_end = 0, second_end = 0;
            const std::string first = text.substr(SPRING.size(), comma - SPRING.size()),
                              second = text.substr(comma + 1);
            choice.across = std::stod(first, &first_end);
            choice.along = std::stod(second, &second_end);
            if (first_end == first.size() && second_end == second.size() && choice.across > 0.0 &&
                choice.along > 0.0 && std::isfinite(choice.across) && std::isfinite(choice.along))
                return choice;
        } catch (const std::exception&) {  // no numbers
        }
    throw Failure(fmt::format(
        "--joints: expected tie, or spring:KN,KS with two numbers above 0 as in spring:1e6,1e5, found \"{}\"",
        text));
}

void write_inp(const MeshLists& mesh, const Stages& stages, const InpOptions& options,
               const std::filesystem::path& path, const std::function<void(const std::string&)>& remark) {
    require_kind(mesh);
    require_form(mesh, options);
    cells_of(mesh);  // refuses a mesh of which corners are missing or numbers stand twice
    InpWriter(mesh, stages, options, remark).write(path);
}

}  // namespace brelan::tool
