#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <tuple>
#include <vector>

#include <tavo/client/export.h>
#include <tavo/client/hwdebug/header_result.h>
#include <tavo/client/hwdebug/jtag_records.h>
#include <tavo/client/object/type_factory.h>
#include <tavo/client/transcode/base_tables.h>
#include <tavo/client/transcode/field.h>
#include <tavo/client/transcode/header_records.h>
#include <tavo/client/transcode/header_status_tables.h>
#include <tavo/client/transcode/packet.h>

/// Records of the "gpuScan" object, a serial scan port.
namespace TAVO::dto::gpuScan {

/// "scan": how much to scan.
struct TAVO_API ScanRequest : request_packet {
    std::int32_t count = 0; ///< bits or bytes: the unit is the device's to define
    bool operator==(const ScanRequest&) const = default;
    template <class Self = ScanRequest>
    static constexpr auto fields() {
        return std::tuple{Field{"count", &Self::count}};
    }
};

/// "scan": the scanned data.
struct TAVO_API ScanReply : reply_packet {
    std::vector<std::uint8_t> data;
    bool operator==(const ScanReply&) const = default;
    template <class Self = ScanReply>
    static constexpr auto fields() {
        return std::tuple{Field{"data", &Self::data}};
    }
};

} // namespace TAVO::dto::gpuScan

/// The methods of the "gpuScan" object for Object_v1_0::make(), and their tables. Laid out like base_v1_0.
/// Enable and header status are those of headerStatus_v1_1.
namespace TAVO::TAVOXTranscode::gpuScan_v1_0 {

using headerStatus_v1_1::enableGet, headerStatus_v1_1::enableSet, headerStatus_v1_1::headerStatusGet,
    headerStatus_v1_1::headerStatusClear;
inline constexpr Call<dto::gpuScan::ScanRequest, dto::gpuScan::ScanReply> scan{"scan"};
inline constexpr Call<None, dto::Base::FrequencyGetReply> optionSckFrequencyGet{"optionSckFrequencyGet"};
inline constexpr Call<dto::Jtag::OptionTckFrequencySetRequest> optionSckFrequencySet{"optionSckFrequencySet"};
inline constexpr Call<None, dto::Header::IoGetReply> ioSckGet{"ioSckGet"};
inline constexpr Call<dto::Header::IoSetRequest> ioSckSet{"ioSckSet"};
inline constexpr Call<None, dto::Header::iGetReply> ioSdoGet{"ioSdoGet"};

TAVO_API MethodRows rows() noexcept;
using EncoderList = EncoderListOf<rows>;
using DecoderList = DecoderListOf<rows>;

TAVO_API extern EncoderFunction &encode_scan, &encode_optionSckFrequencyGet, &encode_optionSckFrequencySet,
    &encode_ioSckGet, &encode_ioSckSet, &encode_ioSdoGet, &encode_enableGet, &encode_enableSet,
    &encode_headerStatusGet, &encode_headerStatusClear;
TAVO_API extern DecoderFunction &decode_scan, &decode_optionSckFrequencyGet, &decode_optionSckFrequencySet,
    &decode_ioSckGet, &decode_ioSckSet, &decode_ioSdoGet, &decode_enableGet, &decode_enableSet,
    &decode_headerStatusGet, &decode_headerStatusClear;

} // namespace TAVO::TAVOXTranscode::gpuScan_v1_0

namespace TAVO::HWDebug {

/// What the operations of GpuScan_v1_0 yield. BoundMethod::value() makes them from the replies.
namespace GpuScan_v1_0_Structs {

/// The scanned data. Does not convert back to its reply.
struct TAVO_API ScanGet {
    ScanGet() = default;
    ScanGet(const dto::gpuScan::ScanReply& reply);
    /// Converts the reply in a result.
    /// @throws std::runtime_error "Can't convert Result to desire type" when the result holds another record.
    explicit ScanGet(const dto::result& outcome);

