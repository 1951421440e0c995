#pragma once

#include <tavo/client/export.h>

namespace CommonModules {

/// The object types of general-purpose peripherals: "relay", "cmosRelay", "com" and "cfa633". Objects of a
/// type whose group is not registered appear in the tree with the operations of every object alone.
class TAVO_API CommonModulesObjects {
public:
    /// Call it once before opening devices: it makes sure that the factories of the group are part of the
    /// program, which matters where the library is linked statically. Initialisers of globals may call it.
    /// Calling it again, from any thread, does no harm.
    static void registerCoreObjects();
};

} // namespace CommonModules
