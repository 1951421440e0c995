#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include <tavo/client/export.h>
#include <tavo/client/hwdebug/hdt_records.h>
#include <tavo/client/object/type_factory.h>
#include <tavo/client/transcode/base_tables.h>
#include <tavo/client/transcode/header_records.h>
#include <tavo/client/transcode/header_status_tables.h>

/// The methods of the "hdt" object, version 1.0, for Object_v1_0::make(), and their tables. Laid out like
/// base_v1_0. The enableGet and enableSet of headerStatus_v1_1 belong to them as well.
namespace TAVO::TAVOXTranscode::hdt_v1_0 {

using headerStatus_v1_1::enableGet, headerStatus_v1_1::enableSet;
/// @name Signals and snapshots
/// @{
inline constexpr Call<None, dto::Header::iGetReply> ioDbreqGet{"ioDbreqGet"};
inline constexpr Call<dto::Header::iSetRequest> ioDbreqSet{"ioDbreqSet"};
inline constexpr Call<None, dto::hdt::ioDbrdyReply> ioDbrdyGet{"ioDbrdyGet"};
inline constexpr Call<None, dto::hdt::ioDbrdySnapshotReply> ioDbrdySnapshotGet{"ioDbrdySnapshotGet"};
inline constexpr Call<> ioDbrdySnapshotClear{"ioDbrdySnapshotClear"};
inline constexpr Call<None, dto::Header::iGetReply> ioResetGet{"ioResetGet"};
inline constexpr Call<None, dto::Header::iGetReply> ioPwrokGet{"ioPwrokGet"};
/// @}
/// @name Options
/// @{
inline constexpr Call<dto::hdt::OptionDbreqOnDbrdySetRequest> optionDbreqOnDbrdySet{"optionDbreqOnDbrdySet"};
inline constexpr Call<None, dto::hdt::OptionDbreqOnDbrdyGetReply> optionDbreqOnDbrdyGet{
    "optionDbreqOnDbrdyGet"};
inline constexpr Call<dto::hdt::OptionDbreqOnResetRequest> optionDbreqOnResetSet{"optionDbreqOnResetSet"};
inline constexpr Call<None, dto::hdt::OptionDbreqOnResetReply> optionDbreqOnResetGet{"optionDbreqOnResetGet"};
inline constexpr Call<dto::hdt::OptionDbreqPulseWidthRequest> optionDbreqPulseWidthSet{
    "optionDbreqPulseWidthSet"};
inline constexpr Call<None, dto::hdt::OptionDbreqPulseWidthReply> optionDbreqPulseWidthGet{
    "optionDbreqPulseWidthGet"};
inline constexpr Call<None, dto::hdt::FrequencyGetReply> frequencyGet{"frequencyGet"};
/// @}

TAVO_API MethodRows rows() noexcept;
using EncoderList = EncoderListOf<rows>;
using DecoderList = DecoderListOf<rows>;

TAVO_API extern EncoderFunction &encode_ioDbreqGet, &encode_ioDbreqSet, &encode_ioDbrdyGet,
    &encode_ioDbrdySnapshotGet, &encode_ioDbrdySnapshotClear, &encode_ioResetGet, &encode_ioPwrokGet,
    &encode_optionDbreqOnDbrdySet, &encode_optionDbreqOnDbrdyGet, &encode_optionDbreqOnResetSet,
    &encode_optionDbreqOnResetGet, &encode_optionDbreqPulseWidthSet, &encode_optionDbreqPulseWidthGet,
    &encode_frequencyGet, &encode_enableGet, &encode_enableSet;
TAVO_API extern DecoderFunction &decode_ioDbreqGet, &decode_ioDbreqSet, &decode_ioDbrdyGet,
    &decode_ioDbrdySnapshotGet, &decode_ioDbrdySnapshotClear, &decode_ioResetGet, &decode_ioPwrokGet,
    &decode_optionDbreqOnDbrdySet, &decode_optionDbreqOnDbrdyGet, &decode_optionDbreqOnResetSet,
    &decode_optionDbreqOnResetGet, &decode_optionDbreqPulseWidthSet, &decode_optionDbreqPulseWidthGet,
    &decode_frequencyGet, &decode_enableGet, &decode_enableSet;

} // namespace TAVO::TAVOXTranscode::hdt_v1_0

