#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include <tavo/client/export.h>
#include <tavo/client/hwdebug/header_result.h>
#include <tavo/client/hwdebug/i2c_tables.h>
#include <tavo/client/object/object_factory.h>

namespace TAVO::HWDebug {

/// Results of I2c_v1_0; each converts back to the reply that it is made from.
namespace I2c_v1_0_Structs {

struct TAVO_API I2cTransfer {
    I2cTransfer() = default;
    I2cTransfer(const dto::i2c::TransferReply& reply);
    /// @throws std::runtime_error "Can't convert Result to desire type" unless it carries the reply.
    explicit I2cTransfer(const dto::result& outcome);
    operator dto::i2c::TransferReply() const;

    std::int32_t first = 0;
    std::int32_t second = 0;
    std::vector<std::uint8_t> data;
    bool operator==(const I2cTransfer&) const = default;
};

struct TAVO_API I2cRead {
    I2cRead() = default;
    I2cRead(const dto::i2c::ReadReply& reply);
    /// @throws std::runtime_error "Can't convert Result to desire type" unless it carries the reply.
    explicit I2cRead(const dto::result& outcome);
    operator dto::i2c::ReadReply() const;

    std::int32_t value = 0;
    std::vector<std::uint8_t> data;
    bool operator==(const I2cRead&) const = default;
};

struct TAVO_API I2cAck {
    I2cAck() = default;
    I2cAck(const dto::i2c::OptionAckGetReply& reply);
    /// @throws std::runtime_error "Can't convert Result to desire type" unless it carries the reply.
    explicit I2cAck(const dto::result& outcome);
    operator dto::i2c::OptionAckGetReply() const;

    bool first = false;
    bool second = false;
    bool operator==(const I2cAck&) const = default;
};

struct TAVO_API I2cTimeout {
    I2cTimeout() = default;
    I2cTimeout(const dto::i2c::OptionTimeoutGetReply& reply);
    /// @throws std::runtime_error "Can't convert Result to desire type" unless it carries the reply.
    explicit I2cTimeout(const dto::result& outcome);
    operator dto::i2c::OptionTimeoutGetReply() const;

    std::int32_t first = 0;
    std::int32_t second = 0;
    bool operator==(const I2cTimeout&) const = default;
};

struct TAVO_API I2cSclFrequency {
    I2cSclFrequency() = default;
    I2cSclFrequency(const dto::Base::FrequencyGetReply& reply);
    /// @throws std::runtime_error "Can't convert Result to desire type" unless it carries the reply.
    explicit I2cSclFrequency(const dto::result& outcome);
    operator dto::Base::FrequencyGetReply() const;

    std::uint64_t frequency = 0;
    std::int32_t value = 0;
    bool operator==(const I2cSclFrequency&) const = default;
};

} // namespace I2c_v1_0_Structs

/// Proxy of an "i2c" object, an I2C bus master. Its operations build calls and
/// send nothing; each throws SpecificationError when the device does not list the method.
/// Nothing is checked on this side. The meaning of flags and neutrally named values is the device's to
/// define.
class TAVO_API I2c_v1_0 : public Object_v1_0 {
public:
    ~I2c_v1_0() override;

    /// Writes `data`, then reads `count` bytes. The second argument goes nowhere.
    std::shared_ptr<BoundMethod<I2c_v1_0_Structs::I2cTransfer>>
    getTransferMethod(int address, int ignored, const std::vector<std::uint8_t>& data, int count) const;
    std::shared_ptr<BoundMethod<I2c_v1_0_Structs::I2cRead>> getReadMethod(int address, bool first,
                                                                          bool second, int count) const;
    /// The fourth argument goes nowhere.
    std::shared_ptr<BoundMethod<dto::i2c::WriteReply>>
    getWriteMethod(int address, bool first, bool second, int ignored,
                   const std::vector<std::uint8_t>& data) const;
    std::shared_ptr<BoundMethod<I2c_v1_0_Structs::I2cSclFrequency>> getOptionSclFrequencyGetMethod() const;
    std::shared_ptr<Method> getOptionSclFrequencySetMethod(int frequency) const;
    std::shared_ptr<BoundMethod<dto::i2c::OptionAddressRetryLimitGetReply>>
    getOptionAddressRetryLimitGetMethod() const;
    std::shared_ptr<Method> getOptionAddressRetryLimitSetMethod(int limit) const;
    std::shared_ptr<BoundMethod<I2c_v1_0_Structs::I2cTimeout>> getOptionTimeoutGetMethod() const;
    std::shared_ptr<Method> getOptionTimeoutSetMethod(int first, int second) const;
    std::shared_ptr<BoundMethod<I2c_v1_0_Structs::I2cAck>> getOptionAckGetMethod() const;
    std::shared_ptr<Method> getOptionAckSetMethod(bool first, bool second) const;
    std::shared_ptr<BoundMethod<HeaderResult>> getHeaderStatusGetMethod() const;
    std::shared_ptr<Method> getHeaderStatusClearMethod() const;

protected:
    friend class TAVO::ObjectFactory;
    I2c_v1_0(std::shared_ptr<Device> device, const std::string& name, std::uint32_t instanceId,
             std::shared_ptr<Container> parent, const TAVOXTranscode::i2c_v1_0::EncoderList& encoders,
             const TAVOXTranscode::i2c_v1_0::DecoderList& decoders);
};

/// Serves type "i2c" of every version.
class TAVO_API I2cFactory : public ObjectFactory {
public:
    I2cFactory();

private:
    friend class HwdObjects;
    std::shared_ptr<Container> build(std::shared_ptr<Device> device, std::shared_ptr<Container> parent,
                                     const std::string& name, std::uint32_t instanceId,
                                     std::shared_ptr<Object_v1_0> probe) override;
};

} // namespace TAVO::HWDebug
