#pragma once

#include <string>
#include <typeinfo>

namespace TAVO {

/// The type as written in source, "TAVO::dto::relay::GetReply"; the mangled name where the platform cannot
/// demangle.
std::string readableName(const std::type_info& type);

} // namespace TAVO
