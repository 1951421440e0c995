#include <tavo/client/hwdebug/lpc_rom_emulation_tables.h>

#include <tavo/client/transcode/internal/immortal.h>

namespace TAVO::TAVOXTranscode::lpcRomEmulation_v1_0 {

namespace {

using namespace dto::Header;
using namespace dto::lpcRomEmulation;

constexpr MethodRow table[] = {
    row<None, SramSizeGetReply>("sramSizeGet"),
    row<SramSetRequest, None>("sramSet"),
    row<SramGetRequest, SramGetReply>("sramGet"),
    row<OptionRomTypeSetRequest, None>("optionRomTypeSet"),
    row<None, OptionRomTypeGetReply>("optionRomTypeGet"),
    row<EnableSetRequest, None>("enableSet"),
    row<None, EnableGetReply>("enableGet"),
};

} // namespace

EncoderList::EncoderList() { enter(table); }
DecoderList::DecoderList() { enter(table); }

MethodRows rows() noexcept { return table; }
const EncoderList& encoders() noexcept { return immortal<const EncoderList>(); }
const DecoderList& decoders() noexcept { return immortal<const DecoderList>(); }

constinit EncoderFunction& encode_sramSizeGet = encoderOf(table, "sramSizeGet");
constinit EncoderFunction& encode_sramSet = encoderOf(table, "sramSet");
constinit EncoderFunction& encode_sramGet = encoderOf(table, "sramGet");
constinit EncoderFunction& encode_optionRomTypeSet = encoderOf(table, "optionRomTypeSet");
constinit EncoderFunction& encode_optionRomTypeGet = encoderOf(table, "optionRomTypeGet");
constinit EncoderFunction& encode_enableSet = encoderOf(table, "enableSet");
constinit EncoderFunction& encode_enableGet = encoderOf(table, "enableGet");
constinit DecoderFunction& decode_sramSizeGet = decoderOf(table, "sramSizeGet");
constinit DecoderFunction& decode_sramSet = decoderOf(table, "sramSet");
constinit DecoderFunction& decode_sramGet = decoderOf(table, "sramGet");
constinit DecoderFunction& decode_optionRomTypeSet = decoderOf(table, "optionRomTypeSet");
constinit DecoderFunction& decode_optionRomTypeGet = decoderOf(table, "optionRomTypeGet");
constinit DecoderFunction& decode_enableSet = decoderOf(table, "enableSet");
constinit DecoderFunction& decode_enableGet = decoderOf(table, "enableGet");

} // namespace TAVO::TAVOXTranscode::lpcRomEmulation_v1_0
