#include <tavo/client/hwdebug/hdt_tables.h>

#include <tavo/client/transcode/internal/immortal.h>

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

} // namespace

EncoderList::EncoderList() { enter(table); }
DecoderList::DecoderList() { enter(table); }

MethodRows rows() noexcept { return table; }
const EncoderList& encoders() noexcept { return immortal<const EncoderList>(); }
const DecoderList& decoders() noexcept { return immortal<const DecoderList>(); }

constinit EncoderFunction& encode_ioDbreqGet = encoderOf(table, "ioDbreqGet");
constinit EncoderFunction& encode_ioDbreqSet = encoderOf(table, "ioDbreqSet");
constinit EncoderFunction& encode_ioDbrdyGet = encoderOf(table, "ioDbrdyGet");
constinit EncoderFunction& encode_ioDbrdySnapshotGet = encoderOf(table, "ioDbrdySnapshotGet");
constinit EncoderFunction& encode_ioDbrdySnapshotClear = encoderOf(table, "ioDbrdySnapshotClear");
constinit EncoderFunction& encode_ioResetGet = encoderOf(table, "ioResetGet");
constinit EncoderFunction& encode_ioPwrokGet = encoderOf(table, "ioPwrokGet");
constinit EncoderFunction& encode_optionDbreqOnDbrdySet = encoderOf(table, "optionDbreqOnDbrdySet");
constinit EncoderFunction& encode_optionDbreqOnDbrdyGet = encoderOf(table, "optionDbreqOnDbrdyGet");
constinit EncoderFunction& encode_optionDbreqOnResetSet = encoderOf(table, "optionDbreqOnResetSet");
constinit EncoderFunction& encode_optionDbreqOnResetGet = encoderOf(table, "optionDbreqOnResetGet");
constinit EncoderFunction& encode_optionDbreqPulseWidthSet = encoderOf(table, "optionDbreqPulseWidthSet");
constinit EncoderFunction& encode_optionDbreqPulseWidthGet = encoderOf(table, "optionDbreqPulseWidthGet");
constinit EncoderFunction& encode_frequencyGet = encoderOf(table, "frequencyGet");
constinit EncoderFunction& encode_enableGet = encoderOf(table, "enableGet");
constinit EncoderFunction& encode_enableSet = encoderOf(table, "enableSet");
constinit DecoderFunction& decode_ioDbreqGet = decoderOf(table, "ioDbreqGet");
constinit DecoderFunction& decode_ioDbreqSet = decoderOf(table, "ioDbreqSet");
constinit DecoderFunction& decode_ioDbrdyGet = decoderOf(table, "ioDbrdyGet");
constinit DecoderFunction& decode_ioDbrdySnapshotGet = decoderOf(table, "ioDbrdySnapshotGet");
constinit DecoderFunction& decode_ioDbrdySnapshotClear = decoderOf(table, "ioDbrdySnapshotClear");
constinit DecoderFunction& decode_ioResetGet = decoderOf(table, "ioResetGet");
constinit DecoderFunction& decode_ioPwrokGet = decoderOf(table, "ioPwrokGet");
constinit DecoderFunction& decode_optionDbreqOnDbrdySet = decoderOf(table, "optionDbreqOnDbrdySet");
constinit DecoderFunction& decode_optionDbreqOnDbrdyGet = decoderOf(table, "optionDbreqOnDbrdyGet");
constinit DecoderFunction& decode_optionDbreqOnResetSet = decoderOf(table, "optionDbreqOnResetSet");
constinit DecoderFunction& decode_optionDbreqOnResetGet = decoderOf(table, "optionDbreqOnResetGet");
constinit DecoderFunction& decode_optionDbreqPulseWidthSet = decoderOf(table, "optionDbreqPulseWidthSet");
constinit DecoderFunction& decode_optionDbreqPulseWidthGet = decoderOf(table, "optionDbreqPulseWidthGet");
constinit DecoderFunction& decode_frequencyGet = decoderOf(table, "frequencyGet");
constinit DecoderFunction& decode_enableGet = decoderOf(table, "enableGet");
constinit DecoderFunction& decode_enableSet = decoderOf(table, "enableSet");

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

} // namespace

EncoderList::EncoderList() { enter(table); }
DecoderList::DecoderList() { enter(table); }

MethodRows rows() noexcept { return table; }
const EncoderList& encoders() noexcept { return immortal<const EncoderList>(); }
const DecoderList& decoders() noexcept { return immortal<const DecoderList>(); }

