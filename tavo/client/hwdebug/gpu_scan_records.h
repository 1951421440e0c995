#pragma once

#include <cstdint>
#include <tuple>
#include <vector>

#include <tavo/client/transcode/field.h>
#include <tavo/client/transcode/packet.h>

/// Records of the "gpuScan" object.
namespace TAVO::dto::gpuScan {

/// "scan". The unit of the count is the device's to define.
struct TAVO_API ScanRequest : request_packet {
    std::int32_t count = 0;
    bool operator==(const ScanRequest&) const = default;
    static constexpr auto fields() { return std::tuple{Field{"count", &ScanRequest::count}}; }
};

/// "scan": the scanned bytes.
struct TAVO_API ScanReply : reply_packet {
    std::vector<std::uint8_t> data;
    bool operator==(const ScanReply&) const = default;
    static constexpr auto fields() { return std::tuple{Field{"data", &ScanReply::data}}; }
};

} // namespace TAVO::dto::gpuScan
