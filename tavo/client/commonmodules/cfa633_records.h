#pragma once

#include <cstdint>
#include <string>
#include <tuple>

#include <tavo/client/transcode/field.h>
#include <tavo/client/transcode/packet.h>

/// Records of the "cfa633" object. Which of the two integers is the row, and the range of the level, are the
/// device's to define.
namespace TAVO::dto::cfa633 {

/// "lcdPrint"
struct TAVO_API LcdPrintRequest : request_packet {
    std::int32_t first = 0;
    std::int32_t second = 0;
    std::string text;
    bool operator==(const LcdPrintRequest&) const = default;
    static constexpr auto fields() {
        return std::tuple{Field{"first", &LcdPrintRequest::first}, Field{"second", &LcdPrintRequest::second},
                          Field{"text", &LcdPrintRequest::text}};
    }
};

/// "lcdBackLight"
struct TAVO_API LcdBackLightRequest : request_packet {
    std::int32_t level = 0;
    bool operator==(const LcdBackLightRequest&) const = default;
    static constexpr auto fields() { return std::tuple{Field{"level", &LcdBackLightRequest::level}}; }
};

} // namespace TAVO::dto::cfa633
