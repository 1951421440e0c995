#include <tavo/client/hwdebug/cpu_debug_tables.h>

#include <tavo/client/transcode/internal/immortal.h>

namespace TAVO::TAVOXTranscode::cpuDebug_v1_0 {

const EncoderList& encoders() noexcept { return immortal<const EncoderList>(); }
const DecoderList& decoders() noexcept { return immortal<const DecoderList>(); }

} // namespace TAVO::TAVOXTranscode::cpuDebug_v1_0

namespace TAVO::TAVOXTranscode::cpuDebug_v1_1 {

namespace {

constexpr MethodRow table[] = {
    row<None, dto::Base::HeaderStatusGetReply>("headerStatusGet"),
};

} // namespace

EncoderList::EncoderList() { enter(table); }
DecoderList::DecoderList() { enter(table); }

MethodRows rows() noexcept { return table; }
const EncoderList& encoders() noexcept { return immortal<const EncoderList>(); }
const DecoderList& decoders() noexcept { return immortal<const DecoderList>(); }

constinit EncoderFunction& encode_headerStatusGet = encoderOf(table, "headerStatusGet");
constinit DecoderFunction& decode_headerStatusGet = decoderOf(table, "headerStatusGet");

} // namespace TAVO::TAVOXTranscode::cpuDebug_v1_1
