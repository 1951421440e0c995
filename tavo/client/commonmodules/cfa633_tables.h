#pragma once

#include <tavo/client/commonmodules/cfa633_records.h>
#include <tavo/client/commonmodules/tables.h>

/// Method tables of the "cfa633" object. Shaped like every type's tables, see base_v1_0.
namespace CommonModules::TAVOXTranscode::cfa633_v1_0 {

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

TAVO_API extern EncoderFunction &encode_lcdPrint, &encode_lcdClear, &encode_lcdBackLight;
TAVO_API extern DecoderFunction &decode_lcdPrint, &decode_lcdClear, &decode_lcdBackLight;

} // namespace CommonModules::TAVOXTranscode::cfa633_v1_0
