#include <tavo/client/hwdebug/hdt.h>

#include <algorithm>
#include <iterator>
#include <stdexcept>

#include <tavo/client/transcode/internal/function_names.h>

namespace TAVO::TAVOXTranscode::hdt_v1_0 {

TAVO_METHODS(ioDbreqGet, ioDbreqSet, ioDbrdyGet, ioDbrdySnapshotGet, ioDbrdySnapshotClear, ioResetGet,
             ioPwrokGet, optionDbreqOnDbrdySet, optionDbreqOnDbrdyGet, optionDbreqOnResetSet,
             optionDbreqOnResetGet, optionDbreqPulseWidthSet, optionDbreqPulseWidthGet, frequencyGet,
             enableGet, enableSet);

} // namespace TAVO::TAVOXTranscode::hdt_v1_0

namespace TAVO::TAVOXTranscode::hdt_v1_1 {

TAVO_METHODS(ioDbreqGet, ioDbreqSet, ioDbrdyGet, ioDbrdyWait, ioDbrdySnapshotGet, ioDbrdySnapshotClear,
             ioDbreqSourceSnapshotGet, ioDbreqSourceSnapshotClear, ioResetGet, ioPwrokGet, ioTriggerSet,
             ioTriggerGet, optionDbreqOnDbrdySet, optionDbreqOnDbrdyGet, optionDbreqOnResetSet,
             optionDbreqOnResetGet, optionDbreqOnTriggerSet, optionDbreqOnTriggerGet,
             optionDbreqPulseWidthSet, optionDbreqPulseWidthGet, optionDbrdyMaskSet, optionDbrdyMaskGet,
             optionFrequencyGet, optionTriggerSetupSet, optionTriggerSetupGet, enableGet, enableSet,
             headerStatusGet, headerStatusClear);

} // namespace TAVO::TAVOXTranscode::hdt_v1_1

namespace TAVO {

std::vector<bool> PlainResult<std::vector<bool>>::of(const dto::result& outcome) {
    const auto* snapshot = dynamic_cast<const dto::hdt::ioDbrdySnapshotReply*>(outcome.reply.get());
    const auto& lines = snapshot ? snapshot->lines : dto::replyOf<dto::hdt::ioDbrdyReply>(outcome).lines;
    std::vector<bool> levels;
    std::transform(lines.begin(), lines.end(), std::back_inserter(levels),
                   [](std::uint8_t line) { return line != 0; });
    return levels;
}

} // namespace TAVO

