// Cells of other programs as a mesh.
#include <fmt/core.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <set>

#include "analysis/geometry.h"
#include "cli/exit_status.h"
#include "formats/cell_mesh.h"
#include "formats/group_codes.h"
#include "formats/group_meaning.h"
#include "formats/kept_points.h"

namespace brelan::tool {

namespace {

// What a base mesh has where the file tells nothing.
std::int32_t usual_code(std::string_view name) {
    return name == "IDT" || name == "IRZ" ? 1 : 0;
}
constexpr float USUAL_CF = 1.0F, USUAL_DENSITY = 2.3F;

class FromCellMesh {
public:
    FromCellMesh(const CellMesh& cells, std::optional<LayoutKind> kind) : cells_(cells) {
        result_.mesh.file = cells.file;
        result_.mesh.name = cells.name;
        result_.mesh.flow_lines = cells.flow_lines;
        result_.mesh.names = cells.names;
        result_.source_kind = kind_of_arrays();
        if (!kind && !result_.source_kind)
            throw Failure(
                fmt::format("{}: no node codes tell the kind of mesh; name it with --kind", cells.file));
        result_.mesh.kind = kind ? *kind : *result_.source_kind;
    }

    FromCells convert(const std::vector<GroupCodes>& codes) {
        cells_.require_plane();
        for (const CellGroup& group : cells_.groups)
            meanings_.push_back(meaning_of_group(group.name));
        find_elements();
        add_nodes();
        fill_elements();
        if (result_.source_kind == std::nullopt)
            free_rotation_of_beams();
        result_.mesh.finish();
        set_codes(codes);
        turn_clockwise();
        return std::move(result_);
    }

private:
    MeshLists& mesh() { return result_.mesh; }

    std::optional<LayoutKind> kind_of_arrays() const {
        for (const LayoutKind kind : ALL_KINDS) {
            const auto there = [&](std::string_view name) { return cells_.point_array(name) != nullptr; };
            const std::vector<std::string_view> names = code_names(kind);
            const std::string_view value = value_name(kind);
            if (std::all_of(names.begin(), names.end(), there) && (value.empty() || there(value)))
                return kind;
        }
        return std::nullopt;
    }

    std::int32_t whole(double value, std::string_view array) const {
        if (!(std::abs(value) <= std::numeric_limits<std::int32_t>::max()) || value != std::trunc(value))
            throw Failure(
                fmt::format("{}: expected whole numbers in \"{}\", found {}", cells_.file, array, value));
        return static_cast<std::int32_t>(value);
    }

    // Values of an array as integers; empty where there is none of the name.
    std::vector<std::int32_t> integers(const DataArray* array) const {
        std::vector<std::int32_t> values;
        if (array != nullptr)
            for (const double value : array->values)
                values.push_back(whole(value, array->name));
        return values;
    }

    // Numbers of the points or cells of some places: by an array, else the tags of the format, else from 1 in
    // order. Tags that no mesh file can hold, or that stand twice, give way to the order; an array of ours
    // must be right.
    std::vector<Number> numbers(const DataArray* array, const std::vector<std::int64_t>& tags,
                                const std::vector<std::size_t>& places, Number last,
                                std::string_view what) const {
        const auto usable = [last](const auto& list) {
            std::vector<bool> seen(static_cast<std::size_t>(last) + 1, false);
            for (const auto number : list) {
                if (number < 1 || number > last || seen[static_cast<std::size_t>(number)])
                    return false;
                seen[static_cast<std::size_t>(number)] = true;
            }
            return true;
        };
        std::vector<std::int64_t> list;
        for (const std::size_t place : places)
            if (array != nullptr)
                list.push_back(whole(array->values[place], NUMBER));
            else if (!tags.empty())
                list.push_back(tags[place]);
        if (!usable(list)) {
            if (array != nullptr)
                throw Failure(fmt::format("{}: expected {} numbers from 1 to {}, each once, in \"{}\"",
                                          cells_.file, what, last, NUMBER));
            list.clear();
        }
        if (list.empty())
            for (std::size_t i = 1; i <= places.size(); ++i)
                list.push_back(static_cast<std::int64_t>(i));
        return {list.begin(), list.end()};
    }

