#pragma once

#include <tavo/client/hwdebug/lpc_post_code_records.h>
#include <tavo/client/transcode/base_tables.h>
#include <tavo/client/transcode/header_records.h>

/// Method tables of the "lpcPostCode" object. Shaped like every type's tables, see base_v1_0.
namespace TAVO::TAVOXTranscode::lpcPostCode_v1_0 {

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

TAVO_API extern EncoderFunction &encode_postCodeGet, &encode_fifoSizeGet, &encode_fifoGet, &encode_fifoClear,
    &encode_fifoStatusGet, &encode_fifoStatusClear, &encode_optionPortSet, &encode_optionPortGet,
    &encode_optionPassiveSet, &encode_optionPassiveGet, &encode_optionFifoCircularSet,
    &encode_optionFifoCircularGet, &encode_optionFifoDiscardSet, &encode_optionFifoDiscardGet,
    &encode_optionFifoAutoResetSet, &encode_optionFifoAutoResetGet, &encode_enableSet, &encode_enableGet;
TAVO_API extern DecoderFunction &decode_postCodeGet, &decode_fifoSizeGet, &decode_fifoGet, &decode_fifoClear,
    &decode_fifoStatusGet, &decode_fifoStatusClear, &decode_optionPortSet, &decode_optionPortGet,
    &decode_optionPassiveSet, &decode_optionPassiveGet, &decode_optionFifoCircularSet,
    &decode_optionFifoCircularGet, &decode_optionFifoDiscardSet, &decode_optionFifoDiscardGet,
    &decode_optionFifoAutoResetSet, &decode_optionFifoAutoResetGet, &decode_enableSet, &decode_enableGet;

} // namespace TAVO::TAVOXTranscode::lpcPostCode_v1_0
