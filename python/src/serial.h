#pragma once

#include <pybind11/pybind11.h>

namespace TAVO::python {

/// Adds the class "SerialLink", and "send_break".
void addSerial(pybind11::module_& module);

} // namespace TAVO::python
