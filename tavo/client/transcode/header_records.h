#pragma once

#include <tuple>

#include <tavo/client/transcode/field.h>
#include <tavo/client/transcode/packet.h>

/// Records of the enable and pin methods that the debug modules share. Which level a flag stands for is the
/// device's to define where a member's name does not say it.
namespace TAVO::dto::Header {

struct TAVO_API EnableGetReply : reply_packet {
    bool enable = false;
    bool operator==(const EnableGetReply&) const = default;
    static constexpr auto fields() { return std::tuple{Field{"enable", &EnableGetReply::enable}}; }
};

struct TAVO_API EnableSetRequest : request_packet {
    bool enable = false;
    bool operator==(const EnableSetRequest&) const = default;
    static constexpr auto fields() { return std::tuple{Field{"enable", &EnableSetRequest::enable}}; }
};

/// The level of an input.
struct TAVO_API iGetReply : reply_packet {
    bool level = false;
    bool operator==(const iGetReply&) const = default;
    static constexpr auto fields() { return std::tuple{Field{"level", &iGetReply::level}}; }
};

struct TAVO_API iSetRequest : request_packet {
    bool level = false;
    bool operator==(const iSetRequest&) const = default;
    static constexpr auto fields() { return std::tuple{Field{"level", &iSetRequest::level}}; }
};

/// The level of an output.
struct TAVO_API oGetReply : reply_packet {
    bool level = false;
    bool operator==(const oGetReply&) const = default;
    static constexpr auto fields() { return std::tuple{Field{"level", &oGetReply::level}}; }
};

/// Two flags of a bidirectional pin, the device's to define.
struct TAVO_API IoGetReply : reply_packet {
    bool first = false;
    bool second = false;
    bool operator==(const IoGetReply&) const = default;
    static constexpr auto fields() {
        return std::tuple{Field{"first", &IoGetReply::first}, Field{"second", &IoGetReply::second}};
    }
};

/// Two flags of a bidirectional pin, the device's to define.
struct TAVO_API IoSetRequest : request_packet {
    bool first = false;
    bool second = false;
    bool operator==(const IoSetRequest&) const = default;
    static constexpr auto fields() {
        return std::tuple{Field{"first", &IoSetRequest::first}, Field{"second", &IoSetRequest::second}};
    }
};

} // namespace TAVO::dto::Header
