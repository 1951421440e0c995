#pragma once

#include <tavo/client/export.h>

namespace TAVO {

/// The object types that every device has: "device", "private" and "system". Without this group no device can
/// be opened.
class TAVO_API CoreObjects {
public:
    /// Call it once before opening devices: it makes sure that the factories of the group are part of the
    /// program, which matters where the library is linked statically. Initialisers of globals may call it.
    /// Calling it again, from any thread, does no harm.
    static void registerCoreObjects();
};

} // namespace TAVO
