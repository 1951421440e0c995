#pragma once

#include <cstdint>
#include <tuple>
#include <vector>

#include <tavo/client/transcode/field.h>
#include <tavo/client/transcode/packet.h>

/// Records of the "i2c" object. What a neutrally named member stands for is the device's to define.
namespace TAVO::dto::i2c {

/// "transfer": the bytes to write, and how many to read.
struct TAVO_API TransferRequest : request_packet {
    std::int32_t address = 0;
    std::vector<std::uint8_t> data;
    std::int32_t count = 0;
    bool operator==(const TransferRequest&) const = default;
    template <class Self = TransferRequest>
    static constexpr auto fields() {
        return std::tuple{Field{"address", &Self::address}, Field{"data", &Self::data},
                          Field{"count", &Self::count}};
    }
};

/// "transfer"
struct TAVO_API TransferReply : reply_packet {
    std::int32_t first = 0;
    std::int32_t second = 0;
    std::vector<std::uint8_t> data;
    bool operator==(const TransferReply&) const = default;
    template <class Self = TransferReply>
    static constexpr auto fields() {
        return std::tuple{Field{"first", &Self::first}, Field{"second", &Self::second},
                          Field{"data", &Self::data}};
    }
};

/// "read"
struct TAVO_API ReadRequest : request_packet {
    std::int32_t address = 0;
    bool first = false;
    bool second = false;
    std::int32_t count = 0;
    bool operator==(const ReadRequest&) const = default;
    template <class Self = ReadRequest>
    static constexpr auto fields() {
        return std::tuple{Field{"address", &Self::address}, Field{"first", &Self::first},
                          Field{"second", &Self::second}, Field{"count", &Self::count}};
    }
};

/// "read"
struct TAVO_API ReadReply : reply_packet {
    std::int32_t value = 0;
    std::vector<std::uint8_t> data;
    bool operator==(const ReadReply&) const = default;
    template <class Self = ReadReply>
    static constexpr auto fields() {
        return std::tuple{Field{"value", &Self::value}, Field{"data", &Self::data}};
    }
};

/// "write"
struct TAVO_API WriteRequest : request_packet {
    std::int32_t address = 0;
    bool first = false;
    bool second = false;
    std::vector<std::uint8_t> data;
    bool operator==(const WriteRequest&) const = default;
    template <class Self = WriteRequest>
    static constexpr auto fields() {
        return std::tuple{Field{"address", &Self::address}, Field{"first", &Self::first},
                          Field{"second", &Self::second}, Field{"data", &Self::data}};
    }
};

/// "write"
struct TAVO_API WriteReply : reply_packet {
    std::int32_t value = 0;
    bool operator==(const WriteReply&) const = default;
    template <class Self = WriteReply>
    static constexpr auto fields() {
        return std::tuple{Field{"value", &Self::value}};
    }
};

/// "optionAddressRetryLimitSet"
struct TAVO_API OptionAddressRetryLimitSetRequest : request_packet {
    std::int32_t limit = 0;
    bool operator==(const OptionAddressRetryLimitSetRequest&) const = default;
    template <class Self = OptionAddressRetryLimitSetRequest>
    static constexpr auto fields() {
        return std::tuple{Field{"limit", &Self::limit}};
    }
};

/// "optionAddressRetryLimitGet"
struct TAVO_API OptionAddressRetryLimitGetReply : reply_packet {
    std::int32_t limit = 0;
    bool operator==(const OptionAddressRetryLimitGetReply&) const = default;
    template <class Self = OptionAddressRetryLimitGetReply>
    static constexpr auto fields() {
        return std::tuple{Field{"limit", &Self::limit}};
    }
};

/// "optionTimeoutSet"
struct TAVO_API OptionTimeoutSetRequest : request_packet {
    std::int32_t first = 0;
    std::int32_t second = 0;
    bool operator==(const OptionTimeoutSetRequest&) const = default;
    template <class Self = OptionTimeoutSetRequest>
    static constexpr auto fields() {
        return std::tuple{Field{"first", &Self::first}, Field{"second", &Self::second}};
    }
};

/// "optionTimeoutGet"
struct TAVO_API OptionTimeoutGetReply : reply_packet {
    std::int32_t first = 0;
    std::int32_t second = 0;
    bool operator==(const OptionTimeoutGetReply&) const = default;
    template <class Self = OptionTimeoutGetReply>
    static constexpr auto fields() {
        return std::tuple{Field{"first", &Self::first}, Field{"second", &Self::second}};
    }
};

/// "optionAckSet"
struct TAVO_API OptionAckSetRequest : request_packet {
    bool first = false;
    bool second = false;
    bool operator==(const OptionAckSetRequest&) const = default;
    template <class Self = OptionAckSetRequest>
    static constexpr auto fields() {
        return std::tuple{Field{"first", &Self::first}, Field{"second", &Self::second}};
    }
};

/// "optionAckGet"
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
