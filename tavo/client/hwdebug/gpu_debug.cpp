#include <tavo/client/hwdebug/gpu_debug.h>

#include <tavo/client/hwdebug/child.h>
#include <tavo/client/transcode/internal/function_names.h>

namespace TAVO::TAVOXTranscode::gpuDebug_v1_0 {

TAVO_METHODS(headerStatusGet, headerModeGet, headerModeSet, ioPxEnGet);

} // namespace TAVO::TAVOXTranscode::gpuDebug_v1_0

namespace TAVO::HWDebug {

namespace gpuDebug_v1_0 = TAVOXTranscode::gpuDebug_v1_0;

void GpuDebug_v1_0::initalize() {
    jtag_ = requireChild<Jtag_v1_1>(*this, "jtag");
    gpuScan_ = requireChild<GpuScan_v1_0>(*this, "gpuScan", "gpuscan");
    i2c_ = findChild<I2c_v1_0>(*this, "i2c");
}

std::shared_ptr<BoundMethod<dto::gpuDebug::HeaderModeGetReply>>
GpuDebug_v1_0::getHeaderModeGetMethod() const {
    return make(gpuDebug_v1_0::headerModeGet);
}

std::shared_ptr<Method> GpuDebug_v1_0::getHeaderModeSetMethod(int mode) const {
    return make(gpuDebug_v1_0::headerModeSet, mode);
}

std::shared_ptr<BoundMethod<dto::gpuDebug::IoPxEnGetReply>> GpuDebug_v1_0::getIoPxEnGetMethod() const {
    return make(gpuDebug_v1_0::ioPxEnGet);
}

std::shared_ptr<BoundMethod<HeaderResult>> GpuDebug_v1_0::getHeaderStatusGetMethod() const {
    return make<HeaderResult>(gpuDebug_v1_0::headerStatusGet);
}

GpuDebugFactory::GpuDebugFactory()
    : TypeFactory("gpuDebug", {servedBy<GpuDebug_v1_0>("1.0")}) {}

} // namespace TAVO::HWDebug
