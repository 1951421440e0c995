#include <tavo/client/hwdebug/kelvor_gpu_debug_mux_tables.h>

namespace TAVO::TAVOXTranscode::kelvorGpuDebugMux_v1_0 {

namespace {

using namespace dto::kelvorGpuDebugMux;

constexpr MethodRow table[] = {
    row<None, HeaderModeGetReply>("headerModeGet"),
    row<HeaderModeSetRequest, None>("headerModeSet"),
};

const EncoderList encoderList;
const DecoderList decoderList;

} // namespace

EncoderList::EncoderList() { enter(table); }
DecoderList::DecoderList() { enter(table); }

MethodRows rows() noexcept { return table; }
const EncoderList& encoders() noexcept { return encoderList; }
const DecoderList& decoders() noexcept { return decoderList; }

EncoderFunction& encode_headerModeGet = encoderOf(table, "headerModeGet");
EncoderFunction& encode_headerModeSet = encoderOf(table, "headerModeSet");
DecoderFunction& decode_headerModeGet = decoderOf(table, "headerModeGet");
DecoderFunction& decode_headerModeSet = decoderOf(table, "headerModeSet");

} // namespace TAVO::TAVOXTranscode::kelvorGpuDebugMux_v1_0
