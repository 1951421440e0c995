#pragma once

#include <tavo/client/transcode/base_tables.h>
#include <tavo/client/transcode/device_records.h>

/// Method tables of the "device" object. The method "CHAPRespond" has the functions encode_CHAPResponse and
/// decode_CHAPResponse. There is no entry for "getMaxPacketSize". Shaped like every type's tables, see
/// base_v1_0.
namespace TAVO::TAVOXTranscode::device_v1_0 {

inline constexpr Call<None, dto::Device::InfoReply> info{"info"};
inline constexpr Call<None, dto::Device::RootMembersReply> rootMembers{"rootMembers"};
inline constexpr Call<dto::Device::LockRequest, dto::Device::LockReply> lock{"lock"};
inline constexpr Call<dto::Device::UnLockRequest> unlock{"unlock"};
inline constexpr Call<None, dto::Device::KeyReply> getKey{"getKey"};
inline constexpr Call<dto::Device::LoginRequest, dto::Device::LoginReply> login{"login"};
inline constexpr Call<dto::Device::CHAPResponseRequest, dto::Device::CHAPResponseReply> CHAPRespond{
    "CHAPRespond"};

TAVO_API MethodRows rows() noexcept;
using EncoderList = EncoderListOf<rows>;
using DecoderList = DecoderListOf<rows>;

TAVO_API extern EncoderFunction &encode_info, &encode_rootMembers, &encode_lock, &encode_unlock,
    &encode_getKey, &encode_login, &encode_CHAPResponse;
TAVO_API extern DecoderFunction &decode_info, &decode_rootMembers, &decode_lock, &decode_unlock,
    &decode_getKey, &decode_login, &decode_CHAPResponse;

} // namespace TAVO::TAVOXTranscode::device_v1_0
