#include <fmt/core.h>

#include <algorithm>
#include <iterator>
#include <map>
#include <set>
#include <unordered_map>
#include <utility>

#include "analysis/joined_nodes.h"
#include "cli/words.h"
#include "formats/mdpa.h"
#include "formats/mdpa_elements.h"

namespace brelan::tool {

namespace {

// A name as a word of the format, where a point parts the names of nested parts.
std::string as_word(std::string_view name) {
    std::string word;
    for (const char c : name) {
        const auto byte = static_cast<unsigned char>(c);
        const bool plain = (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') ||
                           c == '-' || c == '_';
        constexpr unsigned FIRST_OF_CHARACTER = 0xC0U, BEHIND_ASCII = 0x80U;
        if (plain)
            word += c;
        else if (byte < BEHIND_ASCII || byte >= FIRST_OF_CHARACTER)
            word += '_';
    }
    return word;
}

template <class Values>
void sort_once(Values& values) {
    std::sort(values.begin(), values.end());
    values.erase(std::unique(values.begin(), values.end()), values.end());
}

class Modelling {
public:
    Modelling(const MeshLists& mesh, const CellMesh& cells, const Stages& stages,
              const std::vector<std::int32_t>& cables)
        : mesh_(mesh),
          cells_(cells),
          stages_(stages),
          cables_(cables),
          typed_(typed_elements(mesh, cells, cables)) {
        model_.source = std::filesystem::path(mesh.file).filename().string();
        model_.kind = mesh.kind;
        model_.nodes = mesh.nodes;
    }

    MdpaModel all() {
        sort_by_group();
        number_properties();
        add_blocks();
        // Their names are known to whoever reads a project file: those of materials give way to them.
        add_codes();
        add_stages();
        std::vector<MdpaPart> behind = std::exchange(model_.parts, {});
        for (std::size_t g = 0; g < of_group_.size(); ++g)
            if (!of_group_[g].empty())
                add_material(g);
        for (std::size_t g = 0; g < of_group_.size(); ++g)
            if (!of_group_[g].empty() && class_of(g) != ElementClass::solid)
                add_lines(g);
        std::move(behind.begin(), behind.end(), std::back_inserter(model_.parts));
        say_what_is_left_out();
        return std::move(model_);
    }

private:
    using Places = std::vector<std::size_t>;

    ElementClass class_of(std::size_t group) const { return mesh_.elements[of_group_[group].front()].of; }
    std::int32_t material_of(std::size_t group) const {
        return mesh_.elements[of_group_[group].front()].words.material.value;
    }

    void sort_by_group() {
        of_group_.resize(cells_.groups.size());
        for (std::size_t i = 0; i < mesh_.elements.size(); ++i)
            of_group_[static_cast<std::size_t>(cells_.group_of[i])].push_back(i);
    }

    // The tag of a group, which is its material where that is free; the tags of lines and of planes are
    // apart, properties are not.
    void number_properties() {
        std::set<std::int32_t> taken;
        properties_.resize(cells_.groups.size());
        for (const int dimension : {2, 1})
            for (std::size_t g = 0; g < of_group_.size(); ++g) {
                const Places& places = of_group_[g];
                const bool has_elements = std::any_of(places.begin(), places.end(), [&](std::size_t i) {
                    return !typed_.elements[i].type.empty();
                });
                if (cells_.groups[g].dimension != dimension || !has_elements)
                    continue;
                std::int32_t number = cells_.groups[g].tag;
                if (taken.contains(number))
                    number = *taken.rbegin() + 1;
                taken.insert(number);
                properties_[g] = number;
            }
        model_.properties.assign(taken.begin(), taken.end());
    }

    void add_blocks() {
        std::map<std::string_view, std::size_t> place;
        for (std::size_t i = 0; i < mesh_.elements.size(); ++i) {
            const TypedElement& element = typed_.elements[i];
            if (element.type.empty())
                continue;
            const auto [found, is_new] = place.emplace(element.type, model_.blocks.size());
            if (is_new)
                model_.blocks.push_back({std::string(element.type), {}});
            model_.blocks[found->second].elements.push_back(
                {mesh_.elements[i].number.value, properties_[static_cast<std::size_t>(cells_.group_of[i])],
                 element.nodes});
        }
    }

    // The name, or the name with a word behind it where another part has it.
    std::string free_name(const std::string& wanted, std::string_view otherwise) {
        std::string name = wanted;
        if (names_.contains(name))
            name += fmt::format("_{}", otherwise);
        while (names_.contains(name))
            name += '_';
        names_.insert(name);
        return name;
    }

    void take_elements(MdpaPart& part, const Places& places) const {
        for (const std::size_t i : places) {
            const TypedElement& element = typed_.elements[i];
            part.nodes.insert(part.nodes.end(), element.nodes.begin(), element.nodes.end());
            if (!element.type.empty())
                part.elements.push_back(mesh_.elements[i].number.value);
        }
        sort_once(part.nodes);
        sort_once(part.elements);
    }

    void add_material(std::size_t group) {
        MdpaPart part;
        part.of = class_of(group);
        part.properties = properties_[group];
        part.cable = part.of == ElementClass::truss &&
                     std::find(cables_.begin(), cables_.end(), material_of(group)) != cables_.end();
        const std::string& title = cells_.groups[group].name;  // with a name of the material behind a colon
        const std::string plain = as_word(title.substr(0, title.find(':')));
        const std::string given = as_word(mesh_.names.of(part.of, material_of(group)));
        part.name = free_name(given.empty() ? plain : given, plain);
        take_elements(part, of_group_[group]);
        part_of_group_[group] = part.name;
        model_.parts.push_back(std::move(part));
    }

    // One part for each set of elements that hang together.
    void add_lines(std::size_t group) {
        const Places& places = of_group_[group];
        UnionFind sets(places.size());
        std::unordered_map<Number, std::int32_t> at_node;
        for (std::size_t k = 0; k < places.size(); ++k)
            for (const Number node : typed_.elements[places[k]].nodes) {
                const auto one = static_cast<std::int32_t>(k);
                sets.join(at_node.emplace(node, one).first->second, one);
            }
        std::map<std::int32_t, Places> lines;  // by the lowest of each
        for (std::size_t k = 0; k < places.size(); ++k)
            lines[sets.find(static_cast<std::int32_t>(k))].push_back(places[k]);
        int count = 0;
        for (const auto& [first, line] : lines) {
            MdpaPart part;
            part.purpose = PartPurpose::line;
            part.of = class_of(group);
            part.name = free_name(fmt::format("{}_line_{}", part_of_group_[group], ++count), "line");
            take_elements(part, line);
            model_.parts.push_back(std::move(part));
        }
    }

    void add_codes() {
        const std::vector<std::string_view> fields = code_names(mesh_.kind);
        for (std::size_t k = 0; k < fields.size(); ++k) {
            std::map<std::vector<std::int32_t>, std::vector<const Node*>> nodes;
            for (const Node& node : mesh_.nodes)
                if (node.codes[k] != 0)
                    nodes[{node.codes[k]}].push_back(&node);
            add_code_parts({fields[k]}, nodes);
        }
        if (value_name(mesh_.kind).empty())
            return;
        // What is given at a node stands in both codes: that there is a value, and the function it follows.
        std::map<std::vector<std::int32_t>, std::vector<const Node*>> nodes;
        for (const Node& node : mesh_.nodes)
            if (node.codes[0] != 0)
                nodes[{node.codes[0], node.codes[1]}].push_back(&node);
        add_code_parts(fields, nodes);
    }

    void add_code_parts(const std::vector<std::string_view>& fields,
                        const std::map<std::vector<std::int32_t>, std::vector<const Node*>>& nodes) {
        for (const auto& [values, members] : nodes) {
            MdpaPart part;
            part.purpose = PartPurpose::code;
            part.codes = fields;
            part.values = values;
            for (std::size_t k = 0; k < fields.size(); ++k)
                part.name += fmt::format("{}{}_{}", k == 0 ? "" : "_", fields[k], values[k]);
            part.name = free_name(part.name, "nodes");
            for (const Node* node : members)
                part.nodes.push_back(node->number.value);
            part.given = members.front()->head;
            const bool one_value = std::all_of(members.begin(), members.end(), [&part](const Node* node) {
                return same_real(node->head, part.given);
            });
            if (fields.size() > 1 && !one_value)
                say(fmt::format(
                    "{} is not the same at all nodes of part {}: that of node {} counts in project "
                    "files",
                    value_name(mesh_.kind), part.name, part.nodes.front()));
            model_.parts.push_back(std::move(part));
        }
    }

    void add_stages() {
        for (const StageSet& set : stages_.sets()) {
            MdpaPart part;
            part.purpose = PartPurpose::activity;
            part.of = set.of;
            part.pair = set.pair;
            part.name = CLASS_PLURALS[static_cast<std::size_t>(set.of)];
            if (set.never_there())
                part.name += "_never";
            if (set.comes() > 0)
                part.name += fmt::format("_from_{}", set.comes());
            if (set.goes() > 0)
                part.name += fmt::format("_until_{}", set.goes());
            part.name = free_name(part.name, "set");
            Places places;
            for (const Number number : set.elements)
                places.push_back(static_cast<std::size_t>(mesh_.element_place(number)));
            take_elements(part, places);
            model_.parts.push_back(std::move(part));
        }
        model_.steps.insert(model_.steps.end(), stages_.steps().begin(), stages_.steps().end());
    }

    void say(const std::string& text) { model_.remarks.push_back(text); }

    void say_what_is_left_out() {
        if (typed_.turned > 0)
            say(fmt::format("{} turned to run anti-clockwise",
                            counted(typed_.turned, "solid was", "solids were")));
        if (typed_.flat > 0)
            say(fmt::format("{} no area: the solver will refuse such elements",
                            counted(typed_.flat, "solid has", "solids have")));
        if (typed_.partly_second > 0)
            say(fmt::format("{} midside nodes on some sides only, and went as elements of first order",
                            counted(typed_.partly_second, "solid has", "solids have")));
        if (typed_.closed_joints > 0)
            say(fmt::format("{} left out: both sides end in one node",
                            counted(typed_.closed_joints, "joint was", "joints were")));
        if (typed_.folded > 0)
            say(fmt::format("{} a node twice: left out",
                            counted(typed_.folded, "element names", "elements name")));
        say_of_lines();
        std::vector<std::string> attributes;
        for (const AttributeField& attribute : attribute_fields(mesh_.kind))
            attributes.emplace_back(attribute.name);
        if (!value_name(mesh_.kind).empty())
            attributes.insert(attributes.end(), {std::string(value_name(mesh_.kind)), "CF"});
        say(fmt::format("{} have no place in a .mdpa file and were left out", joined(attributes, ", ")));
        if (mesh_.kind == LayoutKind::coupled)
            say("IFX and IFY are parts of nodes that nothing holds: the solver has water pressures, and no "
                "displacements of water");
    }

    void say_of_lines() {
        constexpr ElementClass LINES[] = {ElementClass::joint, ElementClass::beam, ElementClass::truss};
        for (const ElementClass of : LINES) {
            const std::size_t count = mesh_.count(of);
            const auto word = static_cast<std::size_t>(of);
            if (count > 0 && line_type(mesh_.kind, of).empty())
                say(fmt::format(
                    "{} left out, as the solver has none for the {} kind; their nodes are parts{}",
                    counted(count, fmt::format("{} was", CLASS_NAMES[word]),
                            fmt::format("{} were", CLASS_PLURALS[word])),
                    name_of(mesh_.kind), of == ElementClass::joint ? ", and nothing flows across" : ""));
        }
        if (mesh_.count(ElementClass::joint) == 0 || line_type(mesh_.kind, ElementClass::joint).empty())
            return;
        if (mesh_.kind == LayoutKind::coupled)
            say("joints link displacements alone: no water flows across them");
        if (typed_.second_order)
            say("joints link corners alone: midside nodes of solids beside them are free");
    }

    const MeshLists& mesh_;
    const CellMesh& cells_;
    const Stages& stages_;
    const std::vector<std::int32_t>& cables_;
    const TypedElements typed_;
    MdpaModel model_;
    std::vector<Places> of_group_;          // places of the elements of each group
    std::vector<std::int32_t> properties_;  // of each group
    std::map<std::size_t, std::string> part_of_group_;
    std::set<std::string> names_;
};

}  // namespace

bool MdpaModel::has(ElementClass of) const {
    return std::any_of(parts.begin(), parts.end(), [of](const MdpaPart& part) {
        return part.purpose == PartPurpose::material && part.of == of && !part.elements.empty();
    });
}

MdpaModel mdpa_model(const MeshLists& mesh, const CellMesh& cells, const Stages& stages,
                     const std::vector<std::int32_t>& cables) {
    return Modelling(mesh, cells, stages, cables).all();
}

}  // namespace brelan::tool
