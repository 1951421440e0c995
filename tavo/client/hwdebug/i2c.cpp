#include <tavo/client/hwdebug/i2c.h>

#include <utility>

#include <tavo/client/transcode/internal/conversions.h>
#include <tavo/client/transcode/internal/function_names.h>

namespace TAVO::TAVOXTranscode::i2c_v1_0 {

TAVO_METHODS(transfer, read, write, optionSclFrequencyGet, optionSclFrequencySet, optionAddressRetryLimitGet,
             optionAddressRetryLimitSet, optionTimeoutGet, optionTimeoutSet, optionAckGet, optionAckSet,
             headerStatusGet, headerStatusClear);

} // namespace TAVO::TAVOXTranscode::i2c_v1_0

namespace TAVO::HWDebug {

namespace i2c_v1_0 = TAVOXTranscode::i2c_v1_0;

namespace I2c_v1_0_Structs {

TAVO_FROM_AND_TO_REPLY(I2cTransfer, dto::i2c::TransferReply);
TAVO_FROM_AND_TO_REPLY(I2cRead, dto::i2c::ReadReply);
TAVO_FROM_AND_TO_REPLY(I2cAck, dto::i2c::OptionAckGetReply);
TAVO_FROM_AND_TO_REPLY(I2cTimeout, dto::i2c::OptionTimeoutGetReply);
TAVO_FROM_AND_TO_REPLY(I2cSclFrequency, dto::Base::FrequencyGetReply);

} // namespace I2c_v1_0_Structs

std::shared_ptr<BoundMethod<I2c_v1_0_Structs::I2cTransfer>>
I2c_v1_0::getTransferMethod(int address, int, std::vector<std::uint8_t> data, int count) const {
    return make<I2c_v1_0_Structs::I2cTransfer>(i2c_v1_0::transfer, address, std::move(data), count);
}

std::shared_ptr<BoundMethod<I2c_v1_0_Structs::I2cRead>>
I2c_v1_0::getReadMethod(int address, bool first, bool second, int count) const {
    return make<I2c_v1_0_Structs::I2cRead>(i2c_v1_0::read, address, first, second, count);
}

std::shared_ptr<BoundMethod<dto::i2c::WriteReply>>
I2c_v1_0::getWriteMethod(int address, bool first, bool second, int, std::vector<std::uint8_t> data) const {
    return make(i2c_v1_0::write, address, first, second, std::move(data));
}

std::shared_ptr<BoundMethod<I2c_v1_0_Structs::I2cSclFrequency>>
I2c_v1_0::getOptionSclFrequencyGetMethod() const {
    return make<I2c_v1_0_Structs::I2cSclFrequency>(i2c_v1_0::optionSclFrequencyGet);
}

std::shared_ptr<Method> I2c_v1_0::getOptionSclFrequencySetMethod(int frequency) const {
    return make(i2c_v1_0::optionSclFrequencySet, frequency);
}

std::shared_ptr<BoundMethod<dto::i2c::OptionAddressRetryLimitGetReply>>
I2c_v1_0::getOptionAddressRetryLimitGetMethod() const {
    return make(i2c_v1_0::optionAddressRetryLimitGet);
}

std::shared_ptr<Method> I2c_v1_0::getOptionAddressRetryLimitSetMethod(int limit) const {
    return make(i2c_v1_0::optionAddressRetryLimitSet, limit);
}

std::shared_ptr<BoundMethod<I2c_v1_0_Structs::I2cTimeout>> I2c_v1_0::getOptionTimeoutGetMethod() const {
    return make<I2c_v1_0_Structs::I2cTimeout>(i2c_v1_0::optionTimeoutGet);
}

std::shared_ptr<Method> I2c_v1_0::getOptionTimeoutSetMethod(int first, int second) const {
    return make(i2c_v1_0::optionTimeoutSet, first, second);
}

std::shared_ptr<BoundMethod<I2c_v1_0_Structs::I2cAck>> I2c_v1_0::getOptionAckGetMethod() const {
    return make<I2c_v1_0_Structs::I2cAck>(i2c_v1_0::optionAckGet);
}

std::shared_ptr<Method> I2c_v1_0::getOptionAckSetMethod(bool first, bool second) const {
    return make(i2c_v1_0::optionAckSet, first, second);
}

std::shared_ptr<BoundMethod<HeaderResult>> I2c_v1_0::getHeaderStatusGetMethod() const {
    return make<HeaderResult>(i2c_v1_0::headerStatusGet);
}

std::shared_ptr<Method> I2c_v1_0::getHeaderStatusClearMethod() const {
    return make(i2c_v1_0::headerStatusClear);
}

I2cFactory::I2cFactory()
    : TypeFactory("i2c", {servedBy<I2c_v1_0>("1.0")}) {}

} // namespace TAVO::HWDebug