    void add_nodes() {
        const KeptPoints points = kept_points(cells_, cells_of_elements_, mesh().kind);
        result_.centres = points.centres;
        result_.midsides = points.midsides;
        if (points.count() > HIGHEST_NODE_NUMBER)
            throw Failure(fmt::format("{}: expected at most {} points, found {}", cells_.file,
                                      HIGHEST_NODE_NUMBER, points.count()));
        for (std::size_t n = 0; n < points.kept.size(); ++n)
            if (points.kept[n])
                places_.push_back(n);
        const std::vector<Number> list =
            numbers(cells_.point_array(NUMBER), cells_.point_tags, places_, HIGHEST_NODE_NUMBER, "node");
        numbers_.resize(cells_.point_count());
        for (std::size_t i = 0; i < places_.size(); ++i) {
            const float* p = cells_.points.data() + 3 * places_[i];
            Node node;
            numbers_[places_[i]] = list[i];
            node.number = NodeNumber(list[i]);
            node.x = p[0];
            node.y = p[1];
            node.coefficient = value_name(mesh().kind).empty() ? 0.0F : USUAL_CF;
            mesh().nodes.push_back(node);
        }
        const std::vector<std::string_view> names = code_names(mesh().kind);
        for (std::size_t k = 0; k < names.size(); ++k) {
            const DataArray* array = cells_.point_array(names[k]);
            if (array == nullptr)
                array = cells_.point_array(same_code(names[k]));
            const std::vector<std::int32_t> codes = integers(array);
            for (std::size_t n = 0; n < mesh().nodes.size(); ++n)
                mesh().nodes[n].codes[k] = codes.empty() ? usual_code(names[k]) : codes[places_[n]];
        }
        if (value_name(mesh().kind).empty())
            return;
        set_reals(value_name(mesh().kind), &Node::head);
        set_reals("CF", &Node::coefficient);
    }

    void set_reals(std::string_view name, float Node::*member) {
        const DataArray* array = cells_.point_array(name);
        for (std::size_t n = 0; array != nullptr && n < mesh().nodes.size(); ++n)
            mesh().nodes[n].*member = real(array->values[places_[n]], name);
    }

    float real(double value, std::string_view array) const {
        const auto narrow = static_cast<float>(value);
        if (!std::isfinite(narrow))
            throw Failure(
                fmt::format("{}: expected 32-bit numbers in \"{}\", found {}", cells_.file, array, value));
        return narrow;
    }

    // The class of a cell; none for one that is no element.
    std::optional<ElementClass> class_of(std::size_t cell, const std::vector<std::int32_t>& classes) const {
        const int corners = corners_of(cells_.shapes[cell]);
        std::optional<ElementClass> of;
        if (!classes.empty()) {
            if (classes[cell] < 1 || classes[cell] > 4)
                throw Failure(fmt::format("{}: expected 1 to 4 in \"{}\", found {}", cells_.file, CLASS,
                                          classes[cell]));
            of = static_cast<ElementClass>(classes[cell] - 1);
        } else if (const GroupMeaning* meaning = meaning_of_cell(cell)) {
            of = meaning->of;
        } else if (corners > 2) {
            of = ElementClass::solid;
        }
        const bool line = of == ElementClass::beam || of == ElementClass::truss;
        return of && line == (corners == 2) && corners >= 2 ? of : std::nullopt;
    }

    const GroupMeaning* meaning_of_cell(std::size_t cell) const {
        if (cells_.group_of.empty() || cells_.group_of[cell] < 0)
            return nullptr;
        const auto& meaning = meanings_[static_cast<std::size_t>(cells_.group_of[cell])];
        return meaning ? &*meaning : nullptr;
    }

    std::int32_t material_of(std::size_t cell, const std::vector<std::int32_t>& materials) const {
        if (!materials.empty())
            return materials[cell];
        if (const GroupMeaning* meaning = meaning_of_cell(cell))
            return meaning->material;
        if (!cells_.group_of.empty() && cells_.group_of[cell] >= 0)
            return cells_.groups[static_cast<std::size_t>(cells_.group_of[cell])].tag;
        return 1;
    }

