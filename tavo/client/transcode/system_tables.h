#pragma once

#include <tavo/client/transcode/base_tables.h>
#include <tavo/client/transcode/system_records.h>

/// The methods of the "system" object, version 1.0, and their tables. Laid out like base_v1_0.
namespace TAVO::TAVOXTranscode::system_v1_0 {

/// Resets the appliance.
inline constexpr Call<> deviceReset{"deviceReset"};
/// Sends a new firmware image.
inline constexpr Call<dto::system::FirmwareUpdateRequest> firmwareUpdate{"firmwareUpdate"};
/// The status of a firmware: two numbers, the device's to define.
inline constexpr Call<dto::system::FirmwareStatusRequest, dto::system::FirmwareStatusReply> firmwareStatus{
    "firmwareStatus"};
/// Reads the appliance's clock.
inline constexpr Call<None, dto::system::TimeGetReply> timeGet{"timeGet"};
/// Sets the appliance's clock.
inline constexpr Call<dto::system::TimeSetRequest> timeSet{"timeSet"};
/// Makes the appliance wait, in microseconds; the call takes as long. How it differs from `uwait` is the
/// device's to define.
inline constexpr Call<dto::system::uSleepRequest> usleep{"usleep"};
/// Makes the appliance wait, in microseconds; the call takes as long.
inline constexpr Call<dto::system::uWaitRequest> uwait{"uwait"};

/// Describes the methods above. Lives as long as the program.
TAVO_API MethodRows rows() noexcept;
using EncoderList = EncoderListOf<rows>;
using DecoderList = DecoderListOf<rows>;

TAVO_API extern EncoderFunction &encode_deviceReset, &encode_firmwareUpdate, &encode_firmwareStatus,
    &encode_timeGet, &encode_timeSet, &encode_usleep, &encode_uwait;
TAVO_API extern DecoderFunction &decode_deviceReset, &decode_firmwareUpdate, &decode_firmwareStatus,
    &decode_timeGet, &decode_timeSet, &decode_usleep, &decode_uwait;

} // namespace TAVO::TAVOXTranscode::system_v1_0
