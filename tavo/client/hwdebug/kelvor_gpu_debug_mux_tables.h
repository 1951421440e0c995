#pragma once

#include <tavo/client/hwdebug/kelvor_gpu_debug_mux_records.h>
#include <tavo/client/transcode/base_tables.h>

/// Method tables of the "kelvorGpuDebugMux" object. Shaped like every type's tables, see base_v1_0.
namespace TAVO::TAVOXTranscode::kelvorGpuDebugMux_v1_0 {

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

TAVO_API extern EncoderFunction &encode_headerModeGet, &encode_headerModeSet;
TAVO_API extern DecoderFunction &decode_headerModeGet, &decode_headerModeSet;

} // namespace TAVO::TAVOXTranscode::kelvorGpuDebugMux_v1_0
