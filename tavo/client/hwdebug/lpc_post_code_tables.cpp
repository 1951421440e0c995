#include <tavo/client/hwdebug/lpc_post_code_tables.h>

#include <tavo/client/transcode/internal/immortal.h>

namespace TAVO::TAVOXTranscode::lpcPostCode_v1_0 {

namespace {

using namespace dto::Header;
using namespace dto::lpcPostCode;

constexpr MethodRow table[] = {
    row<None, PostCodeGetReply>("postCodeGet"),
    row<None, FifoSizeGetReply>("fifoSizeGet"),
    row<None, FifoGetReply>("fifoGet"),
    row<None, None>("fifoClear"),
    row<None, FifoStatusReply>("fifoStatusGet"),
    row<None, None>("fifoStatusClear"),
    row<OptionPortSetRequest, None>("optionPortSet"),
    row<None, OptionPortGetReply>("optionPortGet"),
    row<OptionPassiveSetRequest, None>("optionPassiveSet"),
    row<None, OptionPassiveGetReply>("optionPassiveGet"),
    row<OptionFifoCircularSetRequest, None>("optionFifoCircularSet"),
    row<None, OptionFifoCircularGetReply>("optionFifoCircularGet"),
    row<OptionFifoDiscardSetRequest, None>("optionFifoDiscardSet"),
    row<None, OptionFifoDiscardGetReply>("optionFifoDiscardGet"),
    row<OptionFifoAutoResetSetRequest, None>("optionFifoAutoResetSet"),
    row<None, OptionFifoAutoResetGetReply>("optionFifoAutoResetGet"),
    row<EnableSetRequest, None>("enableSet"),
    row<None, EnableGetReply>("enableGet"),
};

} // namespace

EncoderList::EncoderList() { enter(table); }
DecoderList::DecoderList() { enter(table); }

MethodRows rows() noexcept { return table; }
const EncoderList& encoders() noexcept { return immortal<const EncoderList>(); }
const DecoderList& decoders() noexcept { return immortal<const DecoderList>(); }

constinit EncoderFunction& encode_postCodeGet = encoderOf(table, "postCodeGet");
constinit EncoderFunction& encode_fifoSizeGet = encoderOf(table, "fifoSizeGet");
constinit EncoderFunction& encode_fifoGet = encoderOf(table, "fifoGet");
constinit EncoderFunction& encode_fifoClear = encoderOf(table, "fifoClear");
constinit EncoderFunction& encode_fifoStatusGet = encoderOf(table, "fifoStatusGet");
constinit EncoderFunction& encode_fifoStatusClear = encoderOf(table, "fifoStatusClear");
constinit EncoderFunction& encode_optionPortSet = encoderOf(table, "optionPortSet");
constinit EncoderFunction& encode_optionPortGet = encoderOf(table, "optionPortGet");
constinit EncoderFunction& encode_optionPassiveSet = encoderOf(table, "optionPassiveSet");
constinit EncoderFunction& encode_optionPassiveGet = encoderOf(table, "optionPassiveGet");
constinit EncoderFunction& encode_optionFifoCircularSet = encoderOf(table, "optionFifoCircularSet");
constinit EncoderFunction& encode_optionFifoCircularGet = encoderOf(table, "optionFifoCircularGet");
constinit EncoderFunction& encode_optionFifoDiscardSet = encoderOf(table, "optionFifoDiscardSet");
constinit EncoderFunction& encode_optionFifoDiscardGet = encoderOf(table, "optionFifoDiscardGet");
constinit EncoderFunction& encode_optionFifoAutoResetSet = encoderOf(table, "optionFifoAutoResetSet");
constinit EncoderFunction& encode_optionFifoAutoResetGet = encoderOf(table, "optionFifoAutoResetGet");
constinit EncoderFunction& encode_enableSet = encoderOf(table, "enableSet");
constinit EncoderFunction& encode_enableGet = encoderOf(table, "enableGet");
constinit DecoderFunction& decode_postCodeGet = decoderOf(table, "postCodeGet");
constinit DecoderFunction& decode_fifoSizeGet = decoderOf(table, "fifoSizeGet");
constinit DecoderFunction& decode_fifoGet = decoderOf(table, "fifoGet");
constinit DecoderFunction& decode_fifoClear = decoderOf(table, "fifoClear");
constinit DecoderFunction& decode_fifoStatusGet = decoderOf(table, "fifoStatusGet");
constinit DecoderFunction& decode_fifoStatusClear = decoderOf(table, "fifoStatusClear");
constinit DecoderFunction& decode_optionPortSet = decoderOf(table, "optionPortSet");
constinit DecoderFunction& decode_optionPortGet = decoderOf(table, "optionPortGet");
constinit DecoderFunction& decode_optionPassiveSet = decoderOf(table, "optionPassiveSet");
constinit DecoderFunction& decode_optionPassiveGet = decoderOf(table, "optionPassiveGet");
constinit DecoderFunction& decode_optionFifoCircularSet = decoderOf(table, "optionFifoCircularSet");
constinit DecoderFunction& decode_optionFifoCircularGet = decoderOf(table, "optionFifoCircularGet");
constinit DecoderFunction& decode_optionFifoDiscardSet = decoderOf(table, "optionFifoDiscardSet");
constinit DecoderFunction& decode_optionFifoDiscardGet = decoderOf(table, "optionFifoDiscardGet");
constinit DecoderFunction& decode_optionFifoAutoResetSet = decoderOf(table, "optionFifoAutoResetSet");
constinit DecoderFunction& decode_optionFifoAutoResetGet = decoderOf(table, "optionFifoAutoResetGet");
constinit DecoderFunction& decode_enableSet = decoderOf(table, "enableSet");
constinit DecoderFunction& decode_enableGet = decoderOf(table, "enableGet");

} // namespace TAVO::TAVOXTranscode::lpcPostCode_v1_0
