#include <tavo/client/hwdebug/gpu_debug.h>

#include <utility>

#include <tavo/client/hwdebug/child.h>

namespace TAVO::HWDebug {

using TAVOXTranscode::makeRequest;

GpuDebug_v1_0::GpuDebug_v1_0(std::shared_ptr<Device> device, const std::string& name,
                             std::uint32_t instanceId, std::shared_ptr<Container> parent,
                             const TAVOXTranscode::gpuDebug_v1_0::EncoderList& encoders,
                             const TAVOXTranscode::gpuDebug_v1_0::DecoderList& decoders)
    : Object_v1_0(std::move(device), name, instanceId, std::move(parent), encoders, decoders) {}

GpuDebug_v1_0::~GpuDebug_v1_0() = default;

void GpuDebug_v1_0::initalize() {
    jtag_ = requireChild<Jtag_v1_1>(*this, "jtag");
    gpuScan_ = requireChild<GpuScan_v1_0>(*this, "gpuScan", "gpuscan");
    i2c_ = findChild<I2c_v1_0>(*this, "i2c");
}

std::shared_ptr<BoundMethod<dto::gpuDebug::HeaderModeGetReply>>
GpuDebug_v1_0::getHeaderModeGetMethod() const {
    return prepare<dto::gpuDebug::HeaderModeGetReply>("headerModeGet");
}

std::shared_ptr<Method> GpuDebug_v1_0::getHeaderModeSetMethod(int mode) const {
    return prepare("headerModeSet", makeRequest<dto::gpuDebug::HeaderModeSetRequest>(mode));
}

std::shared_ptr<BoundMethod<dto::gpuDebug::IoPxEnGetReply>> GpuDebug_v1_0::getIoPxEnGetMethod() const {
    return prepare<dto::gpuDebug::IoPxEnGetReply>("ioPxEnGet");
}

std::shared_ptr<BoundMethod<HeaderResult>> GpuDebug_v1_0::getHeaderStatusGetMethod() const {
    return prepare<HeaderResult>("headerStatusGet");
}

GpuDebugFactory::GpuDebugFactory()
    : ObjectFactory("gpuDebug") {}

std::shared_ptr<Container> GpuDebugFactory::build(std::shared_ptr<Device> device,
                                                  std::shared_ptr<Container> parent, const std::string& name,
                                                  std::uint32_t instanceId,
                                                  std::shared_ptr<Object_v1_0> probe) {
    // The version is asked for as in every factory, and no version is refused.
    static_cast<void>(probe->version());
    namespace tables = TAVOXTranscode::gpuDebug_v1_0;
    return create<GpuDebug_v1_0>(device, parent, name, instanceId, tables::encoders(), tables::decoders());
}

} // namespace TAVO::HWDebug
