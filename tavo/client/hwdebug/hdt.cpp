#include <tavo/client/hwdebug/hdt.h>

#include <algorithm>
#include <iterator>
#include <stdexcept>
#include <utility>

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

using TAVOXTranscode::makeRequest;

Hdt::Hdt(std::shared_ptr<Device> device, const std::string& name, std::uint32_t instanceId,
         std::shared_ptr<Container> parent, const EncoderList& encoders, const DecoderList& decoders)
    : Object_v1_0(std::move(device), name, instanceId, std::move(parent), encoders, decoders) {}

Hdt::~Hdt() = default;

std::shared_ptr<BoundMethod<dto::Header::EnableGetReply>> Hdt::getEnableGetMethod() const {
    return prepare<dto::Header::EnableGetReply>("enableGet");
}

std::shared_ptr<Method> Hdt::getEnableSetMethod(bool enable) const {
    return prepare("enableSet", makeRequest<dto::Header::EnableSetRequest>(enable));
}

std::shared_ptr<BoundMethod<dto::Header::iGetReply>> Hdt::getIoDbreqGetMethod() const {
    return prepare<dto::Header::iGetReply>("ioDbreqGet");
}

std::shared_ptr<Method> Hdt::getIoDbreqSetMethod(bool level) const {
    return prepare("ioDbreqSet", makeRequest<dto::Header::iSetRequest>(level));
}

std::shared_ptr<BoundMethod<std::vector<bool>>> Hdt::getIoDbrdyGetMethod() const {
    return prepare<std::vector<bool>>("ioDbrdyGet");
}

std::shared_ptr<BoundMethod<std::vector<bool>>> Hdt::getIoDbrdySnapShotGetMethod() const {
    return prepare<std::vector<bool>>("ioDbrdySnapshotGet");
}

std::shared_ptr<Method> Hdt::getIoDbrdySnapshotClearMethod() const { return prepare("ioDbrdySnapshotClear"); }

std::shared_ptr<BoundMethod<dto::Header::iGetReply>> Hdt::getIoResetGetMethod() const {
    return prepare<dto::Header::iGetReply>("ioResetGet");
}

std::shared_ptr<BoundMethod<dto::Header::iGetReply>> Hdt::getIoPwrokGetMethod() const {
    return prepare<dto::Header::iGetReply>("ioPwrokGet");
}

std::shared_ptr<BoundMethod<dto::hdt::OptionDbreqOnDbrdyGetReply>>
Hdt::getOptionDbreqOnDbrdyGetMethod() const {
    return prepare<dto::hdt::OptionDbreqOnDbrdyGetReply>("optionDbreqOnDbrdyGet");
}

std::shared_ptr<Method> Hdt::getOptionDbreqOnDbrdySetMethod(bool enable) const {
    return prepare("optionDbreqOnDbrdySet", makeRequest<dto::hdt::OptionDbreqOnDbrdySetRequest>(enable));
}

std::shared_ptr<BoundMethod<dto::hdt::OptionDbreqOnResetReply>> Hdt::getOptionDbreqOnResetGetMethod() const {
    return prepare<dto::hdt::OptionDbreqOnResetReply>("optionDbreqOnResetGet");
}

std::shared_ptr<Method> Hdt::getOptionDbreqOnResetSetMethod(bool enable) const {
    return prepare("optionDbreqOnResetSet", makeRequest<dto::hdt::OptionDbreqOnResetRequest>(enable));
}

std::shared_ptr<BoundMethod<dto::hdt::OptionDbreqPulseWidthReply>>
Hdt::getOptionDbreqPulseWidthGetMethod() const {
    return prepare<dto::hdt::OptionDbreqPulseWidthReply>("optionDbreqPulseWidthGet");
}

std::shared_ptr<Method> Hdt::getOptionDbreqPulseWidthSetMethod(int pulseWidth) const {
    return prepare("optionDbreqPulseWidthSet",
                   makeRequest<dto::hdt::OptionDbreqPulseWidthRequest>(pulseWidth));
}

Hdt_v1_0::Hdt_v1_0(std::shared_ptr<Device> device, const std::string& name, std::uint32_t instanceId,
                   std::shared_ptr<Container> parent, const TAVOXTranscode::hdt_v1_0::EncoderList& encoders,
                   const TAVOXTranscode::hdt_v1_0::DecoderList& decoders)
    : Hdt(std::move(device), name, instanceId, std::move(parent), encoders, decoders) {}

Hdt_v1_0::~Hdt_v1_0() = default;

Hdt_v1_1::Hdt_v1_1(std::shared_ptr<Device> device, const std::string& name, std::uint32_t instanceId,
                   std::shared_ptr<Container> parent, const TAVOXTranscode::hdt_v1_1::EncoderList& encoders,
                   const TAVOXTranscode::hdt_v1_1::DecoderList& decoders)
    : Hdt(std::move(device), name, instanceId, std::move(parent), encoders, decoders) {}

