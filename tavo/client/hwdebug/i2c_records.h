#pragma once

#include <cstdint>
#include <tuple>
#include <vector>

#include <tavo/client/transcode/field.h>
#include <tavo/client/transcode/packet.h>

/// Records of the "i2c" object, an I2C bus master (UM10204). The form of addresses, units, and what a
/// neutrally named member stands for are the device's to define.
namespace TAVO::dto::i2c {

/// "transfer": what to write to a chip, and how much to read from it afterwards.
struct TAVO_API TransferRequest : request_packet {
    std::int32_t address = 0;       ///< of the chip on the bus
    std::vector<std::uint8_t> data; ///< the bytes to write
    std::int32_t count = 0;         ///< how many bytes to read
    bool operator==(const TransferRequest&) const = default;
    template <class Self = TransferRequest>
    static constexpr auto fields() {
        return std::tuple{Field{"address", &Self::address}, Field{"data", &Self::data},
                          Field{"count", &Self::count}};
    }
};

/// "transfer": two integers, the device's to define, and what was read.
struct TAVO_API TransferReply : reply_packet {
    std::int32_t first = 0;
    std::int32_t second = 0;
    std::vector<std::uint8_t> data; ///< the bytes that were read
    bool operator==(const TransferReply&) const = default;
    template <class Self = TransferReply>
    static constexpr auto fields() {
        return std::tuple{Field{"first", &Self::first}, Field{"second", &Self::second},
                          Field{"data", &Self::data}};
    }
};

/// "read": how much to read from a chip, and two flags, the device's to define.
struct TAVO_API ReadRequest : request_packet {
    std::int32_t address = 0; ///< of the chip on the bus
    bool first = false;
    bool second = false;
    std::int32_t count = 0; ///< how many bytes to read
    bool operator==(const ReadRequest&) const = default;
    template <class Self = ReadRequest>
    static constexpr auto fields() {
        return std::tuple{Field{"address", &Self::address}, Field{"first", &Self::first},
                          Field{"second", &Self::second}, Field{"count", &Self::count}};
    }
};

/// "read": an integer, the device's to define, and what was read.
struct TAVO_API ReadReply : reply_packet {
    std::int32_t value = 0;
    std::vector<std::uint8_t> data; ///< the bytes that were read
    bool operator==(const ReadReply&) const = default;
    template <class Self = ReadReply>
    static constexpr auto fields() {
        return std::tuple{Field{"value", &Self::value}, Field{"data", &Self::data}};
    }
};

/// "write": what to write to a chip, and two flags, the device's to define.
struct TAVO_API WriteRequest : request_packet {
    std::int32_t address = 0; ///< of the chip on the bus
    bool first = false;
    bool second = false;
    std::vector<std::uint8_t> data; ///< the bytes to write
    bool operator==(const WriteRequest&) const = default;
    template <class Self = WriteRequest>
    static constexpr auto fields() {
        return std::tuple{Field{"address", &Self::address}, Field{"first", &Self::first},
                          Field{"second", &Self::second}, Field{"data", &Self::data}};
    }
};

/// "write": an integer, the device's to define.
struct TAVO_API WriteReply : reply_packet {
    std::int32_t value = 0;
    bool operator==(const WriteReply&) const = default;
    template <class Self = WriteReply>
    static constexpr auto fields() {
        return std::tuple{Field{"value", &Self::value}};
    }
};

/// "optionAddressRetryLimitSet": how often the device retries an address that no chip acknowledges.
struct TAVO_API OptionAddressRetryLimitSetRequest : request_packet {
    std::int32_t limit = 0;
    bool operator==(const OptionAddressRetryLimitSetRequest&) const = default;
    template <class Self = OptionAddressRetryLimitSetRequest>
    static constexpr auto fields() {
        return std::tuple{Field{"limit", &Self::limit}};
    }
};

/// "optionAddressRetryLimitGet": how often the device retries an address that no chip acknowledges.
struct TAVO_API OptionAddressRetryLimitGetReply : reply_packet {
    std::int32_t limit = 0;
    bool operator==(const OptionAddressRetryLimitGetReply&) const = default;
    template <class Self = OptionAddressRetryLimitGetReply>
    static constexpr auto fields() {
        return std::tuple{Field{"limit", &Self::limit}};
    }
};

/// "optionTimeoutSet": two timeouts, the device's to define.
struct TAVO_API OptionTimeoutSetRequest : request_packet {
    std::int32_t first = 0;
    std::int32_t second = 0;
    bool operator==(const OptionTimeoutSetRequest&) const = default;
    template <class Self = OptionTimeoutSetRequest>
    static constexpr auto fields() {
        return std::tuple{Field{"first", &Self::first}, Field{"second", &Self::second}};
    }
};

/// "optionTimeoutGet": two timeouts, the device's to define.
struct TAVO_API OptionTimeoutGetReply : reply_packet {
    std::int32_t first = 0;
    std::int32_t second = 0;
    bool operator==(const OptionTimeoutGetReply&) const = default;
    template <class Self = OptionTimeoutGetReply>
    static constexpr auto fields() {
        return std::tuple{Field{"first", &Self::first}, Field{"second", &Self::second}};
    }
};

/// "optionAckSet": two flags about acknowledging, the device's to define.
struct TAVO_API OptionAckSetRequest : request_packet {
    bool first = false;
    bool second = false;
    bool operator==(const OptionAckSetRequest&) const = default;
    template <class Self = OptionAckSetRequest>
    static constexpr auto fields() {
        return std::tuple{Field{"first", &Self::first}, Field{"second", &Self::second}};
    }
};

/// "optionAckGet": two flags about acknowledging, the device's to define.
struct TAVO_API OptionAckGetReply : reply_packet {
    bool first = false;
    bool second = false;
    bool operator==(const OptionAckGetReply&) const = default;
    template <class Self = OptionAckGetReply>
    static constexpr auto fields() {
        return std::tuple{Field{"first", &Self::first}, Field{"second", &Self::second}};
    }
};

} // namespace TAVO::dto::i2c
