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

/// Records of the "relay" object, a switched output of the appliance.
namespace TAVO::dto::relay {

/// "set": the state to switch to.
struct TAVO_API SetRequest : request_packet {
    bool state = false;
    bool operator==(const SetRequest&) const = default;
    template <class Self = SetRequest>
    static constexpr auto fields() {
        return std::tuple{Field{"state", &Self::state}};
    }
};

/// "toggle".
struct TAVO_API ToggleRequest : request_packet {
    std::int32_t value = 0; ///< a duration, a count, a channel: the device's to define
    bool operator==(const ToggleRequest&) const = default;
    template <class Self = ToggleRequest>
    static constexpr auto fields() {
        return std::tuple{Field{"value", &Self::value}};
    }
};

/// "get": the state as the device reports it.
struct TAVO_API GetReply : reply_packet {
    std::uint8_t state = 0; ///< a byte, where "set" takes a bool
    bool operator==(const GetReply&) const = default;
    template <class Self = GetReply>
    static constexpr auto fields() {
        return std::tuple{Field{"state", &Self::state}};
    }
};

} // namespace TAVO::dto::relay

/// Records of the "cmosRelay" object, which clears a target board's CMOS settings.
namespace TAVO::dto::cmosRelay {

/// "cmosClear".
struct TAVO_API CmosClear : request_packet {
    std::int32_t value = 0; ///< a duration, a count, a channel: the device's to define
    bool operator==(const CmosClear&) const = default;
    template <class Self = CmosClear>
    static constexpr auto fields() {
        return std::tuple{Field{"value", &Self::value}};
    }
};

} // namespace TAVO::dto::cmosRelay

/// The methods of the "relay" object for TAVO::Object_v1_0::make(), and their tables. Laid out like
/// base_v1_0.
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

/// The method of the "cmosRelay" object for TAVO::Object_v1_0::make(), and its tables. Laid out like
/// base_v1_0.
namespace CommonModules::TAVOXTranscode::cmosRelay_v1_0 {

inline constexpr Call<TAVO::dto::cmosRelay::CmosClear> cmosClear{"cmosClear"};

TAVO_API MethodRows rows() noexcept;
using EncoderList = EncoderListOf<rows>;
using DecoderList = DecoderListOf<rows>;

TAVO_API extern EncoderFunction& encode_cmosClear;
TAVO_API extern DecoderFunction& decode_cmosClear;

} // namespace CommonModules::TAVOXTranscode::cmosRelay_v1_0

namespace CommonModules {

/// Proxy of a "relay" object, a switched output of the appliance. Use it to switch a board's power, to press
/// its buttons, or for whatever else is wired to it.
///
/// @code
/// const auto power = device->get<Relay_v1_0>("power");
/// const auto state = power->getGetMethod();
/// const auto queue = std::make_shared<TAVO::MulticallQueue>();
/// queue->add(power->getSetMethod(true));
/// queue->add(state);
/// device->multicall(queue);
/// const bool isOn = state->value().state != 0;
/// @endcode
///
/// Each operation only builds a call, for Device::call; it throws TAVO::SpecificationError when the device
/// does not list the method.
class TAVO_API Relay_v1_0 : public TAVO::Proxy<TAVOXTranscode::relay_v1_0::rows> {
public:
    /// Switches the relay on or off.
    std::shared_ptr<TAVO::Method> getSetMethod(bool state) const;
    /// Does not compile: a text would convert to true, even "off".
    template <class T>
    std::shared_ptr<TAVO::Method> getSetMethod(T* text) const = delete;
    /// Toggles the relay. What the integer means (a duration, a count, a channel) is the device's to define.
    std::shared_ptr<TAVO::Method> getToggleMethod(int value) const;
    /// Asks for the state. The value holds the byte that the device reports.
    std::shared_ptr<TAVO::BoundMethod<TAVO::dto::relay::GetReply>> getGetMethod() const;

protected:
    using Proxy::Proxy;
};

/// Serves type "relay" of every version.
class TAVO_API RelayFactory : public TAVO::TypeFactory {
public:
    RelayFactory();
};

/// Proxy of a "cmosRelay" object, which clears a target board's CMOS settings. Use it when a board no longer
/// boots with the settings that it keeps.
///
/// @code
/// const auto cmos = device->get<CmosRelay_v1_0>("cmos");
/// device->execute(cmos->getCmosClearMethod(100));
/// @endcode
///
/// Each operation only builds a call, for Device::call; it throws TAVO::SpecificationError when the device
/// does not list the method.
class TAVO_API CmosRelay_v1_0 : public TAVO::Proxy<TAVOXTranscode::cmosRelay_v1_0::rows> {
public:
    /// Clears the settings. What the integer means (a duration, a count, a channel) is the device's to
    /// define.
    std::shared_ptr<TAVO::Method> getCmosClearMethod(int value) const;

protected:
    using Proxy::Proxy;
};

/// Serves type "cmosRelay" up to version 1.0. Refuses higher versions with TAVO::SpecificationError "Unknown
/// cmosRelay object version: " and the version.
class TAVO_API CmosRelayFactory : public TAVO::TypeFactory {
public:
    CmosRelayFactory();
};

} // namespace CommonModules
