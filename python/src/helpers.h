#pragma once

#include <pybind11/pybind11.h>

namespace TAVO::python {

/// Adds what the toolkit does with remote objects: the class "Node" must be there.
void addHelpers(pybind11::module_& module);

} // namespace TAVO::python
