#pragma once

#include <tavo/client/export.h>

namespace TAVO::HWDebug {

/// The object types of the hardware-debug interfaces: "jtag", "csJtag", "hdt", "cpuDebug", "i2c", "gpuScan",
/// "gpuDebug", "kelvorGpuDebugMux", "kelvorUvdMux", "lpc", "lpcPostCode" and "lpcRomEmulation". Objects of a
/// type whose group is not registered appear in the tree with the operations of every object alone.
class TAVO_API HwdObjects {
public:
    /// Call it once before opening devices: it makes sure that the factories of the group are part of the
    /// program, which matters where the library is linked statically. Initialisers of globals may call it.
    /// Calling it again, from any thread, does no harm.
    static void registerCoreObjects();
};

} // namespace TAVO::HWDebug
