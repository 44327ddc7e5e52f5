// Meshes as NumPy arrays.
#include <algorithm>
#include <array>
#include <cstddef>
#include <utility>

#include "analysis/mesh_file.h"
#include "analysis/quality.h"
#include "analysis/soundness.h"
#include "bindings.h"
#include "cli/json.h"
#include "commands/info_text.h"
#include "drawing/html.h"
#include "drawing/mesh_picture.h"
#include "drawing/soundness_text.h"
#include "formats/any_mesh.h"
#include "formats/cell_mesh.h"
#include "formats/gmsh.h"
#include "formats/mesh_file.h"
#include "formats/vtu.h"
#include "text/channel_numbers.h"

namespace brelan::python {

namespace py = pybind11;

namespace {

using MeshHandle = std::shared_ptr<HeldMesh>;

using Places = py::array_t<std::int32_t, py::array::c_style | py::array::forcecast>;
using Reals = py::array_t<float, py::array::c_style | py::array::forcecast>;

enum class Change { allowed, refused };

// The member of each record as an array that looks into the list: of `columns` values that stand one behind
// the other, or a plain one for none.
template <class Value, class Record>
py::array column(const MeshHandle& mesh, const std::vector<Record>& records, const void* first,
                 std::size_t columns, Change change) {
    std::vector<std::size_t> shape{records.size()}, strides{sizeof(Record)};
    if (columns > 0) {
        shape.push_back(columns);
        strides.push_back(sizeof(Value));
    }
    if (records.empty())
        return py::array_t<Value>(shape);
    py::array_t<Value> array(shape, strides, static_cast<const Value*>(first), py::cast(mesh));
    if (change == Change::refused)
        array.attr("flags").attr("writeable") = false;
    return array;
}

template <class Value>
py::array of_nodes(const MeshHandle& mesh, const Value Node::*member, std::size_t columns, Change change) {
    const std::vector<Node>& nodes = mesh->lists.nodes;
    return column<float>(mesh, nodes, nodes.empty() ? nullptr : &(nodes.front().*member), columns, change);
}

// --- what a mesh holds ---------------------------------------------------------------------------

py::array points(const MeshHandle& mesh) {
    static_assert(offsetof(Node, y) == offsetof(Node, x) + sizeof(float));
    return of_nodes(mesh, &Node::x, 2, Change::allowed);
}

py::array codes(const MeshHandle& mesh) {
    const std::vector<Node>& nodes = mesh->lists.nodes;
    return column<std::int32_t>(mesh, nodes, nodes.empty() ? nullptr : nodes.front().codes.data(),
                                code_names(mesh->lists.kind).size(), Change::allowed);
}

py::array node_numbers(const MeshHandle& mesh) {
    const std::vector<Node>& nodes = mesh->lists.nodes;
    return column<std::int32_t>(mesh, nodes, nodes.empty() ? nullptr : &nodes.front().number.value, 0,
                                Change::refused);
}

template <class Value>
py::array of_elements(const MeshHandle& mesh, const Value* first, std::size_t columns, Change change) {
    return column<Value>(mesh, mesh->lists.elements, first, columns, change);
}

const Element* first_element(const MeshHandle& mesh) {
    return mesh->lists.elements.empty() ? nullptr : mesh->lists.elements.data();
}

py::array element_numbers(const MeshHandle& mesh) {
    const Element* first = first_element(mesh);
    return of_elements(mesh, first == nullptr ? nullptr : &first->number.value, 0, Change::refused);
}

py::array materials(const MeshHandle& mesh) {
    const Element* first = first_element(mesh);
    return of_elements(mesh, first == nullptr ? nullptr : &first->words.material.value, 0, Change::allowed);
}

py::array classes(const MeshHandle& mesh) {
    const Element* first = first_element(mesh);
    return of_elements(mesh, first == nullptr ? nullptr : reinterpret_cast<const std::uint8_t*>(&first->of),
                       0, Change::refused);
}

py::array midsides(const MeshHandle& mesh) {
    static_assert(offsetof(ElementWords, midside_8) ==
                  offsetof(ElementWords, midside_5) + 3 * sizeof(std::int32_t));
    const Element* first = first_element(mesh);
    return of_elements(mesh, first == nullptr ? nullptr : &first->words.midside_5.value, 4, Change::refused);
}

py::array corners(const MeshHandle& mesh) {
    const std::vector<CornerPlaces>& places = mesh->corners;
    return column<std::int32_t>(mesh, places, places.empty() ? nullptr : places.front().place.data(), 4,
                                Change::refused);
}

py::array corner_counts(const MeshHandle& mesh) {
    const std::vector<CornerPlaces>& places = mesh->corners;
    return column<int>(mesh, places, places.empty() ? nullptr : &places.front().count, 0, Change::refused);
}

py::array attribute(const MeshHandle& mesh, const std::string& name) {
    const Element* first = first_element(mesh);
    for (const AttributeField& field : attribute_fields(mesh->lists.kind))
        if (field.name == name) {
            if (field.whole != nullptr)
                return of_elements(mesh, first == nullptr ? nullptr : &(first->*field.whole), 0,
                                   Change::allowed);
            return of_elements(mesh, first == nullptr ? nullptr : &(first->*field.real), 0, Change::allowed);
        }
    throw py::key_error(name);
}

std::vector<std::string> attribute_names(const HeldMesh& mesh) {
    std::vector<std::string> names;
    for (const AttributeField& field : attribute_fields(mesh.lists.kind))
        names.emplace_back(field.name);
    return names;
}

py::dict names_of(const HeldMesh& mesh) {
    py::dict names;
    for (const auto& [key, name] : mesh.lists.names)
        names[py::make_tuple(name_of(key.of), key.material)] = name;
    return names;
}

ElementClass class_named(const std::string& name) {
    for (std::size_t k = 0; k < CLASS_NAMES.size(); ++k)
        if (CLASS_NAMES[k] == name)
            return static_cast<ElementClass>(k);
    throw py::value_error("expected solid, joint, beam or truss, found '" + name + "'");
}

// Places in the list of nodes; -1 for a number that no node has.
Places places_of_nodes(const HeldMesh& mesh, const Places& numbers) {
    Places places(std::vector<py::ssize_t>(numbers.shape(), numbers.shape() + numbers.ndim()));
    std::transform(numbers.data(), numbers.data() + numbers.size(), places.mutable_data(),
                   [&](std::int32_t number) { return mesh.lists.node_place(number); });
    return places;
}

// --- reading and writing -------------------------------------------------------------------------

MeshHandle read_mesh(const std::string& file, const std::string& kind) {
    const py::gil_scoped_release unlocked;
    return reported(file, [&] {
        std::vector<std::string> remarks;
        MeshHandle mesh = std::make_shared<HeldMesh>(
            tool::read_any_mesh_as(tool::mesh_source(file), kind_of_name(kind),
                                   [&](const std::string& text) { remarks.push_back(text); }));
        mesh->remarks = std::move(remarks);
        return mesh;
    });
}

MeshHandle mesh_of_text(const std::string& text, const std::string& name, const std::string& kind) {
    const py::gil_scoped_release unlocked;
    return reported(name, [&] {
        return std::make_shared<HeldMesh>(tool::read_mesh_text(text, name, kind_of_name(kind)));
    });
}

std::string text_of(const HeldMesh& mesh, const std::string& name) {
    const py::gil_scoped_release unlocked;
    return reported(mesh.lists.file, [&] {
        Channels channels;
        Channel& file = channels.open_in_memory(CHANNEL_RESULT, mesh.lists.name);
        write_mesh(file, mesh.lists, name.empty() ? mesh.lists.name : name);
        return std::string(file.text());
    });
}

void save(const HeldMesh& mesh, const std::string& file, const std::string& format, bool bare) {
    const py::gil_scoped_release unlocked;
    reported(file, [&] {
        if (format == "mes") {
            tool::write_mesh_file(mesh.lists, file);
            return;
        }
        tool::CellMesh cells = tool::cells_of(mesh.lists);
        if (bare) {
            cells.point_data.clear();
            cells.cell_data.clear();
        }
        if (format == "vtu")
            tool::write_vtu(cells, file);
        else
            tool::write_gmsh(cells, file,
                             format == "msh2" ? tool::GmshVersion::v2_2 : tool::GmshVersion::v4_1);
    });
}

// --- as cells of other programs ------------------------------------------------------------------

template <class Value>
py::array_t<Value> array_of(const std::vector<Value>& values) {
    return py::array_t<Value>(values.size(), values.data());
}

py::dict arrays_of(const std::vector<tool::DataArray>& arrays) {
    py::dict all;
    for (const tool::DataArray& array : arrays)
        if (array.whole)
            all[array.name.c_str()] =
                array_of(std::vector<std::int32_t>(array.values.begin(), array.values.end()));
        else
            all[array.name.c_str()] = array_of(std::vector<float>(array.values.begin(), array.values.end()));
    return all;
}

py::dict cells_of_mesh(const HeldMesh& mesh) {
    const tool::CellMesh cells = reported(mesh.lists.file, [&] { return tool::cells_of(mesh.lists); });
    std::vector<std::uint8_t> shapes;
    for (const tool::Shape2D shape : cells.shapes)
        shapes.push_back(static_cast<std::uint8_t>(shape));
    py::dict all;
    all["points"] = array_of(cells.points);
    all["shapes"] = array_of(shapes);
    all["offsets"] = array_of(cells.offsets);
    all["nodes"] = array_of(cells.nodes);
    all["point_data"] = arrays_of(cells.point_data);
    all["cell_data"] = arrays_of(cells.cell_data);
    return all;
}

std::vector<tool::DataArray> arrays_from(const py::dict& all) {
    std::vector<tool::DataArray> arrays;
    for (const auto& [name, values] : all) {
        const py::array array = py::cast<py::array>(values);
        const py::array_t<double, py::array::forcecast> reals(array);
        tool::DataArray made{py::cast<std::string>(name), array.dtype().kind() != 'f', {}};
        made.values.assign(reals.data(), reals.data() + reals.size());
        arrays.push_back(std::move(made));
    }
    return arrays;
}

// Cells in blocks of one shape: its number and an array of places of points.
MeshHandle mesh_of_cells(const Reals& all_points, const std::vector<std::pair<int, Places>>& blocks,
                         const py::dict& point_data, const py::dict& cell_data, const std::string& kind,
                         const std::string& name) {
    tool::CellMesh cells;
    cells.file = cells.name = name;
    cells.points.assign(all_points.data(), all_points.data() + all_points.size());
    for (const auto& [shape, nodes] : blocks)
        for (py::ssize_t cell = 0; cell < nodes.shape(0); ++cell)
            cells.add_cell(static_cast<tool::Shape2D>(shape), nodes.data(cell));
    cells.point_data = arrays_from(point_data);
    cells.cell_data = arrays_from(cell_data);
    return reported(name, [&] {
        MeshHandle mesh = std::make_shared<HeldMesh>(tool::mesh_of(cells, kind_of_name(kind)).mesh);
        return mesh;
    });
}

// --- what can be said of a mesh ------------------------------------------------------------------

std::string info(const HeldMesh& mesh, double tolerance, std::size_t list) {
    const py::gil_scoped_release unlocked;
    return tool::report_json(tool::report_of(mesh.lists, tolerance), list).compact();
}

py::dict soundness(const HeldMesh& mesh, double tolerance) {
    Soundness found;
    {
        const py::gil_scoped_release unlocked;
        found = check_soundness(mesh.lists, mesh.corners, tolerance);
    }
    py::list findings;
    for (const Finding& finding : found.findings) {
        if (finding.places.empty())
            continue;
        std::vector<std::int32_t> elements, nodes, others;
        std::vector<double> at, amounts;
        for (const Place& place : finding.places) {
            elements.push_back(place.element);
            nodes.push_back(place.node);
            others.push_back(place.other);
            at.insert(at.end(), {place.at.x, place.at.y});
            amounts.push_back(place.amount);
        }
        findings.append(py::make_tuple(
            std::string(finding.id),
            std::string(finding.places.size() == 1 ? finding.singular : finding.plural), finding.unsound,
            array_of(elements), array_of(nodes), array_of(others),
            py::array_t<double>({finding.places.size(), std::size_t{2}}, at.data()), array_of(amounts)));
    }
    py::dict all;
    all["sound"] = found.sound();
    all["line"] = tool::soundness_line(found);
    all["findings"] = findings;
    all["free_edge_length"] = found.free_edges.length;
    all["tolerance"] = found.tolerance;
    return all;
}

// Places of the solids that have all their corners, and a row of measures for each.
py::tuple quality(const HeldMesh& mesh) {
    std::vector<std::int32_t> places;
    std::vector<double> rows;
    {
        const py::gil_scoped_release unlocked;
        for (std::size_t k = 0; k < mesh.lists.elements.size(); ++k) {
            if (mesh.lists.elements[k].of != ElementClass::solid || !mesh.corners[k].complete())
                continue;
            const Shape shape = shape_of(mesh.lists, mesh.corners[k]);
            places.push_back(static_cast<std::int32_t>(k));
            rows.insert(rows.end(), {shape.smallest_angle, shape.largest_angle, shape.aspect_ratio,
                                     shape.area, shape.shortest_side, shape.longest_side});
        }
    }
    return py::make_tuple(array_of(places),
                          py::array_t<double>({places.size(), std::size_t{6}}, rows.data()));
}

// --- pictures ------------------------------------------------------------------------------------

struct PictureWishes {
    double width = 1000.0;
    std::optional<std::array<double, 4>> window;
    std::string title, numbers;
    bool lines = true, codes = true, legend = true, faults = false;
};

tool::Picture drawn(const HeldMesh& mesh, const PictureWishes& wishes, const HeldDeck* deck) {
    tool::PictureOptions options;
    options.width = wishes.width;
    if (wishes.window) {
        const std::array<double, 4>& w = *wishes.window;
        options.window = Bounds{{w[0], w[1]}, {w[2], w[3]}};
    }
    options.title = wishes.title;
    options.node_numbers = wishes.numbers == "nodes" || wishes.numbers == "both";
    options.element_numbers = wishes.numbers == "elements" || wishes.numbers == "both";
    options.lines = wishes.lines;
    options.codes = wishes.codes;
    options.legend = wishes.legend;
    if (deck != nullptr)
        options.shapes = tool::shapes_of(deck->noted);
    std::optional<Soundness> faults;
    if (wishes.faults)
        faults = check_soundness(mesh.lists, mesh.corners);
    options.faults = faults ? &*faults : nullptr;
    return tool::picture_of(mesh.lists, options);
}

py::bytes picture(const HeldMesh& mesh, const std::string& format, const PictureWishes& wishes, double scale,
                  const HeldDeck* deck) {
    std::string bytes;
    {
        const py::gil_scoped_release unlocked;
        reported(mesh.lists.file, [&] {
            const tool::Scene scene = drawn(mesh, wishes, deck).scene;
            bytes = format == "svg" ? tool::svg_text(scene) : tool::png_bytes(scene, scale);
        });
    }
    return py::bytes(bytes);
}

}  // namespace

void bind_mesh(py::module_& module) {
    py::class_<PictureWishes>(module, "PictureWishes")
        .def(py::init<>())
        .def_readwrite("width", &PictureWishes::width)
        .def_readwrite("window", &PictureWishes::window)
        .def_readwrite("title", &PictureWishes::title)
        .def_readwrite("numbers", &PictureWishes::numbers)
        .def_readwrite("lines", &PictureWishes::lines)
        .def_readwrite("codes", &PictureWishes::codes)
        .def_readwrite("legend", &PictureWishes::legend)
        .def_readwrite("faults", &PictureWishes::faults);
    py::class_<HeldMesh, MeshHandle>(module, "Mesh")
        .def_property_readonly("file", [](const HeldMesh& mesh) { return mesh.lists.file; })
        .def_property(
            "name", [](const HeldMesh& mesh) { return mesh.lists.name; },
            [](HeldMesh& mesh, const std::string& name) { mesh.lists.name = name; })
        .def_property_readonly("kind",
                               [](const HeldMesh& mesh) { return std::string(name_of(mesh.lists.kind)); })
        .def_property_readonly("code_names",
                               [](const HeldMesh& mesh) {
                                   const auto names = code_names(mesh.lists.kind);
                                   return std::vector<std::string>(names.begin(), names.end());
                               })
        .def_property_readonly("value_name",
                               [](const HeldMesh& mesh) { return std::string(value_name(mesh.lists.kind)); })
        .def_property_readonly("attribute_names", &attribute_names)
        .def_readonly("remarks", &HeldMesh::remarks)
        .def("points", &points)
        .def("codes", &codes)
        .def("values", [](const MeshHandle& mesh) { return of_nodes(mesh, &Node::head, 0, Change::allowed); })
        .def("coefficients",
             [](const MeshHandle& mesh) { return of_nodes(mesh, &Node::coefficient, 0, Change::allowed); })
        .def("node_numbers", &node_numbers)
        .def("element_numbers", &element_numbers)
        .def("materials", &materials)
        .def("classes", &classes)
        .def("corners", &corners)
        .def("midsides", &midsides)
        .def("attribute", &attribute)
        .def("places_of_nodes", &places_of_nodes)
        .def("names", &names_of)
        .def("set_name",
             [](HeldMesh& mesh, const std::string& of, std::int32_t material, const std::string& name) {
                 mesh.lists.names.set(class_named(of), material, name);
             })
        .def("text", &text_of)
        .def("save", &save)
        .def("cells", &cells_of_mesh)
        .def("info", &info)
        .def("soundness", &soundness)
        .def("quality", &quality)
        .def("corner_counts", &corner_counts)
        .def("picture", &picture);
    module.def("read_mesh", &read_mesh);
    module.def("mesh_of_text", &mesh_of_text);
    module.def("mesh_of_cells", &mesh_of_cells);
}

}  // namespace brelan::python
