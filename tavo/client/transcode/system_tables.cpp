#include <tavo/client/transcode/system_tables.h>

#include <tavo/client/transcode/internal/immortal.h>

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

} // namespace

EncoderList::EncoderList() { enter(table); }
DecoderList::DecoderList() { enter(table); }

MethodRows rows() noexcept { return table; }
const EncoderList& encoders() noexcept { return immortal<const EncoderList>(); }
const DecoderList& decoders() noexcept { return immortal<const DecoderList>(); }

constinit EncoderFunction& encode_deviceReset = encoderOf(table, "deviceReset");
constinit EncoderFunction& encode_firmwareUpdate = encoderOf(table, "firmwareUpdate");
constinit EncoderFunction& encode_firmwareStatus = encoderOf(table, "firmwareStatus");
constinit EncoderFunction& encode_timeGet = encoderOf(table, "timeGet");
constinit EncoderFunction& encode_timeSet = encoderOf(table, "timeSet");
constinit EncoderFunction& encode_usleep = encoderOf(table, "usleep");
constinit EncoderFunction& encode_uwait = encoderOf(table, "uwait");
constinit DecoderFunction& decode_deviceReset = decoderOf(table, "deviceReset");
constinit DecoderFunction& decode_firmwareUpdate = decoderOf(table, "firmwareUpdate");
constinit DecoderFunction& decode_firmwareStatus = decoderOf(table, "firmwareStatus");
constinit DecoderFunction& decode_timeGet = decoderOf(table, "timeGet");
constinit DecoderFunction& decode_timeSet = decoderOf(table, "timeSet");
constinit DecoderFunction& decode_usleep = decoderOf(table, "usleep");
constinit DecoderFunction& decode_uwait = decoderOf(table, "uwait");

} // namespace TAVO::TAVOXTranscode::system_v1_0
