#include <tavo/client/commonmodules/relay.h>

#include <utility>

namespace CommonModules {

using TAVOXTranscode::makeRequest;

Relay_v1_0::Relay_v1_0(std::shared_ptr<TAVO::Device> device, const std::string& name,
                       std::uint32_t instanceId, std::shared_ptr<TAVO::Container> parent,
                       const TAVOXTranscode::relay_v1_0::EncoderList& encoders,
                       const TAVOXTranscode::relay_v1_0::DecoderList& decoders)
    : Object_v1_0(std::move(device), name, instanceId, std::move(parent), encoders, decoders) {}

Relay_v1_0::~Relay_v1_0() = default;

std::shared_ptr<TAVO::Method> Relay_v1_0::getSetMethod(bool state) const {
    return prepare("set", makeRequest<TAVO::dto::relay::SetRequest>(state));
}

std::shared_ptr<TAVO::Method> Relay_v1_0::getToggleMethod(int value) const {
    return prepare("toggle", makeRequest<TAVO::dto::relay::ToggleRequest>(value));
}

std::shared_ptr<TAVO::BoundMethod<TAVO::dto::relay::GetReply>> Relay_v1_0::getGetMethod() const {
    return prepare<TAVO::dto::relay::GetReply>("get");
}

RelayFactory::RelayFactory()
    : ObjectFactory("relay") {}

std::shared_ptr<TAVO::Container> RelayFactory::build(std::shared_ptr<TAVO::Device> device,
                                                     std::shared_ptr<TAVO::Container> parent,
                                                     const std::string& name, std::uint32_t instanceId,
                                                     std::shared_ptr<TAVO::Object_v1_0> probe) {
    // The version is asked for as in every factory, and no version is refused.
    static_cast<void>(probe->version());
    namespace tables = TAVOXTranscode::relay_v1_0;
    return create<Relay_v1_0>(device, parent, name, instanceId, tables::encoders(), tables::decoders());
}

CmosRelay_v1_0::CmosRelay_v1_0(std::shared_ptr<TAVO::Device> device, const std::string& name,
                               std::uint32_t instanceId, std::shared_ptr<TAVO::Container> parent,
                               const TAVOXTranscode::cmosRelay_v1_0::EncoderList& encoders,
                               const TAVOXTranscode::cmosRelay_v1_0::DecoderList& decoders)
    : Object_v1_0(std::move(device), name, instanceId, std::move(parent), encoders, decoders) {}

CmosRelay_v1_0::~CmosRelay_v1_0() = default;

std::shared_ptr<TAVO::Method> CmosRelay_v1_0::getCmosClearMethod(int value) const {
    return prepare("cmosClear", makeRequest<TAVO::dto::cmosRelay::CmosClear>(value));
}

CmosRelayFactory::CmosRelayFactory()
    : ObjectFactory("cmosRelay") {}

std::shared_ptr<TAVO::Container> CmosRelayFactory::build(std::shared_ptr<TAVO::Device> device,
                                                         std::shared_ptr<TAVO::Container> parent,
                                                         const std::string& name, std::uint32_t instanceId,
                                                         std::shared_ptr<TAVO::Object_v1_0> probe) {
    requireAtMostOneZero("cmosRelay", probe->version());
    namespace tables = TAVOXTranscode::cmosRelay_v1_0;
    return create<CmosRelay_v1_0>(device, parent, name, instanceId, tables::encoders(), tables::decoders());
}

} // namespace CommonModules
