#pragma once

#include <cstdint>
#include <tuple>

#include <tavo/client/transcode/field.h>
#include <tavo/client/transcode/packet.h>

/// Records of the "relay" object.
namespace TAVO::dto::relay {

/// "set"
struct TAVO_API SetRequest : request_packet {
    bool state = false;
    bool operator==(const SetRequest&) const = default;
    static constexpr auto fields() { return std::tuple{Field{"state", &SetRequest::state}}; }
};

/// "toggle": an integer, the device's to define.
struct TAVO_API ToggleRequest : request_packet {
    std::int32_t value = 0;
    bool operator==(const ToggleRequest&) const = default;
    static constexpr auto fields() { return std::tuple{Field{"value", &ToggleRequest::value}}; }
};

/// "get": the state as the device reports it.
struct TAVO_API GetReply : reply_packet {
    std::uint8_t state = 0;
    bool operator==(const GetReply&) const = default;
    static constexpr auto fields() { return std::tuple{Field{"state", &GetReply::state}}; }
};

} // namespace TAVO::dto::relay

/// Records of the "cmosRelay" object.
namespace TAVO::dto::cmosRelay {

/// "cmosClear": an integer, the device's to define.
struct TAVO_API CmosClear : request_packet {
    std::int32_t value = 0;
    bool operator==(const CmosClear&) const = default;
    static constexpr auto fields() { return std::tuple{Field{"value", &CmosClear::value}}; }
};

} // namespace TAVO::dto::cmosRelay
