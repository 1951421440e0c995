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
#include <tavo/client/transcode/internal/immortal.h>

namespace TAVO::HWDebug {

void HwdObjects::registerCoreObjects() {
    immortal<JtagFactory>().registerFactory();
    immortal<CsJtagFactory>().registerFactory();
    immortal<HdtFactory>().registerFactory();
    immortal<HwDebugFactory>().registerFactory();
    immortal<I2cFactory>().registerFactory();
    immortal<GpuScanFactory>().registerFactory();
    immortal<GpuDebugFactory>().registerFactory();
    immortal<KelvorGpuDebugMuxFactory>().registerFactory();
    immortal<KelvorUvdMuxFactory>().registerFactory();
    immortal<LpcFactory>().registerFactory();
    immortal<LpcPostCodeFactory>().registerFactory();
    immortal<LpcRomEmulationFactory>().registerFactory();
}

} // namespace TAVO::HWDebug
