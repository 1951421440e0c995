#include <tavo/client/hwdebug/lpc_post_code_tables.h>

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

const EncoderList encoderList;
const DecoderList decoderList;

} // namespace

EncoderList::EncoderList() { enter(table); }
DecoderList::DecoderList() { enter(table); }

MethodRows rows() noexcept { return table; }
const EncoderList& encoders() noexcept { return encoderList; }
const DecoderList& decoders() noexcept { return decoderList; }

EncoderFunction& encode_postCodeGet = encoderOf(table, "postCodeGet");
EncoderFunction& encode_fifoSizeGet = encoderOf(table, "fifoSizeGet");
EncoderFunction& encode_fifoGet = encoderOf(table, "fifoGet");
EncoderFunction& encode_fifoClear = encoderOf(table, "fifoClear");
EncoderFunction& encode_fifoStatusGet = encoderOf(table, "fifoStatusGet");
EncoderFunction& encode_fifoStatusClear = encoderOf(table, "fifoStatusClear");
EncoderFunction& encode_optionPortSet = encoderOf(table, "optionPortSet");
EncoderFunction& encode_optionPortGet = encoderOf(table, "optionPortGet");
EncoderFunction& encode_optionPassiveSet = encoderOf(table, "optionPassiveSet");
EncoderFunction& encode_optionPassiveGet = encoderOf(table, "optionPassiveGet");
EncoderFunction& encode_optionFifoCircularSet = encoderOf(table, "optionFifoCircularSet");
EncoderFunction& encode_optionFifoCircularGet = encoderOf(table, "optionFifoCircularGet");
EncoderFunction& encode_optionFifoDiscardSet = encoderOf(table, "optionFifoDiscardSet");
EncoderFunction& encode_optionFifoDiscardGet = encoderOf(table, "optionFifoDiscardGet");
EncoderFunction& encode_optionFifoAutoResetSet = encoderOf(table, "optionFifoAutoResetSet");
EncoderFunction& encode_optionFifoAutoResetGet = encoderOf(table, "optionFifoAutoResetGet");
EncoderFunction& encode_enableSet = encoderOf(table, "enableSet");
EncoderFunction& encode_enableGet = encoderOf(table, "enableGet");
DecoderFunction& decode_postCodeGet = decoderOf(table, "postCodeGet");
DecoderFunction& decode_fifoSizeGet = decoderOf(table, "fifoSizeGet");
DecoderFunction& decode_fifoGet = decoderOf(table, "fifoGet");
DecoderFunction& decode_fifoClear = decoderOf(table, "fifoClear");
DecoderFunction& decode_fifoStatusGet = decoderOf(table, "fifoStatusGet");
DecoderFunction& decode_fifoStatusClear = decoderOf(table, "fifoStatusClear");
DecoderFunction& decode_optionPortSet = decoderOf(table, "optionPortSet");
DecoderFunction& decode_optionPortGet = decoderOf(table, "optionPortGet");
DecoderFunction& decode_optionPassiveSet = decoderOf(table, "optionPassiveSet");
DecoderFunction& decode_optionPassiveGet = decoderOf(table, "optionPassiveGet");
DecoderFunction& decode_optionFifoCircularSet = decoderOf(table, "optionFifoCircularSet");
DecoderFunction& decode_optionFifoCircularGet = decoderOf(table, "optionFifoCircularGet");
DecoderFunction& decode_optionFifoDiscardSet = decoderOf(table, "optionFifoDiscardSet");
DecoderFunction& decode_optionFifoDiscardGet = decoderOf(table, "optionFifoDiscardGet");
DecoderFunction& decode_optionFifoAutoResetSet = decoderOf(table, "optionFifoAutoResetSet");
DecoderFunction& decode_optionFifoAutoResetGet = decoderOf(table, "optionFifoAutoResetGet");
DecoderFunction& decode_enableSet = decoderOf(table, "enableSet");
DecoderFunction& decode_enableGet = decoderOf(table, "enableGet");

} // namespace TAVO::TAVOXTranscode::lpcPostCode_v1_0
