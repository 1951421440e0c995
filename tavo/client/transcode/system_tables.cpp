#include <tavo/client/transcode/system_tables.h>

namespace TAVO::TAVOXTranscode::system_v1_0 {

namespace {

using namespace dto::system;

constexpr MethodRow table[] = {
    row<None, None>("deviceReset"),
    row<FirmwareUpdateRequest, None>("firmwareUpdate"),
    row<FirmwareStatusRequest, FirmwareStatusReply>("firmwareStatus"),
    row<None, TimeGetReply>("timeGet"),
    row<TimeSetRequest, None>("timeSet"),
    row<uSleepRequest, None>("usleep"),
    row<uWaitRequest, None>("uwait"),
};

const EncoderList encoderList;
const DecoderList decoderList;

} // namespace

EncoderList::EncoderList() { enter(table); }
DecoderList::DecoderList() { enter(table); }

MethodRows rows() noexcept { return table; }
const EncoderList& encoders() noexcept { return encoderList; }
const DecoderList& decoders() noexcept { return decoderList; }

EncoderFunction& encode_deviceReset = encoderOf(table, "deviceReset");
EncoderFunction& encode_firmwareUpdate = encoderOf(table, "firmwareUpdate");
EncoderFunction& encode_firmwareStatus = encoderOf(table, "firmwareStatus");
EncoderFunction& encode_timeGet = encoderOf(table, "timeGet");
EncoderFunction& encode_timeSet = encoderOf(table, "timeSet");
EncoderFunction& encode_usleep = encoderOf(table, "usleep");
EncoderFunction& encode_uwait = encoderOf(table, "uwait");
DecoderFunction& decode_deviceReset = decoderOf(table, "deviceReset");
DecoderFunction& decode_firmwareUpdate = decoderOf(table, "firmwareUpdate");
DecoderFunction& decode_firmwareStatus = decoderOf(table, "firmwareStatus");
DecoderFunction& decode_timeGet = decoderOf(table, "timeGet");
DecoderFunction& decode_timeSet = decoderOf(table, "timeSet");
DecoderFunction& decode_usleep = decoderOf(table, "usleep");
DecoderFunction& decode_uwait = decoderOf(table, "uwait");

} // namespace TAVO::TAVOXTranscode::system_v1_0
