#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include <tavo/client/export.h>
#include <tavo/client/hwdebug/kelvor_gpu_debug_mux_tables.h>
#include <tavo/client/object/object_factory.h>

namespace TAVO::HWDebug {

/// Proxy of a "kelvorGpuDebugMux" object, a multiplexer board. Its operations build calls and
/// send nothing; each throws SpecificationError when the device does not list the method.
class TAVO_API KelvorGpuDebugMux_v1_0 : public Object_v1_0 {
public:
    ~KelvorGpuDebugMux_v1_0() override;

    std::shared_ptr<BoundMethod<dto::kelvorGpuDebugMux::HeaderModeGetReply>> getHeaderModeGetMethod() const;
    std::shared_ptr<Method> getHeaderModeSetMethod(int mode) const;

protected:
    friend class TAVO::ObjectFactory;
    KelvorGpuDebugMux_v1_0(std::shared_ptr<Device> device, const std::string& name, std::uint32_t instanceId,
                           std::shared_ptr<Container> parent,
                           const TAVOXTranscode::kelvorGpuDebugMux_v1_0::EncoderList& encoders,
                           const TAVOXTranscode::kelvorGpuDebugMux_v1_0::DecoderList& decoders);
};

/// Serves type "kelvorGpuDebugMux" of every version.
class TAVO_API KelvorGpuDebugMuxFactory : public ObjectFactory {
public:
    KelvorGpuDebugMuxFactory();

private:
    friend class HwdObjects;
    std::shared_ptr<Container> build(std::shared_ptr<Device> device, std::shared_ptr<Container> parent,
                                     const std::string& name, std::uint32_t instanceId,
                                     std::shared_ptr<Object_v1_0> probe) override;
};

} // namespace TAVO::HWDebug
