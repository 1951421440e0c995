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
    static constexpr auto fields() {
        return std::tuple{Field{"address", &TransferRequest::address}, Field{"data", &TransferRequest::data},
                          Field{"count", &TransferRequest::count}};
    }
};

/// "transfer"
struct TAVO_API TransferReply : reply_packet {
    std::int32_t first = 0;
    std::int32_t second = 0;
    std::vector<std::uint8_t> data;
    bool operator==(const TransferReply&) const = default;
    static constexpr auto fields() {
        return std::tuple{Field{"first", &TransferReply::first}, Field{"second", &TransferReply::second},
                          Field{"data", &TransferReply::data}};
    }
};

/// "read"
struct TAVO_API ReadRequest : request_packet {
    std::int32_t address = 0;
    bool first = false;
    bool second = false;
    std::int32_t count = 0;
    bool operator==(const ReadRequest&) const = default;
    static constexpr auto fields() {
        return std::tuple{Field{"address", &ReadRequest::address}, Field{"first", &ReadRequest::first},
                          Field{"second", &ReadRequest::second}, Field{"count", &ReadRequest::count}};
    }
};

/// "read"
struct TAVO_API ReadReply : reply_packet {
    std::int32_t value = 0;
    std::vector<std::uint8_t> data;
    bool operator==(const ReadReply&) const = default;
    static constexpr auto fields() {
        return std::tuple{Field{"value", &ReadReply::value}, Field{"data", &ReadReply::data}};
    }
};

/// "write"
struct TAVO_API WriteRequest : request_packet {
    std::int32_t address = 0;
    bool first = false;
    bool second = false;
    std::vector<std::uint8_t> data;
    bool operator==(const WriteRequest&) const = default;
    static constexpr auto fields() {
        return std::tuple{Field{"address", &WriteRequest::address}, Field{"first", &WriteRequest::first},
                          Field{"second", &WriteRequest::second}, Field{"data", &WriteRequest::data}};
    }
};

/// "write"
struct TAVO_API WriteReply : reply_packet {
    std::int32_t value = 0;
    bool operator==(const WriteReply&) const = default;
    static constexpr auto fields() { return std::tuple{Field{"value", &WriteReply::value}}; }
};

/// "optionAddressRetryLimitSet"
struct TAVO_API OptionAddressRetryLimitSetRequest : request_packet {
    std::int32_t limit = 0;
    bool operator==(const OptionAddressRetryLimitSetRequest&) const = default;
    static constexpr auto fields() {
        return std::tuple{Field{"limit", &OptionAddressRetryLimitSetRequest::limit}};
    }
};

/// "optionAddressRetryLimitGet"
struct TAVO_API OptionAddressRetryLimitGetReply : reply_packet {
    std::int32_t limit = 0;
    bool operator==(const OptionAddressRetryLimitGetReply&) const = default;
    static constexpr auto fields() {
        return std::tuple{Field{"limit", &OptionAddressRetryLimitGetReply::limit}};
    }
};

/// "optionTimeoutSet"
struct TAVO_API OptionTimeoutSetRequest : request_packet {
    std::int32_t first = 0;
    std::int32_t second = 0;
    bool operator==(const OptionTimeoutSetRequest&) const = default;
    static constexpr auto fields() {
        return std::tuple{Field{"first", &OptionTimeoutSetRequest::first},
                          Field{"second", &OptionTimeoutSetRequest::second}};
    }
};

/// "optionTimeoutGet"
struct TAVO_API OptionTimeoutGetReply : reply_packet {
    std::int32_t first = 0;
    std::int32_t second = 0;
    bool operator==(const OptionTimeoutGetReply&) const = default;
    static constexpr auto fields() {
        return std::tuple{Field{"first", &OptionTimeoutGetReply::first},
                          Field{"second", &OptionTimeoutGetReply::second}};
    }
};

/// "optionAckSet"
struct TAVO_API OptionAckSetRequest : request_packet {
    bool first = false;
    bool second = false;
    bool operator==(const OptionAckSetRequest&) const = default;
    static constexpr auto fields() {
        return std::tuple{Field{"first", &OptionAckSetRequest::first},
                          Field{"second", &OptionAckSetRequest::second}};
    }
};

/// "optionAckGet"
struct TAVO_API OptionAckGetReply : reply_packet {
    bool first = false;
    bool second = false;
    bool operator==(const OptionAckGetReply&) const = default;
    static constexpr auto fields() {
        return std::tuple{Field{"first", &OptionAckGetReply::first},
                          Field{"second", &OptionAckGetReply::second}};
    }
};

} // namespace TAVO::dto::i2c
