#include <tavo/client/hwdebug/lpc_rom_emulation.h>

#include <utility>

#include <tavo/client/transcode/internal/conversions.h>
#include <tavo/client/transcode/internal/function_names.h>

namespace TAVO::TAVOXTranscode::lpcRomEmulation_v1_0 {

TAVO_METHODS(sramSizeGet, sramSet, sramGet, optionRomTypeSet, optionRomTypeGet, enableSet, enableGet);

} // namespace TAVO::TAVOXTranscode::lpcRomEmulation_v1_0

namespace TAVO::HWDebug {

namespace lpcRomEmulation_v1_0 = TAVOXTranscode::lpcRomEmulation_v1_0;

namespace LpcRomEmulation_v1_0_Structs {

TAVO_FROM_REPLY(SramGet, dto::lpcRomEmulation::SramGetReply);

} // namespace LpcRomEmulation_v1_0_Structs

std::shared_ptr<BoundMethod<LpcRomEmulation_v1_0_Structs::SramGet>>
LpcRomEmulation_v1_0::getSramGetMethod(int offset, int length) const {
    return make<LpcRomEmulation_v1_0_Structs::SramGet>(lpcRomEmulation_v1_0::sramGet, offset, length);
}

std::shared_ptr<Method> LpcRomEmulation_v1_0::getSramSetMethod(int offset,
                                                               std::vector<std::uint8_t> data) const {
    return make(lpcRomEmulation_v1_0::sramSet, offset, std::move(data));
}

std::shared_ptr<BoundMethod<dto::lpcRomEmulation::SramSizeGetReply>>
LpcRomEmulation_v1_0::getSramSizeGetMethod() const {
    return make(lpcRomEmulation_v1_0::sramSizeGet);
}

std::shared_ptr<BoundMethod<dto::lpcRomEmulation::OptionRomTypeGetReply>>
LpcRomEmulation_v1_0::getOptionRomTypeGetMethod() const {
    return make(lpcRomEmulation_v1_0::optionRomTypeGet);
}

std::shared_ptr<Method> LpcRomEmulation_v1_0::getOptionRomTypeSetMethod(int romType) const {
    return make(lpcRomEmulation_v1_0::optionRomTypeSet, romType);
}

std::shared_ptr<BoundMethod<dto::Header::EnableGetReply>> LpcRomEmulation_v1_0::getEnableGetMethod() const {
    return make(lpcRomEmulation_v1_0::enableGet);
}

std::shared_ptr<Method> LpcRomEmulation_v1_0::getEnableSetMethod(bool enable) const {
    return make(lpcRomEmulation_v1_0::enableSet, enable);
}

LpcRomEmulationFactory::LpcRomEmulationFactory()
    : TypeFactory("lpcRomEmulation", {servedBy<LpcRomEmulation_v1_0>("1.0", isAtMostOneZero)}) {}

} // namespace TAVO::HWDebug
