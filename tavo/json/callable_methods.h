#pragma once

#include <vector>

#include <tavo/client/object/method_tables.h>

namespace TAVO::json {

/// The methods that both the device and this client know, in published order.
std::vector<const TAVOXTranscode::MethodRow*> callableMethods(const Object_v1_0& object);

} // namespace TAVO::json
