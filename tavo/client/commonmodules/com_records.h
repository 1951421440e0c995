#pragma once

#include <cstdint>
#include <tuple>
#include <vector>

#include <tavo/client/transcode/field.h>
#include <tavo/client/transcode/packet.h>

/// Records of the "com" object. What a neutrally named member stands for is the device's to define.
namespace TAVO::dto::com {

/// "open": the line settings.
struct TAVO_API OpenRequest : request_packet {
    std::int32_t value1 = 0;
    std::int32_t value2 = 0;
    bool flag1 = false;
    bool flag2 = false;
    std::int32_t value3 = 0;
    bool flag3 = false;
    bool flag4 = false;
    bool flag5 = false;
    bool flag6 = false;
    bool operator==(const OpenRequest&) const = default;
    static constexpr auto fields() {
        return std::tuple{Field{"value1", &OpenRequest::value1}, Field{"value2", &OpenRequest::value2},
                          Field{"flag1", &OpenRequest::flag1},   Field{"flag2", &OpenRequest::flag2},
                          Field{"value3", &OpenRequest::value3}, Field{"flag3", &OpenRequest::flag3},
                          Field{"flag4", &OpenRequest::flag4},   Field{"flag5", &OpenRequest::flag5},
                          Field{"flag6", &OpenRequest::flag6}};
    }
};

/// "send"
struct TAVO_API SendRequest : request_packet {
    std::vector<std::uint8_t> data;
    bool operator==(const SendRequest&) const = default;
    static constexpr auto fields() { return std::tuple{Field{"data", &SendRequest::data}}; }
};

/// "recv"
struct TAVO_API RecvRequest : request_packet {
    std::int32_t value = 0;
    bool operator==(const RecvRequest&) const = default;
    static constexpr auto fields() { return std::tuple{Field{"value", &RecvRequest::value}}; }
};

/// "recv"
struct TAVO_API RecvReply : reply_packet {
    std::vector<std::uint8_t> data;
    bool operator==(const RecvReply&) const = default;
    static constexpr auto fields() { return std::tuple{Field{"data", &RecvReply::data}}; }
};

} // namespace TAVO::dto::com
