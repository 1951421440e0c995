#include <tavo/client/commonmodules/relay_tables.h>

#include <tavo/client/transcode/internal/immortal.h>

namespace CommonModules::TAVOXTranscode::relay_v1_0 {

namespace {

using namespace TAVO::dto::relay;

constexpr MethodRow table[] = {
    row<None, GetReply>("get"),
    row<SetRequest, None>("set"),
    row<ToggleRequest, None>("toggle"),
};

} // namespace

EncoderList::EncoderList() { enter(table); }
DecoderList::DecoderList() { enter(table); }

MethodRows rows() noexcept { return table; }
const EncoderList& encoders() noexcept { return TAVO::immortal<const EncoderList>(); }
const DecoderList& decoders() noexcept { return TAVO::immortal<const DecoderList>(); }

constinit EncoderFunction& encode_get = encoderOf(table, "get");
constinit EncoderFunction& encode_set = encoderOf(table, "set");
constinit EncoderFunction& encode_toggle = encoderOf(table, "toggle");
constinit DecoderFunction& decode_get = decoderOf(table, "get");
constinit DecoderFunction& decode_set = decoderOf(table, "set");
constinit DecoderFunction& decode_toggle = decoderOf(table, "toggle");

} // namespace CommonModules::TAVOXTranscode::relay_v1_0

namespace CommonModules::TAVOXTranscode::cmosRelay_v1_0 {

namespace {

constexpr MethodRow table[] = {
    row<TAVO::dto::cmosRelay::CmosClear, None>("cmosClear"),
};

} // namespace

EncoderList::EncoderList() { enter(table); }
DecoderList::DecoderList() { enter(table); }

MethodRows rows() noexcept { return table; }
const EncoderList& encoders() noexcept { return TAVO::immortal<const EncoderList>(); }
const DecoderList& decoders() noexcept { return TAVO::immortal<const DecoderList>(); }

constinit EncoderFunction& encode_cmosClear = encoderOf(table, "cmosClear");
constinit DecoderFunction& decode_cmosClear = decoderOf(table, "cmosClear");

} // namespace CommonModules::TAVOXTranscode::cmosRelay_v1_0
