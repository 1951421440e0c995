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

/// Records of the "cfa633" object. Which of the two integers is the row, and the range of the level, are the
/// device's to define.
namespace TAVO::dto::cfa633 {

/// "lcdPrint"
struct TAVO_API LcdPrintRequest : request_packet {
    std::int32_t first = 0;
    std::int32_t second = 0;
    std::string text;
    bool operator==(const LcdPrintRequest&) const = default;
    template <class Self = LcdPrintRequest>
    static constexpr auto fields() {
        return std::tuple{Field{"first", &Self::first}, Field{"second", &Self::second},
                          Field{"text", &Self::text}};
    }
};

/// "lcdBackLight"
struct TAVO_API LcdBackLightRequest : request_packet {
    std::int32_t level = 0;
    bool operator==(const LcdBackLightRequest&) const = default;
    template <class Self = LcdBackLightRequest>
    static constexpr auto fields() {
        return std::tuple{Field{"level", &Self::level}};
    }
};

} // namespace TAVO::dto::cfa633

/// Method tables of the "cfa633" object. Shaped like every type's tables, see base_v1_0.
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

/// Proxy of a "cfa633" object, a character display. Its operations build calls and
/// send nothing; each throws TAVO::SpecificationError when the device does not list the method.
class TAVO_API Cfa633_v1_0 : public TAVO::Proxy<TAVOXTranscode::cfa633_v1_0::rows> {
public:
    /// The text travels as it is. Which of the two integers is the row is the device's to define.
    std::shared_ptr<TAVO::Method> getLcdPrintMethod(int first, int second, std::string text) const;
    std::shared_ptr<TAVO::Method> getLcdClearMethod() const;
    std::shared_ptr<TAVO::Method> getLcdBackLightMethod(int level) const;

protected:
    using Proxy::Proxy;
};

/// Serves type "cfa633" up to version 1.0.
/// A higher version is refused: TAVO::SpecificationError "Unknown cfa633 object version: " and the version.
class TAVO_API Cfa633Factory : public TAVO::TypeFactory {
public:
    Cfa633Factory();
};

} // namespace CommonModules
