// Meshes as NumPy arrays.
#include <algorithm>
#include <array>
#include <cstddef>
#include <utility>

#include "analysis/mesh_file.h"
#include "bindings.h"
#include "formats/any_mesh.h"
#include "formats/any_target.h"
#include "formats/mesh_file.h"
#include "text/channel_numbers.h"

namespace brelan::python {

namespace py = pybind11;

namespace {

using MeshHandle = std::shared_ptr<HeldMesh>;

using Places = py::array_t<std::int32_t, py::array::c_style | py::array::forcecast>;

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

// What a file may carry besides the mesh, as it was asked for.
struct SaveWishes {
    bool arrays = true, stage_files = false, axisymmetric = false;
    std::vector<std::int32_t> cables;
    std::string joints, materials;
    std::optional<double> gravity;
    std::vector<std::array<std::int32_t, 4>> activity;  // element, comes, goes, old material
};

// Returns what the file cannot hold.
std::vector<std::string> save(const HeldMesh& mesh, const std::string& file, const std::string& format,
                              const SaveWishes& wishes) {
    const py::gil_scoped_release unlocked;
    return reported(file, [&] {
        const std::optional<tool::Target> target =
            format.empty() ? tool::target_of_name(file) : tool::target_named(format);
        if (!target)
            throw tool::Failure(
                file + ": expected a name that ends in .Mes, .vtu, .msh, .mdpa or .inp, or the format");
        tool::Carried carried;
        carried.arrays = wishes.arrays;
        carried.stage_files = wishes.stage_files;
        carried.cables = wishes.cables;
        if (wishes.axisymmetric)
            carried.inp.form = tool::PlaneForm::axisymmetric;
        carried.inp.joints = tool::joint_choice(wishes.joints);
        carried.inp.gravity = wishes.gravity.value_or(carried.inp.gravity);
        if (!wishes.materials.empty())
            carried.inp.materials = tool::read_properties(wishes.materials);
        std::vector<ElementActivity> activity;
        for (const auto& [element, comes, goes, old] : wishes.activity)
            activity.push_back({ElementNumber{element}, {comes, goes}, MaterialNumber{old}});
        carried.stages = Stages(mesh.lists, activity);
        std::vector<std::string> remarks;
        tool::write_any_mesh(mesh.lists, *target, file, carried,
                             [&](const std::string& text) { remarks.push_back(text); });
        return remarks;
    });
}

}  // namespace

ElementClass class_named(const std::string& name) {
    for (std::size_t k = 0; k < CLASS_NAMES.size(); ++k)
        if (CLASS_NAMES[k] == name)
            return static_cast<ElementClass>(k);
    throw py::value_error("expected solid, joint, beam or truss, found '" + name + "'");
}

void bind_mesh(py::module_& module) {
    py::class_<SaveWishes>(module, "SaveWishes")
        .def(py::init<>())
        .def_readwrite("arrays", &SaveWishes::arrays)
        .def_readwrite("stage_files", &SaveWishes::stage_files)
        .def_readwrite("axisymmetric", &SaveWishes::axisymmetric)
        .def_readwrite("cables", &SaveWishes::cables)
        .def_readwrite("joints", &SaveWishes::joints)
        .def_readwrite("materials", &SaveWishes::materials)
        .def_readwrite("gravity", &SaveWishes::gravity)
        .def_readwrite("activity", &SaveWishes::activity);
    py::class_<HeldMesh, MeshHandle> type(module, "Mesh");
    type.def_property_readonly("file", [](const HeldMesh& mesh) { return mesh.lists.file; })
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
        .def("corner_counts", &corner_counts);
    bind_analysis(module, type);
    module.def("read_mesh", &read_mesh);
    module.def("mesh_of_text", &mesh_of_text);
}

}  // namespace brelan::python
