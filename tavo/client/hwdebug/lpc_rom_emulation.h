#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <tuple>
#include <vector>

#include <tavo/client/export.h>
#include <tavo/client/object/type_factory.h>
#include <tavo/client/transcode/base_tables.h>
#include <tavo/client/transcode/field.h>
#include <tavo/client/transcode/header_records.h>
#include <tavo/client/transcode/header_status_tables.h>
#include <tavo/client/transcode/packet.h>

/// Records of the "lpcRomEmulation" object, which serves a target's boot ROM from an SRAM in the device. The
/// values of the ROM type are the device's to define.
namespace TAVO::dto::lpcRomEmulation {

/// "sramGet": which part of the SRAM to read.
struct TAVO_API SramGetRequest : request_packet {
    std::int32_t offset = 0; ///< of the first byte
    std::int32_t length = 0; ///< how many bytes
    bool operator==(const SramGetRequest&) const = default;
    template <class Self = SramGetRequest>
    static constexpr auto fields() {
        return std::tuple{Field{"offset", &Self::offset}, Field{"length", &Self::length}};
    }
};

/// "sramGet": the bytes that were read.
struct TAVO_API SramGetReply : reply_packet {
    std::vector<std::uint8_t> data;
    bool operator==(const SramGetReply&) const = default;
    template <class Self = SramGetReply>
    static constexpr auto fields() {
        return std::tuple{Field{"data", &Self::data}};
    }
};

/// "sramSet": what to write into the SRAM, and where.
struct TAVO_API SramSetRequest : request_packet {
    std::int32_t offset = 0; ///< of the first byte
    std::vector<std::uint8_t> data;
    bool operator==(const SramSetRequest&) const = default;
    template <class Self = SramSetRequest>
    static constexpr auto fields() {
        return std::tuple{Field{"offset", &Self::offset}, Field{"data", &Self::data}};
    }
};

/// "sramSizeGet": the size of the SRAM.
struct TAVO_API SramSizeGetReply : reply_packet {
    std::int32_t size = 0;
    bool operator==(const SramSizeGetReply&) const = default;
    template <class Self = SramSizeGetReply>
    static constexpr auto fields() {
        return std::tuple{Field{"size", &Self::size}};
    }
};

/// "optionRomTypeSet": the ROM type to set.
struct TAVO_API OptionRomTypeSetRequest : request_packet {
    std::uint8_t romType = 0;
    bool operator==(const OptionRomTypeSetRequest&) const = default;
    template <class Self = OptionRomTypeSetRequest>
    static constexpr auto fields() {
        return std::tuple{Field{"romType", &Self::romType}};
    }
};

/// "optionRomTypeGet": the ROM type that is set.
struct TAVO_API OptionRomTypeGetReply : reply_packet {
    std::uint8_t romType = 0;
    bool operator==(const OptionRomTypeGetReply&) const = default;
    template <class Self = OptionRomTypeGetReply>
    static constexpr auto fields() {
        return std::tuple{Field{"romType", &Self::romType}};
    }
};

} // namespace TAVO::dto::lpcRomEmulation

/// The methods of the "lpcRomEmulation" object for Object_v1_0::make(), and their tables. Laid out like
/// base_v1_0. The enableGet and enableSet of headerStatus_v1_1 belong to them as well.
namespace TAVO::TAVOXTranscode::lpcRomEmulation_v1_0 {

using headerStatus_v1_1::enableSet, headerStatus_v1_1::enableGet;
inline constexpr Call<None, dto::lpcRomEmulation::SramSizeGetReply> sramSizeGet{"sramSizeGet"};
inline constexpr Call<dto::lpcRomEmulation::SramSetRequest> sramSet{"sramSet"};
inline constexpr Call<dto::lpcRomEmulation::SramGetRequest, dto::lpcRomEmulation::SramGetReply> sramGet{
    "sramGet"};
inline constexpr Call<dto::lpcRomEmulation::OptionRomTypeSetRequest> optionRomTypeSet{"optionRomTypeSet"};
inline constexpr Call<None, dto::lpcRomEmulation::OptionRomTypeGetReply> optionRomTypeGet{"optionRomTypeGet"};

TAVO_API MethodRows rows() noexcept;
using EncoderList = EncoderListOf<rows>;
using DecoderList = DecoderListOf<rows>;

TAVO_API extern EncoderFunction &encode_sramSizeGet, &encode_sramSet, &encode_sramGet,
    &encode_optionRomTypeSet, &encode_optionRomTypeGet, &encode_enableSet, &encode_enableGet;
TAVO_API extern DecoderFunction &decode_sramSizeGet, &decode_sramSet, &decode_sramGet,
    &decode_optionRomTypeSet, &decode_optionRomTypeGet, &decode_enableSet, &decode_enableGet;

} // namespace TAVO::TAVOXTranscode::lpcRomEmulation_v1_0

