#pragma once

#include <tavo/client/transcode/base_records.h>
#include <tavo/client/transcode/call.h>
#include <tavo/client/transcode/header_records.h>
#include <tavo/client/transcode/method_row.h>

/// Functions that several debug modules share; their own tables enter them, under these or other method
/// names. No object has this type, so there is no EncoderList or DecoderList here.
namespace TAVO::TAVOXTranscode::headerStatus_v1_1 {

/// The status of the debug headers.
inline constexpr Call<None, dto::Base::HeaderStatusGetReply> headerStatusGet{"headerStatusGet"};
/// Clears the status of the debug headers.
inline constexpr Call<> headerStatusClear{"headerStatusClear"};
/// Whether the module is enabled.
inline constexpr Call<None, dto::Header::EnableGetReply> enableGet{"enableGet"};
/// Enables or disables the module.
inline constexpr Call<dto::Header::EnableSetRequest> enableSet{"enableSet"};
/// Reads an input pin.
inline constexpr Call<None, dto::Header::iGetReply> iGet{"iGet"};
/// Sets the level of a pin.
inline constexpr Call<dto::Header::iSetRequest> iSet{"iSet"};
/// Reads back an output pin.
inline constexpr Call<None, dto::Header::oGetReply> oGet{"oGet"};
/// Reads a bidirectional pin.
inline constexpr Call<None, dto::Header::IoGetReply> ioGet{"ioGet"};
/// Sets a bidirectional pin.
inline constexpr Call<dto::Header::IoSetRequest> ioSet{"ioSet"};

/// Describes the functions above. Lives as long as the program.
TAVO_API MethodRows rows() noexcept;

TAVO_API extern EncoderFunction &encode_headerStatusGet, &encode_headerStatusClear, &encode_enableGet,
    &encode_enableSet, &encode_iGet, &encode_iSet, &encode_oGet, &encode_ioGet, &encode_ioSet;
TAVO_API extern DecoderFunction &decode_headerStatusGet, &decode_headerStatusClear, &decode_enableGet,
    &decode_enableSet, &decode_iGet, &decode_iSet, &decode_oGet, &decode_ioGet, &decode_ioSet;

} // namespace TAVO::TAVOXTranscode::headerStatus_v1_1
