#pragma once

#include <memory>
#include <string>

#include <tavo/client/object/container.h>
#include <tavo/client/wire/error.h>

namespace TAVO::HWDebug {

/// The child of exactly that name, as the class `Proxy`; empty when there is none, or it is of another class.
/// Does not call the device. For composites of your own, in Container::initalize.
template <class Proxy>
std::shared_ptr<Proxy> findChild(const Container& parent, const std::string& name) {
    return std::dynamic_pointer_cast<Proxy>(parent.getChild(name));
}

/// Like findChild(), but for a child that must be there.
/// @param what the name of the child in the message.
/// @throws SpecificationError `what` " object not found." when findChild() finds nothing.
template <class Proxy>
std::shared_ptr<Proxy> requireChild(const Container& parent, const std::string& name,
                                    const std::string& what) {
    if (auto child = findChild<Proxy>(parent, name))
        return child;
    throw SpecificationError(what + " object not found.");
}

/// The same with the child's own name in the message.
template <class Proxy>
std::shared_ptr<Proxy> requireChild(const Container& parent, const std::string& name) {
    return requireChild<Proxy>(parent, name, name);
}

} // namespace TAVO::HWDebug