    // Which cells are elements, and of which class.
    void find_elements() {
        const std::vector<std::int32_t> classes = integers(cells_.cell_array(CLASS));
        own_ = !classes.empty();
        for (std::size_t cell = 0; cell < cells_.cell_count(); ++cell) {
            const std::optional<ElementClass> of = class_of(cell, classes);
            if (!of) {
                others_.push_back(cell);
                continue;
            }
            cells_of_elements_.push_back(cell);
            mesh().elements.emplace_back().of = *of;
        }
        if (mesh().elements.empty())
            throw Failure(fmt::format("{}: expected triangles and quadrilaterals, found none", cells_.file));
        if (mesh().elements.size() > HIGHEST_ELEMENT_NUMBER)
            throw Failure(fmt::format("{}: expected at most {} elements, found {}", cells_.file,
                                      HIGHEST_ELEMENT_NUMBER, mesh().elements.size()));
    }

    void fill_elements() {
        const DataArray* material_array = cells_.cell_array(MATERIAL);
        for (const std::string_view name : {"gmsh:physical", "medit:ref", "CellEntityIds"})
            if (material_array == nullptr)
                material_array = cells_.cell_array(name);
        const std::vector<std::int32_t> materials = integers(material_array);
        const std::vector<Number> list = numbers(cells_.cell_array(NUMBER), cells_.cell_tags,
                                                 cells_of_elements_, HIGHEST_ELEMENT_NUMBER, "element");
        for (std::size_t i = 0; i < cells_of_elements_.size(); ++i) {
            const std::size_t cell = cells_of_elements_[i];
            Element& e = mesh().elements[i];
            e = element_of(cell, e.of, material_of(cell, materials));
            e.number = ElementNumber(list[i]);
            const GroupMeaning* meaning = meaning_of_cell(cell);
            name_material(cell, e);
            mesh().flow_lines = mesh().flow_lines || (meaning != nullptr && meaning->flow_line);
        }
        set_attributes();
        result_.flow_lines_lost = mesh().flow_lines && mesh().kind != LayoutKind::head;
        mesh().flow_lines = mesh().flow_lines && mesh().kind == LayoutKind::head;
    }

    // By the name of its group, be it the name alone.
    void name_material(std::size_t cell, const Element& e) {
        if (cells_.group_of.empty() || cells_.group_of[cell] < 0)
            return;
        const CellGroup& group = cells_.groups[static_cast<std::size_t>(cells_.group_of[cell])];
        const std::int32_t material = e.words.material.value;
        const GroupMeaning* meaning = meaning_of_cell(cell);
        const bool of_material =
            meaning != nullptr ? meaning->of == e.of && meaning->material == material : group.tag == material;
        const std::string& name = meaning != nullptr ? meaning->name : group.name;
        if (of_material && !name.empty() && named_.insert(cells_.group_of[cell]).second)
            mesh().names.set(e.of, material, name);
    }

    Element element_of(std::size_t cell, ElementClass of, std::int32_t material) {
        const std::int32_t* nodes = cells_.nodes.data() + cells_.first_node(cell);
        const auto number = [&](int k) { return NodeNumber(numbers_[static_cast<std::size_t>(nodes[k])]); };
        Element e;
        e.of = of;
        if (e.is_line()) {
            static_cast<ElementRecord&>(e) = two_node_element(number(0), number(1), MaterialNumber(material));
            return e;
        }
        const Shape2D shape = cells_.shapes[cell];
        const int corners = corners_of(shape);
        e.words.corner_1 = number(0);
        e.words.corner_2 = number(1);
        e.words.corner_3 = number(2);
        e.words.corner_4 = corners == 4 ? number(3) : NodeNumber{};
        if (shape != Shape2D::triangle && shape != Shape2D::quad) {
            e.words.midside_5 = number(corners);
            e.words.midside_6 = number(corners + 1);
            e.words.midside_7 = number(corners + 2);
            e.words.midside_8 = corners == 4 ? number(corners + 3) : NodeNumber{};
        }
        e.words.material = MaterialNumber(material);
        e.fluid = 1;
        e.integration_r = e.integration_s = 2;
        e.thickness = 1.0F;
        e.density = USUAL_DENSITY;
        if (of == ElementClass::joint) {
            e.skeleton = 1;
            e.attribute = 100;
            e.density = -1.0F;
        }
        return e;
    }

