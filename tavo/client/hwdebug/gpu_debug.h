#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <tuple>

#include <tavo/client/export.h>
#include <tavo/client/hwdebug/gpu_scan.h>
#include <tavo/client/hwdebug/header_result.h>
#include <tavo/client/hwdebug/i2c.h>
#include <tavo/client/hwdebug/jtag.h>
#include <tavo/client/object/type_factory.h>
#include <tavo/client/transcode/base_tables.h>
#include <tavo/client/transcode/field.h>
#include <tavo/client/transcode/header_status_tables.h>
#include <tavo/client/transcode/packet.h>

/// Records of the "gpuDebug" object, the debug connector of a graphics processor. The numbering of header
/// modes is the device's to define.
namespace TAVO::dto::gpuDebug {

/// "headerModeSet": the mode to put the connector in.
struct TAVO_API HeaderModeSetRequest : request_packet {
    std::int32_t mode = 0; ///< by the device's numbering
    bool operator==(const HeaderModeSetRequest&) const = default;
    template <class Self = HeaderModeSetRequest>
    static constexpr auto fields() {
        return std::tuple{Field{"mode", &Self::mode}};
    }
};

/// "headerModeGet": the mode that the connector is in.
struct TAVO_API HeaderModeGetReply : reply_packet {
    std::int32_t mode = 0; ///< by the device's numbering
    bool operator==(const HeaderModeGetReply&) const = default;
    template <class Self = HeaderModeGetReply>
    static constexpr auto fields() {
        return std::tuple{Field{"mode", &Self::mode}};
    }
};

/// "ioPxEnGet": the level of the power-enable input.
struct TAVO_API IoPxEnGetReply : reply_packet {
    bool level = false;
    bool operator==(const IoPxEnGetReply&) const = default;
    template <class Self = IoPxEnGetReply>
    static constexpr auto fields() {
        return std::tuple{Field{"level", &Self::level}};
    }
};

} // namespace TAVO::dto::gpuDebug

/// The methods of the "gpuDebug" object for Object_v1_0::make(), and their tables. Laid out like base_v1_0.
namespace TAVO::TAVOXTranscode::gpuDebug_v1_0 {

using headerStatus_v1_1::headerStatusGet;
inline constexpr Call<None, dto::gpuDebug::HeaderModeGetReply> headerModeGet{"headerModeGet"};
inline constexpr Call<dto::gpuDebug::HeaderModeSetRequest> headerModeSet{"headerModeSet"};
inline constexpr Call<None, dto::gpuDebug::IoPxEnGetReply> ioPxEnGet{"ioPxEnGet"};

TAVO_API MethodRows rows() noexcept;
using EncoderList = EncoderListOf<rows>;
using DecoderList = DecoderListOf<rows>;

TAVO_API extern EncoderFunction &encode_headerStatusGet, &encode_headerModeGet, &encode_headerModeSet,
    &encode_ioPxEnGet;
TAVO_API extern DecoderFunction &decode_headerStatusGet, &decode_headerModeGet, &decode_headerModeSet,
    &decode_ioPxEnGet;

} // namespace TAVO::TAVOXTranscode::gpuDebug_v1_0

namespace TAVO::HWDebug {

/// Proxy of a "gpuDebug" object, the debug connector of a graphics processor. Use it to reach the connector's
/// "jtag", "gpuScan" and "i2c" objects, to set its header mode, and to read its power-enable input.
///
/// @code
/// const auto gpu = device->get<GpuDebug_v1_0>("gpu0");
/// if (const auto i2c = gpu->getI2c()) // the only child that may be missing
///     device->execute(i2c->getTransferMethod(0x50, 0, {0}, 8));
/// @endcode
///
/// Each operation only builds a call, for Device::call; it throws SpecificationError when the device does not
/// list the method. The numbering of header modes is the device's to define.
class TAVO_API GpuDebug_v1_0 : public Proxy<TAVOXTranscode::gpuDebug_v1_0::rows> {
public:
    /// The child "jtag". Does not call the device.
    std::shared_ptr<Jtag_v1_1> getJtag() const { return jtag_; }
    /// The child "gpuScan". Does not call the device.
    std::shared_ptr<GpuScan_v1_0> getGpuScan() const { return gpuScan_; }
    /// The child "i2c"; empty when the object has none. Does not call the device.
    std::shared_ptr<I2c_v1_0> getI2c() const { return i2c_; }

    /// Asks for the header mode that the connector is in.
    std::shared_ptr<BoundMethod<dto::gpuDebug::HeaderModeGetReply>> getHeaderModeGetMethod() const;
    /// Puts the connector in the given header mode.
    std::shared_ptr<Method> getHeaderModeSetMethod(int mode) const;
    /// Reads the level of the power-enable input. What a level means is the device's to define.
    std::shared_ptr<BoundMethod<dto::gpuDebug::IoPxEnGetReply>> getIoPxEnGetMethod() const;
    /// Asks for the status of the debug headers. There is no "headerStatusClear".
    std::shared_ptr<BoundMethod<HeaderResult>> getHeaderStatusGetMethod() const;

protected:
    using Proxy::Proxy;
    /// @throws SpecificationError "jtag object not found." without a child "jtag" of class Jtag_v1_1, and
    ///         then "gpuscan object not found." without a child "gpuScan". A missing "i2c" is accepted.
    void initalize() override;

private:
    std::shared_ptr<Jtag_v1_1> jtag_;
    std::shared_ptr<GpuScan_v1_0> gpuScan_;
    std::shared_ptr<I2c_v1_0> i2c_;
};

/// Serves type "gpuDebug" of every version.
class TAVO_API GpuDebugFactory : public TypeFactory {
public:
    GpuDebugFactory();
};

} // namespace TAVO::HWDebug
