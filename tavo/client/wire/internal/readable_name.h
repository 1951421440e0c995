#pragma once

#include <string>
#include <typeinfo>

namespace TAVO {

/// The type as its source has it, "TAVO::dto::relay::GetReply", where the platform tells.
std::string readableName(const std::type_info& type);

} // namespace TAVO
