#pragma once

#include <tavo/client/hwdebug/jtag_records.h>
#include <tavo/client/transcode/base_tables.h>
#include <tavo/client/transcode/header_records.h>

/// Method tables of the "jtag" object, version 1.0. Shaped like every type's tables, see base_v1_0.
namespace TAVO::TAVOXTranscode::jtag_v1_0 {

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

TAVO_API extern EncoderFunction &encode_shiftIR, &encode_shiftDR, &encode_tdoExpectedGet,
    &encode_tdoExpectedSet, &encode_retryGet, &encode_retrySet, &encode_repeatGet, &encode_repeatSet,
    &encode_tapStateGet, &encode_tapStateSet, &encode_tckFrequencyGet, &encode_tckFrequencySet, &encode_sleep,
    &encode_terminationStateIRGet, &encode_terminationStateIRSet, &encode_terminationStateDRGet,
    &encode_terminationStateDRSet, &encode_ioTrstGet, &encode_ioTrstSet, &encode_ioTckGet, &encode_ioTckSet,
    &encode_ioTmsGet, &encode_ioTmsSet, &encode_ioTdiGet, &encode_ioTdiSet, &encode_ioTdoGet,
    &encode_enableGet, &encode_enableSet;
TAVO_API extern DecoderFunction &decode_shiftIR, &decode_shiftDR, &decode_tdoExpectedGet,
    &decode_tdoExpectedSet, &decode_retryGet, &decode_retrySet, &decode_repeatGet, &decode_repeatSet,
    &decode_tapStateGet, &decode_tapStateSet, &decode_tckFrequencyGet, &decode_tckFrequencySet, &decode_sleep,
    &decode_terminationStateIRGet, &decode_terminationStateIRSet, &decode_terminationStateDRGet,
    &decode_terminationStateDRSet, &decode_ioTrstGet, &decode_ioTrstSet, &decode_ioTckGet, &decode_ioTckSet,
    &decode_ioTmsGet, &decode_ioTmsSet, &decode_ioTdiGet, &decode_ioTdiSet, &decode_ioTdoGet,
    &decode_enableGet, &decode_enableSet;

} // namespace TAVO::TAVOXTranscode::jtag_v1_0

/// Method tables of the "jtag" object, version 1.1. Shaped like every type's tables, see base_v1_0.
namespace TAVO::TAVOXTranscode::jtag_v1_1 {

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

TAVO_API extern EncoderFunction &encode_shiftIR, &encode_shiftDR, &encode_tapStateGet, &encode_tapStateSet,
    &encode_sleep, &encode_optionTdoExpectedGet, &encode_optionTdoExpectedSet, &encode_optionRetryGet,
    &encode_optionRetrySet, &encode_optionRepeatGet, &encode_optionRepeatSet, &encode_optionTckFrequencyGet,
    &encode_optionTckFrequencySet, &encode_optionTerminationStateGet, &encode_optionTerminationStateSet,
    &encode_optionPrePostTckGet, &encode_optionPrePostTckSet, &encode_ioTrstGet, &encode_ioTrstSet,
    &encode_ioTckGet, &encode_ioTckSet, &encode_ioTmsGet, &encode_ioTmsSet, &encode_ioTdiGet,
    &encode_ioTdiSet, &encode_ioTdoGet, &encode_enableGet, &encode_enableSet, &encode_headerStatusGet,
    &encode_headerStatusClear;
TAVO_API extern DecoderFunction &decode_shiftIR, &decode_shiftDR, &decode_tapStateGet, &decode_tapStateSet,
    &decode_sleep, &decode_optionTdoExpectedGet, &decode_optionTdoExpectedSet, &decode_optionRetryGet,
    &decode_optionRetrySet, &decode_optionRepeatGet, &decode_optionRepeatSet, &decode_optionTckFrequencyGet,
    &decode_optionTckFrequencySet, &decode_optionTerminationStateGet, &decode_optionTerminationStateSet,
    &decode_optionPrePostTckGet, &decode_optionPrePostTckSet, &decode_ioTrstGet, &decode_ioTrstSet,
    &decode_ioTckGet, &decode_ioTckSet, &decode_ioTmsGet, &decode_ioTmsSet, &decode_ioTdiGet,
    &decode_ioTdiSet, &decode_ioTdoGet, &decode_enableGet, &decode_enableSet, &decode_headerStatusGet,
    &decode_headerStatusClear;

} // namespace TAVO::TAVOXTranscode::jtag_v1_1
