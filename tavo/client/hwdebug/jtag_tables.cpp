#include <tavo/client/hwdebug/jtag_tables.h>

#include <tavo/client/transcode/internal/immortal.h>

namespace TAVO::TAVOXTranscode::jtag_v1_0 {

namespace {

using namespace dto::Header;
using namespace dto::Jtag;

constexpr MethodRow table[] = {
    row<ShiftRequest, ShiftReply>("shiftIR"),
    row<ShiftRequest, ShiftReply>("shiftDR"),
    row<None, TdoExpectedGetReply>("tdoExpectedGet"),
    row<TdoExpectedSetRequest, None>("tdoExpectedSet"),
    row<None, RetryGetReply>("retryGet"),
    row<RetrySetRequest, None>("retrySet"),
    row<None, RepeatGetReply>("repeatGet"),
    row<RepeatSetRequest, None>("repeatSet"),
    row<None, TapStateGetReply>("tapStateGet"),
    row<TapStateSetRequest, None>("tapStateSet"),
    row<None, dto::Base::FrequencyGetReply>("tckFrequencyGet"),
    row<OptionTckFrequencySetRequest, None>("tckFrequencySet"),
    row<SleepRequest, None>("sleep"),
    row<None, TerminationStateGetReply>("terminationStateIRGet"),
    row<TerminationStateSetRequest, None>("terminationStateIRSet"),
    row<None, TerminationStateGetReply>("terminationStateDRGet"),
    row<TerminationStateSetRequest, None>("terminationStateDRSet"),
    row<None, IoGetReply>("ioTrstGet"),
    row<IoSetRequest, None>("ioTrstSet"),
    row<None, IoGetReply>("ioTckGet"),
    row<IoSetRequest, None>("ioTckSet"),
    row<None, IoGetReply>("ioTmsGet"),
    row<IoSetRequest, None>("ioTmsSet"),
    row<None, IoGetReply>("ioTdiGet"),
    row<IoSetRequest, None>("ioTdiSet"),
    row<None, oGetReply>("ioTdoGet"),
    row<None, EnableGetReply>("enableGet"),
    row<EnableSetRequest, None>("enableSet"),
};

} // namespace

EncoderList::EncoderList() { enter(table); }
DecoderList::DecoderList() { enter(table); }

MethodRows rows() noexcept { return table; }
const EncoderList& encoders() noexcept { return immortal<const EncoderList>(); }
const DecoderList& decoders() noexcept { return immortal<const DecoderList>(); }

constinit EncoderFunction& encode_shiftIR = encoderOf(table, "shiftIR");
constinit EncoderFunction& encode_shiftDR = encoderOf(table, "shiftDR");
constinit EncoderFunction& encode_tdoExpectedGet = encoderOf(table, "tdoExpectedGet");
constinit EncoderFunction& encode_tdoExpectedSet = encoderOf(table, "tdoExpectedSet");
constinit EncoderFunction& encode_retryGet = encoderOf(table, "retryGet");
constinit EncoderFunction& encode_retrySet = encoderOf(table, "retrySet");
constinit EncoderFunction& encode_repeatGet = encoderOf(table, "repeatGet");
constinit EncoderFunction& encode_repeatSet = encoderOf(table, "repeatSet");
constinit EncoderFunction& encode_tapStateGet = encoderOf(table, "tapStateGet");
constinit EncoderFunction& encode_tapStateSet = encoderOf(table, "tapStateSet");
constinit EncoderFunction& encode_tckFrequencyGet = encoderOf(table, "tckFrequencyGet");
constinit EncoderFunction& encode_tckFrequencySet = encoderOf(table, "tckFrequencySet");
constinit EncoderFunction& encode_sleep = encoderOf(table, "sleep");
constinit EncoderFunction& encode_terminationStateIRGet = encoderOf(table, "terminationStateIRGet");
constinit EncoderFunction& encode_terminationStateIRSet = encoderOf(table, "terminationStateIRSet");
constinit EncoderFunction& encode_terminationStateDRGet = encoderOf(table, "terminationStateDRGet");
constinit EncoderFunction& encode_terminationStateDRSet = encoderOf(table, "terminationStateDRSet");
constinit EncoderFunction& encode_ioTrstGet = encoderOf(table, "ioTrstGet");
constinit EncoderFunction& encode_ioTrstSet = encoderOf(table, "ioTrstSet");
constinit EncoderFunction& encode_ioTckGet = encoderOf(table, "ioTckGet");
constinit EncoderFunction& encode_ioTckSet = encoderOf(table, "ioTckSet");
constinit EncoderFunction& encode_ioTmsGet = encoderOf(table, "ioTmsGet");
constinit EncoderFunction& encode_ioTmsSet = encoderOf(table, "ioTmsSet");
constinit EncoderFunction& encode_ioTdiGet = encoderOf(table, "ioTdiGet");
constinit EncoderFunction& encode_ioTdiSet = encoderOf(table, "ioTdiSet");
constinit EncoderFunction& encode_ioTdoGet = encoderOf(table, "ioTdoGet");
constinit EncoderFunction& encode_enableGet = encoderOf(table, "enableGet");
constinit EncoderFunction& encode_enableSet = encoderOf(table, "enableSet");
constinit DecoderFunction& decode_shiftIR = decoderOf(table, "shiftIR");
constinit DecoderFunction& decode_shiftDR = decoderOf(table, "shiftDR");
constinit DecoderFunction& decode_tdoExpectedGet = decoderOf(table, "tdoExpectedGet");
constinit DecoderFunction& decode_tdoExpectedSet = decoderOf(table, "tdoExpectedSet");
constinit DecoderFunction& decode_retryGet = decoderOf(table, "retryGet");
constinit DecoderFunction& decode_retrySet = decoderOf(table, "retrySet");
constinit DecoderFunction& decode_repeatGet = decoderOf(table, "repeatGet");
constinit DecoderFunction& decode_repeatSet = decoderOf(table, "repeatSet");
constinit DecoderFunction& decode_tapStateGet = decoderOf(table, "tapStateGet");
constinit DecoderFunction& decode_tapStateSet = decoderOf(table, "tapStateSet");
constinit DecoderFunction& decode_tckFrequencyGet = decoderOf(table, "tckFrequencyGet");
constinit DecoderFunction& decode_tckFrequencySet = decoderOf(table, "tckFrequencySet");
constinit DecoderFunction& decode_sleep = decoderOf(table, "sleep");
constinit DecoderFunction& decode_terminationStateIRGet = decoderOf(table, "terminationStateIRGet");
constinit DecoderFunction& decode_terminationStateIRSet = decoderOf(table, "terminationStateIRSet");
constinit DecoderFunction& decode_terminationStateDRGet = decoderOf(table, "terminationStateDRGet");
constinit DecoderFunction& decode_terminationStateDRSet = decoderOf(table, "terminationStateDRSet");
constinit DecoderFunction& decode_ioTrstGet = decoderOf(table, "ioTrstGet");
constinit DecoderFunction& decode_ioTrstSet = decoderOf(table, "ioTrstSet");
constinit DecoderFunction& decode_ioTckGet = decoderOf(table, "ioTckGet");
constinit DecoderFunction& decode_ioTckSet = decoderOf(table, "ioTckSet");
constinit DecoderFunction& decode_ioTmsGet = decoderOf(table, "ioTmsGet");
constinit DecoderFunction& decode_ioTmsSet = decoderOf(table, "ioTmsSet");
constinit DecoderFunction& decode_ioTdiGet = decoderOf(table, "ioTdiGet");
constinit DecoderFunction& decode_ioTdiSet = decoderOf(table, "ioTdiSet");
constinit DecoderFunction& decode_ioTdoGet = decoderOf(table, "ioTdoGet");
constinit DecoderFunction& decode_enableGet = decoderOf(table, "enableGet");
constinit DecoderFunction& decode_enableSet = decoderOf(table, "enableSet");

} // namespace TAVO::TAVOXTranscode::jtag_v1_0

