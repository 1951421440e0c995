#pragma once

#include <cstdint>
#include <tuple>
#include <vector>

#include <tavo/client/transcode/field.h>
#include <tavo/client/transcode/packet.h>

/// Records of the "lpcRomEmulation" object. The values of the ROM type are the device's to define.
namespace TAVO::dto::lpcRomEmulation {

/// "sramGet"
struct TAVO_API SramGetRequest : request_packet {
    std::int32_t offset = 0;
    std::int32_t length = 0;
    bool operator==(const SramGetRequest&) const = default;
    static constexpr auto fields() {
        return std::tuple{Field{"offset", &SramGetRequest::offset}, Field{"length", &SramGetRequest::length}};
    }
};

/// "sramGet"
struct TAVO_API SramGetReply : reply_packet {
    std::vector<std::uint8_t> data;
    bool operator==(const SramGetReply&) const = default;
    static constexpr auto fields() { return std::tuple{Field{"data", &SramGetReply::data}}; }
};

/// "sramSet"
struct TAVO_API SramSetRequest : request_packet {
    std::int32_t offset = 0;
    std::vector<std::uint8_t> data;
    bool operator==(const SramSetRequest&) const = default;
    static constexpr auto fields() {
        return std::tuple{Field{"offset", &SramSetRequest::offset}, Field{"data", &SramSetRequest::data}};
    }
};

/// "sramSizeGet"
struct TAVO_API SramSizeGetReply : reply_packet {
    std::int32_t size = 0;
    bool operator==(const SramSizeGetReply&) const = default;
    static constexpr auto fields() { return std::tuple{Field{"size", &SramSizeGetReply::size}}; }
};

/// "optionRomTypeSet"
struct TAVO_API OptionRomTypeSetRequest : request_packet {
    std::uint8_t romType = 0;
    bool operator==(const OptionRomTypeSetRequest&) const = default;
    static constexpr auto fields() { return std::tuple{Field{"romType", &OptionRomTypeSetRequest::romType}}; }
};

/// "optionRomTypeGet"
struct TAVO_API OptionRomTypeGetReply : reply_packet {
    std::uint8_t romType = 0;
    bool operator==(const OptionRomTypeGetReply&) const = default;
    static constexpr auto fields() { return std::tuple{Field{"romType", &OptionRomTypeGetReply::romType}}; }
};

} // namespace TAVO::dto::lpcRomEmulation
