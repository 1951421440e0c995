#pragma once

#include <tavo/client/hwdebug/hdt_records.h>
#include <tavo/client/transcode/base_tables.h>
#include <tavo/client/transcode/header_records.h>

/// Method tables of the "hdt" object, version 1.0. Shaped like every type's tables, see base_v1_0.
namespace TAVO::TAVOXTranscode::hdt_v1_0 {

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

TAVO_API extern EncoderFunction &encode_ioDbreqGet, &encode_ioDbreqSet, &encode_ioDbrdyGet,
    &encode_ioDbrdySnapshotGet, &encode_ioDbrdySnapshotClear, &encode_ioResetGet, &encode_ioPwrokGet,
    &encode_optionDbreqOnDbrdySet, &encode_optionDbreqOnDbrdyGet, &encode_optionDbreqOnResetSet,
    &encode_optionDbreqOnResetGet, &encode_optionDbreqPulseWidthSet, &encode_optionDbreqPulseWidthGet,
    &encode_frequencyGet, &encode_enableGet, &encode_enableSet;
TAVO_API extern DecoderFunction &decode_ioDbreqGet, &decode_ioDbreqSet, &decode_ioDbrdyGet,
    &decode_ioDbrdySnapshotGet, &decode_ioDbrdySnapshotClear, &decode_ioResetGet, &decode_ioPwrokGet,
    &decode_optionDbreqOnDbrdySet, &decode_optionDbreqOnDbrdyGet, &decode_optionDbreqOnResetSet,
    &decode_optionDbreqOnResetGet, &decode_optionDbreqPulseWidthSet, &decode_optionDbreqPulseWidthGet,
    &decode_frequencyGet, &decode_enableGet, &decode_enableSet;

} // namespace TAVO::TAVOXTranscode::hdt_v1_0

/// Method tables of the "hdt" object, version 1.1. Shaped like every type's tables, see base_v1_0.
namespace TAVO::TAVOXTranscode::hdt_v1_1 {

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

TAVO_API extern EncoderFunction &encode_ioDbreqGet, &encode_ioDbreqSet, &encode_ioDbrdyGet,
    &encode_ioDbrdyWait, &encode_ioDbrdySnapshotGet, &encode_ioDbrdySnapshotClear,
    &encode_ioDbreqSourceSnapshotGet, &encode_ioDbreqSourceSnapshotClear, &encode_ioResetGet,
    &encode_ioPwrokGet, &encode_ioTriggerSet, &encode_ioTriggerGet, &encode_optionDbreqOnDbrdySet,
    &encode_optionDbreqOnDbrdyGet, &encode_optionDbreqOnResetSet, &encode_optionDbreqOnResetGet,
    &encode_optionDbreqOnTriggerSet, &encode_optionDbreqOnTriggerGet, &encode_optionDbreqPulseWidthSet,
    &encode_optionDbreqPulseWidthGet, &encode_optionDbrdyMaskSet, &encode_optionDbrdyMaskGet,
    &encode_optionFrequencyGet, &encode_optionTriggerSetupSet, &encode_optionTriggerSetupGet,
    &encode_enableGet, &encode_enableSet, &encode_headerStatusGet, &encode_headerStatusClear;
TAVO_API extern DecoderFunction &decode_ioDbreqGet, &decode_ioDbreqSet, &decode_ioDbrdyGet,
    &decode_ioDbrdyWait, &decode_ioDbrdySnapshotGet, &decode_ioDbrdySnapshotClear,
    &decode_ioDbreqSourceSnapshotGet, &decode_ioDbreqSourceSnapshotClear, &decode_ioResetGet,
    &decode_ioPwrokGet, &decode_ioTriggerSet, &decode_ioTriggerGet, &decode_optionDbreqOnDbrdySet,
    &decode_optionDbreqOnDbrdyGet, &decode_optionDbreqOnResetSet, &decode_optionDbreqOnResetGet,
    &decode_optionDbreqOnTriggerSet, &decode_optionDbreqOnTriggerGet, &decode_optionDbreqPulseWidthSet,
    &decode_optionDbreqPulseWidthGet, &decode_optionDbrdyMaskSet, &decode_optionDbrdyMaskGet,
    &decode_optionFrequencyGet, &decode_optionTriggerSetupSet, &decode_optionTriggerSetupGet,
    &decode_enableGet, &decode_enableSet, &decode_headerStatusGet, &decode_headerStatusClear;

} // namespace TAVO::TAVOXTranscode::hdt_v1_1
