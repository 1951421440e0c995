#pragma once

#include <tavo/client/export.h>

namespace CommonModules {

/// The object types of general-purpose peripherals: "relay", "cmosRelay", "com" and "cfa633". Unless the
/// group is registered, such objects may appear in the tree with only the operations of every object.
class TAVO_API CommonModulesObjects {
public:
    /// Call it once before you open devices: with a static library it makes the linker keep the factories of
    /// the group. Any thread may call it, any number of times, and so may initialisers of globals.
    static void registerCoreObjects();
};

} // namespace CommonModules
