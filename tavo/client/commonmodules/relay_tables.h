#pragma once

#include <tavo/client/commonmodules/relay_records.h>
#include <tavo/client/commonmodules/tables.h>

/// Method tables of the "relay" object. Shaped like every type's tables, see base_v1_0.
namespace CommonModules::TAVOXTranscode::relay_v1_0 {

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

TAVO_API extern EncoderFunction &encode_get, &encode_set, &encode_toggle;
TAVO_API extern DecoderFunction &decode_get, &decode_set, &decode_toggle;

} // namespace CommonModules::TAVOXTranscode::relay_v1_0

/// Method tables of the "cmosRelay" object. Shaped like every type's tables, see base_v1_0.
namespace CommonModules::TAVOXTranscode::cmosRelay_v1_0 {

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

TAVO_API extern EncoderFunction& encode_cmosClear;
TAVO_API extern DecoderFunction& decode_cmosClear;

} // namespace CommonModules::TAVOXTranscode::cmosRelay_v1_0
