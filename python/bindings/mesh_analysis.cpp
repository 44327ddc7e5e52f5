// What can be said of a mesh: its cells for other programs, what lies where, soundness, quality, pictures.
#include <algorithm>
#include <array>
#include <utility>

#include "analysis/quality.h"
#include "analysis/queries.h"
#include "analysis/soundness.h"
#include "bindings.h"
#include "cli/json.h"
#include "commands/info_text.h"
#include "drawing/mesh_picture.h"
#include "drawing/soundness_text.h"
#include "formats/cell_mesh.h"

namespace brelan::python {

namespace py = pybind11;

namespace {

using MeshHandle = std::shared_ptr<HeldMesh>;
using Places = py::array_t<std::int32_t, py::array::c_style | py::array::forcecast>;
using Reals = py::array_t<float, py::array::c_style | py::array::forcecast>;

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

// True where the names of codes tell the kind of the mesh.
bool has_codes(const tool::CellMesh& cells) {
    return std::any_of(ALL_KINDS.begin(), ALL_KINDS.end(), [&](LayoutKind kind) {
        const auto names = code_names(kind);
        return std::any_of(names.begin(), names.end(),
                           [&](std::string_view name) { return cells.point_array(name) != nullptr; });
    });
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
        std::optional<LayoutKind> wished = kind_of_name(kind);
        if (!wished && !has_codes(cells))
            wished = LayoutKind::displacement;
        return std::make_shared<HeldMesh>(tool::mesh_of(cells, wished).mesh);
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

// --- what lies where -----------------------------------------------------------------------------

py::array_t<std::int32_t> on_line(const HeldMesh& mesh, const std::string& axis, double at,
                                  double tolerance) {
    return array_of(nodes_on(mesh.lists, {axis == "x" ? Axis::x : Axis::y, at}, tolerance));
}

py::array_t<std::int32_t> in_rectangle(const HeldMesh& mesh, const std::array<double, 4>& r,
                                       double tolerance) {
    return array_of(nodes_in(mesh.lists, Bounds{{r[0], r[1]}, {r[2], r[3]}}, tolerance));
}

py::array_t<std::int32_t> of_material(const HeldMesh& mesh, std::int32_t material, const std::string& of) {
    return array_of(of == "continuum" ? continuum_elements_of(mesh.lists, material)
                                      : elements_of(mesh.lists, class_named(of), material));
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

void bind_analysis(py::module_& module, py::class_<HeldMesh, MeshHandle>& type) {
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
    type.def("cells", &cells_of_mesh)
        .def("info", &info)
        .def("soundness", &soundness)
        .def("quality", &quality)
        .def("nodes_on", &on_line)
        .def("nodes_in", &in_rectangle)
        .def("elements_of", &of_material)
        .def("border", [](const HeldMesh& mesh) { return array_of(border_nodes(mesh.lists)); })
        .def("picture", &picture);
    module.def("mesh_of_cells", &mesh_of_cells);
}

}  // namespace brelan::python
