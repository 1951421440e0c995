#include <tavo/client/hwdebug/hdt_tables.h>

namespace TAVO::TAVOXTranscode::hdt_v1_0 {

namespace {

using namespace dto::Header;
using namespace dto::hdt;

constexpr MethodRow table[] = {
    row<None, iGetReply>("ioDbreqGet"),
    row<iSetRequest, None>("ioDbreqSet"),
    row<None, ioDbrdyReply>("ioDbrdyGet"),
    row<None, ioDbrdySnapshotReply>("ioDbrdySnapshotGet"),
    row<None, None>("ioDbrdySnapshotClear"),
    row<None, iGetReply>("ioResetGet"),
    row<None, iGetReply>("ioPwrokGet"),
    row<OptionDbreqOnDbrdySetRequest, None>("optionDbreqOnDbrdySet"),
    row<None, OptionDbreqOnDbrdyGetReply>("optionDbreqOnDbrdyGet"),
    row<OptionDbreqOnResetRequest, None>("optionDbreqOnResetSet"),
    row<None, OptionDbreqOnResetReply>("optionDbreqOnResetGet"),
    row<OptionDbreqPulseWidthRequest, None>("optionDbreqPulseWidthSet"),
    row<None, OptionDbreqPulseWidthReply>("optionDbreqPulseWidthGet"),
    row<None, FrequencyGetReply>("frequencyGet"),
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

EncoderFunction& encode_ioDbreqGet = encoderOf(table, "ioDbreqGet");
EncoderFunction& encode_ioDbreqSet = encoderOf(table, "ioDbreqSet");
EncoderFunction& encode_ioDbrdyGet = encoderOf(table, "ioDbrdyGet");
EncoderFunction& encode_ioDbrdySnapshotGet = encoderOf(table, "ioDbrdySnapshotGet");
EncoderFunction& encode_ioDbrdySnapshotClear = encoderOf(table, "ioDbrdySnapshotClear");
EncoderFunction& encode_ioResetGet = encoderOf(table, "ioResetGet");
EncoderFunction& encode_ioPwrokGet = encoderOf(table, "ioPwrokGet");
EncoderFunction& encode_optionDbreqOnDbrdySet = encoderOf(table, "optionDbreqOnDbrdySet");
EncoderFunction& encode_optionDbreqOnDbrdyGet = encoderOf(table, "optionDbreqOnDbrdyGet");
EncoderFunction& encode_optionDbreqOnResetSet = encoderOf(table, "optionDbreqOnResetSet");
EncoderFunction& encode_optionDbreqOnResetGet = encoderOf(table, "optionDbreqOnResetGet");
EncoderFunction& encode_optionDbreqPulseWidthSet = encoderOf(table, "optionDbreqPulseWidthSet");
EncoderFunction& encode_optionDbreqPulseWidthGet = encoderOf(table, "optionDbreqPulseWidthGet");
EncoderFunction& encode_frequencyGet = encoderOf(table, "frequencyGet");
EncoderFunction& encode_enableGet = encoderOf(table, "enableGet");
EncoderFunction& encode_enableSet = encoderOf(table, "enableSet");
DecoderFunction& decode_ioDbreqGet = decoderOf(table, "ioDbreqGet");
DecoderFunction& decode_ioDbreqSet = decoderOf(table, "ioDbreqSet");
DecoderFunction& decode_ioDbrdyGet = decoderOf(table, "ioDbrdyGet");
DecoderFunction& decode_ioDbrdySnapshotGet = decoderOf(table, "ioDbrdySnapshotGet");
DecoderFunction& decode_ioDbrdySnapshotClear = decoderOf(table, "ioDbrdySnapshotClear");
DecoderFunction& decode_ioResetGet = decoderOf(table, "ioResetGet");
DecoderFunction& decode_ioPwrokGet = decoderOf(table, "ioPwrokGet");
DecoderFunction& decode_optionDbreqOnDbrdySet = decoderOf(table, "optionDbreqOnDbrdySet");
DecoderFunction& decode_optionDbreqOnDbrdyGet = decoderOf(table, "optionDbreqOnDbrdyGet");
DecoderFunction& decode_optionDbreqOnResetSet = decoderOf(table, "optionDbreqOnResetSet");
DecoderFunction& decode_optionDbreqOnResetGet = decoderOf(table, "optionDbreqOnResetGet");
DecoderFunction& decode_optionDbreqPulseWidthSet = decoderOf(table, "optionDbreqPulseWidthSet");
DecoderFunction& decode_optionDbreqPulseWidthGet = decoderOf(table, "optionDbreqPulseWidthGet");
DecoderFunction& decode_frequencyGet = decoderOf(table, "frequencyGet");
DecoderFunction& decode_enableGet = decoderOf(table, "enableGet");
DecoderFunction& decode_enableSet = decoderOf(table, "enableSet");

} // namespace TAVO::TAVOXTranscode::hdt_v1_0

namespace TAVO::TAVOXTranscode::hdt_v1_1 {

namespace {

using namespace dto::Header;
using namespace dto::hdt;

constexpr MethodRow table[] = {
    row<None, iGetReply>("ioDbreqGet"),
    row<iSetRequest, None>("ioDbreqSet"),
    row<None, ioDbrdyReply>("ioDbrdyGet"),
    row<ioDbrdyWaitRequest, None>("ioDbrdyWait"),
    row<None, ioDbrdySnapshotReply>("ioDbrdySnapshotGet"),
    row<None, None>("ioDbrdySnapshotClear"),
    row<None, ioDbreqSourceSnapshotReply>("ioDbreqSourceSnapshotGet"),
    row<None, None>("ioDbreqSourceSnapshotClear"),
    row<None, iGetReply>("ioResetGet"),
    row<None, iGetReply>("ioPwrokGet"),
    row<ioTriggerSetRequest, None>("ioTriggerSet"),
    row<ioTriggerGetRequest, ioTriggerGetReply>("ioTriggerGet"),
    row<OptionDbreqOnDbrdySetRequest, None>("optionDbreqOnDbrdySet"),
    row<None, OptionDbreqOnDbrdyGetReply>("optionDbreqOnDbrdyGet"),
    row<OptionDbreqOnResetRequest, None>("optionDbreqOnResetSet"),
    row<None, OptionDbreqOnResetReply>("optionDbreqOnResetGet"),
    row<OptionDbreqOnTriggerSetRequest, None>("optionDbreqOnTriggerSet"),
    row<None, OptionDbreqOnTriggerGetReply>("optionDbreqOnTriggerGet"),
    row<OptionDbreqPulseWidthRequest, None>("optionDbreqPulseWidthSet"),
    row<None, OptionDbreqPulseWidthReply>("optionDbreqPulseWidthGet"),
    row<OptionDbrdyMaskSetRequest, None>("optionDbrdyMaskSet"),
    row<None, OptionDbrdyMaskGetReply>("optionDbrdyMaskGet"),
    row<None, FrequencyGetReply>("optionFrequencyGet"),
    row<OptionTriggerSetupSetRequest, None>("optionTriggerSetupSet"),
    row<OptionTriggerSetupGetRequest, OptionTriggerSetupGetReply>("optionTriggerSetupGet"),
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

EncoderFunction& encode_ioDbreqGet = encoderOf(table, "ioDbreqGet");
EncoderFunction& encode_ioDbreqSet = encoderOf(table, "ioDbreqSet");
EncoderFunction& encode_ioDbrdyGet = encoderOf(table, "ioDbrdyGet");
EncoderFunction& encode_ioDbrdyWait = encoderOf(table, "ioDbrdyWait");
EncoderFunction& encode_ioDbrdySnapshotGet = encoderOf(table, "ioDbrdySnapshotGet");
EncoderFunction& encode_ioDbrdySnapshotClear = encoderOf(table, "ioDbrdySnapshotClear");
EncoderFunction& encode_ioDbreqSourceSnapshotGet = encoderOf(table, "ioDbreqSourceSnapshotGet");
EncoderFunction& encode_ioDbreqSourceSnapshotClear = encoderOf(table, "ioDbreqSourceSnapshotClear");
EncoderFunction& encode_ioResetGet = encoderOf(table, "ioResetGet");
EncoderFunction& encode_ioPwrokGet = encoderOf(table, "ioPwrokGet");
EncoderFunction& encode_ioTriggerSet = encoderOf(table, "ioTriggerSet");
EncoderFunction& encode_ioTriggerGet = encoderOf(table, "ioTriggerGet");
EncoderFunction& encode_optionDbreqOnDbrdySet = encoderOf(table, "optionDbreqOnDbrdySet");
EncoderFunction& encode_optionDbreqOnDbrdyGet = encoderOf(table, "optionDbreqOnDbrdyGet");
EncoderFunction& encode_optionDbreqOnResetSet = encoderOf(table, "optionDbreqOnResetSet");
EncoderFunction& encode_optionDbreqOnResetGet = encoderOf(table, "optionDbreqOnResetGet");
EncoderFunction& encode_optionDbreqOnTriggerSet = encoderOf(table, "optionDbreqOnTriggerSet");
EncoderFunction& encode_optionDbreqOnTriggerGet = encoderOf(table, "optionDbreqOnTriggerGet");
EncoderFunction& encode_optionDbreqPulseWidthSet = encoderOf(table, "optionDbreqPulseWidthSet");
EncoderFunction& encode_optionDbreqPulseWidthGet = encoderOf(table, "optionDbreqPulseWidthGet");
EncoderFunction& encode_optionDbrdyMaskSet = encoderOf(table, "optionDbrdyMaskSet");
EncoderFunction& encode_optionDbrdyMaskGet = encoderOf(table, "optionDbrdyMaskGet");
EncoderFunction& encode_optionFrequencyGet = encoderOf(table, "optionFrequencyGet");
EncoderFunction& encode_optionTriggerSetupSet = encoderOf(table, "optionTriggerSetupSet");
EncoderFunction& encode_optionTriggerSetupGet = encoderOf(table, "optionTriggerSetupGet");
EncoderFunction& encode_enableGet = encoderOf(table, "enableGet");
EncoderFunction& encode_enableSet = encoderOf(table, "enableSet");
EncoderFunction& encode_headerStatusGet = encoderOf(table, "headerStatusGet");
EncoderFunction& encode_headerStatusClear = encoderOf(table, "headerStatusClear");
DecoderFunction& decode_ioDbreqGet = decoderOf(table, "ioDbreqGet");
DecoderFunction& decode_ioDbreqSet = decoderOf(table, "ioDbreqSet");
DecoderFunction& decode_ioDbrdyGet = decoderOf(table, "ioDbrdyGet");
DecoderFunction& decode_ioDbrdyWait = decoderOf(table, "ioDbrdyWait");
DecoderFunction& decode_ioDbrdySnapshotGet = decoderOf(table, "ioDbrdySnapshotGet");
DecoderFunction& decode_ioDbrdySnapshotClear = decoderOf(table, "ioDbrdySnapshotClear");
DecoderFunction& decode_ioDbreqSourceSnapshotGet = decoderOf(table, "ioDbreqSourceSnapshotGet");
DecoderFunction& decode_ioDbreqSourceSnapshotClear = decoderOf(table, "ioDbreqSourceSnapshotClear");
DecoderFunction& decode_ioResetGet = decoderOf(table, "ioResetGet");
DecoderFunction& decode_ioPwrokGet = decoderOf(table, "ioPwrokGet");
DecoderFunction& decode_ioTriggerSet = decoderOf(table, "ioTriggerSet");
DecoderFunction& decode_ioTriggerGet = decoderOf(table, "ioTriggerGet");
DecoderFunction& decode_optionDbreqOnDbrdySet = decoderOf(table, "optionDbreqOnDbrdySet");
DecoderFunction& decode_optionDbreqOnDbrdyGet = decoderOf(table, "optionDbreqOnDbrdyGet");
DecoderFunction& decode_optionDbreqOnResetSet = decoderOf(table, "optionDbreqOnResetSet");
DecoderFunction& decode_optionDbreqOnResetGet = decoderOf(table, "optionDbreqOnResetGet");
DecoderFunction& decode_optionDbreqOnTriggerSet = decoderOf(table, "optionDbreqOnTriggerSet");
DecoderFunction& decode_optionDbreqOnTriggerGet = decoderOf(table, "optionDbreqOnTriggerGet");
DecoderFunction& decode_optionDbreqPulseWidthSet = decoderOf(table, "optionDbreqPulseWidthSet");
DecoderFunction& decode_optionDbreqPulseWidthGet = decoderOf(table, "optionDbreqPulseWidthGet");
DecoderFunction& decode_optionDbrdyMaskSet = decoderOf(table, "optionDbrdyMaskSet");
DecoderFunction& decode_optionDbrdyMaskGet = decoderOf(table, "optionDbrdyMaskGet");
DecoderFunction& decode_optionFrequencyGet = decoderOf(table, "optionFrequencyGet");
DecoderFunction& decode_optionTriggerSetupSet = decoderOf(table, "optionTriggerSetupSet");
DecoderFunction& decode_optionTriggerSetupGet = decoderOf(table, "optionTriggerSetupGet");
DecoderFunction& decode_enableGet = decoderOf(table, "enableGet");
DecoderFunction& decode_enableSet = decoderOf(table, "enableSet");
DecoderFunction& decode_headerStatusGet = decoderOf(table, "headerStatusGet");
DecoderFunction& decode_headerStatusClear = decoderOf(table, "headerStatusClear");

} // namespace TAVO::TAVOXTranscode::hdt_v1_1
