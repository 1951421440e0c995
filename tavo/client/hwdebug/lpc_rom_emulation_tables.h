#pragma once

#include <tavo/client/hwdebug/lpc_rom_emulation_records.h>
#include <tavo/client/transcode/base_tables.h>
#include <tavo/client/transcode/header_records.h>

/// Method tables of the "lpcRomEmulation" object. Shaped like every type's tables, see base_v1_0.
namespace TAVO::TAVOXTranscode::lpcRomEmulation_v1_0 {

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

TAVO_API extern EncoderFunction &encode_sramSizeGet, &encode_sramSet, &encode_sramGet,
    &encode_optionRomTypeSet, &encode_optionRomTypeGet, &encode_enableSet, &encode_enableGet;
TAVO_API extern DecoderFunction &decode_sramSizeGet, &decode_sramSet, &decode_sramGet,
    &decode_optionRomTypeSet, &decode_optionRomTypeGet, &decode_enableSet, &decode_enableGet;

} // namespace TAVO::TAVOXTranscode::lpcRomEmulation_v1_0