    std::vector<std::uint8_t> data;
    bool operator==(const ScanGet&) const = default;
    template <class Self = ScanGet>
    static constexpr auto fields() {
        return std::tuple{dto::Field{"data", &Self::data}};
    }
};

/// Two flags of the pin SCK, the device's to define; each is true for any byte but 0. Converts back to its
/// reply.
struct TAVO_API GpuScanIoSck {
    GpuScanIoSck() = default;
    GpuScanIoSck(const dto::Header::IoGetReply& reply);
    /// Converts the reply in a result.
    /// @throws std::runtime_error "Can't convert Result to desire type" when the result holds another record.
    explicit GpuScanIoSck(const dto::result& outcome);
    operator dto::Header::IoGetReply() const;

    bool first = false;
    bool second = false;
    bool operator==(const GpuScanIoSck&) const = default;
    template <class Self = GpuScanIoSck>
    static constexpr auto fields() {
        return std::tuple{dto::Field{"first", &Self::first}, dto::Field{"second", &Self::second}};
    }
};

/// The frequency of SCK. Converts back to its reply.
struct TAVO_API GpuScanSckFrequency {
    GpuScanSckFrequency() = default;
    GpuScanSckFrequency(const dto::Base::FrequencyGetReply& reply);
    /// Converts the reply in a result.
    /// @throws std::runtime_error "Can't convert Result to desire type" when the result holds another record.
    explicit GpuScanSckFrequency(const dto::result& outcome);
    operator dto::Base::FrequencyGetReply() const;

    std::uint64_t frequency = 0; ///< in the device's unit
    std::int32_t value = 0;      ///< the device's to define
    bool operator==(const GpuScanSckFrequency&) const = default;
    template <class Self = GpuScanSckFrequency>
    static constexpr auto fields() {
        return std::tuple{dto::Field{"frequency", &Self::frequency}, dto::Field{"value", &Self::value}};
    }
};

} // namespace GpuScan_v1_0_Structs

/// Proxy of a "gpuScan" object, the serial scan port of a graphics processor, with a clock (SCK) and a data
/// output (SDO). Use it to scan data out, or to drive the clock and read the output by hand. It is a child of
/// a "gpuDebug" object.
///
/// @code
/// const auto bytes = device->value(scan->getScanMethod(64)).data;
/// @endcode
///
/// Each operation only builds a call, for Device::call; it throws SpecificationError when the device does not
/// list the method. Nothing is checked on this side: the device judges counts and frequencies and answers
/// with the return code.
class TAVO_API GpuScan_v1_0 : public Proxy<TAVOXTranscode::gpuScan_v1_0::rows> {
public:
    /// Scans data out.
    /// @param count how much; bits or bytes is the device's to define. 0 is sent like any other number.
    std::shared_ptr<BoundMethod<GpuScan_v1_0_Structs::ScanGet>> getScanMethod(int count) const;
    /// Asks for the frequency of SCK, in the device's unit, and a second integer, the device's to define.
    std::shared_ptr<BoundMethod<GpuScan_v1_0_Structs::GpuScanSckFrequency>>
    getOptionSckFrequencyGetMethod() const;
    /// Sets the frequency of SCK, in the device's unit.
    std::shared_ptr<Method> getOptionSckFrequencySetMethod(int frequency) const;
    /// Reads the pin SCK. The value holds two flags, the device's to define.
    std::shared_ptr<BoundMethod<GpuScan_v1_0_Structs::GpuScanIoSck>> getIoSckGetMethod() const;
    /// Drives the pin SCK. The two flags are the device's to define, in the order of getIoSckGetMethod().
    std::shared_ptr<Method> getIoSckSetMethod(bool first, bool second) const;
    /// Reads the level of SDO.
    std::shared_ptr<BoundMethod<dto::Header::iGetReply>> getIoSdoGetMethod() const;
    /// Asks whether the port is enabled.
    std::shared_ptr<BoundMethod<dto::Header::EnableGetReply>> getEnableGetMethod() const;
    /// Enables or disables the port.
    std::shared_ptr<Method> getEnableSetMethod(bool enable) const;
    /// Asks for the status of the debug headers.
    std::shared_ptr<BoundMethod<HeaderResult>> getHeaderStatusGetMethod() const;
    /// Clears the status of the debug headers.
    std::shared_ptr<Method> getHeaderStatusClearMethod() const;

protected:
    using Proxy::Proxy;
};

/// Serves type "gpuScan" of every version.
class TAVO_API GpuScanFactory : public TypeFactory {
public:
    GpuScanFactory();
};

} // namespace TAVO::HWDebug
