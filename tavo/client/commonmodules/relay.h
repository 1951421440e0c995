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

/// Records of the "relay" object.
namespace TAVO::dto::relay {

/// "set"
struct TAVO_API SetRequest : request_packet {
    bool state = false;
    bool operator==(const SetRequest&) const = default;
    template <class Self = SetRequest>
    static constexpr auto fields() {
        return std::tuple{Field{"state", &Self::state}};
    }
};

/// "toggle": an integer, the device's to define.
struct TAVO_API ToggleRequest : request_packet {
    std::int32_t value = 0;
    bool operator==(const ToggleRequest&) const = default;
    template <class Self = ToggleRequest>
    static constexpr auto fields() {
        return std::tuple{Field{"value", &Self::value}};
    }
};

/// "get": the state as the device reports it.
struct TAVO_API GetReply : reply_packet {
    std::uint8_t state = 0;
    bool operator==(const GetReply&) const = default;
    template <class Self = GetReply>
    static constexpr auto fields() {
        return std::tuple{Field{"state", &Self::state}};
    }
};

} // namespace TAVO::dto::relay

/// Records of the "cmosRelay" object.
namespace TAVO::dto::cmosRelay {

/// "cmosClear": an integer, the device's to define.
struct TAVO_API CmosClear : request_packet {
    std::int32_t value = 0;
    bool operator==(const CmosClear&) const = default;
    template <class Self = CmosClear>
    static constexpr auto fields() {
        return std::tuple{Field{"value", &Self::value}};
    }
};

} // namespace TAVO::dto::cmosRelay

/// Method tables of the "relay" object. Shaped like every type's tables, see base_v1_0.
namespace CommonModules::TAVOXTranscode::relay_v1_0 {

inline constexpr Call<None, TAVO::dto::relay::GetReply> get{"get"};
inline constexpr Call<TAVO::dto::relay::SetRequest> set{"set"};
inline constexpr Call<TAVO::dto::relay::ToggleRequest> toggle{"toggle"};

TAVO_API MethodRows rows() noexcept;
using EncoderList = EncoderListOf<rows>;
using DecoderList = DecoderListOf<rows>;

TAVO_API extern EncoderFunction &encode_get, &encode_set, &encode_toggle;
TAVO_API extern DecoderFunction &decode_get, &decode_set, &decode_toggle;

} // namespace CommonModules::TAVOXTranscode::relay_v1_0

/// Method tables of the "cmosRelay" object. Shaped like every type's tables, see base_v1_0.
namespace CommonModules::TAVOXTranscode::cmosRelay_v1_0 {

inline constexpr Call<TAVO::dto::cmosRelay::CmosClear> cmosClear{"cmosClear"};

TAVO_API MethodRows rows() noexcept;
using EncoderList = EncoderListOf<rows>;
using DecoderList = DecoderListOf<rows>;

TAVO_API extern EncoderFunction& encode_cmosClear;
TAVO_API extern DecoderFunction& decode_cmosClear;

} // namespace CommonModules::TAVOXTranscode::cmosRelay_v1_0

namespace CommonModules {

/// Proxy of a "relay" object, a switched output of the appliance. Its operations build calls and send
/// nothing; each throws TAVO::SpecificationError when the device does not list the method.
class TAVO_API Relay_v1_0 : public TAVO::Proxy<TAVOXTranscode::relay_v1_0::rows> {
public:
    /// Remote method "set".
    std::shared_ptr<TAVO::Method> getSetMethod(bool state) const;
    /// A text such as "on" would be true, whatever it says.
    template <class T>
    std::shared_ptr<TAVO::Method> getSetMethod(T* text) const = delete;
    /// Remote method "toggle". What the integer means (a duration, a count) is the device's to define.
    std::shared_ptr<TAVO::Method> getToggleMethod(int value) const;
    /// Remote method "get".
    std::shared_ptr<TAVO::BoundMethod<TAVO::dto::relay::GetReply>> getGetMethod() const;

protected:
    using Proxy::Proxy;
};

/// Serves type "relay" of every version.
class TAVO_API RelayFactory : public TAVO::TypeFactory {
public:
    RelayFactory();
};

/// Proxy of a "cmosRelay" object, which clears a target board's CMOS settings.
class TAVO_API CmosRelay_v1_0 : public TAVO::Proxy<TAVOXTranscode::cmosRelay_v1_0::rows> {
public:
    /// Remote method "cmosClear". What the integer means is the device's to define.
    std::shared_ptr<TAVO::Method> getCmosClearMethod(int value) const;

protected:
    using Proxy::Proxy;
};

/// Serves type "cmosRelay" up to version 1.0.
/// A higher version is refused: TAVO::SpecificationError "Unknown cmosRelay object version: " and the
/// version.
class TAVO_API CmosRelayFactory : public TAVO::TypeFactory {
public:
    CmosRelayFactory();
};

} // namespace CommonModules
