#pragma once

#include <tavo/client/commonmodules/com_records.h>
#include <tavo/client/commonmodules/tables.h>

/// Method tables of the "com" object. Shaped like every type's tables, see base_v1_0.
namespace CommonModules::TAVOXTranscode::com_v1_0 {

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

TAVO_API extern EncoderFunction &encode_open, &encode_close, &encode_recv, &encode_send;
TAVO_API extern DecoderFunction &decode_open, &decode_close, &decode_recv, &decode_send;

} // namespace CommonModules::TAVOXTranscode::com_v1_0