    void set_attributes() {
        for (const AttributeField& a : attribute_fields(mesh().kind)) {
            const DataArray* array = cells_.cell_array(a.name);
            if (array == nullptr)
                continue;
            for (std::size_t i = 0; i < cells_of_elements_.size(); ++i) {
                const double value = array->values[cells_of_elements_[i]];
                if (a.whole != nullptr)
                    mesh().elements[i].*a.whole = whole(value, a.name);
                else
                    mesh().elements[i].*a.real = real(value, a.name);
            }
        }
        for (const auto& [name, word] : MIDSIDES) {
            const std::vector<std::int32_t> values = integers(cells_.cell_array(name));
            for (std::size_t i = 0; i < cells_of_elements_.size() && !values.empty(); ++i)
                mesh().elements[i].words.*word = NodeNumber(values[cells_of_elements_[i]]);
        }
        if (!has_midside_nodes(mesh().kind))
            for (Element& e : mesh().elements)
                e.words.midside_5 = e.words.midside_6 = e.words.midside_7 = e.words.midside_8 = {};
    }

    // Cells that are no elements have a use where they give codes.
    void set_codes(const std::vector<GroupCodes>& codes) {
        CodesGiven given = give_codes(mesh(), cells_, codes, numbers_);
        result_.unmatched = std::move(given.unmatched);
        std::set<std::size_t> giving;
        for (const auto& [cell, group] : cells_.further_groups)
            if (given.groups.contains(group))
                giving.insert(cell);
        result_.left_out =
            static_cast<std::size_t>(std::count_if(others_.begin(), others_.end(), [&](std::size_t cell) {
                return !giving.contains(cell) &&
                       (cells_.group_of.empty() || !given.groups.contains(cells_.group_of[cell]));
            }));
        if (!cells_.group_of.empty())
            for (const std::size_t cell : cells_of_elements_)
                given.groups.insert(cells_.group_of[cell]);
        for (std::size_t g = 0; g < cells_.groups.size(); ++g)
            if (!given.groups.contains(static_cast<std::int32_t>(g)))
                result_.unused.push_back(title_of(cells_.groups[g]));
    }

    // The nodes of beams turn; those of other programs' lines cannot say so.
    void free_rotation_of_beams() {
        const std::vector<std::string_view> names = code_names(mesh().kind);
        const auto rotation = std::find_if(names.begin(), names.end(),
                                           [](std::string_view name) { return usual_code(name) == 1; });
        if (rotation == names.end())
            return;
        std::vector<bool> of_beam(static_cast<std::size_t>(HIGHEST_NODE_NUMBER) + 1, false);
        for (const Element& e : mesh().elements)
            if (e.of == ElementClass::beam)
                of_beam[e.words.corner_1.place()] = of_beam[e.words.corner_2.place()] = true;
        for (Node& node : mesh().nodes)
            if (of_beam[node.number.place()])
                node.codes[static_cast<std::size_t>(rotation - names.begin())] = 0;
    }

    // Elements run anti-clockwise here. A mesh of ours comes back as it was.
    void turn_clockwise() {
        if (own_)
            return;
        const std::vector<CornerPlaces> corners = brelan::corners_of(mesh());
        for (std::size_t i = 0; i < corners.size(); ++i) {
            if (corners[i].count < 3 || signed_area(mesh(), corners[i]) >= 0.0)
                continue;
            ++result_.turned;
            ElementWords& w = mesh().elements[i].words;
            if (corners[i].count == 3) {  // I1 I3 I2, the midside nodes with their sides
                std::swap(w.corner_2, w.corner_3);
                std::swap(w.midside_5, w.midside_7);
            } else {  // I1 I4 I3 I2
                std::swap(w.corner_2, w.corner_4);
                std::swap(w.midside_5, w.midside_8);
                std::swap(w.midside_6, w.midside_7);
            }
        }
    }

    const CellMesh& cells_;
    FromCells result_;
    std::vector<std::optional<GroupMeaning>> meanings_;  // by place of the group
    std::set<std::int32_t> named_;                       // groups that gave a material its name
    std::vector<std::size_t> cells_of_elements_;         // in the order of the mesh's elements
    std::vector<std::size_t> others_;                    // cells that are no elements
    std::vector<std::size_t> places_;  // of the nodes' points, in the order of the mesh's nodes
    std::vector<Number> numbers_;      // of the nodes, by place of the point; 0 none
    bool own_ = false;                 // written by us with all data: the classes tell
};

}  // namespace

FromCells mesh_of(const CellMesh& cells, std::optional<LayoutKind> kind,
                  const std::vector<GroupCodes>& codes) {
    return FromCellMesh(cells, kind).convert(codes);
}

}  // namespace brelan::tool
