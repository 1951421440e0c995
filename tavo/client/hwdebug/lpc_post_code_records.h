#pragma once

#include <cstdint>
#include <tuple>
#include <vector>

#include <tavo/client/transcode/field.h>
#include <tavo/client/transcode/packet.h>

/// Records of the "lpcPostCode" object, which captures POST codes: the progress codes that a target's
/// firmware writes to an I/O port, usually 0x80. Options and the port travel as single bytes, not as bools.
/// What a neutrally named member stands for is the device's to define.
namespace TAVO::dto::lpcPostCode {

/// "postCodeGet": a POST code.
struct TAVO_API PostCodeGetReply : reply_packet {
    /// The code. Which one of several, and which value means none, are the device's to define.
    std::int32_t postCode = 0;
    bool operator==(const PostCodeGetReply&) const = default;
    template <class Self = PostCodeGetReply>
    static constexpr auto fields() {
        return std::tuple{Field{"postCode", &Self::postCode}};
    }
};

/// "fifoSizeGet": the size of the FIFO of captured codes.
struct TAVO_API FifoSizeGetReply : reply_packet {
    std::int32_t size = 0; ///< in entries or bytes: the device's to define
    bool operator==(const FifoSizeGetReply&) const = default;
    template <class Self = FifoSizeGetReply>
    static constexpr auto fields() {
        return std::tuple{Field{"size", &Self::size}};
    }
};

/// A captured entry. What the three bytes and the value mean is the device's to define.
struct TAVO_API FifoEntry {
    std::uint8_t byte1 = 0;
    std::uint8_t byte2 = 0;
    std::uint8_t byte3 = 0;
    std::uint64_t value = 0;
    bool operator==(const FifoEntry&) const = default;
    template <class Self = FifoEntry>
    static constexpr auto fields() {
        return std::tuple{Field{"byte1", &Self::byte1}, Field{"byte2", &Self::byte2},
                          Field{"byte3", &Self::byte3}, Field{"value", &Self::value}};
    }
};

/// "fifoGet": the captured entries in the device's order.
struct TAVO_API FifoGetReply : reply_packet {
    std::vector<FifoEntry> entries;
    bool operator==(const FifoGetReply&) const = default;
    template <class Self = FifoGetReply>
    static constexpr auto fields() {
        return std::tuple{Field{"entries", &Self::entries}};
    }
};

/// "fifoStatusGet": an integer and four flags about the FIFO, the device's to define.
struct TAVO_API FifoStatusReply : reply_packet {
    std::int32_t value = 0;
    bool flag1 = false;
    bool flag2 = false;
    bool flag3 = false;
    bool flag4 = false;
    bool operator==(const FifoStatusReply&) const = default;
    template <class Self = FifoStatusReply>
    static constexpr auto fields() {
        return std::tuple{Field{"value", &Self::value}, Field{"flag1", &Self::flag1},
                          Field{"flag2", &Self::flag2}, Field{"flag3", &Self::flag3},
                          Field{"flag4", &Self::flag4}};
    }
};

/// "optionPortSet": the port that codes are captured from.
struct TAVO_API OptionPortSetRequest : request_packet {
    std::uint8_t port = 0; ///< a byte; how it stands for a port is the device's to define
    bool operator==(const OptionPortSetRequest&) const = default;
    template <class Self = OptionPortSetRequest>
    static constexpr auto fields() {
        return std::tuple{Field{"port", &Self::port}};
    }
};

/// "optionPortGet": the port that codes are captured from.
struct TAVO_API OptionPortGetReply : reply_packet {
    std::uint8_t port = 0; ///< a byte; how it stands for a port is the device's to define
    bool operator==(const OptionPortGetReply&) const = default;
    template <class Self = OptionPortGetReply>
    static constexpr auto fields() {
        return std::tuple{Field{"port", &Self::port}};
    }
};

/// "optionPassiveSet": a flag in a byte; what it does is the device's to define.
struct TAVO_API OptionPassiveSetRequest : request_packet {
    std::uint8_t passive = 0;
    bool operator==(const OptionPassiveSetRequest&) const = default;
    template <class Self = OptionPassiveSetRequest>
    static constexpr auto fields() {
        return std::tuple{Field{"passive", &Self::passive}};
    }
};

/// "optionPassiveGet": a flag in a byte; what it does is the device's to define.
struct TAVO_API OptionPassiveGetReply : reply_packet {
    std::uint8_t passive = 0;
    bool operator==(const OptionPassiveGetReply&) const = default;
    template <class Self = OptionPassiveGetReply>
    static constexpr auto fields() {
        return std::tuple{Field{"passive", &Self::passive}};
    }
};

/// "optionFifoCircularSet": a flag in a byte; what it does is the device's to define.
struct TAVO_API OptionFifoCircularSetRequest : request_packet {
    std::uint8_t circular = 0;
    bool operator==(const OptionFifoCircularSetRequest&) const = default;
    template <class Self = OptionFifoCircularSetRequest>
    static constexpr auto fields() {
        return std::tuple{Field{"circular", &Self::circular}};
    }
};

/// "optionFifoCircularGet": a flag in a byte; what it does is the device's to define.
struct TAVO_API OptionFifoCircularGetReply : reply_packet {
    std::uint8_t circular = 0;
    bool operator==(const OptionFifoCircularGetReply&) const = default;
    template <class Self = OptionFifoCircularGetReply>
    static constexpr auto fields() {
        return std::tuple{Field{"circular", &Self::circular}};
    }
};

/// "optionFifoDiscardSet": a flag in a byte; what it does is the device's to define.
struct TAVO_API OptionFifoDiscardSetRequest : request_packet {
    std::uint8_t discard = 0;
    bool operator==(const OptionFifoDiscardSetRequest&) const = default;
    template <class Self = OptionFifoDiscardSetRequest>
    static constexpr auto fields() {
        return std::tuple{Field{"discard", &Self::discard}};
    }
};

/// "optionFifoDiscardGet": a flag in a byte; what it does is the device's to define.
struct TAVO_API OptionFifoDiscardGetReply : reply_packet {
    std::uint8_t discard = 0;
    bool operator==(const OptionFifoDiscardGetReply&) const = default;
    template <class Self = OptionFifoDiscardGetReply>
    static constexpr auto fields() {
        return std::tuple{Field{"discard", &Self::discard}};
    }
};

/// "optionFifoAutoResetSet": a flag in a byte; what it does is the device's to define.
struct TAVO_API OptionFifoAutoResetSetRequest : request_packet {
    std::uint8_t autoReset = 0;
    bool operator==(const OptionFifoAutoResetSetRequest&) const = default;
    template <class Self = OptionFifoAutoResetSetRequest>
    static constexpr auto fields() {
        return std::tuple{Field{"autoReset", &Self::autoReset}};
    }
};

/// "optionFifoAutoResetGet": a flag in a byte; what it does is the device's to define.
struct TAVO_API OptionFifoAutoResetGetReply : reply_packet {
    std::uint8_t autoReset = 0;
    bool operator==(const OptionFifoAutoResetGetReply&) const = default;
    template <class Self = OptionFifoAutoResetGetReply>
    static constexpr auto fields() {
        return std::tuple{Field{"autoReset", &Self::autoReset}};
    }
};

} // namespace TAVO::dto::lpcPostCode
