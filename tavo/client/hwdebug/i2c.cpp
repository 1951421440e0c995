#include <tavo/client/hwdebug/i2c.h>

#include <utility>

namespace TAVO::HWDebug {

using TAVOXTranscode::makeRequest;

namespace I2c_v1_0_Structs {

I2cTransfer::I2cTransfer(const dto::i2c::TransferReply& reply)
    : first(reply.first)
    , second(reply.second)
    , data(reply.data) {}

I2cTransfer::I2cTransfer(const dto::result& outcome)
    : I2cTransfer(dto::replyOf<dto::i2c::TransferReply>(outcome)) {}

I2cTransfer::operator dto::i2c::TransferReply() const {
    dto::i2c::TransferReply reply;
    reply.first = first;
    reply.second = second;
    reply.data = data;
    return reply;
}

I2cRead::I2cRead(const dto::i2c::ReadReply& reply)
    : value(reply.value)
    , data(reply.data) {}

I2cRead::I2cRead(const dto::result& outcome)
    : I2cRead(dto::replyOf<dto::i2c::ReadReply>(outcome)) {}

I2cRead::operator dto::i2c::ReadReply() const {
    dto::i2c::ReadReply reply;
    reply.value = value;
    reply.data = data;
    return reply;
}

I2cAck::I2cAck(const dto::i2c::OptionAckGetReply& reply)
    : first(reply.first)
    , second(reply.second) {}

I2cAck::I2cAck(const dto::result& outcome)
    : I2cAck(dto::replyOf<dto::i2c::OptionAckGetReply>(outcome)) {}

I2cAck::operator dto::i2c::OptionAckGetReply() const {
    dto::i2c::OptionAckGetReply reply;
    reply.first = first;
    reply.second = second;
    return reply;
}

I2cTimeout::I2cTimeout(const dto::i2c::OptionTimeoutGetReply& reply)
    : first(reply.first)
    , second(reply.second) {}

I2cTimeout::I2cTimeout(const dto::result& outcome)
    : I2cTimeout(dto::replyOf<dto::i2c::OptionTimeoutGetReply>(outcome)) {}

I2cTimeout::operator dto::i2c::OptionTimeoutGetReply() const {
    dto::i2c::OptionTimeoutGetReply reply;
    reply.first = first;
    reply.second = second;
    return reply;
}

I2cSclFrequency::I2cSclFrequency(const dto::Base::FrequencyGetReply& reply)
    : frequency(reply.frequency)
    , value(reply.value) {}

I2cSclFrequency::I2cSclFrequency(const dto::result& outcome)
    : I2cSclFrequency(dto::replyOf<dto::Base::FrequencyGetReply>(outcome)) {}

I2cSclFrequency::operator dto::Base::FrequencyGetReply() const {
    dto::Base::FrequencyGetReply reply;
    reply.frequency = frequency;
    reply.value = value;
    return reply;
}

} // namespace I2c_v1_0_Structs

I2c_v1_0::I2c_v1_0(std::shared_ptr<Device> device, const std::string& name, std::uint32_t instanceId,
                   std::shared_ptr<Container> parent, const TAVOXTranscode::i2c_v1_0::EncoderList& encoders,
                   const TAVOXTranscode::i2c_v1_0::DecoderList& decoders)
    : Object_v1_0(std::move(device), name, instanceId, std::move(parent), encoders, decoders) {}

I2c_v1_0::~I2c_v1_0() = default;

std::shared_ptr<BoundMethod<I2c_v1_0_Structs::I2cTransfer>>
I2c_v1_0::getTransferMethod(int address, int, const std::vector<std::uint8_t>& data, int count) const {
    return prepare<I2c_v1_0_Structs::I2cTransfer>(
        "transfer", makeRequest<dto::i2c::TransferRequest>(address, data, count));
}

std::shared_ptr<BoundMethod<I2c_v1_0_Structs::I2cRead>>
I2c_v1_0::getReadMethod(int address, bool first, bool second, int count) const {
    return prepare<I2c_v1_0_Structs::I2cRead>(
        "read", makeRequest<dto::i2c::ReadRequest>(address, first, second, count));
}

std::shared_ptr<BoundMethod<dto::i2c::WriteReply>>
I2c_v1_0::getWriteMethod(int address, bool first, bool second, int,
                         const std::vector<std::uint8_t>& data) const {
    return prepare<dto::i2c::WriteReply>("write",
                                         makeRequest<dto::i2c::WriteRequest>(address, first, second, data));
}

std::shared_ptr<BoundMethod<I2c_v1_0_Structs::I2cSclFrequency>>
I2c_v1_0::getOptionSclFrequencyGetMethod() const {
    return prepare<I2c_v1_0_Structs::I2cSclFrequency>("optionSclFrequencyGet");
}

std::shared_ptr<Method> I2c_v1_0::getOptionSclFrequencySetMethod(int frequency) const {
    return prepare("optionSclFrequencySet", makeRequest<dto::Jtag::OptionTckFrequencySetRequest>(frequency));
}

std::shared_ptr<BoundMethod<dto::i2c::OptionAddressRetryLimitGetReply>>
I2c_v1_0::getOptionAddressRetryLimitGetMethod() const {
    return prepare<dto::i2c::OptionAddressRetryLimitGetReply>("optionAddressRetryLimitGet");
}

std::shared_ptr<Method> I2c_v1_0::getOptionAddressRetryLimitSetMethod(int limit) const {
    return prepare("optionAddressRetryLimitSet",
                   makeRequest<dto::i2c::OptionAddressRetryLimitSetRequest>(limit));
}

std::shared_ptr<BoundMethod<I2c_v1_0_Structs::I2cTimeout>> I2c_v1_0::getOptionTimeoutGetMethod() const {
    return prepare<I2c_v1_0_Structs::I2cTimeout>("optionTimeoutGet");
}

std::shared_ptr<Method> I2c_v1_0::getOptionTimeoutSetMethod(int first, int second) const {
    return prepare("optionTimeoutSet", makeRequest<dto::i2c::OptionTimeoutSetRequest>(first, second));
}

std::shared_ptr<BoundMethod<I2c_v1_0_Structs::I2cAck>> I2c_v1_0::getOptionAckGetMethod() const {
    return prepare<I2c_v1_0_Structs::I2cAck>("optionAckGet");
}

std::shared_ptr<Method> I2c_v1_0::getOptionAckSetMethod(bool first, bool second) const {
    return prepare("optionAckSet", makeRequest<dto::i2c::OptionAckSetRequest>(first, second));
}

std::shared_ptr<BoundMethod<HeaderResult>> I2c_v1_0::getHeaderStatusGetMethod() const {
    return prepare<HeaderResult>("headerStatusGet");
}

std::shared_ptr<Method> I2c_v1_0::getHeaderStatusClearMethod() const { return prepare("headerStatusClear"); }

I2cFactory::I2cFactory()
    : ObjectFactory("i2c") {}

std::shared_ptr<Container> I2cFactory::build(std::shared_ptr<Device> device,
                                             std::shared_ptr<Container> parent, const std::string& name,
                                             std::uint32_t instanceId, std::shared_ptr<Object_v1_0> probe) {
    // The version is asked for as in every factory, and no version is refused.
    static_cast<void>(probe->version());
    namespace tables = TAVOXTranscode::i2c_v1_0;
    return create<I2c_v1_0>(device, parent, name, instanceId, tables::encoders(), tables::decoders());
}

} // namespace TAVO::HWDebug
