#pragma once

#include <tavo/client/hwdebug/lpc_records.h>
#include <tavo/client/transcode/base_tables.h>

/// Method tables of the "lpc" object. Shaped like every type's tables, see base_v1_0.
namespace TAVO::TAVOXTranscode::lpc_v1_0 {

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

TAVO_API extern EncoderFunction& encode_headerConnectGet;
TAVO_API extern DecoderFunction& decode_headerConnectGet;

} // namespace TAVO::TAVOXTranscode::lpc_v1_0
