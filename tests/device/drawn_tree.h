#pragma once

#include <functional>
#include <memory>
#include <string>
#include <typeinfo>

#include <tavo/client/device/device_v1_0.h>
#include <tavo/client/device/private_v1_0.h>
#include <tavo/client/device/system_v1_0.h>
#include <tavo/client/object/device.h>
#include <tavo/client/wire/error.h>

/// Opened devices as text, to compare them.
namespace opening {

/// What a drawing says of an object beside its name, class, type and id.
using Details = std::function<std::string(const TAVO::Object_v1_0&)>;

inline std::string drawn(const std::shared_ptr<TAVO::Container>& node, const Details& details) {
    const auto& shown = *node;
    std::string drawing = node->getFullName() + " " + typeid(shown).name();
    if (const auto object = std::dynamic_pointer_cast<TAVO::Object_v1_0>(node))
        drawing +=
            " " + object->knownType() + " " + std::to_string(object->getInstanceID()) + details(*object);
    drawing += "\n";
    for (const auto& child : node->getChildren())
        drawing += drawn(child, details);
    return drawing;
}

/// The whole tree, the fixed objects included.
inline std::string drawn(const std::shared_ptr<TAVO::Device>& device, const Details& details) {
    std::string drawing = drawn(device->getDevice(), details) + drawn(device->getSystem(), details) +
                          drawn(device->getPrivate(), details);
    for (const auto& child : device->getChildren())
        drawing += drawn(child, details);
    return drawing;
}

/// The ids of those methods that the object lists, as details.
template <class Names>
std::string idsOf(const TAVO::Object_v1_0& object, const Names& names) {
    std::string ids;
    for (const auto& name : names)
        if (object.hasMethod(name))
            ids += " " + std::string(name) + "=" + std::to_string(object.getMethodID(name));
    return ids;
}

/// Class and text of an exception.
inline std::string told(const TAVO::Error& failure) {
    return std::string(typeid(failure).name()) + ": " + failure.what();
}

/// What became of an opening: the tree, or the exception.
template <class Open>
std::string outcomeOf(Open open, const Details& details) {
    try {
        return drawn(open(), details);
    } catch (const TAVO::Error& failure) {
        return told(failure);
    }
}

} // namespace opening