Hdt_v1_1::~Hdt_v1_1() = default;

std::shared_ptr<BoundMethod<dto::hdt::FrequencyGetReply>> Hdt_v1_1::getOptionFrequencyGetMethod() const {
    return prepare<dto::hdt::FrequencyGetReply>("optionFrequencyGet");
}

std::shared_ptr<BoundMethod<dto::Base::HeaderStatusGetReply>> Hdt_v1_1::getHeaderStatusGetMethod() const {
    return prepare<dto::Base::HeaderStatusGetReply>("headerStatusGet");
}

std::shared_ptr<Method> Hdt_v1_1::getHeaderStatusClearMethod() const { return prepare("headerStatusClear"); }

std::shared_ptr<BoundMethod<dto::hdt::ioDbreqSourceSnapshotReply>>
Hdt_v1_1::getIoDbreqSourceSnapshotGetMethod() const {
    return prepare<dto::hdt::ioDbreqSourceSnapshotReply>("ioDbreqSourceSnapshotGet");
}

std::shared_ptr<Method> Hdt_v1_1::getIoDbreqSourceSnapshotClearMethod() const {
    return prepare("ioDbreqSourceSnapshotClear");
}

std::shared_ptr<BoundMethod<dto::hdt::ioTriggerGetReply>> Hdt_v1_1::getIoTriggerGetMethod(int index) const {
    return prepare<dto::hdt::ioTriggerGetReply>("ioTriggerGet",
                                                makeRequest<dto::hdt::ioTriggerGetRequest>(index));
}

std::shared_ptr<Method> Hdt_v1_1::getIoTriggerSetMethod(int index, bool level) const {
    return prepare("ioTriggerSet", makeRequest<dto::hdt::ioTriggerSetRequest>(index, level));
}

std::shared_ptr<BoundMethod<dto::hdt::OptionDbreqOnTriggerGetReply>>
Hdt_v1_1::getOptionDbreqOnTriggerGetMethod() const {
    return prepare<dto::hdt::OptionDbreqOnTriggerGetReply>("optionDbreqOnTriggerGet");
}

std::shared_ptr<Method> Hdt_v1_1::getOptionDbreqOnTriggerSetMethod(bool flag1, int value1, bool flag2,
                                                                   int value2) const {
    return prepare("optionDbreqOnTriggerSet",
                   makeRequest<dto::hdt::OptionDbreqOnTriggerSetRequest>(flag1, value1, flag2, value2));
}

std::shared_ptr<BoundMethod<dto::hdt::OptionDbrdyMaskGetReply>>
Hdt_v1_1::getOptionDbrdyMaskGetMethod() const {
    return prepare<dto::hdt::OptionDbrdyMaskGetReply>("optionDbrdyMaskGet");
}

std::shared_ptr<Method> Hdt_v1_1::getOptionDbrdyMaskSet(const std::vector<bool>& mask) const {
    return prepare("optionDbrdyMaskSet", makeRequest<dto::hdt::OptionDbrdyMaskSetRequest>(
                                             std::vector<std::uint8_t>(mask.begin(), mask.end())));
}

std::shared_ptr<BoundMethod<dto::hdt::OptionTriggerSetupGetReply>>
Hdt_v1_1::getOptionTriggerSetupGetMethod(int index) const {
    return prepare<dto::hdt::OptionTriggerSetupGetReply>(
        "optionTriggerSetupGet", makeRequest<dto::hdt::OptionTriggerSetupGetRequest>(index));
}

std::shared_ptr<Method> Hdt_v1_1::getOptionTriggerSetupSetMethod(int index, int value1, int value2,
                                                                 int value3, int value4, int value5,
                                                                 int value6, int value7) const {
    return prepare("optionTriggerSetupSet",
                   makeRequest<dto::hdt::OptionTriggerSetupSetRequest>(index, value1, value2, value3, value4,
                                                                       value5, value6, value7));
}

std::shared_ptr<Method> Hdt_v1_1::getIoDbrdyWaitMethod(const std::vector<dto::Header::IoGetReply>&,
                                                       int) const {
    throw std::runtime_error("getIoDbrdyWait not supported on kelvor ");
}

HdtFactory::HdtFactory()
    : ObjectFactory("hdt") {}

std::shared_ptr<Container> HdtFactory::build(std::shared_ptr<Device> device,
                                             std::shared_ptr<Container> parent, const std::string& name,
                                             std::uint32_t instanceId, std::shared_ptr<Object_v1_0> probe) {
    if (isAtMostOneZero(probe->version())) {
        namespace tables = TAVOXTranscode::hdt_v1_0;
        return create<Hdt_v1_0>(device, parent, name, instanceId, tables::encoders(), tables::decoders());
    }
    namespace tables = TAVOXTranscode::hdt_v1_1;
    return create<Hdt_v1_1>(device, parent, name, instanceId, tables::encoders(), tables::decoders());
}

} // namespace TAVO::HWDebug
