#include <tavo/client/hwdebug/i2c_tables.h>

#include <tavo/client/transcode/internal/immortal.h>

namespace TAVO::TAVOXTranscode::i2c_v1_0 {

namespace {

using namespace dto::i2c;

constexpr MethodRow table[] = {
    row<TransferRequest, TransferReply>("transfer"),
    row<ReadRequest, ReadReply>("read"),
    row<WriteRequest, WriteReply>("write"),
    row<None, dto::Base::FrequencyGetReply>("optionSclFrequencyGet"),
    row<dto::Jtag::OptionTckFrequencySetRequest, None>("optionSclFrequencySet"),
    row<None, OptionAddressRetryLimitGetReply>("optionAddressRetryLimitGet"),
    row<OptionAddressRetryLimitSetRequest, None>("optionAddressRetryLimitSet"),
    row<None, OptionTimeoutGetReply>("optionTimeoutGet"),
    row<OptionTimeoutSetRequest, None>("optionTimeoutSet"),
    row<None, OptionAckGetReply>("optionAckGet"),
    row<OptionAckSetRequest, None>("optionAckSet"),
    row<None, dto::Base::HeaderStatusGetReply>("headerStatusGet"),
    row<None, None>("headerStatusClear"),
};

} // namespace

EncoderList::EncoderList() { enter(table); }
DecoderList::DecoderList() { enter(table); }

MethodRows rows() noexcept { return table; }
const EncoderList& encoders() noexcept { return immortal<const EncoderList>(); }
const DecoderList& decoders() noexcept { return immortal<const DecoderList>(); }

constinit EncoderFunction& encode_transfer = encoderOf(table, "transfer");
constinit EncoderFunction& encode_read = encoderOf(table, "read");
constinit EncoderFunction& encode_write = encoderOf(table, "write");
constinit EncoderFunction& encode_optionSclFrequencyGet = encoderOf(table, "optionSclFrequencyGet");
constinit EncoderFunction& encode_optionSclFrequencySet = encoderOf(table, "optionSclFrequencySet");
constinit EncoderFunction& encode_optionAddressRetryLimitGet = encoderOf(table, "optionAddressRetryLimitGet");
constinit EncoderFunction& encode_optionAddressRetryLimitSet = encoderOf(table, "optionAddressRetryLimitSet");
constinit EncoderFunction& encode_optionTimeoutGet = encoderOf(table, "optionTimeoutGet");
constinit EncoderFunction& encode_optionTimeoutSet = encoderOf(table, "optionTimeoutSet");
constinit EncoderFunction& encode_optionAckGet = encoderOf(table, "optionAckGet");
constinit EncoderFunction& encode_optionAckSet = encoderOf(table, "optionAckSet");
constinit EncoderFunction& encode_headerStatusGet = encoderOf(table, "headerStatusGet");
constinit EncoderFunction& encode_headerStatusClear = encoderOf(table, "headerStatusClear");
constinit DecoderFunction& decode_transfer = decoderOf(table, "transfer");
constinit DecoderFunction& decode_read = decoderOf(table, "read");
constinit DecoderFunction& decode_write = decoderOf(table, "write");
constinit DecoderFunction& decode_optionSclFrequencyGet = decoderOf(table, "optionSclFrequencyGet");
constinit DecoderFunction& decode_optionSclFrequencySet = decoderOf(table, "optionSclFrequencySet");
constinit DecoderFunction& decode_optionAddressRetryLimitGet = decoderOf(table, "optionAddressRetryLimitGet");
constinit DecoderFunction& decode_optionAddressRetryLimitSet = decoderOf(table, "optionAddressRetryLimitSet");
constinit DecoderFunction& decode_optionTimeoutGet = decoderOf(table, "optionTimeoutGet");
constinit DecoderFunction& decode_optionTimeoutSet = decoderOf(table, "optionTimeoutSet");
constinit DecoderFunction& decode_optionAckGet = decoderOf(table, "optionAckGet");
constinit DecoderFunction& decode_optionAckSet = decoderOf(table, "optionAckSet");
constinit DecoderFunction& decode_headerStatusGet = decoderOf(table, "headerStatusGet");
constinit DecoderFunction& decode_headerStatusClear = decoderOf(table, "headerStatusClear");

} // namespace TAVO::TAVOXTranscode::i2c_v1_0
