#include <tavo/client/hwdebug/i2c_tables.h>

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

const EncoderList encoderList;
const DecoderList decoderList;

} // namespace

EncoderList::EncoderList() { enter(table); }
DecoderList::DecoderList() { enter(table); }

MethodRows rows() noexcept { return table; }
const EncoderList& encoders() noexcept { return encoderList; }
const DecoderList& decoders() noexcept { return decoderList; }

EncoderFunction& encode_transfer = encoderOf(table, "transfer");
EncoderFunction& encode_read = encoderOf(table, "read");
EncoderFunction& encode_write = encoderOf(table, "write");
EncoderFunction& encode_optionSclFrequencyGet = encoderOf(table, "optionSclFrequencyGet");
EncoderFunction& encode_optionSclFrequencySet = encoderOf(table, "optionSclFrequencySet");
EncoderFunction& encode_optionAddressRetryLimitGet = encoderOf(table, "optionAddressRetryLimitGet");
EncoderFunction& encode_optionAddressRetryLimitSet = encoderOf(table, "optionAddressRetryLimitSet");
EncoderFunction& encode_optionTimeoutGet = encoderOf(table, "optionTimeoutGet");
EncoderFunction& encode_optionTimeoutSet = encoderOf(table, "optionTimeoutSet");
EncoderFunction& encode_optionAckGet = encoderOf(table, "optionAckGet");
EncoderFunction& encode_optionAckSet = encoderOf(table, "optionAckSet");
EncoderFunction& encode_headerStatusGet = encoderOf(table, "headerStatusGet");
EncoderFunction& encode_headerStatusClear = encoderOf(table, "headerStatusClear");
DecoderFunction& decode_transfer = decoderOf(table, "transfer");
DecoderFunction& decode_read = decoderOf(table, "read");
DecoderFunction& decode_write = decoderOf(table, "write");
DecoderFunction& decode_optionSclFrequencyGet = decoderOf(table, "optionSclFrequencyGet");
DecoderFunction& decode_optionSclFrequencySet = decoderOf(table, "optionSclFrequencySet");
DecoderFunction& decode_optionAddressRetryLimitGet = decoderOf(table, "optionAddressRetryLimitGet");
DecoderFunction& decode_optionAddressRetryLimitSet = decoderOf(table, "optionAddressRetryLimitSet");
DecoderFunction& decode_optionTimeoutGet = decoderOf(table, "optionTimeoutGet");
DecoderFunction& decode_optionTimeoutSet = decoderOf(table, "optionTimeoutSet");
DecoderFunction& decode_optionAckGet = decoderOf(table, "optionAckGet");
DecoderFunction& decode_optionAckSet = decoderOf(table, "optionAckSet");
DecoderFunction& decode_headerStatusGet = decoderOf(table, "headerStatusGet");
DecoderFunction& decode_headerStatusClear = decoderOf(table, "headerStatusClear");

} // namespace TAVO::TAVOXTranscode::i2c_v1_0
