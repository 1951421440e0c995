#include <tavo/client/commonmodules/cfa633_tables.h>

namespace CommonModules::TAVOXTranscode::cfa633_v1_0 {

namespace {

using namespace TAVO::dto::cfa633;

constexpr MethodRow table[] = {
    row<LcdPrintRequest, None>("lcdPrint"),
    row<None, None>("lcdClear"),
    row<LcdBackLightRequest, None>("lcdBackLight"),
};

const EncoderList encoderList;
const DecoderList decoderList;

} // namespace

EncoderList::EncoderList() { enter(table); }
DecoderList::DecoderList() { enter(table); }

MethodRows rows() noexcept { return table; }
const EncoderList& encoders() noexcept { return encoderList; }
const DecoderList& decoders() noexcept { return decoderList; }

EncoderFunction& encode_lcdPrint = encoderOf(table, "lcdPrint");
EncoderFunction& encode_lcdClear = encoderOf(table, "lcdClear");
EncoderFunction& encode_lcdBackLight = encoderOf(table, "lcdBackLight");
DecoderFunction& decode_lcdPrint = decoderOf(table, "lcdPrint");
DecoderFunction& decode_lcdClear = decoderOf(table, "lcdClear");
DecoderFunction& decode_lcdBackLight = decoderOf(table, "lcdBackLight");

} // namespace CommonModules::TAVOXTranscode::cfa633_v1_0
