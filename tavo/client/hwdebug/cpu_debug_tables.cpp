#include <tavo/client/hwdebug/cpu_debug_tables.h>

namespace TAVO::TAVOXTranscode::cpuDebug_v1_0 {

namespace {

const EncoderList encoderList;
const DecoderList decoderList;

} // namespace

const EncoderList& encoders() noexcept { return encoderList; }
const DecoderList& decoders() noexcept { return decoderList; }

} // namespace TAVO::TAVOXTranscode::cpuDebug_v1_0

namespace TAVO::TAVOXTranscode::cpuDebug_v1_1 {

namespace {

constexpr MethodRow table[] = {
    row<None, dto::Base::HeaderStatusGetReply>("headerStatusGet"),
};

const EncoderList encoderList;
const DecoderList decoderList;

} // namespace

EncoderList::EncoderList() { enter(table); }
DecoderList::DecoderList() { enter(table); }

MethodRows rows() noexcept { return table; }
const EncoderList& encoders() noexcept { return encoderList; }
const DecoderList& decoders() noexcept { return decoderList; }

EncoderFunction& encode_headerStatusGet = encoderOf(table, "headerStatusGet");
DecoderFunction& decode_headerStatusGet = decoderOf(table, "headerStatusGet");

} // namespace TAVO::TAVOXTranscode::cpuDebug_v1_1
