#include <tavo/client/commonmodules/com_tables.h>

namespace CommonModules::TAVOXTranscode::com_v1_0 {

namespace {

using namespace TAVO::dto::com;

constexpr MethodRow table[] = {
    row<OpenRequest, None>("open"),
    row<None, None>("close"),
    row<RecvRequest, RecvReply>("recv"),
    row<SendRequest, None>("send"),
};

const EncoderList encoderList;
const DecoderList decoderList;

} // namespace

EncoderList::EncoderList() { enter(table); }
DecoderList::DecoderList() { enter(table); }

MethodRows rows() noexcept { return table; }
const EncoderList& encoders() noexcept { return encoderList; }
const DecoderList& decoders() noexcept { return decoderList; }

EncoderFunction& encode_open = encoderOf(table, "open");
EncoderFunction& encode_close = encoderOf(table, "close");
EncoderFunction& encode_recv = encoderOf(table, "recv");
EncoderFunction& encode_send = encoderOf(table, "send");
DecoderFunction& decode_open = decoderOf(table, "open");
DecoderFunction& decode_close = decoderOf(table, "close");
DecoderFunction& decode_recv = decoderOf(table, "recv");
DecoderFunction& decode_send = decoderOf(table, "send");

} // namespace CommonModules::TAVOXTranscode::com_v1_0
