#pragma once

#include <tavo/client/transcode/base_tables.h>
#include <tavo/client/transcode/system_records.h>

/// Method tables of the "system" object. Shaped like every type's tables, see base_v1_0.
namespace TAVO::TAVOXTranscode::system_v1_0 {

inline constexpr Call<> deviceReset{"deviceReset"};
inline constexpr Call<dto::system::FirmwareUpdateRequest> firmwareUpdate{"firmwareUpdate"};
inline constexpr Call<dto::system::FirmwareStatusRequest, dto::system::FirmwareStatusReply> firmwareStatus{
    "firmwareStatus"};
inline constexpr Call<None, dto::system::TimeGetReply> timeGet{"timeGet"};
inline constexpr Call<dto::system::TimeSetRequest> timeSet{"timeSet"};
inline constexpr Call<dto::system::uSleepRequest> usleep{"usleep"};
inline constexpr Call<dto::system::uWaitRequest> uwait{"uwait"};

TAVO_API MethodRows rows() noexcept;
using EncoderList = EncoderListOf<rows>;
using DecoderList = DecoderListOf<rows>;

TAVO_API extern EncoderFunction &encode_deviceReset, &encode_firmwareUpdate, &encode_firmwareStatus,
    &encode_timeGet, &encode_timeSet, &encode_usleep, &encode_uwait;
TAVO_API extern DecoderFunction &decode_deviceReset, &decode_firmwareUpdate, &decode_firmwareStatus,
    &decode_timeGet, &decode_timeSet, &decode_usleep, &decode_uwait;

} // namespace TAVO::TAVOXTranscode::system_v1_0
