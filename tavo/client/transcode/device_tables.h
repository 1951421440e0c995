#pragma once

#include <tavo/client/transcode/base_tables.h>
#include <tavo/client/transcode/device_records.h>

/// Method tables of the "device" object. The method "CHAPRespond" has the functions encode_CHAPResponse and
/// decode_CHAPResponse. There is no entry for "getMaxPacketSize". Shaped like every type's tables, see
/// base_v1_0.
namespace TAVO::TAVOXTranscode::device_v1_0 {

class TAVO_API EncoderList : public base_v1_0::EncoderList {
public:
    EncoderList();
};

class TAVO_API DecoderList : public base_v1_0::DecoderList {
public:
    DecoderList();
};

TAVO_API MethodRows rows() noexcept;
TAVO_API const EncoderList& encoders() noexcept;
TAVO_API const DecoderList& decoders() noexcept;

TAVO_API extern EncoderFunction &encode_info, &encode_rootMembers, &encode_lock, &encode_unlock,
    &encode_getKey, &encode_login, &encode_CHAPResponse;
TAVO_API extern DecoderFunction &decode_info, &decode_rootMembers, &decode_lock, &decode_unlock,
    &decode_getKey, &decode_login, &decode_CHAPResponse;

} // namespace TAVO::TAVOXTranscode::device_v1_0
