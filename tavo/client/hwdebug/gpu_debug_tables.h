#pragma once

#include <tavo/client/hwdebug/gpu_debug_records.h>
#include <tavo/client/transcode/base_tables.h>

/// Method tables of the "gpuDebug" object. Shaped like every type's tables, see base_v1_0.
namespace TAVO::TAVOXTranscode::gpuDebug_v1_0 {

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

TAVO_API extern EncoderFunction &encode_headerStatusGet, &encode_headerModeGet, &encode_headerModeSet,
    &encode_ioPxEnGet;
TAVO_API extern DecoderFunction &decode_headerStatusGet, &decode_headerModeGet, &decode_headerModeSet,
    &decode_ioPxEnGet;

} // namespace TAVO::TAVOXTranscode::gpuDebug_v1_0
