#include <tavo/client/hwdebug/cs_jtag.h>

#include <utility>

#include <tavo/client/hwdebug/child.h>

namespace TAVO::HWDebug {

CsJtag_v1_0::CsJtag_v1_0(std::shared_ptr<Device> device, const std::string& name, std::uint32_t instanceId,
                         std::shared_ptr<Container> parent,
                         const TAVOXTranscode::csJtag_v1_0::EncoderList& encoders,
                         const TAVOXTranscode::csJtag_v1_0::DecoderList& decoders)
    : Object_v1_0(std::move(device), name, instanceId, std::move(parent), encoders, decoders) {}

CsJtag_v1_0::~CsJtag_v1_0() = default;

void CsJtag_v1_0::initalize() { jtag_ = requireChild<Jtag_v1_1>(*this, "jtag"); }

CsJtagFactory::CsJtagFactory()
    : ObjectFactory("csJtag") {}

std::shared_ptr<Container> CsJtagFactory::build(std::shared_ptr<Device> device,
                                                std::shared_ptr<Container> parent, const std::string& name,
                                                std::uint32_t instanceId,
                                                std::shared_ptr<Object_v1_0> probe) {
    // The version is asked for as in every factory, and no version is refused.
    static_cast<void>(probe->version());
    namespace tables = TAVOXTranscode::csJtag_v1_0;
    return create<CsJtag_v1_0>(device, parent, name, instanceId, tables::encoders(), tables::decoders());
}

} // namespace TAVO::HWDebug
