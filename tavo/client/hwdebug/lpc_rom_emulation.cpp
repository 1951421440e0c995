#include <tavo/client/hwdebug/lpc_rom_emulation.h>

#include <utility>

namespace TAVO::HWDebug {

using TAVOXTranscode::makeRequest;

namespace LpcRomEmulation_v1_0_Structs {

SramGet::SramGet(const dto::lpcRomEmulation::SramGetReply& reply)
    : data(reply.data) {}

SramGet::SramGet(const dto::result& outcome)
    : SramGet(dto::replyOf<dto::lpcRomEmulation::SramGetReply>(outcome)) {}

} // namespace LpcRomEmulation_v1_0_Structs

LpcRomEmulation_v1_0::LpcRomEmulation_v1_0(std::shared_ptr<Device> device, const std::string& name,
                                           std::uint32_t instanceId, std::shared_ptr<Container> parent,
                                           const TAVOXTranscode::lpcRomEmulation_v1_0::EncoderList& encoders,
                                           const TAVOXTranscode::lpcRomEmulation_v1_0::DecoderList& decoders)
    : Object_v1_0(std::move(device), name, instanceId, std::move(parent), encoders, decoders) {}

LpcRomEmulation_v1_0::~LpcRomEmulation_v1_0() = default;

std::shared_ptr<BoundMethod<LpcRomEmulation_v1_0_Structs::SramGet>>
LpcRomEmulation_v1_0::getSramGetMethod(int offset, int length) const {
    return prepare<LpcRomEmulation_v1_0_Structs::SramGet>(
        "sramGet", makeRequest<dto::lpcRomEmulation::SramGetRequest>(offset, length));
}

std::shared_ptr<Method> LpcRomEmulation_v1_0::getSramSetMethod(int offset,
                                                               const std::vector<std::uint8_t>& data) const {
    return prepare("sramSet", makeRequest<dto::lpcRomEmulation::SramSetRequest>(offset, data));
}

std::shared_ptr<BoundMethod<dto::lpcRomEmulation::SramSizeGetReply>>
LpcRomEmulation_v1_0::getSramSizeGetMethod() const {
    return prepare<dto::lpcRomEmulation::SramSizeGetReply>("sramSizeGet");
}

std::shared_ptr<BoundMethod<dto::lpcRomEmulation::OptionRomTypeGetReply>>
LpcRomEmulation_v1_0::getOptionRomTypeGetMethod() const {
    return prepare<dto::lpcRomEmulation::OptionRomTypeGetReply>("optionRomTypeGet");
}

std::shared_ptr<Method> LpcRomEmulation_v1_0::getOptionRomTypeSetMethod(int romType) const {
    return prepare("optionRomTypeSet", makeRequest<dto::lpcRomEmulation::OptionRomTypeSetRequest>(romType));
}

std::shared_ptr<BoundMethod<dto::Header::EnableGetReply>> LpcRomEmulation_v1_0::getEnableGetMethod() const {
    return prepare<dto::Header::EnableGetReply>("enableGet");
}

std::shared_ptr<Method> LpcRomEmulation_v1_0::getEnableSetMethod(bool enable) const {
    return prepare("enableSet", makeRequest<dto::Header::EnableSetRequest>(enable));
}

LpcRomEmulationFactory::LpcRomEmulationFactory()
    : ObjectFactory("lpcRomEmulation") {}

std::shared_ptr<Container> LpcRomEmulationFactory::build(std::shared_ptr<Device> device,
                                                         std::shared_ptr<Container> parent,
                                                         const std::string& name, std::uint32_t instanceId,
                                                         std::shared_ptr<Object_v1_0> probe) {
    requireAtMostOneZero("lpcRomEmulation", probe->version());
    namespace tables = TAVOXTranscode::lpcRomEmulation_v1_0;
    return create<LpcRomEmulation_v1_0>(device, parent, name, instanceId, tables::encoders(),
                                        tables::decoders());
}

} // namespace TAVO::HWDebug
