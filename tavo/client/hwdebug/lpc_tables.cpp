#include <tavo/client/hwdebug/lpc_tables.h>

#include <tavo/client/transcode/internal/immortal.h>

namespace TAVO::TAVOXTranscode::lpc_v1_0 {

namespace {

constexpr MethodRow table[] = {
    row<None, dto::lpc::HeaderConnectionsReply>("headerConnectGet"),
};

} // namespace

EncoderList::EncoderList() { enter(table); }
DecoderList::DecoderList() { enter(table); }

MethodRows rows() noexcept { return table; }
const EncoderList& encoders() noexcept { return immortal<const EncoderList>(); }
const DecoderList& decoders() noexcept { return immortal<const DecoderList>(); }

constinit EncoderFunction& encode_headerConnectGet = encoderOf(table, "headerConnectGet");
constinit DecoderFunction& decode_headerConnectGet = decoderOf(table, "headerConnectGet");

} // namespace TAVO::TAVOXTranscode::lpc_v1_0
