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

namespace {

JtagFactory jtagFactory;
CsJtagFactory csJtagFactory;
HdtFactory hdtFactory;
HwDebugFactory cpuDebugFactory;
I2cFactory i2cFactory;
GpuScanFactory gpuScanFactory;
GpuDebugFactory gpuDebugFactory;
KelvorGpuDebugMuxFactory kelvorGpuDebugMuxFactory;
KelvorUvdMuxFactory kelvorUvdMuxFactory;
LpcFactory lpcFactory;
LpcPostCodeFactory lpcPostCodeFactory;
LpcRomEmulationFactory lpcRomEmulationFactory;

} // namespace

void HwdObjects::registerCoreObjects() {
    jtagFactory.registerFactory();
    csJtagFactory.registerFactory();
    hdtFactory.registerFactory();
    cpuDebugFactory.registerFactory();
    i2cFactory.registerFactory();
    gpuScanFactory.registerFactory();
    gpuDebugFactory.registerFactory();
    kelvorGpuDebugMuxFactory.registerFactory();
    kelvorUvdMuxFactory.registerFactory();
    lpcFactory.registerFactory();
    lpcPostCodeFactory.registerFactory();
    lpcRomEmulationFactory.registerFactory();
}

} // namespace TAVO::HWDebug
