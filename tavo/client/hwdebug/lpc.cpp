#include <tavo/client/hwdebug/lpc.h>

#include <utility>

#include <tavo/client/hwdebug/child.h>

namespace TAVO::HWDebug {

Lpc_v1_0::Lpc_v1_0(std::shared_ptr<Device> device, const std::string& name, std::uint32_t instanceId,
                   std::shared_ptr<Container> parent, const TAVOXTranscode::lpc_v1_0::EncoderList& encoders,
                   const TAVOXTranscode::lpc_v1_0::DecoderList& decoders)
    : Object_v1_0(std::move(device), name, instanceId, std::move(parent), encoders, decoders) {}

Lpc_v1_0::~Lpc_v1_0() = default;

void Lpc_v1_0::initalize() {
    romEmulation_ = requireChild<LpcRomEmulation_v1_0>(*this, "lpcRomEmulation", "lpc rom emulation");
    postCode_ = requireChild<LpcPostCode_v1_0>(*this, "lpcPostCode", "lpc post code");
}

std::shared_ptr<BoundMethod<dto::lpc::HeaderConnectionsReply>> Lpc_v1_0::getHeaderConnectGetMethod() const {
    return prepare<dto::lpc::HeaderConnectionsReply>("headerConnectGet");
}

LpcFactory::LpcFactory()
    : ObjectFactory("lpc") {}

std::shared_ptr<Container> LpcFactory::build(std::shared_ptr<Device> device,
                                             std::shared_ptr<Container> parent, const std::string& name,
                                             std::uint32_t instanceId, std::shared_ptr<Object_v1_0> probe) {
    requireAtMostOneZero("lpc", probe->version());
    namespace tables = TAVOXTranscode::lpc_v1_0;
    return create<Lpc_v1_0>(device, parent, name, instanceId, tables::encoders(), tables::decoders());
}

} // namespace TAVO::HWDebug