/// The methods of the "hdt" object, version 1.1, for Object_v1_0::make(), and their tables. Laid out like
/// base_v1_0. They are those of hdt_v1_0 without frequencyGet, those of the header status, and these.
namespace TAVO::TAVOXTranscode::hdt_v1_1 {

using hdt_v1_0::ioDbreqGet, hdt_v1_0::ioDbreqSet, hdt_v1_0::ioDbrdyGet, hdt_v1_0::ioDbrdySnapshotGet,
    hdt_v1_0::ioDbrdySnapshotClear, hdt_v1_0::ioResetGet, hdt_v1_0::ioPwrokGet,
    hdt_v1_0::optionDbreqOnDbrdySet, hdt_v1_0::optionDbreqOnDbrdyGet, hdt_v1_0::optionDbreqOnResetSet,
    hdt_v1_0::optionDbreqOnResetGet, hdt_v1_0::optionDbreqPulseWidthSet, hdt_v1_0::optionDbreqPulseWidthGet;
using headerStatus_v1_1::enableGet, headerStatus_v1_1::enableSet, headerStatus_v1_1::headerStatusGet,
    headerStatus_v1_1::headerStatusClear;
/// @name Signals and snapshots
/// @{
inline constexpr Call<dto::hdt::ioDbrdyWaitRequest> ioDbrdyWait{"ioDbrdyWait"};
inline constexpr Call<None, dto::hdt::ioDbreqSourceSnapshotReply> ioDbreqSourceSnapshotGet{
    "ioDbreqSourceSnapshotGet"};
inline constexpr Call<> ioDbreqSourceSnapshotClear{"ioDbreqSourceSnapshotClear"};
inline constexpr Call<dto::hdt::ioTriggerSetRequest> ioTriggerSet{"ioTriggerSet"};
inline constexpr Call<dto::hdt::ioTriggerGetRequest, dto::hdt::ioTriggerGetReply> ioTriggerGet{
    "ioTriggerGet"};
/// @}
/// @name Options
/// @{
inline constexpr Call<dto::hdt::OptionDbreqOnTriggerSetRequest> optionDbreqOnTriggerSet{
    "optionDbreqOnTriggerSet"};
inline constexpr Call<None, dto::hdt::OptionDbreqOnTriggerGetReply> optionDbreqOnTriggerGet{
    "optionDbreqOnTriggerGet"};
inline constexpr Call<dto::hdt::OptionDbrdyMaskSetRequest> optionDbrdyMaskSet{"optionDbrdyMaskSet"};
inline constexpr Call<None, dto::hdt::OptionDbrdyMaskGetReply> optionDbrdyMaskGet{"optionDbrdyMaskGet"};
inline constexpr Call<None, dto::hdt::FrequencyGetReply> optionFrequencyGet{"optionFrequencyGet"};
inline constexpr Call<dto::hdt::OptionTriggerSetupSetRequest> optionTriggerSetupSet{"optionTriggerSetupSet"};
inline constexpr Call<dto::hdt::OptionTriggerSetupGetRequest, dto::hdt::OptionTriggerSetupGetReply>
    optionTriggerSetupGet{"optionTriggerSetupGet"};
/// @}

TAVO_API MethodRows rows() noexcept;
using EncoderList = EncoderListOf<rows>;
using DecoderList = DecoderListOf<rows>;

TAVO_API extern EncoderFunction &encode_ioDbreqGet, &encode_ioDbreqSet, &encode_ioDbrdyGet,
    &encode_ioDbrdyWait, &encode_ioDbrdySnapshotGet, &encode_ioDbrdySnapshotClear,
    &encode_ioDbreqSourceSnapshotGet, &encode_ioDbreqSourceSnapshotClear, &encode_ioResetGet,
    &encode_ioPwrokGet, &encode_ioTriggerSet, &encode_ioTriggerGet, &encode_optionDbreqOnDbrdySet,
    &encode_optionDbreqOnDbrdyGet, &encode_optionDbreqOnResetSet, &encode_optionDbreqOnResetGet,
    &encode_optionDbreqOnTriggerSet, &encode_optionDbreqOnTriggerGet, &encode_optionDbreqPulseWidthSet,
    &encode_optionDbreqPulseWidthGet, &encode_optionDbrdyMaskSet, &encode_optionDbrdyMaskGet,
    &encode_optionFrequencyGet, &encode_optionTriggerSetupSet, &encode_optionTriggerSetupGet,
    &encode_enableGet, &encode_enableSet, &encode_headerStatusGet, &encode_headerStatusClear;
TAVO_API extern DecoderFunction &decode_ioDbreqGet, &decode_ioDbreqSet, &decode_ioDbrdyGet,
    &decode_ioDbrdyWait, &decode_ioDbrdySnapshotGet, &decode_ioDbrdySnapshotClear,
    &decode_ioDbreqSourceSnapshotGet, &decode_ioDbreqSourceSnapshotClear, &decode_ioResetGet,
    &decode_ioPwrokGet, &decode_ioTriggerSet, &decode_ioTriggerGet, &decode_optionDbreqOnDbrdySet,
    &decode_optionDbreqOnDbrdyGet, &decode_optionDbreqOnResetSet, &decode_optionDbreqOnResetGet,
    &decode_optionDbreqOnTriggerSet, &decode_optionDbreqOnTriggerGet, &decode_optionDbreqPulseWidthSet,
    &decode_optionDbreqPulseWidthGet, &decode_optionDbrdyMaskSet, &decode_optionDbrdyMaskGet,
    &decode_optionFrequencyGet, &decode_optionTriggerSetupSet, &decode_optionTriggerSetupGet,
    &decode_enableGet, &decode_enableSet, &decode_headerStatusGet, &decode_headerStatusClear;

} // namespace TAVO::TAVOXTranscode::hdt_v1_1

