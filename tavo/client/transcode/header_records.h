#pragma once

#include <tuple>

#include <tavo/client/transcode/field.h>
#include <tavo/client/transcode/packet.h>

/// Records of the enable and pin methods that the debug modules share. What enabling does, and which level
/// true stands for, are the device's to define.
namespace TAVO::dto::Header {

/// Whether the module is enabled.
struct TAVO_API EnableGetReply : reply_packet {
    bool enable = false;
    bool operator==(const EnableGetReply&) const = default;
    template <class Self = EnableGetReply>
    static constexpr auto fields() {
        return std::tuple{Field{"enable", &Self::enable}};
    }
};

/// Whether to enable the module.
struct TAVO_API EnableSetRequest : request_packet {
    bool enable = false;
    bool operator==(const EnableSetRequest&) const = default;
    template <class Self = EnableSetRequest>
    static constexpr auto fields() {
        return std::tuple{Field{"enable", &Self::enable}};
    }
};

/// The level of an input pin.
struct TAVO_API iGetReply : reply_packet {
    bool level = false;
    bool operator==(const iGetReply&) const = default;
    template <class Self = iGetReply>
    static constexpr auto fields() {
        return std::tuple{Field{"level", &Self::level}};
    }
};

/// The level to give to a pin.
struct TAVO_API iSetRequest : request_packet {
    bool level = false;
    bool operator==(const iSetRequest&) const = default;
    template <class Self = iSetRequest>
    static constexpr auto fields() {
        return std::tuple{Field{"level", &Self::level}};
    }
};

/// The level of an output pin.
struct TAVO_API oGetReply : reply_packet {
    bool level = false;
    bool operator==(const oGetReply&) const = default;
    template <class Self = oGetReply>
    static constexpr auto fields() {
        return std::tuple{Field{"level", &Self::level}};
    }
};

/// The state of a bidirectional pin: two flags, the device's to define.
struct TAVO_API IoGetReply : reply_packet {
    bool first = false;
    bool second = false;
    bool operator==(const IoGetReply&) const = default;
    template <class Self = IoGetReply>
    static constexpr auto fields() {
        return std::tuple{Field{"first", &Self::first}, Field{"second", &Self::second}};
    }
};

/// The state to give to a bidirectional pin: two flags, the device's to define.
struct TAVO_API IoSetRequest : request_packet {
    bool first = false;
    bool second = false;
    bool operator==(const IoSetRequest&) const = default;
    template <class Self = IoSetRequest>
    static constexpr auto fields() {
        return std::tuple{Field{"first", &Self::first}, Field{"second", &Self::second}};
    }
};

} // namespace TAVO::dto::Header
