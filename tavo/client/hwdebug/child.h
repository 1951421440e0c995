#pragma once

#include <memory>
#include <string>

#include <tavo/client/object/container.h>
#include <tavo/client/wire/error.h>

namespace TAVO::HWDebug {

/// The child of that name as the proxy class `Proxy`; empty when there is none or it is of another class. No
/// call to the device.
template <class Proxy>
std::shared_ptr<Proxy> findChild(const Container& parent, const std::string& name) {
    return std::dynamic_pointer_cast<Proxy>(parent.getChild(name));
}

/// The same for a child that must be there.
/// @param what what the child is called in the message.
/// @throws SpecificationError `what` " object not found." where findChild() finds nothing.
template <class Proxy>
std::shared_ptr<Proxy> requireChild(const Container& parent, const std::string& name,
                                    const std::string& what) {
    if (auto child = findChild<Proxy>(parent, name))
        return child;
    throw SpecificationError(what + " object not found.");
}

/// The same for a child that is called by its name in the message.
template <class Proxy>
std::shared_ptr<Proxy> requireChild(const Container& parent, const std::string& name) {
    return requireChild<Proxy>(parent, name, name);
}

} // namespace TAVO::HWDebug
