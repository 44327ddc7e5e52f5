#include "formats/cell_mesh.h"

#include <fmt/core.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <map>
#include <set>
#include <utility>

#include "cli/exit_status.h"

namespace brelan::tool {

int nodes_of(Shape2D shape) {
    switch (shape) {
        case Shape2D::vertex:
            return 1;
        case Shape2D::line:
            return 2;
        case Shape2D::triangle:
        case Shape2D::line3:
            return 3;
        case Shape2D::quad:
            return 4;
        case Shape2D::triangle6:
            return 6;
        case Shape2D::quad8:
            return 8;
        case Shape2D::quad9:
            return 9;
    }
    return 0;
}

int corners_of(Shape2D shape) {
    switch (shape) {
        case Shape2D::vertex:
            return 1;
        case Shape2D::line:
        case Shape2D::line3:
            return 2;
        case Shape2D::triangle:
        case Shape2D::triangle6:
            return 3;
        case Shape2D::quad:
        case Shape2D::quad8:
        case Shape2D::quad9:
            return 4;
    }
    return 0;
}

namespace {

const DataArray* array_named(const std::vector<DataArray>& arrays, std::string_view name) {
    const auto found =
        std::find_if(arrays.begin(), arrays.end(), [&](const DataArray& a) { return a.name == name; });
    return found == arrays.end() ? nullptr : &*found;
}

// --- from a mesh ---------------------------------------------------------------------------------

template <class Record, class Value>
DataArray array_of(std::string_view name, bool whole, const std::vector<Record>& records, Value&& value) {
    DataArray array{std::string(name), whole, {}};
    array.values.reserve(records.size());
    for (const Record& record : records)
        array.values.push_back(static_cast<double>(value(record)));
    return array;
}

class ToCells {
public:
    explicit ToCells(const MeshLists& mesh) : mesh_(mesh) {}

    CellMesh convert() {
        cells_.file = mesh_.file;
        cells_.name = mesh_.name;
        cells_.flow_lines = mesh_.flow_lines;
        cells_.names = mesh_.names;
        require_single_numbers();
        for (const Node& node : mesh_.nodes) {
            cells_.points.insert(cells_.points.end(), {node.x, node.y, 0.0F});
            cells_.point_tags.push_back(node.number.value);
        }
        for (const Element& e : mesh_.elements) {
            add_element(e);
            cells_.cell_tags.push_back(e.number.value);
        }
        add_groups();
        add_point_data();
        add_cell_data();
        return std::move(cells_);
    }

private:
    void require_single_numbers() const {
        for (std::size_t n = 1; n < mesh_.nodes.size(); ++n)
            if (mesh_.nodes[n].number.value == mesh_.nodes[n - 1].number.value)
                throw Failure(
                    fmt::format("{}: node number {} stands twice", mesh_.file, mesh_.nodes[n].number.value));
        for (std::size_t i = 0; i < mesh_.elements.size(); ++i)
            if (mesh_.element_place(mesh_.elements[i].number.value) != static_cast<std::int32_t>(i))
                throw Failure(fmt::format("{}: element number {} stands twice", mesh_.file,
                                          mesh_.elements[i].number.value));
    }

    void add_element(const Element& e) {
        std::array<std::int32_t, 8> nodes{};
        const int corners = e.corner_count();
        for (int k = 0; k < corners; ++k) {
            nodes[static_cast<std::size_t>(k)] = mesh_.node_place(e.corner(k));
            if (nodes[static_cast<std::size_t>(k)] == MeshLists::NONE)
                throw Failure(fmt::format("{}: element {} names node {}, which is not there", mesh_.file,
                                          e.number.value, e.corner(k)));
        }
        const std::array<Number, 4> midsides{e.words.midside_5.value, e.words.midside_6.value,
                                             e.words.midside_7.value, e.words.midside_8.value};
        int there = 0;
        for (int k = 0; k < corners && !e.is_line(); ++k) {
            const std::int32_t place = mesh_.node_place(midsides[static_cast<std::size_t>(k)]);
            nodes[static_cast<std::size_t>(corners) + static_cast<std::size_t>(k)] = place;
            there += place != MeshLists::NONE ? 1 : 0;
        }
        const bool quadratic = !e.is_line() && there == corners;
        cells_.straightened += there > 0 && !quadratic ? 1U : 0U;
        cells_.add_cell(corners == 2   ? Shape2D::line
                        : corners == 3 ? (quadratic ? Shape2D::triangle6 : Shape2D::triangle)
                                       : (quadratic ? Shape2D::quad8 : Shape2D::quad),
                        nodes.data());
    }

