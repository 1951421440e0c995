#pragma once

#include <tavo/simulator/models/header_status.h>
#include <tavo/simulator/simulated_object.h>

namespace TAVO::simulator {

/// Serves "headerStatusGet" of `object`. @param status must outlive the object.
void serveHeaderStatusGet(SimulatedObject& object, const HeaderStatus& status);
/// Serves "headerStatusGet" and "headerStatusClear" of `object`. @param status must outlive the object.
void serveHeaderStatus(SimulatedObject& object, HeaderStatus& status);

} // namespace TAVO::simulator
