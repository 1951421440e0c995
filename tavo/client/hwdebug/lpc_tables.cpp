#include <tavo/client/hwdebug/lpc_tables.h>

namespace TAVO::TAVOXTranscode::lpc_v1_0 {

namespace {

constexpr MethodRow table[] = {
    row<None, dto::lpc::HeaderConnectionsReply>("headerConnectGet"),
};

const EncoderList encoderList;
const DecoderList decoderList;

} // namespace

EncoderList::EncoderList() { enter(table); }
DecoderList::DecoderList() { enter(table); }

MethodRows rows() noexcept { return table; }
const EncoderList& encoders() noexcept { return encoderList; }
const DecoderList& decoders() noexcept { return decoderList; }

EncoderFunction& encode_headerConnectGet = encoderOf(table, "headerConnectGet");
DecoderFunction& decode_headerConnectGet = decoderOf(table, "headerConnectGet");

} // namespace TAVO::TAVOXTranscode::lpc_v1_0
