#include <tavo/client/commonmodules/relay_tables.h>

namespace CommonModules::TAVOXTranscode::relay_v1_0 {

namespace {

using namespace TAVO::dto::relay;

constexpr MethodRow table[] = {
    row<None, GetReply>("get"),
    row<SetRequest, None>("set"),
    row<ToggleRequest, None>("toggle"),
};

const EncoderList encoderList;
const DecoderList decoderList;

} // namespace

EncoderList::EncoderList() { enter(table); }
DecoderList::DecoderList() { enter(table); }

MethodRows rows() noexcept { return table; }
const EncoderList& encoders() noexcept { return encoderList; }
const DecoderList& decoders() noexcept { return decoderList; }

EncoderFunction& encode_get = encoderOf(table, "get");
EncoderFunction& encode_set = encoderOf(table, "set");
EncoderFunction& encode_toggle = encoderOf(table, "toggle");
DecoderFunction& decode_get = decoderOf(table, "get");
DecoderFunction& decode_set = decoderOf(table, "set");
DecoderFunction& decode_toggle = decoderOf(table, "toggle");

} // namespace CommonModules::TAVOXTranscode::relay_v1_0

namespace CommonModules::TAVOXTranscode::cmosRelay_v1_0 {

namespace {

constexpr MethodRow table[] = {
    row<TAVO::dto::cmosRelay::CmosClear, None>("cmosClear"),
};

const EncoderList encoderList;
const DecoderList decoderList;

} // namespace

EncoderList::EncoderList() { enter(table); }
DecoderList::DecoderList() { enter(table); }

MethodRows rows() noexcept { return table; }
const EncoderList& encoders() noexcept { return encoderList; }
const DecoderList& decoders() noexcept { return decoderList; }

EncoderFunction& encode_cmosClear = encoderOf(table, "cmosClear");
DecoderFunction& decode_cmosClear = decoderOf(table, "cmosClear");

} // namespace CommonModules::TAVOXTranscode::cmosRelay_v1_0
