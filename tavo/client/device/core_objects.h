#pragma once

#include <tavo/client/export.h>

namespace TAVO {

/// The object types that every device has: "device", "private" and "system". Without this group no device
/// opens.
class TAVO_API CoreObjects {
public:
    /// Call it once before you open devices: with a static library it makes the linker keep the factories of
    /// the group. Any thread may call it, any number of times, and so may initialisers of globals.
    static void registerCoreObjects();
};

} // namespace TAVO
