#pragma once

#include <tavo/client/transcode/base_tables.h>
#include <tavo/client/transcode/system_records.h>

/// Method tables of the "system" object. Shaped like every type's tables, see base_v1_0.
namespace TAVO::TAVOXTranscode::system_v1_0 {

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

TAVO_API extern EncoderFunction &encode_deviceReset, &encode_firmwareUpdate, &encode_firmwareStatus,
    &encode_timeGet, &encode_timeSet, &encode_usleep, &encode_uwait;
TAVO_API extern DecoderFunction &decode_deviceReset, &decode_firmwareUpdate, &decode_firmwareStatus,
    &decode_timeGet, &decode_timeSet, &decode_usleep, &decode_uwait;

} // namespace TAVO::TAVOXTranscode::system_v1_0
