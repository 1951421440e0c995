#include <tavo/client/hwdebug/lpc_post_code.h>

#include <utility>

namespace TAVO::HWDebug {

LpcPostCode_v1_0::LpcPostCode_v1_0(std::shared_ptr<Device> device, const std::string& name,
                                   std::uint32_t instanceId, std::shared_ptr<Container> parent,
                                   const TAVOXTranscode::lpcPostCode_v1_0::EncoderList& encoders,
                                   const TAVOXTranscode::lpcPostCode_v1_0::DecoderList& decoders)
    : Object_v1_0(std::move(device), name, instanceId, std::move(parent), encoders, decoders) {}

LpcPostCode_v1_0::~LpcPostCode_v1_0() = default;

LpcPostCodeFactory::LpcPostCodeFactory()
    : ObjectFactory("lpcPostCode") {}

std::shared_ptr<Container> LpcPostCodeFactory::build(std::shared_ptr<Device> device,
                                                     std::shared_ptr<Container> parent,
                                                     const std::string& name, std::uint32_t instanceId,
                                                     std::shared_ptr<Object_v1_0> probe) {
    requireAtMostOneZero("lpcPostCode", probe->version());
    namespace tables = TAVOXTranscode::lpcPostCode_v1_0;
    return create<LpcPostCode_v1_0>(device, parent, name, instanceId, tables::encoders(), tables::decoders());
}

} // namespace TAVO::HWDebug