namespace TAVO::HWDebug {

/// What the operations of LpcRomEmulation_v1_0 yield. BoundMethod::value() makes it from the reply.
namespace LpcRomEmulation_v1_0_Structs {

/// The bytes that were read.
struct TAVO_API SramGet {
    SramGet() = default;
    SramGet(const dto::lpcRomEmulation::SramGetReply& reply);
    /// Converts the reply in a result.
    /// @throws std::runtime_error "Can't convert Result to desire type" when the result holds another record.
    explicit SramGet(const dto::result& outcome);

    std::vector<std::uint8_t> data;
    bool operator==(const SramGet&) const = default;
    template <class Self = SramGet>
    static constexpr auto fields() {
        return std::tuple{dto::Field{"data", &Self::data}};
    }
};

} // namespace LpcRomEmulation_v1_0_Structs

/// Proxy of an "lpcRomEmulation" object, which serves the target's boot ROM from an SRAM in the device. Use
/// it to boot a target from an image of yours without flashing it. Write the image in few large pieces, or in
/// one batch: each call of its own takes a round trip.
///
/// @code
/// const auto readBack = rom->getSramGetMethod(0x7FFFF0, 5);
/// const auto queue = std::make_shared<TAVO::MulticallQueue>();
/// queue->add(rom->getSramSetMethod(0x7FFFF0, image));
/// queue->add(readBack);
/// queue->add(rom->getEnableSetMethod(true));
/// device->multicall(queue);
/// @endcode
///
/// Each operation only builds a call, for Device::call; it throws SpecificationError when the device does not
/// list the method. Nothing is checked on this side: the device judges offsets and lengths and answers with
/// the return code.
class TAVO_API LpcRomEmulation_v1_0 : public Proxy<TAVOXTranscode::lpcRomEmulation_v1_0::rows> {
public:
    /// Reads `length` bytes of the SRAM, beginning at byte `offset`.
    std::shared_ptr<BoundMethod<LpcRomEmulation_v1_0_Structs::SramGet>> getSramGetMethod(int offset,
                                                                                         int length) const;
    /// Writes the bytes into the SRAM, beginning at byte `offset`. Move a large block in: it is sent from
    /// where it lies.
    std::shared_ptr<Method> getSramSetMethod(int offset, std::vector<std::uint8_t> data) const;
    /// Asks for the size of the SRAM.
    std::shared_ptr<BoundMethod<dto::lpcRomEmulation::SramSizeGetReply>> getSramSizeGetMethod() const;
    /// Asks for the ROM type; its values are the device's to define.
    std::shared_ptr<BoundMethod<dto::lpcRomEmulation::OptionRomTypeGetReply>>
    getOptionRomTypeGetMethod() const;
    /// Sets the ROM type. Only the low eight bits are sent; its values are the device's to define.
    std::shared_ptr<Method> getOptionRomTypeSetMethod(int romType) const;
    /// Asks whether the emulation is enabled.
    std::shared_ptr<BoundMethod<dto::Header::EnableGetReply>> getEnableGetMethod() const;
    /// Enables or disables the emulation.
    std::shared_ptr<Method> getEnableSetMethod(bool enable) const;

protected:
    using Proxy::Proxy;
};

/// Serves type "lpcRomEmulation" up to version 1.0. Refuses higher versions with SpecificationError "Unknown
/// lpcRomEmulation object version: " and the version.
class TAVO_API LpcRomEmulationFactory : public TypeFactory {
public:
    LpcRomEmulationFactory();
};

} // namespace TAVO::HWDebug
