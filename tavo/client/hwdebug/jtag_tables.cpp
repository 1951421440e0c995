#include <tavo/client/hwdebug/jtag_tables.h>

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

const EncoderList encoderList;
const DecoderList decoderList;

} // namespace

EncoderList::EncoderList() { enter(table); }
DecoderList::DecoderList() { enter(table); }

MethodRows rows() noexcept { return table; }
const EncoderList& encoders() noexcept { return encoderList; }
const DecoderList& decoders() noexcept { return decoderList; }

EncoderFunction& encode_shiftIR = encoderOf(table, "shiftIR");
EncoderFunction& encode_shiftDR = encoderOf(table, "shiftDR");
EncoderFunction& encode_tdoExpectedGet = encoderOf(table, "tdoExpectedGet");
EncoderFunction& encode_tdoExpectedSet = encoderOf(table, "tdoExpectedSet");
EncoderFunction& encode_retryGet = encoderOf(table, "retryGet");
EncoderFunction& encode_retrySet = encoderOf(table, "retrySet");
EncoderFunction& encode_repeatGet = encoderOf(table, "repeatGet");
EncoderFunction& encode_repeatSet = encoderOf(table, "repeatSet");
EncoderFunction& encode_tapStateGet = encoderOf(table, "tapStateGet");
EncoderFunction& encode_tapStateSet = encoderOf(table, "tapStateSet");
EncoderFunction& encode_tckFrequencyGet = encoderOf(table, "tckFrequencyGet");
EncoderFunction& encode_tckFrequencySet = encoderOf(table, "tckFrequencySet");
EncoderFunction& encode_sleep = encoderOf(table, "sleep");
EncoderFunction& encode_terminationStateIRGet = encoderOf(table, "terminationStateIRGet");
EncoderFunction& encode_terminationStateIRSet = encoderOf(table, "terminationStateIRSet");
EncoderFunction& encode_terminationStateDRGet = encoderOf(table, "terminationStateDRGet");
EncoderFunction& encode_terminationStateDRSet = encoderOf(table, "terminationStateDRSet");
EncoderFunction& encode_ioTrstGet = encoderOf(table, "ioTrstGet");
EncoderFunction& encode_ioTrstSet = encoderOf(table, "ioTrstSet");
EncoderFunction& encode_ioTckGet = encoderOf(table, "ioTckGet");
EncoderFunction& encode_ioTckSet = encoderOf(table, "ioTckSet");
EncoderFunction& encode_ioTmsGet = encoderOf(table, "ioTmsGet");
EncoderFunction& encode_ioTmsSet = encoderOf(table, "ioTmsSet");
EncoderFunction& encode_ioTdiGet = encoderOf(table, "ioTdiGet");
EncoderFunction& encode_ioTdiSet = encoderOf(table, "ioTdiSet");
EncoderFunction& encode_ioTdoGet = encoderOf(table, "ioTdoGet");
EncoderFunction& encode_enableGet = encoderOf(table, "enableGet");
EncoderFunction& encode_enableSet = encoderOf(table, "enableSet");
DecoderFunction& decode_shiftIR = decoderOf(table, "shiftIR");
DecoderFunction& decode_shiftDR = decoderOf(table, "shiftDR");
DecoderFunction& decode_tdoExpectedGet = decoderOf(table, "tdoExpectedGet");
DecoderFunction& decode_tdoExpectedSet = decoderOf(table, "tdoExpectedSet");
DecoderFunction& decode_retryGet = decoderOf(table, "retryGet");
DecoderFunction& decode_retrySet = decoderOf(table, "retrySet");
DecoderFunction& decode_repeatGet = decoderOf(table, "repeatGet");
DecoderFunction& decode_repeatSet = decoderOf(table, "repeatSet");
DecoderFunction& decode_tapStateGet = decoderOf(table, "tapStateGet");
DecoderFunction& decode_tapStateSet = decoderOf(table, "tapStateSet");
DecoderFunction& decode_tckFrequencyGet = decoderOf(table, "tckFrequencyGet");
DecoderFunction& decode_tckFrequencySet = decoderOf(table, "tckFrequencySet");
DecoderFunction& decode_sleep = decoderOf(table, "sleep");
DecoderFunction& decode_terminationStateIRGet = decoderOf(table, "terminationStateIRGet");
DecoderFunction& decode_terminationStateIRSet = decoderOf(table, "terminationStateIRSet");
DecoderFunction& decode_terminationStateDRGet = decoderOf(table, "terminationStateDRGet");
DecoderFunction& decode_terminationStateDRSet = decoderOf(table, "terminationStateDRSet");
DecoderFunction& decode_ioTrstGet = decoderOf(table, "ioTrstGet");
DecoderFunction& decode_ioTrstSet = decoderOf(table, "ioTrstSet");
DecoderFunction& decode_ioTckGet = decoderOf(table, "ioTckGet");
DecoderFunction& decode_ioTckSet = decoderOf(table, "ioTckSet");
DecoderFunction& decode_ioTmsGet = decoderOf(table, "ioTmsGet");
DecoderFunction& decode_ioTmsSet = decoderOf(table, "ioTmsSet");
DecoderFunction& decode_ioTdiGet = decoderOf(table, "ioTdiGet");
DecoderFunction& decode_ioTdiSet = decoderOf(table, "ioTdiSet");
DecoderFunction& decode_ioTdoGet = decoderOf(table, "ioTdoGet");
DecoderFunction& decode_enableGet = decoderOf(table, "enableGet");
DecoderFunction& decode_enableSet = decoderOf(table, "enableSet");

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