constinit EncoderFunction& encode_ioDbreqGet = encoderOf(table, "ioDbreqGet");
constinit EncoderFunction& encode_ioDbreqSet = encoderOf(table, "ioDbreqSet");
constinit EncoderFunction& encode_ioDbrdyGet = encoderOf(table, "ioDbrdyGet");
constinit EncoderFunction& encode_ioDbrdyWait = encoderOf(table, "ioDbrdyWait");
constinit EncoderFunction& encode_ioDbrdySnapshotGet = encoderOf(table, "ioDbrdySnapshotGet");
constinit EncoderFunction& encode_ioDbrdySnapshotClear = encoderOf(table, "ioDbrdySnapshotClear");
constinit EncoderFunction& encode_ioDbreqSourceSnapshotGet = encoderOf(table, "ioDbreqSourceSnapshotGet");
constinit EncoderFunction& encode_ioDbreqSourceSnapshotClear = encoderOf(table, "ioDbreqSourceSnapshotClear");
constinit EncoderFunction& encode_ioResetGet = encoderOf(table, "ioResetGet");
constinit EncoderFunction& encode_ioPwrokGet = encoderOf(table, "ioPwrokGet");
constinit EncoderFunction& encode_ioTriggerSet = encoderOf(table, "ioTriggerSet");
constinit EncoderFunction& encode_ioTriggerGet = encoderOf(table, "ioTriggerGet");
constinit EncoderFunction& encode_optionDbreqOnDbrdySet = encoderOf(table, "optionDbreqOnDbrdySet");
constinit EncoderFunction& encode_optionDbreqOnDbrdyGet = encoderOf(table, "optionDbreqOnDbrdyGet");
constinit EncoderFunction& encode_optionDbreqOnResetSet = encoderOf(table, "optionDbreqOnResetSet");
constinit EncoderFunction& encode_optionDbreqOnResetGet = encoderOf(table, "optionDbreqOnResetGet");
constinit EncoderFunction& encode_optionDbreqOnTriggerSet = encoderOf(table, "optionDbreqOnTriggerSet");
constinit EncoderFunction& encode_optionDbreqOnTriggerGet = encoderOf(table, "optionDbreqOnTriggerGet");
constinit EncoderFunction& encode_optionDbreqPulseWidthSet = encoderOf(table, "optionDbreqPulseWidthSet");
constinit EncoderFunction& encode_optionDbreqPulseWidthGet = encoderOf(table, "optionDbreqPulseWidthGet");
constinit EncoderFunction& encode_optionDbrdyMaskSet = encoderOf(table, "optionDbrdyMaskSet");
constinit EncoderFunction& encode_optionDbrdyMaskGet = encoderOf(table, "optionDbrdyMaskGet");
constinit EncoderFunction& encode_optionFrequencyGet = encoderOf(table, "optionFrequencyGet");
constinit EncoderFunction& encode_optionTriggerSetupSet = encoderOf(table, "optionTriggerSetupSet");
constinit EncoderFunction& encode_optionTriggerSetupGet = encoderOf(table, "optionTriggerSetupGet");
constinit EncoderFunction& encode_enableGet = encoderOf(table, "enableGet");
constinit EncoderFunction& encode_enableSet = encoderOf(table, "enableSet");
constinit EncoderFunction& encode_headerStatusGet = encoderOf(table, "headerStatusGet");
constinit EncoderFunction& encode_headerStatusClear = encoderOf(table, "headerStatusClear");
constinit DecoderFunction& decode_ioDbreqGet = decoderOf(table, "ioDbreqGet");
constinit DecoderFunction& decode_ioDbreqSet = decoderOf(table, "ioDbreqSet");
constinit DecoderFunction& decode_ioDbrdyGet = decoderOf(table, "ioDbrdyGet");
constinit DecoderFunction& decode_ioDbrdyWait = decoderOf(table, "ioDbrdyWait");
constinit DecoderFunction& decode_ioDbrdySnapshotGet = decoderOf(table, "ioDbrdySnapshotGet");
constinit DecoderFunction& decode_ioDbrdySnapshotClear = decoderOf(table, "ioDbrdySnapshotClear");
constinit DecoderFunction& decode_ioDbreqSourceSnapshotGet = decoderOf(table, "ioDbreqSourceSnapshotGet");
constinit DecoderFunction& decode_ioDbreqSourceSnapshotClear = decoderOf(table, "ioDbreqSourceSnapshotClear");
constinit DecoderFunction& decode_ioResetGet = decoderOf(table, "ioResetGet");
constinit DecoderFunction& decode_ioPwrokGet = decoderOf(table, "ioPwrokGet");
constinit DecoderFunction& decode_ioTriggerSet = decoderOf(table, "ioTriggerSet");
constinit DecoderFunction& decode_ioTriggerGet = decoderOf(table, "ioTriggerGet");
constinit DecoderFunction& decode_optionDbreqOnDbrdySet = decoderOf(table, "optionDbreqOnDbrdySet");
constinit DecoderFunction& decode_optionDbreqOnDbrdyGet = decoderOf(table, "optionDbreqOnDbrdyGet");
constinit DecoderFunction& decode_optionDbreqOnResetSet = decoderOf(table, "optionDbreqOnResetSet");
constinit DecoderFunction& decode_optionDbreqOnResetGet = decoderOf(table, "optionDbreqOnResetGet");
constinit DecoderFunction& decode_optionDbreqOnTriggerSet = decoderOf(table, "optionDbreqOnTriggerSet");
constinit DecoderFunction& decode_optionDbreqOnTriggerGet = decoderOf(table, "optionDbreqOnTriggerGet");
constinit DecoderFunction& decode_optionDbreqPulseWidthSet = decoderOf(table, "optionDbreqPulseWidthSet");
constinit DecoderFunction& decode_optionDbreqPulseWidthGet = decoderOf(table, "optionDbreqPulseWidthGet");
constinit DecoderFunction& decode_optionDbrdyMaskSet = decoderOf(table, "optionDbrdyMaskSet");
constinit DecoderFunction& decode_optionDbrdyMaskGet = decoderOf(table, "optionDbrdyMaskGet");
constinit DecoderFunction& decode_optionFrequencyGet = decoderOf(table, "optionFrequencyGet");
constinit DecoderFunction& decode_optionTriggerSetupSet = decoderOf(table, "optionTriggerSetupSet");
constinit DecoderFunction& decode_optionTriggerSetupGet = decoderOf(table, "optionTriggerSetupGet");
constinit DecoderFunction& decode_enableGet = decoderOf(table, "enableGet");
constinit DecoderFunction& decode_enableSet = decoderOf(table, "enableSet");
constinit DecoderFunction& decode_headerStatusGet = decoderOf(table, "headerStatusGet");
constinit DecoderFunction& decode_headerStatusClear = decoderOf(table, "headerStatusClear");

} // namespace TAVO::TAVOXTranscode::hdt_v1_1
