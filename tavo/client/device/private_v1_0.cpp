#include <tavo/client/device/private_v1_0.h>

#include <utility>

#include <tavo/client/transcode/internal/immortal.h>

namespace TAVO {

namespace TAVOXTranscode::private_v1_0 {

const EncoderList& encoders() noexcept { return immortal<const EncoderList>(); }
const DecoderList& decoders() noexcept { return immortal<const DecoderList>(); }

} // namespace TAVOXTranscode::private_v1_0

Private_v1_0::Private_v1_0(std::shared_ptr<Device> device, const std::string& name, std::uint32_t instanceId,
                           std::shared_ptr<Container> parent,
                           const TAVOXTranscode::private_v1_0::EncoderList& encoders,
                           const TAVOXTranscode::private_v1_0::DecoderList& decoders)
    : Object_v1_0(std::move(device), name, instanceId, std::move(parent), encoders, decoders) {}

Private_v1_0::~Private_v1_0() = default;

PrivateFactory::PrivateFactory()
    : ObjectFactory("private") {}

std::shared_ptr<Container> PrivateFactory::build(std::shared_ptr<Device> device,
                                                 std::shared_ptr<Container> parent, const std::string& name,
                                                 std::uint32_t instanceId, std::shared_ptr<Object_v1_0>) {
    namespace tables = TAVOXTranscode::private_v1_0;
    return create<Private_v1_0>(device, parent, name, instanceId, tables::encoders(), tables::decoders());
}

} // namespace TAVO
