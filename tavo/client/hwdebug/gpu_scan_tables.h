#pragma once

#include <tavo/client/hwdebug/gpu_scan_records.h>
#include <tavo/client/hwdebug/jtag_records.h>
#include <tavo/client/transcode/base_tables.h>
#include <tavo/client/transcode/header_records.h>

/// Method tables of the "gpuScan" object. Shaped like every type's tables, see base_v1_0.
namespace TAVO::TAVOXTranscode::gpuScan_v1_0 {

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

TAVO_API extern EncoderFunction &encode_scan, &encode_optionSckFrequencyGet, &encode_optionSckFrequencySet,
    &encode_ioSckGet, &encode_ioSckSet, &encode_ioSdoGet, &encode_enableGet, &encode_enableSet,
    &encode_headerStatusGet, &encode_headerStatusClear;
TAVO_API extern DecoderFunction &decode_scan, &decode_optionSckFrequencyGet, &decode_optionSckFrequencySet,
    &decode_ioSckGet, &decode_ioSckSet, &decode_ioSdoGet, &decode_enableGet, &decode_enableSet,
    &decode_headerStatusGet, &decode_headerStatusClear;

} // namespace TAVO::TAVOXTranscode::gpuScan_v1_0
