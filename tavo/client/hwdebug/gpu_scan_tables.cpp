#include <tavo/client/hwdebug/gpu_scan_tables.h>

namespace TAVO::TAVOXTranscode::gpuScan_v1_0 {

namespace {

using namespace dto::Header;
using namespace dto::gpuScan;

constexpr MethodRow table[] = {
    row<ScanRequest, ScanReply>("scan"),
    row<None, dto::Base::FrequencyGetReply>("optionSckFrequencyGet"),
    row<dto::Jtag::OptionTckFrequencySetRequest, None>("optionSckFrequencySet"),
    row<None, IoGetReply>("ioSckGet"),
    row<IoSetRequest, None>("ioSckSet"),
    row<None, iGetReply>("ioSdoGet"),
    row<None, EnableGetReply>("enableGet"),
    row<EnableSetRequest, None>("enableSet"),
    row<None, dto::Base::HeaderStatusGetReply>("headerStatusGet"),
    row<None, None>("headerStatusClear"),
};

const EncoderList encoderList;
const DecoderList decoderList;

} // namespace

EncoderList::EncoderList() { enter(table); }
DecoderList::DecoderList() { enter(table); }

MethodRows rows() noexcept { return table; }
const EncoderList& encoders() noexcept { return encoderList; }
const DecoderList& decoders() noexcept { return decoderList; }

EncoderFunction& encode_scan = encoderOf(table, "scan");
EncoderFunction& encode_optionSckFrequencyGet = encoderOf(table, "optionSckFrequencyGet");
EncoderFunction& encode_optionSckFrequencySet = encoderOf(table, "optionSckFrequencySet");
EncoderFunction& encode_ioSckGet = encoderOf(table, "ioSckGet");
EncoderFunction& encode_ioSckSet = encoderOf(table, "ioSckSet");
EncoderFunction& encode_ioSdoGet = encoderOf(table, "ioSdoGet");
EncoderFunction& encode_enableGet = encoderOf(table, "enableGet");
EncoderFunction& encode_enableSet = encoderOf(table, "enableSet");
EncoderFunction& encode_headerStatusGet = encoderOf(table, "headerStatusGet");
EncoderFunction& encode_headerStatusClear = encoderOf(table, "headerStatusClear");
DecoderFunction& decode_scan = decoderOf(table, "scan");
DecoderFunction& decode_optionSckFrequencyGet = decoderOf(table, "optionSckFrequencyGet");
DecoderFunction& decode_optionSckFrequencySet = decoderOf(table, "optionSckFrequencySet");
DecoderFunction& decode_ioSckGet = decoderOf(table, "ioSckGet");
DecoderFunction& decode_ioSckSet = decoderOf(table, "ioSckSet");
DecoderFunction& decode_ioSdoGet = decoderOf(table, "ioSdoGet");
DecoderFunction& decode_enableGet = decoderOf(table, "enableGet");
DecoderFunction& decode_enableSet = decoderOf(table, "enableSet");
DecoderFunction& decode_headerStatusGet = decoderOf(table, "headerStatusGet");
DecoderFunction& decode_headerStatusClear = decoderOf(table, "headerStatusClear");

} // namespace TAVO::TAVOXTranscode::gpuScan_v1_0
