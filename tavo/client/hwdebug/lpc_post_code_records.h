#pragma once

#include <cstdint>
#include <tuple>
#include <vector>

#include <tavo/client/transcode/field.h>
#include <tavo/client/transcode/packet.h>

/// Records of the "lpcPostCode" object. What a neutrally named member stands for is the device's to define.
namespace TAVO::dto::lpcPostCode {

/// "postCodeGet"
struct TAVO_API PostCodeGetReply : reply_packet {
    std::int32_t postCode = 0;
    bool operator==(const PostCodeGetReply&) const = default;
    static constexpr auto fields() { return std::tuple{Field{"postCode", &PostCodeGetReply::postCode}}; }
};

/// "fifoSizeGet"
struct TAVO_API FifoSizeGetReply : reply_packet {
    std::int32_t size = 0;
    bool operator==(const FifoSizeGetReply&) const = default;
    static constexpr auto fields() { return std::tuple{Field{"size", &FifoSizeGetReply::size}}; }
};

/// A captured entry.
struct TAVO_API FifoEntry {
    std::uint8_t byte1 = 0;
    std::uint8_t byte2 = 0;
    std::uint8_t byte3 = 0;
    std::uint64_t value = 0;
    bool operator==(const FifoEntry&) const = default;
    static constexpr auto fields() {
        return std::tuple{Field{"byte1", &FifoEntry::byte1}, Field{"byte2", &FifoEntry::byte2},
                          Field{"byte3", &FifoEntry::byte3}, Field{"value", &FifoEntry::value}};
    }
};

/// "fifoGet"
struct TAVO_API FifoGetReply : reply_packet {
    std::vector<FifoEntry> entries;
    bool operator==(const FifoGetReply&) const = default;
    static constexpr auto fields() { return std::tuple{Field{"entries", &FifoGetReply::entries}}; }
};

/// "fifoStatusGet"
struct TAVO_API FifoStatusReply : reply_packet {
    std::int32_t value = 0;
    bool flag1 = false;
    bool flag2 = false;
    bool flag3 = false;
    bool flag4 = false;
    bool operator==(const FifoStatusReply&) const = default;
    static constexpr auto fields() {
        return std::tuple{Field{"value", &FifoStatusReply::value}, Field{"flag1", &FifoStatusReply::flag1},
                          Field{"flag2", &FifoStatusReply::flag2}, Field{"flag3", &FifoStatusReply::flag3},
                          Field{"flag4", &FifoStatusReply::flag4}};
    }
};

/// "optionPortSet"
struct TAVO_API OptionPortSetRequest : request_packet {
    std::uint8_t port = 0;
    bool operator==(const OptionPortSetRequest&) const = default;
    static constexpr auto fields() { return std::tuple{Field{"port", &OptionPortSetRequest::port}}; }
};

/// "optionPortGet"
struct TAVO_API OptionPortGetReply : reply_packet {
    std::uint8_t port = 0;
    bool operator==(const OptionPortGetReply&) const = default;
    static constexpr auto fields() { return std::tuple{Field{"port", &OptionPortGetReply::port}}; }
};

/// "optionPassiveSet"
struct TAVO_API OptionPassiveSetRequest : request_packet {
    std::uint8_t passive = 0;
    bool operator==(const OptionPassiveSetRequest&) const = default;
    static constexpr auto fields() { return std::tuple{Field{"passive", &OptionPassiveSetRequest::passive}}; }
};

/// "optionPassiveGet"
struct TAVO_API OptionPassiveGetReply : reply_packet {
    std::uint8_t passive = 0;
    bool operator==(const OptionPassiveGetReply&) const = default;
    static constexpr auto fields() { return std::tuple{Field{"passive", &OptionPassiveGetReply::passive}}; }
};

/// "optionFifoCircularSet"
struct TAVO_API OptionFifoCircularSetRequest : request_packet {
    std::uint8_t circular = 0;
    bool operator==(const OptionFifoCircularSetRequest&) const = default;
    static constexpr auto fields() {
        return std::tuple{Field{"circular", &OptionFifoCircularSetRequest::circular}};
    }
};

/// "optionFifoCircularGet"
struct TAVO_API OptionFifoCircularGetReply : reply_packet {
    std::uint8_t circular = 0;
    bool operator==(const OptionFifoCircularGetReply&) const = default;
    static constexpr auto fields() {
        return std::tuple{Field{"circular", &OptionFifoCircularGetReply::circular}};
    }
};

/// "optionFifoDiscardSet"
struct TAVO_API OptionFifoDiscardSetRequest : request_packet {
    std::uint8_t discard = 0;
    bool operator==(const OptionFifoDiscardSetRequest&) const = default;
    static constexpr auto fields() {
        return std::tuple{Field{"discard", &OptionFifoDiscardSetRequest::discard}};
    }
};

/// "optionFifoDiscardGet"
struct TAVO_API OptionFifoDiscardGetReply : reply_packet {
    std::uint8_t discard = 0;
    bool operator==(const OptionFifoDiscardGetReply&) const = default;
    static constexpr auto fields() {
        return std::tuple{Field{"discard", &OptionFifoDiscardGetReply::discard}};
    }
};

/// "optionFifoAutoResetSet"
struct TAVO_API OptionFifoAutoResetSetRequest : request_packet {
    std::uint8_t autoReset = 0;
    bool operator==(const OptionFifoAutoResetSetRequest&) const = default;
    static constexpr auto fields() {
        return std::tuple{Field{"autoReset", &OptionFifoAutoResetSetRequest::autoReset}};
    }
};

/// "optionFifoAutoResetGet"
struct TAVO_API OptionFifoAutoResetGetReply : reply_packet {
    std::uint8_t autoReset = 0;
    bool operator==(const OptionFifoAutoResetGetReply&) const = default;
    static constexpr auto fields() {
        return std::tuple{Field{"autoReset", &OptionFifoAutoResetGetReply::autoReset}};
    }
};

} // namespace TAVO::dto::lpcPostCode
