#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <tuple>
#include <vector>

#include <tavo/client/export.h>
#include <tavo/client/hwdebug/header_result.h>
#include <tavo/client/hwdebug/i2c_records.h>
#include <tavo/client/hwdebug/jtag_records.h>
#include <tavo/client/object/type_factory.h>
#include <tavo/client/transcode/base_tables.h>
#include <tavo/client/transcode/field.h>
#include <tavo/client/transcode/header_status_tables.h>

/// The methods of the "i2c" object for Object_v1_0::make(), and their tables. Laid out like base_v1_0. The
/// header status is that of headerStatus_v1_1.
namespace TAVO::TAVOXTranscode::i2c_v1_0 {

using headerStatus_v1_1::headerStatusGet, headerStatus_v1_1::headerStatusClear;
/// @name Transfers
/// @{
inline constexpr Call<dto::i2c::TransferRequest, dto::i2c::TransferReply> transfer{"transfer"};
inline constexpr Call<dto::i2c::ReadRequest, dto::i2c::ReadReply> read{"read"};
inline constexpr Call<dto::i2c::WriteRequest, dto::i2c::WriteReply> write{"write"};
/// @}
/// @name Options
/// @{
inline constexpr Call<None, dto::Base::FrequencyGetReply> optionSclFrequencyGet{"optionSclFrequencyGet"};
inline constexpr Call<dto::Jtag::OptionTckFrequencySetRequest> optionSclFrequencySet{"optionSclFrequencySet"};
inline constexpr Call<None, dto::i2c::OptionAddressRetryLimitGetReply> optionAddressRetryLimitGet{
    "optionAddressRetryLimitGet"};
inline constexpr Call<dto::i2c::OptionAddressRetryLimitSetRequest> optionAddressRetryLimitSet{
    "optionAddressRetryLimitSet"};
inline constexpr Call<None, dto::i2c::OptionTimeoutGetReply> optionTimeoutGet{"optionTimeoutGet"};
inline constexpr Call<dto::i2c::OptionTimeoutSetRequest> optionTimeoutSet{"optionTimeoutSet"};
inline constexpr Call<None, dto::i2c::OptionAckGetReply> optionAckGet{"optionAckGet"};
inline constexpr Call<dto::i2c::OptionAckSetRequest> optionAckSet{"optionAckSet"};
/// @}

TAVO_API MethodRows rows() noexcept;
using EncoderList = EncoderListOf<rows>;
using DecoderList = DecoderListOf<rows>;

TAVO_API extern EncoderFunction &encode_transfer, &encode_read, &encode_write, &encode_optionSclFrequencyGet,
    &encode_optionSclFrequencySet, &encode_optionAddressRetryLimitGet, &encode_optionAddressRetryLimitSet,
    &encode_optionTimeoutGet, &encode_optionTimeoutSet, &encode_optionAckGet, &encode_optionAckSet,
    &encode_headerStatusGet, &encode_headerStatusClear;
TAVO_API extern DecoderFunction &decode_transfer, &decode_read, &decode_write, &decode_optionSclFrequencyGet,
    &decode_optionSclFrequencySet, &decode_optionAddressRetryLimitGet, &decode_optionAddressRetryLimitSet,
    &decode_optionTimeoutGet, &decode_optionTimeoutSet, &decode_optionAckGet, &decode_optionAckSet,
    &decode_headerStatusGet, &decode_headerStatusClear;

} // namespace TAVO::TAVOXTranscode::i2c_v1_0

namespace TAVO::HWDebug {

/// What the operations of I2c_v1_0 yield. BoundMethod::value() makes them from the replies, and each converts
/// back to its reply.
namespace I2c_v1_0_Structs {

/// The result of a transfer: two integers, the device's to define, and the bytes that were read.
struct TAVO_API I2cTransfer {
    I2cTransfer() = default;
    I2cTransfer(const dto::i2c::TransferReply& reply);
    /// Converts the reply in a result.
    /// @throws std::runtime_error "Can't convert Result to desire type" when the result holds another record.
    explicit I2cTransfer(const dto::result& outcome);
    operator dto::i2c::TransferReply() const;

