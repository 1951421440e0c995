#include <tavo/client/hwdebug/lpc_rom_emulation_tables.h>

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

const EncoderList encoderList;
const DecoderList decoderList;

} // namespace

EncoderList::EncoderList() { enter(table); }
DecoderList::DecoderList() { enter(table); }

MethodRows rows() noexcept { return table; }
const EncoderList& encoders() noexcept { return encoderList; }
const DecoderList& decoders() noexcept { return decoderList; }

EncoderFunction& encode_sramSizeGet = encoderOf(table, "sramSizeGet");
EncoderFunction& encode_sramSet = encoderOf(table, "sramSet");
EncoderFunction& encode_sramGet = encoderOf(table, "sramGet");
EncoderFunction& encode_optionRomTypeSet = encoderOf(table, "optionRomTypeSet");
EncoderFunction& encode_optionRomTypeGet = encoderOf(table, "optionRomTypeGet");
EncoderFunction& encode_enableSet = encoderOf(table, "enableSet");
EncoderFunction& encode_enableGet = encoderOf(table, "enableGet");
DecoderFunction& decode_sramSizeGet = decoderOf(table, "sramSizeGet");
DecoderFunction& decode_sramSet = decoderOf(table, "sramSet");
DecoderFunction& decode_sramGet = decoderOf(table, "sramGet");
DecoderFunction& decode_optionRomTypeSet = decoderOf(table, "optionRomTypeSet");
DecoderFunction& decode_optionRomTypeGet = decoderOf(table, "optionRomTypeGet");
DecoderFunction& decode_enableSet = decoderOf(table, "enableSet");
DecoderFunction& decode_enableGet = decoderOf(table, "enableGet");

} // namespace TAVO::TAVOXTranscode::lpcRomEmulation_v1_0
