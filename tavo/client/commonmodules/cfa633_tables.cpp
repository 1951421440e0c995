#include <tavo/client/commonmodules/cfa633_tables.h>

#include <tavo/client/transcode/internal/immortal.h>

namespace CommonModules::TAVOXTranscode::cfa633_v1_0 {

namespace {

using namespace TAVO::dto::cfa633;

constexpr MethodRow table[] = {
    row<LcdPrintRequest, None>("lcdPrint"),
    row<None, None>("lcdClear"),
    row<LcdBackLightRequest, None>("lcdBackLight"),
};

} // namespace

EncoderList::EncoderList() { enter(table); }
DecoderList::DecoderList() { enter(table); }

MethodRows rows() noexcept { return table; }
const EncoderList& encoders() noexcept { return TAVO::immortal<const EncoderList>(); }
const DecoderList& decoders() noexcept { return TAVO::immortal<const DecoderList>(); }

constinit EncoderFunction& encode_lcdPrint = encoderOf(table, "lcdPrint");
constinit EncoderFunction& encode_lcdClear = encoderOf(table, "lcdClear");
constinit EncoderFunction& encode_lcdBackLight = encoderOf(table, "lcdBackLight");
constinit DecoderFunction& decode_lcdPrint = decoderOf(table, "lcdPrint");
constinit DecoderFunction& decode_lcdClear = decoderOf(table, "lcdClear");
constinit DecoderFunction& decode_lcdBackLight = decoderOf(table, "lcdBackLight");

} // namespace CommonModules::TAVOXTranscode::cfa633_v1_0
