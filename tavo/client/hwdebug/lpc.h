#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <tuple>
#include <vector>

#include <tavo/client/export.h>
#include <tavo/client/hwdebug/lpc_post_code.h>
#include <tavo/client/hwdebug/lpc_rom_emulation.h>
#include <tavo/client/object/type_factory.h>
#include <tavo/client/transcode/base_tables.h>
#include <tavo/client/transcode/field.h>
#include <tavo/client/transcode/packet.h>

/// Records of the "lpc" object, a connection to a target's LPC bus (Low Pin Count).
namespace TAVO::dto::lpc {

/// A header connection: its name, and whether it is present.
struct TAVO_API HeaderConnection {
    std::string name;
    bool connected = false;
    bool operator==(const HeaderConnection&) const = default;
    template <class Self = HeaderConnection>
    static constexpr auto fields() {
        return std::tuple{Field{"name", &Self::name}, Field{"connected", &Self::connected}};
    }
};

/// "headerConnectGet": the header connections in the device's order.
struct TAVO_API HeaderConnectionsReply : reply_packet {
    std::vector<HeaderConnection> connections;
    bool operator==(const HeaderConnectionsReply&) const = default;
    template <class Self = HeaderConnectionsReply>
    static constexpr auto fields() {
        return std::tuple{Field{"connections", &Self::connections}};
    }
};

} // namespace TAVO::dto::lpc

/// The method of the "lpc" object for Object_v1_0::make(), and its tables. Laid out like base_v1_0.
namespace TAVO::TAVOXTranscode::lpc_v1_0 {

inline constexpr Call<None, dto::lpc::HeaderConnectionsReply> headerConnectGet{"headerConnectGet"};

TAVO_API MethodRows rows() noexcept;
using EncoderList = EncoderListOf<rows>;
using DecoderList = DecoderListOf<rows>;

TAVO_API extern EncoderFunction& encode_headerConnectGet;
TAVO_API extern DecoderFunction& decode_headerConnectGet;

} // namespace TAVO::TAVOXTranscode::lpc_v1_0

namespace TAVO::HWDebug {

/// Proxy of an "lpc" object, which attaches to a target's LPC bus (Low Pin Count). Use it to reach the
/// objects that capture the target's POST codes and serve its boot ROM, and to see which header connections
/// are present.
///
/// @code
/// const auto lpc = device->get<Lpc_v1_0>("lpc");
/// const auto postCode = lpc->getLpcPostCode();
/// const auto rom = lpc->getLpcRomEmulation();
/// @endcode
class TAVO_API Lpc_v1_0 : public Proxy<TAVOXTranscode::lpc_v1_0::rows> {
public:
    /// The child "lpcPostCode". Does not call the device.
    std::shared_ptr<LpcPostCode_v1_0> getLpcPostCode() const { return postCode_; }
    /// The child "lpcRomEmulation". Does not call the device.
    std::shared_ptr<LpcRomEmulation_v1_0> getLpcRomEmulation() const { return romEmulation_; }
    /// Asks which header connections are present. Only builds a call.
    /// @throws SpecificationError when the device does not list the method.
    std::shared_ptr<BoundMethod<dto::lpc::HeaderConnectionsReply>> getHeaderConnectGetMethod() const;

protected:
    using Proxy::Proxy;
    /// @throws SpecificationError "lpc rom emulation object not found." without a child "lpcRomEmulation",
    ///         and then "lpc post code object not found." without a child "lpcPostCode".
    void initalize() override;

private:
    std::shared_ptr<LpcRomEmulation_v1_0> romEmulation_;
    std::shared_ptr<LpcPostCode_v1_0> postCode_;
};

/// Serves type "lpc" up to version 1.0. Refuses higher versions with SpecificationError "Unknown lpc object
/// version: " and the version.
class TAVO_API LpcFactory : public TypeFactory {
public:
    LpcFactory();
};

} // namespace TAVO::HWDebug