    // One group for each class and material. Its tag is the material where that is free and above 0; joints
    // and trusses give way to solids and beams.
    void add_groups() {
        std::map<std::pair<ElementClass, std::int32_t>, std::int32_t> places;
        for (const Element& e : mesh_.elements)
            places[{e.of, e.words.material.value}] = 0;
        std::set<std::int32_t> materials{0};
        for (const auto& [key, place] : places)
            materials.insert(key.second);
        std::int32_t free_tag = *materials.rbegin();  // those behind the largest material, then from 1 on
        const auto next_free_tag = [&] {
            do
                free_tag = free_tag == std::numeric_limits<std::int32_t>::max() ? 1 : free_tag + 1;
            while (materials.contains(free_tag));
            return free_tag;
        };
        std::set<std::pair<int, std::int32_t>> taken;
        for (auto& [key, place] : places) {
            CellGroup group{key.first == ElementClass::beam || key.first == ElementClass::truss ? 1 : 2,
                            key.second, mesh_.group_title(key.first, key.second)};
            if (group.tag < 1 || taken.contains({group.dimension, group.tag}))
                group.tag = next_free_tag();
            taken.insert({group.dimension, group.tag});
            place = static_cast<std::int32_t>(cells_.groups.size());
            cells_.groups.push_back(group);
        }
        for (const Element& e : mesh_.elements)
            cells_.group_of.push_back(places[{e.of, e.words.material.value}]);
    }

    void add_point_data() {
        std::vector<DataArray>& data = cells_.point_data;
        data.push_back(array_of(NUMBER, true, mesh_.nodes, [](const Node& n) { return n.number.value; }));
        const std::vector<std::string_view> codes = code_names(mesh_.kind);
        for (std::size_t k = 0; k < codes.size(); ++k)
            data.push_back(array_of(codes[k], true, mesh_.nodes, [k](const Node& n) { return n.codes[k]; }));
        if (const std::string_view value = value_name(mesh_.kind); !value.empty()) {
            data.push_back(array_of(value, false, mesh_.nodes, [](const Node& n) { return n.head; }));
            data.push_back(array_of("CF", false, mesh_.nodes, [](const Node& n) { return n.coefficient; }));
        }
    }

    void add_cell_data() {
        std::vector<DataArray>& data = cells_.cell_data;
        const std::vector<Element>& elements = mesh_.elements;
        data.push_back(array_of(NUMBER, true, elements, [](const Element& e) { return e.number.value; }));
        data.push_back(
            array_of(MATERIAL, true, elements, [](const Element& e) { return e.words.material.value; }));
        data.push_back(
            array_of(CLASS, true, elements, [](const Element& e) { return static_cast<int>(e.of) + 1; }));
        for (const AttributeField& a : attribute_fields(mesh_.kind))
            if (a.whole != nullptr)
                data.push_back(
                    array_of(a.name, true, elements, [&](const Element& e) { return e.*a.whole; }));
            else
                data.push_back(
                    array_of(a.name, false, elements, [&](const Element& e) { return e.*a.real; }));
        if (std::none_of(elements.begin(), elements.end(), [](const Element& e) {
                return e.words.midside_5.value != 0 || e.words.midside_6.value != 0 ||
                       e.words.midside_7.value != 0 || e.words.midside_8.value != 0;
            }))
            return;
        for (const auto& [name, word] : MIDSIDES)
            data.push_back(array_of(name, true, elements,
                                    [word = word](const Element& e) { return (e.words.*word).value; }));
    }

    const MeshLists& mesh_;
    CellMesh cells_;
};

}  // namespace

const DataArray* CellMesh::point_array(std::string_view name_wanted) const {
    return array_named(point_data, name_wanted);
}

const DataArray* CellMesh::cell_array(std::string_view name_wanted) const {
    return array_named(cell_data, name_wanted);
}

void CellMesh::require_plane() const {
    float low = 0.0F, high = 0.0F;
    for (std::size_t n = 0; n < point_count(); ++n) {
        const float* p = points.data() + 3 * n;
        if (!std::isfinite(p[0]) || !std::isfinite(p[1]) || !std::isfinite(p[2]))
            throw Failure(fmt::format("{}: point {}: expected coordinates within 32-bit range", file, n + 1));
        low = n == 0 ? p[2] : std::min(low, p[2]);
        high = n == 0 ? p[2] : std::max(high, p[2]);
    }
    if (high > low)
        throw Failure(fmt::format("{}: expected a plane mesh, found z from {} to {}", file, low, high));
}

void CellMesh::add_cell(Shape2D shape, const std::int32_t* cell_nodes) {
    shapes.push_back(shape);
    nodes.insert(nodes.end(), cell_nodes, cell_nodes + nodes_of(shape));
    offsets.push_back(static_cast<std::int32_t>(nodes.size()));
}

std::string_view same_code(std::string_view name) {
    static constexpr std::array<std::pair<std::string_view, std::string_view>, 3> SAME{
        {{"IDX", "ISX"}, {"IDY", "ISY"}, {"IDT", "IRZ"}}};
    for (const auto& [one, two] : SAME)
        if (name == one || name == two)
            return name == one ? two : one;
    return "";
}

CellMesh cells_of(const MeshLists& mesh) {
    return ToCells(mesh).convert();
}

}  // namespace brelan::tool