const EncoderList encoderList;
const DecoderList decoderList;

} // namespace

EncoderList::EncoderList() { enter(table); }
DecoderList::DecoderList() { enter(table); }

MethodRows rows() noexcept { return table; }
const EncoderList& encoders() noexcept { return encoderList; }
const DecoderList& decoders() noexcept { return decoderList; }

EncoderFunction& encode_shiftIR = encoderOf(table, "shiftIR");
EncoderFunction& encode_shiftDR = encoderOf(table, "shiftDR");
EncoderFunction& encode_tapStateGet = encoderOf(table, "tapStateGet");
EncoderFunction& encode_tapStateSet = encoderOf(table, "tapStateSet");
EncoderFunction& encode_sleep = encoderOf(table, "sleep");
EncoderFunction& encode_optionTdoExpectedGet = encoderOf(table, "optionTdoExpectedGet");
EncoderFunction& encode_optionTdoExpectedSet = encoderOf(table, "optionTdoExpectedSet");
EncoderFunction& encode_optionRetryGet = encoderOf(table, "optionRetryGet");
EncoderFunction& encode_optionRetrySet = encoderOf(table, "optionRetrySet");
EncoderFunction& encode_optionRepeatGet = encoderOf(table, "optionRepeatGet");
EncoderFunction& encode_optionRepeatSet = encoderOf(table, "optionRepeatSet");
EncoderFunction& encode_optionTckFrequencyGet = encoderOf(table, "optionTckFrequencyGet");
EncoderFunction& encode_optionTckFrequencySet = encoderOf(table, "optionTckFrequencySet");
EncoderFunction& encode_optionTerminationStateGet = encoderOf(table, "optionTerminationStateGet");
EncoderFunction& encode_optionTerminationStateSet = encoderOf(table, "optionTerminationStateSet");
EncoderFunction& encode_optionPrePostTckGet = encoderOf(table, "optionPrePostTckGet");
EncoderFunction& encode_optionPrePostTckSet = encoderOf(table, "optionPrePostTckSet");
EncoderFunction& encode_ioTrstGet = encoderOf(table, "ioTrstGet");
EncoderFunction& encode_ioTrstSet = encoderOf(table, "ioTrstSet");
EncoderFunction& encode_ioTckGet = encoderOf(table, "ioTckGet");
EncoderFunction& encode_ioTckSet = encoderOf(table, "ioTckSet");
EncoderFunction& encode_ioTmsGet = encoderOf(table, "ioTmsGet");
EncoderFunction& encode_ioTmsSet = encoderOf(table, "ioTmsSet");
EncoderFunction& encode_ioTdiGet = encoderOf(table, "ioTdiGet");
EncoderFunction& encode_ioTdiSet = encoderOf(table, "ioTdiSet");
EncoderFunction& encode_ioTdoGet = encoderOf(table, "ioTdoGet");
EncoderFunction& encode_enableGet = encoderOf(table, "enableGet");
EncoderFunction& encode_enableSet = encoderOf(table, "enableSet");
EncoderFunction& encode_headerStatusGet = encoderOf(table, "headerStatusGet");
EncoderFunction& encode_headerStatusClear = encoderOf(table, "headerStatusClear");
DecoderFunction& decode_shiftIR = decoderOf(table, "shiftIR");
DecoderFunction& decode_shiftDR = decoderOf(table, "shiftDR");
DecoderFunction& decode_tapStateGet = decoderOf(table, "tapStateGet");
DecoderFunction& decode_tapStateSet = decoderOf(table, "tapStateSet");
DecoderFunction& decode_sleep = decoderOf(table, "sleep");
DecoderFunction& decode_optionTdoExpectedGet = decoderOf(table, "optionTdoExpectedGet");
DecoderFunction& decode_optionTdoExpectedSet = decoderOf(table, "optionTdoExpectedSet");
DecoderFunction& decode_optionRetryGet = decoderOf(table, "optionRetryGet");
DecoderFunction& decode_optionRetrySet = decoderOf(table, "optionRetrySet");
DecoderFunction& decode_optionRepeatGet = decoderOf(table, "optionRepeatGet");
DecoderFunction& decode_optionRepeatSet = decoderOf(table, "optionRepeatSet");
DecoderFunction& decode_optionTckFrequencyGet = decoderOf(table, "optionTckFrequencyGet");
DecoderFunction& decode_optionTckFrequencySet = decoderOf(table, "optionTckFrequencySet");
DecoderFunction& decode_optionTerminationStateGet = decoderOf(table, "optionTerminationStateGet");
DecoderFunction& decode_optionTerminationStateSet = decoderOf(table, "optionTerminationStateSet");
DecoderFunction& decode_optionPrePostTckGet = decoderOf(table, "optionPrePostTckGet");
DecoderFunction& decode_optionPrePostTckSet = decoderOf(table, "optionPrePostTckSet");
DecoderFunction& decode_ioTrstGet = decoderOf(table, "ioTrstGet");
DecoderFunction& decode_ioTrstSet = decoderOf(table, "ioTrstSet");
DecoderFunction& decode_ioTckGet = decoderOf(table, "ioTckGet");
DecoderFunction& decode_ioTckSet = decoderOf(table, "ioTckSet");
DecoderFunction& decode_ioTmsGet = decoderOf(table, "ioTmsGet");
DecoderFunction& decode_ioTmsSet = decoderOf(table, "ioTmsSet");
DecoderFunction& decode_ioTdiGet = decoderOf(table, "ioTdiGet");
DecoderFunction& decode_ioTdiSet = decoderOf(table, "ioTdiSet");
DecoderFunction& decode_ioTdoGet = decoderOf(table, "ioTdoGet");
DecoderFunction& decode_enableGet = decoderOf(table, "enableGet");
DecoderFunction& decode_enableSet = decoderOf(table, "enableSet");
DecoderFunction& decode_headerStatusGet = decoderOf(table, "headerStatusGet");
DecoderFunction& decode_headerStatusClear = decoderOf(table, "headerStatusClear");

} // namespace TAVO::TAVOXTranscode::jtag_v1_1
