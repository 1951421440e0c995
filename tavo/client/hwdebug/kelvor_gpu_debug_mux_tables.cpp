#include <tavo/client/hwdebug/kelvor_gpu_debug_mux_tables.h>

#include <tavo/client/transcode/internal/immortal.h>

namespace TAVO::TAVOXTranscode::kelvorGpuDebugMux_v1_0 {

namespace {

using namespace dto::kelvorGpuDebugMux;

constexpr MethodRow table[] = {
    row<None, HeaderModeGetReply>("headerModeGet"),
    row<HeaderModeSetRequest, None>("headerModeSet"),
};

} // namespace

EncoderList::EncoderList() { enter(table); }
DecoderList::DecoderList() { enter(table); }

MethodRows rows() noexcept { return table; }
const EncoderList& encoders() noexcept { return immortal<const EncoderList>(); }
const DecoderList& decoders() noexcept { return immortal<const DecoderList>(); }

constinit EncoderFunction& encode_headerModeGet = encoderOf(table, "headerModeGet");
constinit EncoderFunction& encode_headerModeSet = encoderOf(table, "headerModeSet");
constinit DecoderFunction& decode_headerModeGet = decoderOf(table, "headerModeGet");
constinit DecoderFunction& decode_headerModeSet = decoderOf(table, "headerModeSet");

} // namespace TAVO::TAVOXTranscode::kelvorGpuDebugMux_v1_0
