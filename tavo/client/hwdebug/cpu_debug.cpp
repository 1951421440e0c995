#include <tavo/client/hwdebug/cpu_debug.h>

#include <tavo/client/hwdebug/child.h>
#include <tavo/client/transcode/internal/function_names.h>

namespace TAVO::TAVOXTranscode::cpuDebug_v1_0 {

MethodRows rows() noexcept { return {}; }

} // namespace TAVO::TAVOXTranscode::cpuDebug_v1_0

namespace TAVO::TAVOXTranscode::cpuDebug_v1_1 {

TAVO_METHODS(headerStatusGet);

} // namespace TAVO::TAVOXTranscode::cpuDebug_v1_1

namespace TAVO::HWDebug {

namespace cpuDebug_v1_1 = TAVOXTranscode::cpuDebug_v1_1;

void CpuDebug_v1_0::initalize() {
    jtag_ = requireChild<Jtag_v1_0>(*this, "jtag");
    hdt_ = requireChild<Hdt_v1_0>(*this, "hdt");
}

void CpuDebug_v1_1::initalize() {
    jtag_ = requireChild<Jtag_v1_1>(*this, "jtag");
    hdt_ = requireChild<Hdt_v1_1>(*this, "hdt");
}

std::shared_ptr<BoundMethod<HeaderResult>> CpuDebug_v1_1::getheaderStatusGetMethod() const {
    return make<HeaderResult>(cpuDebug_v1_1::headerStatusGet);
}

HwDebugFactory::HwDebugFactory()
    : TypeFactory("cpuDebug",
                  {servedBy<CpuDebug_v1_0>("1.0", isOneZeroAlone), servedBy<CpuDebug_v1_1>("1.1")}) {}

} // namespace TAVO::HWDebug
