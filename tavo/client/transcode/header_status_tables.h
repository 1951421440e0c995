#pragma once

#include <tavo/client/transcode/base_records.h>
#include <tavo/client/transcode/call.h>
#include <tavo/client/transcode/header_records.h>
#include <tavo/client/transcode/method_row.h>

/// Functions that the tables of the debug modules enter under their own method names. There are no tables of
/// their own.
namespace TAVO::TAVOXTranscode::headerStatus_v1_1 {

inline constexpr Call<None, dto::Base::HeaderStatusGetReply> headerStatusGet{"headerStatusGet"};
inline constexpr Call<> headerStatusClear{"headerStatusClear"};
inline constexpr Call<None, dto::Header::EnableGetReply> enableGet{"enableGet"};
inline constexpr Call<dto::Header::EnableSetRequest> enableSet{"enableSet"};
inline constexpr Call<None, dto::Header::iGetReply> iGet{"iGet"};
inline constexpr Call<dto::Header::iSetRequest> iSet{"iSet"};
inline constexpr Call<None, dto::Header::oGetReply> oGet{"oGet"};
inline constexpr Call<None, dto::Header::IoGetReply> ioGet{"ioGet"};
inline constexpr Call<dto::Header::IoSetRequest> ioSet{"ioSet"};

TAVO_API MethodRows rows() noexcept;

TAVO_API extern EncoderFunction &encode_headerStatusGet, &encode_headerStatusClear, &encode_enableGet,
    &encode_enableSet, &encode_iGet, &encode_iSet, &encode_oGet, &encode_ioGet, &encode_ioSet;
TAVO_API extern DecoderFunction &decode_headerStatusGet, &decode_headerStatusClear, &decode_enableGet,
    &decode_enableSet, &decode_iGet, &decode_iSet, &decode_oGet, &decode_ioGet, &decode_ioSet;

} // namespace TAVO::TAVOXTranscode::headerStatus_v1_1
