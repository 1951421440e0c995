#include <tavo/client/hwdebug/kelvor_gpu_debug_mux.h>

#include <utility>

namespace TAVO::HWDebug {

using TAVOXTranscode::makeRequest;

KelvorGpuDebugMux_v1_0::KelvorGpuDebugMux_v1_0(
    std::shared_ptr<Device> device, const std::string& name, std::uint32_t instanceId,
    std::shared_ptr<Container> parent, const TAVOXTranscode::kelvorGpuDebugMux_v1_0::EncoderList& encoders,
    const TAVOXTranscode::kelvorGpuDebugMux_v1_0::DecoderList& decoders)
    : Object_v1_0(std::move(device), name, instanceId, std::move(parent), encoders, decoders) {}

KelvorGpuDebugMux_v1_0::~KelvorGpuDebugMux_v1_0() = default;

std::shared_ptr<BoundMethod<dto::kelvorGpuDebugMux::HeaderModeGetReply>>
KelvorGpuDebugMux_v1_0::getHeaderModeGetMethod() const {
    return prepare<dto::kelvorGpuDebugMux::HeaderModeGetReply>("headerModeGet");
}

std::shared_ptr<Method> KelvorGpuDebugMux_v1_0::getHeaderModeSetMethod(int mode) const {
    return prepare("headerModeSet", makeRequest<dto::kelvorGpuDebugMux::HeaderModeSetRequest>(mode));
}

KelvorGpuDebugMuxFactory::KelvorGpuDebugMuxFactory()
    : ObjectFactory("kelvorGpuDebugMux") {}

std::shared_ptr<Container> KelvorGpuDebugMuxFactory::build(std::shared_ptr<Device> device,
                                                           std::shared_ptr<Container> parent,
                                                           const std::string& name, std::uint32_t instanceId,
                                                           std::shared_ptr<Object_v1_0> probe) {
    // The version is asked for as in every factory, and no version is refused.
    static_cast<void>(probe->version());
    namespace tables = TAVOXTranscode::kelvorGpuDebugMux_v1_0;
    return create<KelvorGpuDebugMux_v1_0>(device, parent, name, instanceId, tables::encoders(),
                                          tables::decoders());
}

} // namespace TAVO::HWDebug
