#include <tavo/client/hwdebug/gpu_debug_tables.h>

#include <tavo/client/transcode/internal/immortal.h>

namespace TAVO::TAVOXTranscode::gpuDebug_v1_0 {

namespace {

using namespace dto::gpuDebug;

constexpr MethodRow table[] = {
    row<None, dto::Base::HeaderStatusGetReply>("headerStatusGet"),
    row<None, HeaderModeGetReply>("headerModeGet"),
    row<HeaderModeSetRequest, None>("headerModeSet"),
    row<None, IoPxEnGetReply>("ioPxEnGet"),
};

} // namespace

EncoderList::EncoderList() { enter(table); }
DecoderList::DecoderList() { enter(table); }

MethodRows rows() noexcept { return table; }
const EncoderList& encoders() noexcept { return immortal<const EncoderList>(); }
const DecoderList& decoders() noexcept { return immortal<const DecoderList>(); }

constinit EncoderFunction& encode_headerStatusGet = encoderOf(table, "headerStatusGet");
constinit EncoderFunction& encode_headerModeGet = encoderOf(table, "headerModeGet");
constinit EncoderFunction& encode_headerModeSet = encoderOf(table, "headerModeSet");
constinit EncoderFunction& encode_ioPxEnGet = encoderOf(table, "ioPxEnGet");
constinit DecoderFunction& decode_headerStatusGet = decoderOf(table, "headerStatusGet");
constinit DecoderFunction& decode_headerModeGet = decoderOf(table, "headerModeGet");
constinit DecoderFunction& decode_headerModeSet = decoderOf(table, "headerModeSet");
constinit DecoderFunction& decode_ioPxEnGet = decoderOf(table, "ioPxEnGet");

} // namespace TAVO::TAVOXTranscode::gpuDebug_v1_0
