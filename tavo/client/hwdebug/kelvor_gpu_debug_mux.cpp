#include <tavo/client/hwdebug/kelvor_gpu_debug_mux.h>

#include <tavo/client/transcode/internal/function_names.h>

namespace TAVO::TAVOXTranscode::kelvorGpuDebugMux_v1_0 {

TAVO_METHODS(headerModeGet, headerModeSet);

} // namespace TAVO::TAVOXTranscode::kelvorGpuDebugMux_v1_0

namespace TAVO::HWDebug {

namespace kelvorGpuDebugMux_v1_0 = TAVOXTranscode::kelvorGpuDebugMux_v1_0;

std::shared_ptr<BoundMethod<dto::kelvorGpuDebugMux::HeaderModeGetReply>>
KelvorGpuDebugMux_v1_0::getHeaderModeGetMethod() const {
    return make(kelvorGpuDebugMux_v1_0::headerModeGet);
}

std::shared_ptr<Method> KelvorGpuDebugMux_v1_0::getHeaderModeSetMethod(int mode) const {
    return make(kelvorGpuDebugMux_v1_0::headerModeSet, mode);
}

KelvorGpuDebugMuxFactory::KelvorGpuDebugMuxFactory()
    : TypeFactory("kelvorGpuDebugMux", {servedBy<KelvorGpuDebugMux_v1_0>("1.0")}) {}

} // namespace TAVO::HWDebug
