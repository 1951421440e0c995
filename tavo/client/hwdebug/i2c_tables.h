#pragma once

#include <tavo/client/hwdebug/i2c_records.h>
#include <tavo/client/hwdebug/jtag_records.h>
#include <tavo/client/transcode/base_tables.h>

/// Method tables of the "i2c" object. Shaped like every type's tables, see base_v1_0.
namespace TAVO::TAVOXTranscode::i2c_v1_0 {

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

TAVO_API extern EncoderFunction &encode_transfer, &encode_read, &encode_write, &encode_optionSclFrequencyGet,
    &encode_optionSclFrequencySet, &encode_optionAddressRetryLimitGet, &encode_optionAddressRetryLimitSet,
    &encode_optionTimeoutGet, &encode_optionTimeoutSet, &encode_optionAckGet, &encode_optionAckSet,
    &encode_headerStatusGet, &encode_headerStatusClear;
TAVO_API extern DecoderFunction &decode_transfer, &decode_read, &decode_write, &decode_optionSclFrequencyGet,
    &decode_optionSclFrequencySet, &decode_optionAddressRetryLimitGet, &decode_optionAddressRetryLimitSet,
    &decode_optionTimeoutGet, &decode_optionTimeoutSet, &decode_optionAckGet, &decode_optionAckSet,
    &decode_headerStatusGet, &decode_headerStatusClear;

} // namespace TAVO::TAVOXTranscode::i2c_v1_0
