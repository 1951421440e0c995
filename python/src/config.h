#pragma once

#include <pybind11/pybind11.h>

namespace TAVO::python {

namespace py = pybind11;

/// What arguments, environment and the user's configuration file say together.
void addConfig(py::module_& module);

} // namespace TAVO::python