    std::int32_t first = 0;
    std::int32_t second = 0;
    std::vector<std::uint8_t> data;
    bool operator==(const I2cTransfer&) const = default;
    template <class Self = I2cTransfer>
    static constexpr auto fields() {
        return std::tuple{dto::Field{"first", &Self::first}, dto::Field{"second", &Self::second},
                          dto::Field{"data", &Self::data}};
    }
};

/// The result of a read: an integer, the device's to define, and the bytes that were read.
struct TAVO_API I2cRead {
    I2cRead() = default;
    I2cRead(const dto::i2c::ReadReply& reply);
    /// Converts the reply in a result.
    /// @throws std::runtime_error "Can't convert Result to desire type" when the result holds another record.
    explicit I2cRead(const dto::result& outcome);
    operator dto::i2c::ReadReply() const;

    std::int32_t value = 0;
    std::vector<std::uint8_t> data;
    bool operator==(const I2cRead&) const = default;
    template <class Self = I2cRead>
    static constexpr auto fields() {
        return std::tuple{dto::Field{"value", &Self::value}, dto::Field{"data", &Self::data}};
    }
};

/// Two flags about acknowledging, the device's to define; each is true for any byte but 0.
struct TAVO_API I2cAck {
    I2cAck() = default;
    I2cAck(const dto::i2c::OptionAckGetReply& reply);
    /// Converts the reply in a result.
    /// @throws std::runtime_error "Can't convert Result to desire type" when the result holds another record.
    explicit I2cAck(const dto::result& outcome);
    operator dto::i2c::OptionAckGetReply() const;

    bool first = false;
    bool second = false;
    bool operator==(const I2cAck&) const = default;
    template <class Self = I2cAck>
    static constexpr auto fields() {
        return std::tuple{dto::Field{"first", &Self::first}, dto::Field{"second", &Self::second}};
    }
};

/// Two timeouts, the device's to define.
struct TAVO_API I2cTimeout {
    I2cTimeout() = default;
    I2cTimeout(const dto::i2c::OptionTimeoutGetReply& reply);
    /// Converts the reply in a result.
    /// @throws std::runtime_error "Can't convert Result to desire type" when the result holds another record.
    explicit I2cTimeout(const dto::result& outcome);
    operator dto::i2c::OptionTimeoutGetReply() const;

    std::int32_t first = 0;
    std::int32_t second = 0;
    bool operator==(const I2cTimeout&) const = default;
    template <class Self = I2cTimeout>
    static constexpr auto fields() {
        return std::tuple{dto::Field{"first", &Self::first}, dto::Field{"second", &Self::second}};
    }
};

/// The frequency of SCL.
struct TAVO_API I2cSclFrequency {
    I2cSclFrequency() = default;
    I2cSclFrequency(const dto::Base::FrequencyGetReply& reply);
    /// Converts the reply in a result.
    /// @throws std::runtime_error "Can't convert Result to desire type" when the result holds another record.
    explicit I2cSclFrequency(const dto::result& outcome);
    operator dto::Base::FrequencyGetReply() const;

