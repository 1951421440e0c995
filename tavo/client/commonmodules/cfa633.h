#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <tuple>

#include <tavo/client/commonmodules/namespaces.h>
#include <tavo/client/export.h>
#include <tavo/client/object/type_factory.h>
#include <tavo/client/transcode/base_tables.h>
#include <tavo/client/transcode/field.h>
#include <tavo/client/transcode/packet.h>

/// Records of the "cfa633" object, a CFA633 character display. Which of the two integers is the row, and the
/// range of the level, are the device's to define.
namespace TAVO::dto::cfa633 {

/// "lcdPrint": a text and where to print it.
struct TAVO_API LcdPrintRequest : request_packet {
    std::int32_t first = 0;  ///< row or column: the device's to define
    std::int32_t second = 0; ///< the other one
    std::string text;        ///< sent as it is, not cut, padded or translated
    bool operator==(const LcdPrintRequest&) const = default;
    template <class Self = LcdPrintRequest>
    static constexpr auto fields() {
        return std::tuple{Field{"first", &Self::first}, Field{"second", &Self::second},
                          Field{"text", &Self::text}};
    }
};

/// "lcdBackLight": the brightness of the backlight.
struct TAVO_API LcdBackLightRequest : request_packet {
    std::int32_t level = 0;
    bool operator==(const LcdBackLightRequest&) const = default;
    template <class Self = LcdBackLightRequest>
    static constexpr auto fields() {
        return std::tuple{Field{"level", &Self::level}};
    }
};

} // namespace TAVO::dto::cfa633

/// The methods of the "cfa633" object for TAVO::Object_v1_0::make(), and their tables. Laid out like
/// base_v1_0.
namespace CommonModules::TAVOXTranscode::cfa633_v1_0 {

inline constexpr Call<TAVO::dto::cfa633::LcdPrintRequest> lcdPrint{"lcdPrint"};
inline constexpr Call<> lcdClear{"lcdClear"};
inline constexpr Call<TAVO::dto::cfa633::LcdBackLightRequest> lcdBackLight{"lcdBackLight"};

TAVO_API MethodRows rows() noexcept;
using EncoderList = EncoderListOf<rows>;
using DecoderList = DecoderListOf<rows>;

TAVO_API extern EncoderFunction &encode_lcdPrint, &encode_lcdClear, &encode_lcdBackLight;
TAVO_API extern DecoderFunction &decode_lcdPrint, &decode_lcdClear, &decode_lcdBackLight;

} // namespace CommonModules::TAVOXTranscode::cfa633_v1_0

namespace CommonModules {

/// Proxy of a "cfa633" object, a CFA633 character display at the appliance. Use it to show a short text to
/// the people at the bench. The display cannot be read back.
///
/// @code
/// const auto queue = std::make_shared<TAVO::MulticallQueue>();
/// queue->add(lcd->getLcdClearMethod());
/// queue->add(lcd->getLcdPrintMethod(1, 4, "ready"));
/// queue->add(lcd->getLcdBackLightMethod(50));
/// device->multicall(queue);
/// @endcode
///
/// Each operation only builds a call, for Device::call; it throws TAVO::SpecificationError when the device
/// does not list the method. Nothing is checked on this side: the device judges positions and levels and
/// answers with the return code.
class TAVO_API Cfa633_v1_0 : public TAVO::Proxy<TAVOXTranscode::cfa633_v1_0::rows> {
public:
    /// Prints a text at a position.
    /// @param first, second row and column; which is which is the device's to define.
    /// @param text sent as it is, not cut, padded or translated.
    std::shared_ptr<TAVO::Method> getLcdPrintMethod(int first, int second, std::string text) const;
    /// Clears the display.
    std::shared_ptr<TAVO::Method> getLcdClearMethod() const;
    /// Sets the brightness of the backlight; the range is the device's to define.
    std::shared_ptr<TAVO::Method> getLcdBackLightMethod(int level) const;

protected:
    using Proxy::Proxy;
};

/// Serves type "cfa633" up to version 1.0. Refuses higher versions with TAVO::SpecificationError "Unknown
/// cfa633 object version: " and the version.
class TAVO_API Cfa633Factory : public TAVO::TypeFactory {
public:
    Cfa633Factory();
};

} // namespace CommonModules
