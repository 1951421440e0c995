#include <tavo/client/hwdebug/gpu_debug_tables.h>

namespace TAVO::TAVOXTranscode::gpuDebug_v1_0 {

namespace {

using namespace dto::gpuDebug;

constexpr MethodRow table[] = {
    row<None, dto::Base::HeaderStatusGetReply>("headerStatusGet"),
    row<None, HeaderModeGetReply>("headerModeGet"),
    row<HeaderModeSetRequest, None>("headerModeSet"),
    row<None, IoPxEnGetReply>("ioPxEnGet"),
};

const EncoderList encoderList;
const DecoderList decoderList;

} // namespace

EncoderList::EncoderList() { enter(table); }
DecoderList::DecoderList() { enter(table); }

MethodRows rows() noexcept { return table; }
const EncoderList& encoders() noexcept { return encoderList; }
const DecoderList& decoders() noexcept { return decoderList; }

EncoderFunction& encode_headerStatusGet = encoderOf(table, "headerStatusGet");
EncoderFunction& encode_headerModeGet = encoderOf(table, "headerModeGet");
EncoderFunction& encode_headerModeSet = encoderOf(table, "headerModeSet");
EncoderFunction& encode_ioPxEnGet = encoderOf(table, "ioPxEnGet");
DecoderFunction& decode_headerStatusGet = decoderOf(table, "headerStatusGet");
DecoderFunction& decode_headerModeGet = decoderOf(table, "headerModeGet");
DecoderFunction& decode_headerModeSet = decoderOf(table, "headerModeSet");
DecoderFunction& decode_ioPxEnGet = decoderOf(table, "ioPxEnGet");

} // namespace TAVO::TAVOXTranscode::gpuDebug_v1_0
