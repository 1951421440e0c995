#include <tavo/client/commonmodules/com_tables.h>

#include <tavo/client/transcode/internal/immortal.h>

namespace CommonModules::TAVOXTranscode::com_v1_0 {

namespace {

using namespace TAVO::dto::com;

constexpr MethodRow table[] = {
    row<OpenRequest, None>("open"),
    row<None, None>("close"),
    row<RecvRequest, RecvReply>("recv"),
    row<SendRequest, None>("send"),
};

} // namespace

EncoderList::EncoderList() { enter(table); }
DecoderList::DecoderList() { enter(table); }

MethodRows rows() noexcept { return table; }
const EncoderList& encoders() noexcept { return TAVO::immortal<const EncoderList>(); }
const DecoderList& decoders() noexcept { return TAVO::immortal<const DecoderList>(); }

constinit EncoderFunction& encode_open = encoderOf(table, "open");
constinit EncoderFunction& encode_close = encoderOf(table, "close");
constinit EncoderFunction& encode_recv = encoderOf(table, "recv");
constinit EncoderFunction& encode_send = encoderOf(table, "send");
constinit DecoderFunction& decode_open = decoderOf(table, "open");
constinit DecoderFunction& decode_close = decoderOf(table, "close");
constinit DecoderFunction& decode_recv = decoderOf(table, "recv");
constinit DecoderFunction& decode_send = decoderOf(table, "send");

} // namespace CommonModules::TAVOXTranscode::com_v1_0
