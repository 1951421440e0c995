#include <tavo/client/hwdebug/jtag.h>

#include <utility>

#include <tavo/client/transcode/internal/conversions.h>
#include <tavo/client/transcode/internal/function_names.h>

namespace TAVO::TAVOXTranscode::jtag_v1_0 {

TAVO_METHODS(shiftIR, shiftDR, tdoExpectedGet, tdoExpectedSet, retryGet, retrySet, repeatGet, repeatSet,
             tapStateGet, tapStateSet, tckFrequencyGet, tckFrequencySet, sleep, terminationStateIRGet,
             terminationStateIRSet, terminationStateDRGet, terminationStateDRSet, ioTrstGet, ioTrstSet,
             ioTckGet, ioTckSet, ioTmsGet, ioTmsSet, ioTdiGet, ioTdiSet, ioTdoGet, enableGet, enableSet);

} // namespace TAVO::TAVOXTranscode::jtag_v1_0

namespace TAVO::TAVOXTranscode::jtag_v1_1 {

TAVO_METHODS(shiftIR, shiftDR, tapStateGet, tapStateSet, sleep, optionTdoExpectedGet, optionTdoExpectedSet,
             optionRetryGet, optionRetrySet, optionRepeatGet, optionRepeatSet, optionTckFrequencyGet,
             optionTckFrequencySet, optionTerminationStateGet, optionTerminationStateSet, optionPrePostTckGet,
             optionPrePostTckSet, ioTrstGet, ioTrstSet, ioTckGet, ioTckSet, ioTmsGet, ioTmsSet, ioTdiGet,
             ioTdiSet, ioTdoGet, enableGet, enableSet, headerStatusGet, headerStatusClear);

} // namespace TAVO::TAVOXTranscode::jtag_v1_1

