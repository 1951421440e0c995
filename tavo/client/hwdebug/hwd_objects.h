#pragma once

#include <tavo/client/export.h>

namespace TAVO::HWDebug {

/// The object types of the hardware-debug interfaces: "jtag", "csJtag", "hdt", "cpuDebug", "i2c", "gpuScan",
/// "gpuDebug", "kelvorGpuDebugMux", "kelvorUvdMux", "lpc", "lpcPostCode" and "lpcRomEmulation". Unless the
/// group is registered, such objects may appear in the tree with only the operations of every object.
class TAVO_API HwdObjects {
public:
    /// Call it once before you open devices: with a static library it makes the linker keep the factories of
    /// the group. Any thread may call it, any number of times, and so may initialisers of globals.
    static void registerCoreObjects();
};

} // namespace TAVO::HWDebug
