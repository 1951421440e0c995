#include <tavo/client/hwdebug/kelvor_uvd_mux.h>

#include <utility>

namespace TAVO::HWDebug {

KelvorUvdMux_v1_0::KelvorUvdMux_v1_0(std::shared_ptr<Device> device, const std::string& name,
                                     std::uint32_t instanceId, std::shared_ptr<Container> parent,
                                     const EncoderList& encoders, const DecoderList& decoders)
    : Object_v1_0(std::move(device), name, instanceId, std::move(parent), encoders, decoders) {}

KelvorUvdMux_v1_0::~KelvorUvdMux_v1_0() = default;

KelvorUvdMuxFactory::KelvorUvdMuxFactory()
    : ObjectFactory("kelvorUvdMux") {}

std::shared_ptr<Container> KelvorUvdMuxFactory::build(std::shared_ptr<Device> device,
                                                      std::shared_ptr<Container> parent,
                                                      const std::string& name, std::uint32_t instanceId,
                                                      std::shared_ptr<Object_v1_0> probe) {
    // The version is asked for as in every factory, and no version is refused.
    static_cast<void>(probe->version());
    namespace tables = TAVOXTranscode::base_v1_0;
    return create<KelvorUvdMux_v1_0>(device, parent, name, instanceId, tables::encoders(),
                                     tables::decoders());
}

} // namespace TAVO::HWDebug
