#include "bindings.h"

namespace brelan::python {

namespace py = pybind11;

std::optional<LayoutKind> kind_of_name(const std::string& name) {
    if (name.empty())
        return std::nullopt;
    const std::optional<LayoutKind> kind = kind_named(name);
    if (!kind)
        throw tool::Failure("kind: expected coupled, temperature, head or displacement, found '" + name +
                            "'");
    return kind;
}

void throw_error(const tool::PlacedRemark& remark, std::optional<std::size_t> field) {
    const py::gil_scoped_acquire lock;
    const py::object type = py::module_::import("brelan.errors").attr("Error");
    const py::object error = type(remark.text, remark.file, remark.line, field);
    PyErr_SetObject(type.ptr(), error.ptr());
    throw py::error_already_set();
}

}  // namespace brelan::python

PYBIND11_MODULE(_core, module) {
    module.doc() = "What the package brelan is made on.";
    module.attr("version") = BRELAN_VERSION;
    brelan::python::bind_mesh(module);
    brelan::python::bind_deck(module);
    brelan::python::bind_study(module);
}
