#include <tavo/client/commonmodules/relay.h>

#include <tavo/client/transcode/internal/function_names.h>

namespace CommonModules::TAVOXTranscode::relay_v1_0 {

TAVO_METHODS(get, set, toggle);

} // namespace CommonModules::TAVOXTranscode::relay_v1_0

namespace CommonModules::TAVOXTranscode::cmosRelay_v1_0 {

TAVO_METHODS(cmosClear);

} // namespace CommonModules::TAVOXTranscode::cmosRelay_v1_0

namespace CommonModules {

namespace cmosRelay_v1_0 = TAVOXTranscode::cmosRelay_v1_0;
namespace relay_v1_0 = TAVOXTranscode::relay_v1_0;

std::shared_ptr<TAVO::Method> Relay_v1_0::getSetMethod(bool state) const {
    return make(relay_v1_0::set, state);
}

std::shared_ptr<TAVO::Method> Relay_v1_0::getToggleMethod(int value) const {
    return make(relay_v1_0::toggle, value);
}

std::shared_ptr<TAVO::BoundMethod<TAVO::dto::relay::GetReply>> Relay_v1_0::getGetMethod() const {
    return make(relay_v1_0::get);
}

RelayFactory::RelayFactory()
    : TypeFactory("relay", {servedBy<Relay_v1_0>("1.0")}) {}

std::shared_ptr<TAVO::Method> CmosRelay_v1_0::getCmosClearMethod(int value) const {
    return make(cmosRelay_v1_0::cmosClear, value);
}

CmosRelayFactory::CmosRelayFactory()
    : TypeFactory("cmosRelay", {servedBy<CmosRelay_v1_0>("1.0", isAtMostOneZero)}) {}

} // namespace CommonModules
