#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <tuple>

#include <tavo/client/export.h>
#include <tavo/client/object/type_factory.h>
#include <tavo/client/transcode/base_tables.h>
#include <tavo/client/transcode/field.h>
#include <tavo/client/transcode/packet.h>

/// Records of the "kelvorGpuDebugMux" object, a multiplexer board. Those of "gpuDebug" look the same, but are
/// other types. The numbering of header modes is the device's to define.
namespace TAVO::dto::kelvorGpuDebugMux {

/// "headerModeSet": the mode to put the header in.
struct TAVO_API HeaderModeSetRequest : request_packet {
    std::int32_t mode = 0; ///< by the device's numbering
    bool operator==(const HeaderModeSetRequest&) const = default;
    template <class Self = HeaderModeSetRequest>
    static constexpr auto fields() {
        return std::tuple{Field{"mode", &Self::mode}};
    }
};

/// "headerModeGet": the mode that the header is in.
struct TAVO_API HeaderModeGetReply : reply_packet {
    std::int32_t mode = 0; ///< by the device's numbering
    bool operator==(const HeaderModeGetReply&) const = default;
    template <class Self = HeaderModeGetReply>
    static constexpr auto fields() {
        return std::tuple{Field{"mode", &Self::mode}};
    }
};

} // namespace TAVO::dto::kelvorGpuDebugMux

/// The methods of the "kelvorGpuDebugMux" object for Object_v1_0::make(), and their tables. Laid out like
/// base_v1_0.
namespace TAVO::TAVOXTranscode::kelvorGpuDebugMux_v1_0 {

inline constexpr Call<None, dto::kelvorGpuDebugMux::HeaderModeGetReply> headerModeGet{"headerModeGet"};
inline constexpr Call<dto::kelvorGpuDebugMux::HeaderModeSetRequest> headerModeSet{"headerModeSet"};

TAVO_API MethodRows rows() noexcept;
using EncoderList = EncoderListOf<rows>;
using DecoderList = DecoderListOf<rows>;

TAVO_API extern EncoderFunction &encode_headerModeGet, &encode_headerModeSet;
TAVO_API extern DecoderFunction &decode_headerModeGet, &decode_headerModeSet;

} // namespace TAVO::TAVOXTranscode::kelvorGpuDebugMux_v1_0

namespace TAVO::HWDebug {

/// Proxy of a "kelvorGpuDebugMux" object, a multiplexer board. Use it to set the header mode of the board.
///
/// @code
/// const auto mux = device->get<KelvorGpuDebugMux_v1_0>("gpuMux");
/// device->execute(mux->getHeaderModeSetMethod(2));
/// @endcode
///
/// Each operation only builds a call, for Device::call; it throws SpecificationError when the device does not
/// list the method. The numbering of header modes is the device's to define.
class TAVO_API KelvorGpuDebugMux_v1_0 : public Proxy<TAVOXTranscode::kelvorGpuDebugMux_v1_0::rows> {
public:
    /// Asks for the header mode that the board is in.
    std::shared_ptr<BoundMethod<dto::kelvorGpuDebugMux::HeaderModeGetReply>> getHeaderModeGetMethod() const;
    /// Puts the board in the given header mode.
    std::shared_ptr<Method> getHeaderModeSetMethod(int mode) const;

protected:
    using Proxy::Proxy;
};

/// Serves type "kelvorGpuDebugMux" of every version.
class TAVO_API KelvorGpuDebugMuxFactory : public TypeFactory {
public:
    KelvorGpuDebugMuxFactory();
};

} // namespace TAVO::HWDebug
