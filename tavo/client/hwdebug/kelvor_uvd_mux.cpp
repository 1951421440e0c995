#include <tavo/client/hwdebug/kelvor_uvd_mux.h>

namespace TAVO::HWDebug {

KelvorUvdMuxFactory::KelvorUvdMuxFactory()
    : TypeFactory("kelvorUvdMux", {servedBy<KelvorUvdMux_v1_0>("1.0")}) {}

} // namespace TAVO::HWDebug