namespace TAVO::HWDebug {

/// Base of the proxies of all versions of an "hdt" object, the debug signals of a target processor. Use it to
/// assert the debug request (DBREQ), to read the debug-ready lines (DBRDY, one for each core), and to watch
/// reset and power-good. It is a child of a "cpuDebug" object.
///
/// @code
/// const auto halted = hdt->getIoDbrdyGetMethod();
/// const auto queue = std::make_shared<TAVO::MulticallQueue>();
/// queue->add(hdt->getIoDbreqSetMethod(true));
/// queue->add(device->getSystem()->getUSleepMethod(100));
/// queue->add(halted);
/// device->multicall(queue);
/// const std::vector<bool> cores = halted->value();
/// @endcode
///
/// Each operation only builds a call, for Device::call; it throws SpecificationError when the device does not
/// list the method. Nothing is checked on this side: the device judges indices and widths and answers with
/// the return code. Units and codes are the device's to define.
class TAVO_API Hdt : public Object_v1_0 {
public:
    ~Hdt() override;

    /// Asks whether the interface is enabled.
    std::shared_ptr<BoundMethod<dto::Header::EnableGetReply>> getEnableGetMethod() const;
    /// Enables or disables the interface.
    std::shared_ptr<Method> getEnableSetMethod(bool enable) const;
    /// Reads the level of the debug request, DBREQ.
    std::shared_ptr<BoundMethod<dto::Header::iGetReply>> getIoDbreqGetMethod() const;
    /// Drives the debug request, DBREQ.
    std::shared_ptr<Method> getIoDbreqSetMethod(bool level) const;
    /// Reads the debug-ready lines, DBRDY. The value has one element for each line.
    std::shared_ptr<BoundMethod<std::vector<bool>>> getIoDbrdyGetMethod() const;
    /// Asks for the snapshot of the debug-ready lines. The value has one element for each line. The spelling
    /// is the published one; the remote method is "ioDbrdySnapshotGet".
    std::shared_ptr<BoundMethod<std::vector<bool>>> getIoDbrdySnapShotGetMethod() const;
    /// Clears the snapshot of the debug-ready lines.
    std::shared_ptr<Method> getIoDbrdySnapshotClearMethod() const;
    /// Reads the level of the reset input.
    std::shared_ptr<BoundMethod<dto::Header::iGetReply>> getIoResetGetMethod() const;
    /// Reads the level of the power-good input.
    std::shared_ptr<BoundMethod<dto::Header::iGetReply>> getIoPwrokGetMethod() const;
    /// Asks whether the device asserts DBREQ by itself on DBRDY.
    std::shared_ptr<BoundMethod<dto::hdt::OptionDbreqOnDbrdyGetReply>> getOptionDbreqOnDbrdyGetMethod() const;
    /// Sets whether the device asserts DBREQ by itself on DBRDY.
    std::shared_ptr<Method> getOptionDbreqOnDbrdySetMethod(bool enable) const;
    /// Asks whether the device asserts DBREQ by itself on reset.
    std::shared_ptr<BoundMethod<dto::hdt::OptionDbreqOnResetReply>> getOptionDbreqOnResetGetMethod() const;
    /// Sets whether the device asserts DBREQ by itself on reset.
    std::shared_ptr<Method> getOptionDbreqOnResetSetMethod(bool enable) const;
    /// Asks how long DBREQ is asserted, in the device's unit.
    std::shared_ptr<BoundMethod<dto::hdt::OptionDbreqPulseWidthReply>>
    getOptionDbreqPulseWidthGetMethod() const;
    /// Sets how long DBREQ is asserted, in the device's unit.
    std::shared_ptr<Method> getOptionDbreqPulseWidthSetMethod(int pulseWidth) const;

protected:
    /// Like the constructor of Object_v1_0.
    Hdt(std::shared_ptr<Device> device, const std::string& name, std::uint32_t instanceId,
        std::shared_ptr<Container> parent, const EncoderList& encoders, const DecoderList& decoders);
};

/// Proxy of an "hdt" object up to version 1.0: the operations of Hdt. Its "frequencyGet" has no operation:
/// make(hdt_v1_0::frequencyGet) calls it.
class TAVO_API Hdt_v1_0 : public Proxy<TAVOXTranscode::hdt_v1_0::rows, Hdt> {
protected:
    using Proxy::Proxy;
};

/// Proxy of an "hdt" object above version 1.0: the operations of Hdt, and also triggers, a mask over the
/// DBRDY lines, the source of a debug request, and the status of the debug headers. What Hdt says of
/// operations applies here too.
class TAVO_API Hdt_v1_1 : public Proxy<TAVOXTranscode::hdt_v1_1::rows, Hdt> {
public:
    /// Asks for a frequency, in the device's unit; which one is the device's to define.
    std::shared_ptr<BoundMethod<dto::hdt::FrequencyGetReply>> getOptionFrequencyGetMethod() const;
    /// Asks for the status of the debug headers. The value is the reply itself; that of other modules is a
    /// HeaderResult.
    std::shared_ptr<BoundMethod<dto::Base::HeaderStatusGetReply>> getHeaderStatusGetMethod() const;
    /// Clears the status of the debug headers.
    std::shared_ptr<Method> getHeaderStatusClearMethod() const;
    /// Asks where the debug request came from: a code, the device's to define.
    std::shared_ptr<BoundMethod<dto::hdt::ioDbreqSourceSnapshotReply>>
    getIoDbreqSourceSnapshotGetMethod() const;
    /// Clears the source of the debug request.
    std::shared_ptr<Method> getIoDbreqSourceSnapshotClearMethod() const;
    /// Reads the level of a trigger.
    std::shared_ptr<BoundMethod<dto::hdt::ioTriggerGetReply>> getIoTriggerGetMethod(int index) const;
    /// Drives a trigger.
    std::shared_ptr<Method> getIoTriggerSetMethod(int index, bool level) const;
    /// Asks for the four values that make the device assert DBREQ by itself on a trigger; they are the
    /// device's to define.
    std::shared_ptr<BoundMethod<dto::hdt::OptionDbreqOnTriggerGetReply>>
    getOptionDbreqOnTriggerGetMethod() const;
    /// Sets whether the device asserts DBREQ by itself on a trigger. What each of the four values means is
    /// the device's to define.
    std::shared_ptr<Method> getOptionDbreqOnTriggerSetMethod(bool flag1, int value1, bool flag2,
                                                             int value2) const;
    /// Asks for the mask over the DBRDY lines. The value holds one byte for each line.
    std::shared_ptr<BoundMethod<dto::hdt::OptionDbrdyMaskGetReply>> getOptionDbrdyMaskGetMethod() const;
    /// Sets the mask over the DBRDY lines, one element for each line. The name without "Method" is the
    /// published one.
    std::shared_ptr<Method> getOptionDbrdyMaskSet(const std::vector<bool>& mask) const;
    /// Asks for the setup of a trigger: seven values, the device's to define.
    std::shared_ptr<BoundMethod<dto::hdt::OptionTriggerSetupGetReply>>
    getOptionTriggerSetupGetMethod(int index) const;
    /// Sets up a trigger. What each of the seven values means is the device's to define.
    std::shared_ptr<Method> getOptionTriggerSetupSetMethod(int index, int value1, int value2, int value3,
                                                           int value4, int value5, int value6,
                                                           int value7) const;
    /// Not implemented. Call "ioDbrdyWait" with make(hdt_v1_1::ioDbrdyWait, lines, timeout), the lines as
    /// bytes.
    /// @throws std::runtime_error "getIoDbrdyWait not supported on kelvor " (with the trailing blank),
    ///         always.
    std::shared_ptr<Method> getIoDbrdyWaitMethod(const std::vector<dto::Header::IoGetReply>& lines,
                                                 int timeout) const;

protected:
    using Proxy::Proxy;
};

/// Serves type "hdt": up to version 1.0 by Hdt_v1_0, every higher version by Hdt_v1_1.
class TAVO_API HdtFactory : public TypeFactory {
public:
    HdtFactory();
};

} // namespace TAVO::HWDebug

namespace TAVO {

/// The lines of a DBRDY reply or snapshot, in the order of its bytes; any byte but 0 is true.
template <>
struct TAVO_API PlainResult<std::vector<bool>> {
    static std::vector<bool> of(const dto::result& outcome);
};

} // namespace TAVO
