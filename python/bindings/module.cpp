#include "bindings.h"

#include <algorithm>

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

Remark taken_apart(const std::string& message, const std::string& file) {
    const std::string mark = ", line ", behind = ": ";
    if (const std::size_t at = message.find(mark); at != std::string::npos) {
        const std::size_t digits = at + mark.size();
        const std::size_t end = std::min(message.find_first_not_of("0123456789", digits), message.size());
        if (end > digits && end - digits < 9 && message.compare(end, behind.size(), behind) == 0)
            return {message.substr(end + behind.size()), message.substr(0, at),
                    std::stoi(message.substr(digits, end - digits))};
    }
    if (!file.empty() && message.starts_with(file + behind))
        return {message.substr(file.size() + behind.size()), file, 0};
    return {message, "", 0};
}

void throw_error(const Remark& remark, std::optional<std::size_t> field) {
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
