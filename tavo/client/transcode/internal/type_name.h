#pragma once

#include <string>
#include <typeinfo>

namespace TAVO {

/// The type as one writes it in C++, as far as the compiler's run-time library can tell.
std::string readableName(const std::type_info& type);

/// That of the object behind the pointer.
template <class Base>
std::string readableNameOf(const Base* object) {
    return object ? readableName(typeid(*object)) : "no record";
}

} // namespace TAVO