namespace TAVO::HWDebug {

namespace jtag_v1_1 = TAVOXTranscode::jtag_v1_1;

namespace Jtag_v1_1_Structs {

TAVO_FROM_REPLY(RepeatGet, dto::Jtag::OptionRepeatGetReply);
TAVO_FROM_REPLY(RetryGet, dto::Jtag::OptionRetryGetReply);
TAVO_FROM_REPLY(TdoExpectedGet, dto::Jtag::OptionTdoExpectedGetReply);

} // namespace Jtag_v1_1_Structs

std::shared_ptr<BoundMethod<dto::Jtag::ShiftReply>>
Jtag_v1_1::getShiftIRMethod(int bits, std::vector<std::uint8_t> data) const {
    return make(jtag_v1_1::shiftIR, bits, std::move(data));
}

std::shared_ptr<BoundMethod<dto::Jtag::ShiftReply>>
Jtag_v1_1::getShiftDRMethod(int bits, std::vector<std::uint8_t> data) const {
    return make(jtag_v1_1::shiftDR, bits, std::move(data));
}

std::shared_ptr<BoundMethod<dto::Jtag::TapStateGetReply>> Jtag_v1_1::tapStateGetMethod() const {
    return make(jtag_v1_1::tapStateGet);
}

std::shared_ptr<Method> Jtag_v1_1::getTapStateSetMethod(int state) const {
    return make(jtag_v1_1::tapStateSet, state);
}

std::shared_ptr<Method> Jtag_v1_1::getSleepMethod(int duration, bool flag) const {
    return make(jtag_v1_1::sleep, duration, flag);
}

std::shared_ptr<BoundMethod<dto::Base::FrequencyGetReply>> Jtag_v1_1::getOptionTckFrequencyGetMethod() const {
    return make(jtag_v1_1::optionTckFrequencyGet);
}

std::shared_ptr<Method> Jtag_v1_1::getOptionTckFrequencySetMethod(int frequency) const {
    return make(jtag_v1_1::optionTckFrequencySet, frequency);
}

std::shared_ptr<BoundMethod<Jtag_v1_1_Structs::TdoExpectedGet>>
Jtag_v1_1::getOptionTdoExpectedGetMethod() const {
    return make<Jtag_v1_1_Structs::TdoExpectedGet>(jtag_v1_1::optionTdoExpectedGet);
}

std::shared_ptr<Method> Jtag_v1_1::getOptionTdoExpectedSetMethod(
    int irBits, const std::vector<std::uint8_t>& irExpected, const std::vector<std::uint8_t>& irMask,
    int drBits, const std::vector<std::uint8_t>& drExpected, const std::vector<std::uint8_t>& drMask) const {
    return make(jtag_v1_1::optionTdoExpectedSet, irBits, irExpected, irMask, drBits, drExpected, drMask);
}

std::shared_ptr<BoundMethod<Jtag_v1_1_Structs::RetryGet>> Jtag_v1_1::getOptionRetryGetMethod() const {
    return make<Jtag_v1_1_Structs::RetryGet>(jtag_v1_1::optionRetryGet);
}

std::shared_ptr<Method> Jtag_v1_1::getOptionRetrySetMethod(int irCount, bool irEnable, int drCount,
                                                           bool drEnable) const {
    return make(jtag_v1_1::optionRetrySet, irCount, irEnable, drCount, drEnable);
}

std::shared_ptr<BoundMethod<Jtag_v1_1_Structs::RepeatGet>> Jtag_v1_1::getOptionRepeatGetMethod() const {
    return make<Jtag_v1_1_Structs::RepeatGet>(jtag_v1_1::optionRepeatGet);
}

std::shared_ptr<Method> Jtag_v1_1::getOptionRepeatSetMethod(int irCount, bool irEnable, int drCount,
                                                            bool drEnable) const {
    return make(jtag_v1_1::optionRepeatSet, irCount, irEnable, drCount, drEnable);
}

std::shared_ptr<BoundMethod<dto::Jtag::OptionTerminationStateGetReply>>
Jtag_v1_1::getOptionTerminationStateGetMethod() const {
    return make(jtag_v1_1::optionTerminationStateGet);
}

std::shared_ptr<Method> Jtag_v1_1::getOptionTerminationStateSetMethod(int ir, int dr) const {
    return make(jtag_v1_1::optionTerminationStateSet, ir, dr);
}

std::shared_ptr<BoundMethod<dto::Jtag::OptionPrePostTckGetReply>>
Jtag_v1_1::getOptionPrePostTckGetMethod() const {
    return make(jtag_v1_1::optionPrePostTckGet);
}

std::shared_ptr<Method> Jtag_v1_1::getOptionPrePostTckSetMethod(int value1, int value2, int value3,
                                                                int value4) const {
    return make(jtag_v1_1::optionPrePostTckSet, value1, value2, value3, value4);
}

std::shared_ptr<BoundMethod<dto::Header::IoGetReply>> Jtag_v1_1::getIoTrstGetMethod() const {
    return make(jtag_v1_1::ioTrstGet);
}

std::shared_ptr<BoundMethod<dto::Header::IoGetReply>> Jtag_v1_1::getIoTckGetMethod() const {
    return make(jtag_v1_1::ioTckGet);
}

std::shared_ptr<BoundMethod<dto::Header::IoGetReply>> Jtag_v1_1::getIoTmsGetMethod() const {
    return make(jtag_v1_1::ioTmsGet);
}

std::shared_ptr<BoundMethod<dto::Header::IoGetReply>> Jtag_v1_1::getIoTdiGetMethod() const {
    return make(jtag_v1_1::ioTdiGet);
}

std::shared_ptr<BoundMethod<dto::Header::oGetReply>> Jtag_v1_1::getIoTdoGetMethod() const {
    return make(jtag_v1_1::ioTdoGet);
}

std::shared_ptr<Method> Jtag_v1_1::getIoTrstSetMethod(bool first, bool second) const {
    return make(jtag_v1_1::ioTrstSet, first, second);
}

std::shared_ptr<Method> Jtag_v1_1::getIoTckSetMethod(bool first, bool second) const {
    return make(jtag_v1_1::ioTckSet, first, second);
}

std::shared_ptr<Method> Jtag_v1_1::getIoTmsSetMethod(bool first, bool second) const {
    return make(jtag_v1_1::ioTmsSet, first, second);
}

std::shared_ptr<Method> Jtag_v1_1::getIoTdiSetMethod(bool first, bool second) const {
    return make(jtag_v1_1::ioTdiSet, first, second);
}

std::shared_ptr<BoundMethod<dto::Header::EnableGetReply>> Jtag_v1_1::getEnableGetMethod() const {
    return make(jtag_v1_1::enableGet);
}

std::shared_ptr<Method> Jtag_v1_1::getEnableSetMethod(bool enable) const {
    return make(jtag_v1_1::enableSet, enable);
}

std::shared_ptr<BoundMethod<HeaderResult>> Jtag_v1_1::getheaderStatusGetMethod() const {
    return make<HeaderResult>(jtag_v1_1::headerStatusGet);
}

JtagFactory::JtagFactory()
    : TypeFactory("jtag", {servedBy<Jtag_v1_0>("1.0", isOneZeroAlone), servedBy<Jtag_v1_1>("1.1")}) {}

} // namespace TAVO::HWDebug