    std::uint64_t frequency = 0; ///< in the device's unit
    std::int32_t value = 0;      ///< the device's to define
    bool operator==(const I2cSclFrequency&) const = default;
    template <class Self = I2cSclFrequency>
    static constexpr auto fields() {
        return std::tuple{dto::Field{"frequency", &Self::frequency}, dto::Field{"value", &Self::value}};
    }
};

} // namespace I2c_v1_0_Structs

/// Proxy of an "i2c" object, an I2C bus master (UM10204). Use it to talk to the chips on a board's bus:
/// "transfer" writes and then reads, which is what reading a register takes; "read" and "write" do only one.
///
/// @code
/// const auto temperature = i2c->getTransferMethod(0x48, 0, {0x00}, 2); // register 0, two bytes
/// device->call(temperature);
/// if (temperature->returnCode() != 0)
///     throw std::runtime_error("the sensor does not answer");
/// const int degrees = temperature->value().data.at(0);
/// @endcode
///
/// Each operation only builds a call, for Device::call; it throws SpecificationError when the device does not
/// list the method. Nothing is checked on this side: the device judges addresses, counts and lengths and
/// answers with the return code. The form of addresses, units, and the meaning of flags and neutrally named
/// values are the device's to define.
class TAVO_API I2c_v1_0 : public Proxy<TAVOXTranscode::i2c_v1_0::rows> {
public:
    /// Writes `data` to a chip and then reads `count` bytes from it.
    /// @param address of the chip on the bus.
    /// @param ignored is not sent.
    /// @param data the bytes to write.
    /// @param count how many bytes to read.
    std::shared_ptr<BoundMethod<I2c_v1_0_Structs::I2cTransfer>>
    getTransferMethod(int address, int ignored, std::vector<std::uint8_t> data, int count) const;
    /// Reads `count` bytes from a chip.
    /// @param address of the chip on the bus.
    /// @param first, second the device's to define.
    /// @param count how many bytes to read.
    std::shared_ptr<BoundMethod<I2c_v1_0_Structs::I2cRead>> getReadMethod(int address, bool first,
                                                                          bool second, int count) const;
    /// Writes bytes to a chip. The value holds an integer, the device's to define.
    /// @param address of the chip on the bus.
    /// @param first, second the device's to define.
    /// @param ignored is not sent.
    /// @param data the bytes to write.
    std::shared_ptr<BoundMethod<dto::i2c::WriteReply>>
    getWriteMethod(int address, bool first, bool second, int ignored, std::vector<std::uint8_t> data) const;
    /// Asks for the frequency of SCL, in the device's unit, and a second integer, the device's to define.
    std::shared_ptr<BoundMethod<I2c_v1_0_Structs::I2cSclFrequency>> getOptionSclFrequencyGetMethod() const;
    /// Sets the frequency of SCL, in the device's unit.
    std::shared_ptr<Method> getOptionSclFrequencySetMethod(int frequency) const;
    /// Asks how often the device retries an address that no chip acknowledges.
    std::shared_ptr<BoundMethod<dto::i2c::OptionAddressRetryLimitGetReply>>
    getOptionAddressRetryLimitGetMethod() const;
    /// Sets how often the device retries an address that no chip acknowledges.
    std::shared_ptr<Method> getOptionAddressRetryLimitSetMethod(int limit) const;
    /// Asks for the two timeouts. What each is for, and its unit, are the device's to define.
    std::shared_ptr<BoundMethod<I2c_v1_0_Structs::I2cTimeout>> getOptionTimeoutGetMethod() const;
    /// Sets the two timeouts. What each is for, and its unit, are the device's to define.
    std::shared_ptr<Method> getOptionTimeoutSetMethod(int first, int second) const;
    /// Asks for the two flags about acknowledging, the device's to define.
    std::shared_ptr<BoundMethod<I2c_v1_0_Structs::I2cAck>> getOptionAckGetMethod() const;
    /// Sets the two flags about acknowledging, the device's to define.
    std::shared_ptr<Method> getOptionAckSetMethod(bool first, bool second) const;
    /// Asks for the status of the debug headers.
    std::shared_ptr<BoundMethod<HeaderResult>> getHeaderStatusGetMethod() const;
    /// Clears the status of the debug headers.
    std::shared_ptr<Method> getHeaderStatusClearMethod() const;

protected:
    using Proxy::Proxy;
};

/// Serves type "i2c" of every version.
class TAVO_API I2cFactory : public TypeFactory {
public:
    I2cFactory();
};

} // namespace TAVO::HWDebug
