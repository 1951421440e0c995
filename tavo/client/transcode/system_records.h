#pragma once

#include <cstdint>
#include <string>
#include <tuple>
#include <vector>

#include <tavo/client/transcode/field.h>
#include <tavo/client/transcode/packet.h>

/// Records of the "system" object.
namespace TAVO::dto::system {

/// "firmwareUpdate": which firmware (the device's to define) and its image.
struct TAVO_API FirmwareUpdateRequest : request_packet {
    std::string name;
    std::vector<std::uint8_t> image;
    bool operator==(const FirmwareUpdateRequest&) const = default;
    static constexpr auto fields() {
        return std::tuple{Field{"name", &FirmwareUpdateRequest::name},
                          Field{"image", &FirmwareUpdateRequest::image}};
    }
};

/// "firmwareStatus"
struct TAVO_API FirmwareStatusRequest : request_packet {
    std::string name;
    bool operator==(const FirmwareStatusRequest&) const = default;
    static constexpr auto fields() { return std::tuple{Field{"name", &FirmwareStatusRequest::name}}; }
};

/// "firmwareStatus": two numbers, the device's to define.
struct TAVO_API FirmwareStatusReply : reply_packet {
    std::uint32_t first = 0;
    std::uint32_t second = 0;
    bool operator==(const FirmwareStatusReply&) const = default;
    static constexpr auto fields() {
        return std::tuple{Field{"first", &FirmwareStatusReply::first},
                          Field{"second", &FirmwareStatusReply::second}};
    }
};

/// "timeGet": the device's clock, in its own unit.
struct TAVO_API TimeGetReply : reply_packet {
    std::int64_t time = 0;
    bool operator==(const TimeGetReply&) const = default;
    static constexpr auto fields() { return std::tuple{Field{"time", &TimeGetReply::time}}; }
};

/// "timeSet"
struct TAVO_API TimeSetRequest : request_packet {
    std::int64_t time = 0;
    bool operator==(const TimeSetRequest&) const = default;
    static constexpr auto fields() { return std::tuple{Field{"time", &TimeSetRequest::time}}; }
};

/// "usleep"
struct TAVO_API uSleepRequest : request_packet {
    std::int32_t microseconds = 0;
    bool operator==(const uSleepRequest&) const = default;
    static constexpr auto fields() { return std::tuple{Field{"microseconds", &uSleepRequest::microseconds}}; }
};

/// "uwait"
struct TAVO_API uWaitRequest : request_packet {
    std::int32_t microseconds = 0;
    bool operator==(const uWaitRequest&) const = default;
    static constexpr auto fields() { return std::tuple{Field{"microseconds", &uWaitRequest::microseconds}}; }
};

} // namespace TAVO::dto::system
