#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <tuple>
#include <vector>

#include <tavo/client/commonmodules/namespaces.h>
#include <tavo/client/export.h>
#include <tavo/client/object/type_factory.h>
#include <tavo/client/transcode/base_tables.h>
#include <tavo/client/transcode/field.h>
#include <tavo/client/transcode/packet.h>

/// Records of the "com" object, the appliance's serial port. What a neutrally named member stands for is the
/// device's to define.
namespace TAVO::dto::com {

/// "open": nine line settings, the device's to define, in the order of the arguments of
/// CommonModules::Com_v1_0::getOpenMethod().
struct TAVO_API OpenRequest : request_packet {
    std::int32_t value1 = 0;
    std::int32_t value2 = 0;
    bool flag1 = false;
    bool flag2 = false;
    std::int32_t value3 = 0;
    bool flag3 = false;
    bool flag4 = false;
    bool flag5 = false;
    bool flag6 = false;
    bool operator==(const OpenRequest&) const = default;
    template <class Self = OpenRequest>
    static constexpr auto fields() {
        return std::tuple{
            Field{"value1", &Self::value1}, Field{"value2", &Self::value2}, Field{"flag1", &Self::flag1},
            Field{"flag2", &Self::flag2},   Field{"value3", &Self::value3}, Field{"flag3", &Self::flag3},
            Field{"flag4", &Self::flag4},   Field{"flag5", &Self::flag5},   Field{"flag6", &Self::flag6}};
    }
};

/// "send": the bytes to send.
struct TAVO_API SendRequest : request_packet {
    std::vector<std::uint8_t> data;
    bool operator==(const SendRequest&) const = default;
    template <class Self = SendRequest>
    static constexpr auto fields() {
        return std::tuple{Field{"data", &Self::data}};
    }
};

/// "recv".
struct TAVO_API RecvRequest : request_packet {
    std::int32_t value = 0; ///< the device's to define
    bool operator==(const RecvRequest&) const = default;
    template <class Self = RecvRequest>
    static constexpr auto fields() {
        return std::tuple{Field{"value", &Self::value}};
    }
};

/// "recv": the bytes that were received.
struct TAVO_API RecvReply : reply_packet {
    std::vector<std::uint8_t> data;
    bool operator==(const RecvReply&) const = default;
    template <class Self = RecvReply>
    static constexpr auto fields() {
        return std::tuple{Field{"data", &Self::data}};
    }
};

} // namespace TAVO::dto::com

/// The methods of the "com" object for TAVO::Object_v1_0::make(), and their tables. Laid out like base_v1_0.
namespace CommonModules::TAVOXTranscode::com_v1_0 {

inline constexpr Call<TAVO::dto::com::OpenRequest> open{"open"};
inline constexpr Call<> close{"close"};
inline constexpr Call<TAVO::dto::com::RecvRequest, TAVO::dto::com::RecvReply> recv{"recv"};
inline constexpr Call<TAVO::dto::com::SendRequest> send{"send"};

TAVO_API MethodRows rows() noexcept;
using EncoderList = EncoderListOf<rows>;
using DecoderList = DecoderListOf<rows>;

TAVO_API extern EncoderFunction &encode_open, &encode_close, &encode_recv, &encode_send;
TAVO_API extern DecoderFunction &decode_open, &decode_close, &decode_recv, &decode_send;

} // namespace CommonModules::TAVOXTranscode::com_v1_0

namespace TAVO::dto {

/// The bytes that CommonModules::Com_v1_0::getSendMethod() sends for these integers: one zero byte for each
/// of them, then the low eight bits of each.
TAVO_API std::vector<std::uint8_t> convert_to_byte_array(const std::vector<int>& integers);

} // namespace TAVO::dto

namespace CommonModules {

/// Proxy of a "com" object, the appliance's serial port. Use it to talk to a target's console.
///
/// @code
/// using namespace CommonModules::TAVOXTranscode;
/// const auto received = com->getRecvMethod(4096);
/// const auto queue = std::make_shared<TAVO::MulticallQueue>();
/// queue->add(com->getOpenMethod(115200, 8, false, false, 1, false, false, false, false));
/// queue->add(com->make(com_v1_0::send, std::vector<std::uint8_t>{'t', 'e', 'm', 'p', '\r'}));
/// queue->add(device->getSystem()->getUSleepMethod(1000));
/// queue->add(received);
/// device->multicall(queue);
/// const std::vector<int> bytes = received->value();
/// @endcode
///
/// Each operation only builds a call, for Device::call; it throws TAVO::SpecificationError when the device
/// does not list the method. Nothing is checked on this side: the device judges the settings and answers with
/// the return code.
class TAVO_API Com_v1_0 : public TAVO::Proxy<TAVOXTranscode::com_v1_0::rows> {
public:
    /// Opens the port. What each of the nine line settings means is the device's to define.
    std::shared_ptr<TAVO::Method> getOpenMethod(int value1, int value2, bool flag1, bool flag2, int value3,
                                                bool flag3, bool flag4, bool flag5, bool flag6) const;
    /// Closes the port.
    std::shared_ptr<TAVO::Method> getCloseMethod() const;
    /// Sends what TAVO::dto::convert_to_byte_array() makes of `data`, which begins with as many zero bytes.
    /// To send just your bytes, use make(com_v1_0::send, bytes).
    /// @param ignored is not sent.
    std::shared_ptr<TAVO::Method> getSendMethod(int ignored, std::vector<int> data) const;
    /// Asks for what was received. The value holds one integer, 0 to 255, for each byte.
    /// @param value the device's to define.
    std::shared_ptr<TAVO::BoundMethod<std::vector<int>>> getRecvMethod(int value) const;

protected:
    using Proxy::Proxy;
};

/// Serves type "com" up to version 1.0. Refuses higher versions with TAVO::SpecificationError "Unknown com
/// object version: " and the version.
class TAVO_API ComFactory : public TAVO::TypeFactory {
public:
    ComFactory();
};

} // namespace CommonModules

namespace TAVO {

/// One integer, 0 to 255, for each byte of a dto::com::RecvReply.
template <>
struct TAVO_API PlainResult<std::vector<int>> {
    static std::vector<int> of(const dto::result& outcome);
};

} // namespace TAVO
