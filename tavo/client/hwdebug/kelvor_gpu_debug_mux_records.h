#pragma once

#include <cstdint>
#include <tuple>

#include <tavo/client/transcode/field.h>
#include <tavo/client/transcode/packet.h>

/// Records of the "kelvorGpuDebugMux" object. The numbering of modes is the device's to define.
namespace TAVO::dto::kelvorGpuDebugMux {

/// "headerModeSet"
struct TAVO_API HeaderModeSetRequest : request_packet {
    std::int32_t mode = 0;
    bool operator==(const HeaderModeSetRequest&) const = default;
    static constexpr auto fields() { return std::tuple{Field{"mode", &HeaderModeSetRequest::mode}}; }
};

/// "headerModeGet"
struct TAVO_API HeaderModeGetReply : reply_packet {
    std::int32_t mode = 0;
    bool operator==(const HeaderModeGetReply&) const = default;
    static constexpr auto fields() { return std::tuple{Field{"mode", &HeaderModeGetReply::mode}}; }
};

} // namespace TAVO::dto::kelvorGpuDebugMux
