#include <tavo/client/hwdebug/gpu_scan_tables.h>

#include <tavo/client/transcode/internal/immortal.h>

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

} // namespace

EncoderList::EncoderList() { enter(table); }
DecoderList::DecoderList() { enter(table); }

MethodRows rows() noexcept { return table; }
const EncoderList& encoders() noexcept { return immortal<const EncoderList>(); }
const DecoderList& decoders() noexcept { return immortal<const DecoderList>(); }

constinit EncoderFunction& encode_scan = encoderOf(table, "scan");
constinit EncoderFunction& encode_optionSckFrequencyGet = encoderOf(table, "optionSckFrequencyGet");
constinit EncoderFunction& encode_optionSckFrequencySet = encoderOf(table, "optionSckFrequencySet");
constinit EncoderFunction& encode_ioSckGet = encoderOf(table, "ioSckGet");
constinit EncoderFunction& encode_ioSckSet = encoderOf(table, "ioSckSet");
constinit EncoderFunction& encode_ioSdoGet = encoderOf(table, "ioSdoGet");
constinit EncoderFunction& encode_enableGet = encoderOf(table, "enableGet");
constinit EncoderFunction& encode_enableSet = encoderOf(table, "enableSet");
constinit EncoderFunction& encode_headerStatusGet = encoderOf(table, "headerStatusGet");
constinit EncoderFunction& encode_headerStatusClear = encoderOf(table, "headerStatusClear");
constinit DecoderFunction& decode_scan = decoderOf(table, "scan");
constinit DecoderFunction& decode_optionSckFrequencyGet = decoderOf(table, "optionSckFrequencyGet");
constinit DecoderFunction& decode_optionSckFrequencySet = decoderOf(table, "optionSckFrequencySet");
constinit DecoderFunction& decode_ioSckGet = decoderOf(table, "ioSckGet");
constinit DecoderFunction& decode_ioSckSet = decoderOf(table, "ioSckSet");
constinit DecoderFunction& decode_ioSdoGet = decoderOf(table, "ioSdoGet");
constinit DecoderFunction& decode_enableGet = decoderOf(table, "enableGet");
constinit DecoderFunction& decode_enableSet = decoderOf(table, "enableSet");
constinit DecoderFunction& decode_headerStatusGet = decoderOf(table, "headerStatusGet");
constinit DecoderFunction& decode_headerStatusClear = decoderOf(table, "headerStatusClear");

} // namespace TAVO::TAVOXTranscode::gpuScan_v1_0