namespace TAVO::TAVOXTranscode::jtag_v1_1 {

namespace {

using namespace dto::Header;
using namespace dto::Jtag;

constexpr MethodRow table[] = {
    row<ShiftRequest, ShiftReply>("shiftIR"),
    row<ShiftRequest, ShiftReply>("shiftDR"),
    row<None, TapStateGetReply>("tapStateGet"),
    row<TapStateSetRequest, None>("tapStateSet"),
    row<SleepRequest, None>("sleep"),
    row<None, OptionTdoExpectedGetReply>("optionTdoExpectedGet"),
    row<OptionTdoExpectedSetRequest, None>("optionTdoExpectedSet"),
    row<None, OptionRetryGetReply>("optionRetryGet"),
    row<OptionRetrySetRequest, None>("optionRetrySet"),
    row<None, OptionRepeatGetReply>("optionRepeatGet"),
    row<OptionRepeatSetRequest, None>("optionRepeatSet"),
    row<None, dto::Base::FrequencyGetReply>("optionTckFrequencyGet"),
    row<OptionTckFrequencySetRequest, None>("optionTckFrequencySet"),
    row<None, OptionTerminationStateGetReply>("optionTerminationStateGet"),
    row<OptionTerminationStateSetRequest, None>("optionTerminationStateSet"),
    row<None, OptionPrePostTckGetReply>("optionPrePostTckGet"),
    row<OptionPrePostTckSetRequest, None>("optionPrePostTckSet"),
    row<None, IoGetReply>("ioTrstGet"),
    row<IoSetRequest, None>("ioTrstSet"),
    row<None, IoGetReply>("ioTckGet"),
    row<IoSetRequest, None>("ioTckSet"),
    row<None, IoGetReply>("ioTmsGet"),
    row<IoSetRequest, None>("ioTmsSet"),
    row<None, IoGetReply>("ioTdiGet"),
    row<IoSetRequest, None>("ioTdiSet"),
    row<None, oGetReply>("ioTdoGet"),
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

constinit EncoderFunction& encode_shiftIR = encoderOf(table, "shiftIR");
constinit EncoderFunction& encode_shiftDR = encoderOf(table, "shiftDR");
constinit EncoderFunction& encode_tapStateGet = encoderOf(table, "tapStateGet");
constinit EncoderFunction& encode_tapStateSet = encoderOf(table, "tapStateSet");
constinit EncoderFunction& encode_sleep = encoderOf(table, "sleep");
constinit EncoderFunction& encode_optionTdoExpectedGet = encoderOf(table, "optionTdoExpectedGet");
constinit EncoderFunction& encode_optionTdoExpectedSet = encoderOf(table, "optionTdoExpectedSet");
constinit EncoderFunction& encode_optionRetryGet = encoderOf(table, "optionRetryGet");
constinit EncoderFunction& encode_optionRetrySet = encoderOf(table, "optionRetrySet");
constinit EncoderFunction& encode_optionRepeatGet = encoderOf(table, "optionRepeatGet");
constinit EncoderFunction& encode_optionRepeatSet = encoderOf(table, "optionRepeatSet");
constinit EncoderFunction& encode_optionTckFrequencyGet = encoderOf(table, "optionTckFrequencyGet");
constinit EncoderFunction& encode_optionTckFrequencySet = encoderOf(table, "optionTckFrequencySet");
constinit EncoderFunction& encode_optionTerminationStateGet = encoderOf(table, "optionTerminationStateGet");
constinit EncoderFunction& encode_optionTerminationStateSet = encoderOf(table, "optionTerminationStateSet");
constinit EncoderFunction& encode_optionPrePostTckGet = encoderOf(table, "optionPrePostTckGet");
constinit EncoderFunction& encode_optionPrePostTckSet = encoderOf(table, "optionPrePostTckSet");
constinit EncoderFunction& encode_ioTrstGet = encoderOf(table, "ioTrstGet");
constinit EncoderFunction& encode_ioTrstSet = encoderOf(table, "ioTrstSet");
constinit EncoderFunction& encode_ioTckGet = encoderOf(table, "ioTckGet");
constinit EncoderFunction& encode_ioTckSet = encoderOf(table, "ioTckSet");
constinit EncoderFunction& encode_ioTmsGet = encoderOf(table, "ioTmsGet");
constinit EncoderFunction& encode_ioTmsSet = encoderOf(table, "ioTmsSet");
constinit EncoderFunction& encode_ioTdiGet = encoderOf(table, "ioTdiGet");
constinit EncoderFunction& encode_ioTdiSet = encoderOf(table, "ioTdiSet");
constinit EncoderFunction& encode_ioTdoGet = encoderOf(table, "ioTdoGet");
constinit EncoderFunction& encode_enableGet = encoderOf(table, "enableGet");
constinit EncoderFunction& encode_enableSet = encoderOf(table, "enableSet");
constinit EncoderFunction& encode_headerStatusGet = encoderOf(table, "headerStatusGet");
constinit EncoderFunction& encode_headerStatusClear = encoderOf(table, "headerStatusClear");
constinit DecoderFunction& decode_shiftIR = decoderOf(table, "shiftIR");
constinit DecoderFunction& decode_shiftDR = decoderOf(table, "shiftDR");
constinit DecoderFunction& decode_tapStateGet = decoderOf(table, "tapStateGet");
constinit DecoderFunction& decode_tapStateSet = decoderOf(table, "tapStateSet");
constinit DecoderFunction& decode_sleep = decoderOf(table, "sleep");
constinit DecoderFunction& decode_optionTdoExpectedGet = decoderOf(table, "optionTdoExpectedGet");
constinit DecoderFunction& decode_optionTdoExpectedSet = decoderOf(table, "optionTdoExpectedSet");
constinit DecoderFunction& decode_optionRetryGet = decoderOf(table, "optionRetryGet");
constinit DecoderFunction& decode_optionRetrySet = decoderOf(table, "optionRetrySet");
constinit DecoderFunction& decode_optionRepeatGet = decoderOf(table, "optionRepeatGet");
constinit DecoderFunction& decode_optionRepeatSet = decoderOf(table, "optionRepeatSet");
constinit DecoderFunction& decode_optionTckFrequencyGet = decoderOf(table, "optionTckFrequencyGet");
constinit DecoderFunction& decode_optionTckFrequencySet = decoderOf(table, "optionTckFrequencySet");
constinit DecoderFunction& decode_optionTerminationStateGet = decoderOf(table, "optionTerminationStateGet");
constinit DecoderFunction& decode_optionTerminationStateSet = decoderOf(table, "optionTerminationStateSet");
constinit DecoderFunction& decode_optionPrePostTckGet = decoderOf(table, "optionPrePostTckGet");
constinit DecoderFunction& decode_optionPrePostTckSet = decoderOf(table, "optionPrePostTckSet");
constinit DecoderFunction& decode_ioTrstGet = decoderOf(table, "ioTrstGet");
constinit DecoderFunction& decode_ioTrstSet = decoderOf(table, "ioTrstSet");
constinit DecoderFunction& decode_ioTckGet = decoderOf(table, "ioTckGet");
constinit DecoderFunction& decode_ioTckSet = decoderOf(table, "ioTckSet");
constinit DecoderFunction& decode_ioTmsGet = decoderOf(table, "ioTmsGet");
constinit DecoderFunction& decode_ioTmsSet = decoderOf(table, "ioTmsSet");
constinit DecoderFunction& decode_ioTdiGet = decoderOf(table, "ioTdiGet");
constinit DecoderFunction& decode_ioTdiSet = decoderOf(table, "ioTdiSet");
constinit DecoderFunction& decode_ioTdoGet = decoderOf(table, "ioTdoGet");
constinit DecoderFunction& decode_enableGet = decoderOf(table, "enableGet");
constinit DecoderFunction& decode_enableSet = decoderOf(table, "enableSet");
constinit DecoderFunction& decode_headerStatusGet = decoderOf(table, "headerStatusGet");
constinit DecoderFunction& decode_headerStatusClear = decoderOf(table, "headerStatusClear");

} // namespace TAVO::TAVOXTranscode::jtag_v1_1
