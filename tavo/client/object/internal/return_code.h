#pragma once

#include <string>

namespace TAVO {

class Method;

/// For the few methods without whose success the library cannot go on.
/// @throws Error "Error executing " method "() method on " object ": " and the method's return code in
///         lower-case hexadecimal, unless it is 0.
void requireSuccess(const Method& method, const std::string& object);

} // namespace TAVO
