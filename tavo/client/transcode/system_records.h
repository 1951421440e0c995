#pragma once

#include <cstdint>
#include <string>
#include <tuple>
#include <vector>

#include <tavo/client/transcode/field.h>
#include <tavo/client/transcode/packet.h>

/// Records of the "system" object (instance id 1): the appliance's firmware, clock and reset.
namespace TAVO::dto::system {

/// Parameters of "firmwareUpdate": which firmware, by a name that is the device's to define, and its image.
struct TAVO_API FirmwareUpdateRequest : request_packet {
    std::string name;
    std::vector<std::uint8_t> image;
    bool operator==(const FirmwareUpdateRequest&) const = default;
    template <class Self = FirmwareUpdateRequest>
    static constexpr auto fields() {
        return std::tuple{Field{"name", &Self::name}, Field{"image", &Self::image}};
    }
};

/// Parameters of "firmwareStatus": which firmware, by a name that is the device's to define.
struct TAVO_API FirmwareStatusRequest : request_packet {
    std::string name;
    bool operator==(const FirmwareStatusRequest&) const = default;
    template <class Self = FirmwareStatusRequest>
    static constexpr auto fields() {
        return std::tuple{Field{"name", &Self::name}};
    }
};

/// Reply to "firmwareStatus": two numbers, the device's to define.
struct TAVO_API FirmwareStatusReply : reply_packet {
    std::uint32_t first = 0;
    std::uint32_t second = 0;
    bool operator==(const FirmwareStatusReply&) const = default;
    template <class Self = FirmwareStatusReply>
    static constexpr auto fields() {
        return std::tuple{Field{"first", &Self::first}, Field{"second", &Self::second}};
    }
};

/// Reply to "timeGet": the device's clock. Unit and epoch are the device's to define.
struct TAVO_API TimeGetReply : reply_packet {
    std::int64_t time = 0;
    bool operator==(const TimeGetReply&) const = default;
    template <class Self = TimeGetReply>
    static constexpr auto fields() {
        return std::tuple{Field{"time", &Self::time}};
    }
};

/// Parameters of "timeSet": the new time, as "timeGet" returns it.
struct TAVO_API TimeSetRequest : request_packet {
    std::int64_t time = 0;
    bool operator==(const TimeSetRequest&) const = default;
    template <class Self = TimeSetRequest>
    static constexpr auto fields() {
        return std::tuple{Field{"time", &Self::time}};
    }
};

/// Parameters of "usleep": how long.
struct TAVO_API uSleepRequest : request_packet {
    std::int32_t microseconds = 0;
    bool operator==(const uSleepRequest&) const = default;
    template <class Self = uSleepRequest>
    static constexpr auto fields() {
        return std::tuple{Field{"microseconds", &Self::microseconds}};
    }
};

/// Parameters of "uwait": how long.
struct TAVO_API uWaitRequest : request_packet {
    std::int32_t microseconds = 0;
    bool operator==(const uWaitRequest&) const = default;
    template <class Self = uWaitRequest>
    static constexpr auto fields() {
        return std::tuple{Field{"microseconds", &Self::microseconds}};
    }
};

} // namespace TAVO::dto::system