namespace TAVO::HWDebug {

namespace hdt_v1_0 = TAVOXTranscode::hdt_v1_0;
namespace hdt_v1_1 = TAVOXTranscode::hdt_v1_1;

Hdt::Hdt(std::shared_ptr<Device> device, const std::string& name, std::uint32_t instanceId,
         std::shared_ptr<Container> parent, const EncoderList& encoders, const DecoderList& decoders)
    : Object_v1_0(std::move(device), name, instanceId, std::move(parent), encoders, decoders) {}

Hdt::~Hdt() = default;

std::shared_ptr<BoundMethod<dto::Header::EnableGetReply>> Hdt::getEnableGetMethod() const {
    return make(hdt_v1_0::enableGet);
}

std::shared_ptr<Method> Hdt::getEnableSetMethod(bool enable) const {
    return make(hdt_v1_0::enableSet, enable);
}

std::shared_ptr<BoundMethod<dto::Header::iGetReply>> Hdt::getIoDbreqGetMethod() const {
    return make(hdt_v1_0::ioDbreqGet);
}

std::shared_ptr<Method> Hdt::getIoDbreqSetMethod(bool level) const {
    return make(hdt_v1_0::ioDbreqSet, level);
}

std::shared_ptr<BoundMethod<std::vector<bool>>> Hdt::getIoDbrdyGetMethod() const {
    return make<std::vector<bool>>(hdt_v1_0::ioDbrdyGet);
}

std::shared_ptr<BoundMethod<std::vector<bool>>> Hdt::getIoDbrdySnapShotGetMethod() const {
    return make<std::vector<bool>>(hdt_v1_0::ioDbrdySnapshotGet);
}

std::shared_ptr<Method> Hdt::getIoDbrdySnapshotClearMethod() const {
    return make(hdt_v1_0::ioDbrdySnapshotClear);
}

std::shared_ptr<BoundMethod<dto::Header::iGetReply>> Hdt::getIoResetGetMethod() const {
    return make(hdt_v1_0::ioResetGet);
}

std::shared_ptr<BoundMethod<dto::Header::iGetReply>> Hdt::getIoPwrokGetMethod() const {
    return make(hdt_v1_0::ioPwrokGet);
}

std::shared_ptr<BoundMethod<dto::hdt::OptionDbreqOnDbrdyGetReply>>
Hdt::getOptionDbreqOnDbrdyGetMethod() const {
    return make(hdt_v1_0::optionDbreqOnDbrdyGet);
}

std::shared_ptr<Method> Hdt::getOptionDbreqOnDbrdySetMethod(bool enable) const {
    return make(hdt_v1_0::optionDbreqOnDbrdySet, enable);
}

std::shared_ptr<BoundMethod<dto::hdt::OptionDbreqOnResetReply>> Hdt::getOptionDbreqOnResetGetMethod() const {
    return make(hdt_v1_0::optionDbreqOnResetGet);
}

std::shared_ptr<Method> Hdt::getOptionDbreqOnResetSetMethod(bool enable) const {
    return make(hdt_v1_0::optionDbreqOnResetSet, enable);
}

std::shared_ptr<BoundMethod<dto::hdt::OptionDbreqPulseWidthReply>>
Hdt::getOptionDbreqPulseWidthGetMethod() const {
    return make(hdt_v1_0::optionDbreqPulseWidthGet);
}

std::shared_ptr<Method> Hdt::getOptionDbreqPulseWidthSetMethod(int pulseWidth) const {
    return make(hdt_v1_0::optionDbreqPulseWidthSet, pulseWidth);
}

std::shared_ptr<BoundMethod<dto::hdt::FrequencyGetReply>> Hdt_v1_1::getOptionFrequencyGetMethod() const {
    return make(hdt_v1_1::optionFrequencyGet);
}

std::shared_ptr<BoundMethod<dto::Base::HeaderStatusGetReply>> Hdt_v1_1::getHeaderStatusGetMethod() const {
    return make(hdt_v1_1::headerStatusGet);
}

std::shared_ptr<Method> Hdt_v1_1::getHeaderStatusClearMethod() const {
    return make(hdt_v1_1::headerStatusClear);
}

std::shared_ptr<BoundMethod<dto::hdt::ioDbreqSourceSnapshotReply>>
Hdt_v1_1::getIoDbreqSourceSnapshotGetMethod() const {
    return make(hdt_v1_1::ioDbreqSourceSnapshotGet);
}

std::shared_ptr<Method> Hdt_v1_1::getIoDbreqSourceSnapshotClearMethod() const {
    return make(hdt_v1_1::ioDbreqSourceSnapshotClear);
}

std::shared_ptr<BoundMethod<dto::hdt::ioTriggerGetReply>> Hdt_v1_1::getIoTriggerGetMethod(int index) const {
    return make(hdt_v1_1::ioTriggerGet, index);
}

std::shared_ptr<Method> Hdt_v1_1::getIoTriggerSetMethod(int index, bool level) const {
    return make(hdt_v1_1::ioTriggerSet, index, level);
}

std::shared_ptr<BoundMethod<dto::hdt::OptionDbreqOnTriggerGetReply>>
Hdt_v1_1::getOptionDbreqOnTriggerGetMethod() const {
    return make(hdt_v1_1::optionDbreqOnTriggerGet);
}

std::shared_ptr<Method> Hdt_v1_1::getOptionDbreqOnTriggerSetMethod(bool flag1, int value1, bool flag2,
                                                                   int value2) const {
    return make(hdt_v1_1::optionDbreqOnTriggerSet, flag1, value1, flag2, value2);
}

std::shared_ptr<BoundMethod<dto::hdt::OptionDbrdyMaskGetReply>>
Hdt_v1_1::getOptionDbrdyMaskGetMethod() const {
    return make(hdt_v1_1::optionDbrdyMaskGet);
}

std::shared_ptr<Method> Hdt_v1_1::getOptionDbrdyMaskSet(const std::vector<bool>& mask) const {
    return make(hdt_v1_1::optionDbrdyMaskSet, std::vector<std::uint8_t>(mask.begin(), mask.end()));
}

std::shared_ptr<BoundMethod<dto::hdt::OptionTriggerSetupGetReply>>
Hdt_v1_1::getOptionTriggerSetupGetMethod(int index) const {
    return make(hdt_v1_1::optionTriggerSetupGet, index);
}

std::shared_ptr<Method> Hdt_v1_1::getOptionTriggerSetupSetMethod(int index, int value1, int value2,
                                                                 int value3, int value4, int value5,
                                                                 int value6, int value7) const {
    return make(hdt_v1_1::optionTriggerSetupSet, index, value1, value2, value3, value4, value5, value6,
                value7);
}

std::shared_ptr<Method> Hdt_v1_1::getIoDbrdyWaitMethod(const std::vector<dto::Header::IoGetReply>&,
                                                       int) const {
    throw std::runtime_error("getIoDbrdyWait not supported on kelvor ");
}

HdtFactory::HdtFactory()
    : TypeFactory("hdt", {servedBy<Hdt_v1_0>("1.0", isAtMostOneZero), servedBy<Hdt_v1_1>("1.1")}) {}

} // namespace TAVO::HWDebug
