#pragma once

#include <pybind11/pybind11.h>

namespace TAVO::python {

/// Adds the class Simulator to the module.
void addSimulator(pybind11::module_& module);

} // namespace TAVO::python
