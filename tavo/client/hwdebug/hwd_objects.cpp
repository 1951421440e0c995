#include <tavo/client/hwdebug/hwd_objects.h>

#include <tavo/client/hwdebug/cpu_debug.h>
#include <tavo/client/hwdebug/cs_jtag.h>
#include <tavo/client/hwdebug/gpu_debug.h>
#include <tavo/client/hwdebug/gpu_scan.h>
#include <tavo/client/hwdebug/hdt.h>
#include <tavo/client/hwdebug/i2c.h>
#include <tavo/client/hwdebug/jtag.h>
#include <tavo/client/hwdebug/kelvor_gpu_debug_mux.h>
#include <tavo/client/hwdebug/kelvor_uvd_mux.h>
#include <tavo/client/hwdebug/lpc.h>
#include <tavo/client/hwdebug/lpc_post_code.h>
#include <tavo/client/hwdebug/lpc_rom_emulation.h>

namespace TAVO::HWDebug {

void HwdObjects::registerCoreObjects() {
    registerFactories<JtagFactory, CsJtagFactory, HdtFactory, HwDebugFactory, I2cFactory, GpuScanFactory,
                      GpuDebugFactory, KelvorGpuDebugMuxFactory, KelvorUvdMuxFactory, LpcFactory,
                      LpcPostCodeFactory, LpcRomEmulationFactory>();
}

} // namespace TAVO::HWDebug
