#pragma once

#include <tavo/client/transcode/base_tables.h>
#include <tavo/client/transcode/device_records.h>

/// The methods of the "device" object, version 1.0, and their tables. The functions of "CHAPRespond" are
/// called encode_CHAPResponse and decode_CHAPResponse; "getMaxPacketSize" has none. Laid out like base_v1_0.
namespace TAVO::TAVOXTranscode::device_v1_0 {

/// Identifies the appliance, its firmware and its boards.
inline constexpr Call<None, dto::Device::InfoReply> info{"info"};
/// The objects at the top of the tree and their instance ids.
inline constexpr Call<None, dto::Device::RootMembersReply> rootMembers{"rootMembers"};
/// Takes the lock. DeviceFactory and Device::relock call it for you.
inline constexpr Call<dto::Device::LockRequest, dto::Device::LockReply> lock{"lock"};
/// Gives the lock back. Device::unlock and the end of the device call it for you.
inline constexpr Call<dto::Device::UnLockRequest> unlock{"unlock"};
/// The server key.
inline constexpr Call<None, dto::Device::KeyReply> getKey{"getKey"};
/// Logs a user in. DeviceFactory::authenticate calls it and ignores the challenge.
inline constexpr Call<dto::Device::LoginRequest, dto::Device::LoginReply> login{"login"};
/// Answers the challenge of `login`. The library never does so by itself.
inline constexpr Call<dto::Device::CHAPResponseRequest, dto::Device::CHAPResponseReply> CHAPRespond{
    "CHAPRespond"};

/// Describes the methods above. Lives as long as the program.
TAVO_API MethodRows rows() noexcept;
using EncoderList = EncoderListOf<rows>;
using DecoderList = DecoderListOf<rows>;

TAVO_API extern EncoderFunction &encode_info, &encode_rootMembers, &encode_lock, &encode_unlock,
    &encode_getKey, &encode_login, &encode_CHAPResponse;
TAVO_API extern DecoderFunction &decode_info, &decode_rootMembers, &decode_lock, &decode_unlock,
    &decode_getKey, &decode_login, &decode_CHAPResponse;

} // namespace TAVO::TAVOXTranscode::device_v1_0
