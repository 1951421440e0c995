#include <tavo/client/hwdebug/jtag.h>

#include <utility>

namespace TAVO::HWDebug {

using TAVOXTranscode::makeRequest;

namespace Jtag_v1_1_Structs {

RepeatGet::RepeatGet(const dto::Jtag::OptionRepeatGetReply& reply)
    : irCount(reply.irCount)
    , irEnable(reply.irEnable)
    , drCount(reply.drCount)
    , drEnable(reply.drEnable) {}

RepeatGet::RepeatGet(const dto::result& outcome)
    : RepeatGet(dto::replyOf<dto::Jtag::OptionRepeatGetReply>(outcome)) {}

RetryGet::RetryGet(const dto::Jtag::OptionRetryGetReply& reply)
    : irCount(reply.irCount)
    , irEnable(reply.irEnable)
    , drCount(reply.drCount)
    , drEnable(reply.drEnable) {}

RetryGet::RetryGet(const dto::result& outcome)
    : RetryGet(dto::replyOf<dto::Jtag::OptionRetryGetReply>(outcome)) {}

TdoExpectedGet::TdoExpectedGet(const dto::Jtag::OptionTdoExpectedGetReply& reply)
    : irBits(reply.irBits)
    , irExpected(reply.irExpected)
    , irMask(reply.irMask)
    , drBits(reply.drBits)
    , drExpected(reply.drExpected)
    , drMask(reply.drMask) {}

TdoExpectedGet::TdoExpectedGet(const dto::result& outcome)
    : TdoExpectedGet(dto::replyOf<dto::Jtag::OptionTdoExpectedGetReply>(outcome)) {}

} // namespace Jtag_v1_1_Structs

Jtag_v1_0::Jtag_v1_0(std::shared_ptr<Device> device, const std::string& name, std::uint32_t instanceId,
                     std::shared_ptr<Container> parent,
                     const TAVOXTranscode::jtag_v1_0::EncoderList& encoders,
                     const TAVOXTranscode::jtag_v1_0::DecoderList& decoders)
    : Object_v1_0(std::move(device), name, instanceId, std::move(parent), encoders, decoders) {}

Jtag_v1_0::~Jtag_v1_0() = default;

Jtag_v1_1::Jtag_v1_1(std::shared_ptr<Device> device, const std::string& name, std::uint32_t instanceId,
                     std::shared_ptr<Container> parent,
                     const TAVOXTranscode::jtag_v1_1::EncoderList& encoders,
                     const TAVOXTranscode::jtag_v1_1::DecoderList& decoders)
    : Object_v1_0(std::move(device), name, instanceId, std::move(parent), encoders, decoders) {}

Jtag_v1_1::~Jtag_v1_1() = default;

std::shared_ptr<BoundMethod<dto::Jtag::ShiftReply>>
Jtag_v1_1::getShiftIRMethod(int bits, const std::vector<std::uint8_t>& data) const {
    return prepare<dto::Jtag::ShiftReply>("shiftIR", makeRequest<dto::Jtag::ShiftRequest>(bits, data));
}

std::shared_ptr<BoundMethod<dto::Jtag::ShiftReply>>
Jtag_v1_1::getShiftDRMethod(int bits, const std::vector<std::uint8_t>& data) const {
    return prepare<dto::Jtag::ShiftReply>("shiftDR", makeRequest<dto::Jtag::ShiftRequest>(bits, data));
}

std::shared_ptr<BoundMethod<dto::Jtag::TapStateGetReply>> Jtag_v1_1::tapStateGetMethod() const {
    return prepare<dto::Jtag::TapStateGetReply>("tapStateGet");
}

std::shared_ptr<Method> Jtag_v1_1::getTapStateSetMethod(int state) const {
    return prepare("tapStateSet", makeRequest<dto::Jtag::TapStateSetRequest>(state));
}

std::shared_ptr<Method> Jtag_v1_1::getSleepMethod(int duration, bool flag) const {
    return prepare("sleep", makeRequest<dto::Jtag::SleepRequest>(duration, flag));
}

std::shared_ptr<BoundMethod<dto::Base::FrequencyGetReply>> Jtag_v1_1::getOptionTckFrequencyGetMethod() const {
    return prepare<dto::Base::FrequencyGetReply>("optionTckFrequencyGet");
}

std::shared_ptr<Method> Jtag_v1_1::getOptionTckFrequencySetMethod(int frequency) const {
    return prepare("optionTckFrequencySet", makeRequest<dto::Jtag::OptionTckFrequencySetRequest>(frequency));
}

std::shared_ptr<BoundMethod<Jtag_v1_1_Structs::TdoExpectedGet>>
Jtag_v1_1::getOptionTdoExpectedGetMethod() const {
    return prepare<Jtag_v1_1_Structs::TdoExpectedGet>("optionTdoExpectedGet");
}

std::shared_ptr<Method> Jtag_v1_1::getOptionTdoExpectedSetMethod(
    int irBits, const std::vector<std::uint8_t>& irExpected, const std::vector<std::uint8_t>& irMask,
    int drBits, const std::vector<std::uint8_t>& drExpected, const std::vector<std::uint8_t>& drMask) const {
    return prepare("optionTdoExpectedSet", makeRequest<dto::Jtag::OptionTdoExpectedSetRequest>(
                                               irBits, irExpected, irMask, drBits, drExpected, drMask));
}

std::shared_ptr<BoundMethod<Jtag_v1_1_Structs::RetryGet>> Jtag_v1_1::getOptionRetryGetMethod() const {
    return prepare<Jtag_v1_1_Structs::RetryGet>("optionRetryGet");
}

std::shared_ptr<Method> Jtag_v1_1::getOptionRetrySetMethod(int irCount, bool irEnable, int drCount,
                                                           bool drEnable) const {
    return prepare("optionRetrySet",
                   makeRequest<dto::Jtag::OptionRetrySetRequest>(irCount, irEnable, drCount, drEnable));
}

std::shared_ptr<BoundMethod<Jtag_v1_1_Structs::RepeatGet>> Jtag_v1_1::getOptionRepeatGetMethod() const {
    return prepare<Jtag_v1_1_Structs::RepeatGet>("optionRepeatGet");
}

std::shared_ptr<Method> Jtag_v1_1::getOptionRepeatSetMethod(int irCount, bool irEnable, int drCount,
                                                            bool drEnable) const {
    return prepare("optionRepeatSet",
                   makeRequest<dto::Jtag::OptionRepeatSetRequest>(irCount, irEnable, drCount, drEnable));
}

std::shared_ptr<BoundMethod<dto::Jtag::OptionTerminationStateGetReply>>
Jtag_v1_1::getOptionTerminationStateGetMethod() const {
    return prepare<dto::Jtag::OptionTerminationStateGetReply>("optionTerminationStateGet");
}

std::shared_ptr<Method> Jtag_v1_1::getOptionTerminationStateSetMethod(int ir, int dr) const {
    return prepare("optionTerminationStateSet",
                   makeRequest<dto::Jtag::OptionTerminationStateSetRequest>(ir, dr));
}

std::shared_ptr<BoundMethod<dto::Jtag::OptionPrePostTckGetReply>>
Jtag_v1_1::getOptionPrePostTckGetMethod() const {
    return prepare<dto::Jtag::OptionPrePostTckGetReply>("optionPrePostTckGet");
}

std::shared_ptr<Method> Jtag_v1_1::getOptionPrePostTckSetMethod(int value1, int value2, int value3,
                                                                int value4) const {
    return prepare("optionPrePostTckSet",
                   makeRequest<dto::Jtag::OptionPrePostTckSetRequest>(value1, value2, value3, value4));
}

std::shared_ptr<BoundMethod<dto::Header::IoGetReply>> Jtag_v1_1::getIoTrstGetMethod() const {
    return prepare<dto::Header::IoGetReply>("ioTrstGet");
}

std::shared_ptr<BoundMethod<dto::Header::IoGetReply>> Jtag_v1_1::getIoTckGetMethod() const {
    return prepare<dto::Header::IoGetReply>("ioTckGet");
}

std::shared_ptr<BoundMethod<dto::Header::IoGetReply>> Jtag_v1_1::getIoTmsGetMethod() const {
    return prepare<dto::Header::IoGetReply>("ioTmsGet");
}

std::shared_ptr<BoundMethod<dto::Header::IoGetReply>> Jtag_v1_1::getIoTdiGetMethod() const {
    return prepare<dto::Header::IoGetReply>("ioTdiGet");
}

std::shared_ptr<BoundMethod<dto::Header::oGetReply>> Jtag_v1_1::getIoTdoGetMethod() const {
    return prepare<dto::Header::oGetReply>("ioTdoGet");
}

std::shared_ptr<Method> Jtag_v1_1::getIoTrstSetMethod(bool first, bool second) const {
    return prepare("ioTrstSet", makeRequest<dto::Header::IoSetRequest>(first, second));
}

std::shared_ptr<Method> Jtag_v1_1::getIoTckSetMethod(bool first, bool second) const {
    return prepare("ioTckSet", makeRequest<dto::Header::IoSetRequest>(first, second));
}

std::shared_ptr<Method> Jtag_v1_1::getIoTmsSetMethod(bool first, bool second) const {
    return prepare("ioTmsSet", makeRequest<dto::Header::IoSetRequest>(first, second));
}

std::shared_ptr<Method> Jtag_v1_1::getIoTdiSetMethod(bool first, bool second) const {
    return prepare("ioTdiSet", makeRequest<dto::Header::IoSetRequest>(first, second));
}

std::shared_ptr<BoundMethod<dto::Header::EnableGetReply>> Jtag_v1_1::getEnableGetMethod() const {
    return prepare<dto::Header::EnableGetReply>("enableGet");
}

std::shared_ptr<Method> Jtag_v1_1::getEnableSetMethod(bool enable) const {
    return prepare("enableSet", makeRequest<dto::Header::EnableSetRequest>(enable));
}

std::shared_ptr<BoundMethod<HeaderResult>> Jtag_v1_1::getheaderStatusGetMethod() const {
    return prepare<HeaderResult>("headerStatusGet");
}

JtagFactory::JtagFactory()
    : ObjectFactory("jtag") {}

std::shared_ptr<Container> JtagFactory::build(std::shared_ptr<Device> device,
                                              std::shared_ptr<Container> parent, const std::string& name,
                                              std::uint32_t instanceId, std::shared_ptr<Object_v1_0> probe) {
    const auto version = probe->version();
    // "1" equals both; 1.1 comes first.
    if (version != Version("1.1") && version == Version("1.0")) {
        namespace tables = TAVOXTranscode::jtag_v1_0;
        return create<Jtag_v1_0>(device, parent, name, instanceId, tables::encoders(), tables::decoders());
    }
    namespace tables = TAVOXTranscode::jtag_v1_1;
    return create<Jtag_v1_1>(device, parent, name, instanceId, tables::encoders(), tables::decoders());
}

} // namespace TAVO::HWDebug
