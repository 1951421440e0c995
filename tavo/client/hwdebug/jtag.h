#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <tuple>
#include <vector>

#include <tavo/client/export.h>
#include <tavo/client/hwdebug/header_result.h>
#include <tavo/client/hwdebug/jtag_records.h>
#include <tavo/client/object/type_factory.h>
#include <tavo/client/transcode/base_tables.h>
#include <tavo/client/transcode/field.h>
#include <tavo/client/transcode/header_records.h>
#include <tavo/client/transcode/header_status_tables.h>

/// The methods of the "jtag" object, version 1.0, for Object_v1_0::make(), and their tables. Laid out like
/// base_v1_0. The enableGet and enableSet of headerStatus_v1_1 belong to them as well.
namespace TAVO::TAVOXTranscode::jtag_v1_0 {

using headerStatus_v1_1::enableGet, headerStatus_v1_1::enableSet;
/// @name Shifts
/// @{
inline constexpr Call<dto::Jtag::ShiftRequest, dto::Jtag::ShiftReply> shiftIR{"shiftIR"};
inline constexpr Call<dto::Jtag::ShiftRequest, dto::Jtag::ShiftReply> shiftDR{"shiftDR"};
/// @}
/// @name Comparing, retrying and repeating shifts
/// @{
inline constexpr Call<None, dto::Jtag::TdoExpectedGetReply> tdoExpectedGet{"tdoExpectedGet"};
inline constexpr Call<dto::Jtag::TdoExpectedSetRequest> tdoExpectedSet{"tdoExpectedSet"};
inline constexpr Call<None, dto::Jtag::RetryGetReply> retryGet{"retryGet"};
inline constexpr Call<dto::Jtag::RetrySetRequest> retrySet{"retrySet"};
inline constexpr Call<None, dto::Jtag::RepeatGetReply> repeatGet{"repeatGet"};
inline constexpr Call<dto::Jtag::RepeatSetRequest> repeatSet{"repeatSet"};
/// @}
/// @name State machine, clock and pauses
/// @{
inline constexpr Call<None, dto::Jtag::TapStateGetReply> tapStateGet{"tapStateGet"};
inline constexpr Call<dto::Jtag::TapStateSetRequest> tapStateSet{"tapStateSet"};
inline constexpr Call<None, dto::Base::FrequencyGetReply> tckFrequencyGet{"tckFrequencyGet"};
inline constexpr Call<dto::Jtag::OptionTckFrequencySetRequest> tckFrequencySet{"tckFrequencySet"};
inline constexpr Call<dto::Jtag::SleepRequest> sleep{"sleep"};
inline constexpr Call<None, dto::Jtag::TerminationStateGetReply> terminationStateIRGet{
    "terminationStateIRGet"};
inline constexpr Call<dto::Jtag::TerminationStateSetRequest> terminationStateIRSet{"terminationStateIRSet"};
inline constexpr Call<None, dto::Jtag::TerminationStateGetReply> terminationStateDRGet{
    "terminationStateDRGet"};
inline constexpr Call<dto::Jtag::TerminationStateSetRequest> terminationStateDRSet{"terminationStateDRSet"};
/// @}
/// @name Pins
/// @{
inline constexpr Call<None, dto::Header::IoGetReply> ioTrstGet{"ioTrstGet"};
inline constexpr Call<dto::Header::IoSetRequest> ioTrstSet{"ioTrstSet"};
inline constexpr Call<None, dto::Header::IoGetReply> ioTckGet{"ioTckGet"};
inline constexpr Call<dto::Header::IoSetRequest> ioTckSet{"ioTckSet"};
inline constexpr Call<None, dto::Header::IoGetReply> ioTmsGet{"ioTmsGet"};
inline constexpr Call<dto::Header::IoSetRequest> ioTmsSet{"ioTmsSet"};
inline constexpr Call<None, dto::Header::IoGetReply> ioTdiGet{"ioTdiGet"};
inline constexpr Call<dto::Header::IoSetRequest> ioTdiSet{"ioTdiSet"};
inline constexpr Call<None, dto::Header::oGetReply> ioTdoGet{"ioTdoGet"};
/// @}

TAVO_API MethodRows rows() noexcept;
using EncoderList = EncoderListOf<rows>;
using DecoderList = DecoderListOf<rows>;

TAVO_API extern EncoderFunction &encode_shiftIR, &encode_shiftDR, &encode_tdoExpectedGet,
    &encode_tdoExpectedSet, &encode_retryGet, &encode_retrySet, &encode_repeatGet, &encode_repeatSet,
    &encode_tapStateGet, &encode_tapStateSet, &encode_tckFrequencyGet, &encode_tckFrequencySet, &encode_sleep,
    &encode_terminationStateIRGet, &encode_terminationStateIRSet, &encode_terminationStateDRGet,
    &encode_terminationStateDRSet, &encode_ioTrstGet, &encode_ioTrstSet, &encode_ioTckGet, &encode_ioTckSet,
    &encode_ioTmsGet, &encode_ioTmsSet, &encode_ioTdiGet, &encode_ioTdiSet, &encode_ioTdoGet,
    &encode_enableGet, &encode_enableSet;
TAVO_API extern DecoderFunction &decode_shiftIR, &decode_shiftDR, &decode_tdoExpectedGet,
    &decode_tdoExpectedSet, &decode_retryGet, &decode_retrySet, &decode_repeatGet, &decode_repeatSet,
    &decode_tapStateGet, &decode_tapStateSet, &decode_tckFrequencyGet, &decode_tckFrequencySet, &decode_sleep,
    &decode_terminationStateIRGet, &decode_terminationStateIRSet, &decode_terminationStateDRGet,
    &decode_terminationStateDRSet, &decode_ioTrstGet, &decode_ioTrstSet, &decode_ioTckGet, &decode_ioTckSet,
    &decode_ioTmsGet, &decode_ioTmsSet, &decode_ioTdiGet, &decode_ioTdiSet, &decode_ioTdoGet,
    &decode_enableGet, &decode_enableSet;

} // namespace TAVO::TAVOXTranscode::jtag_v1_0

/// The methods of the "jtag" object, version 1.1, for Object_v1_0::make(), and their tables. Laid out like
/// base_v1_0. Shifts, states, pauses and pins are those of jtag_v1_0; the options below concern both
/// registers at once.
namespace TAVO::TAVOXTranscode::jtag_v1_1 {

using headerStatus_v1_1::enableGet, headerStatus_v1_1::enableSet, headerStatus_v1_1::headerStatusGet,
    headerStatus_v1_1::headerStatusClear;
using jtag_v1_0::shiftIR, jtag_v1_0::shiftDR, jtag_v1_0::tapStateGet, jtag_v1_0::tapStateSet,
    jtag_v1_0::sleep, jtag_v1_0::ioTrstGet, jtag_v1_0::ioTrstSet, jtag_v1_0::ioTckGet, jtag_v1_0::ioTckSet,
    jtag_v1_0::ioTmsGet, jtag_v1_0::ioTmsSet, jtag_v1_0::ioTdiGet, jtag_v1_0::ioTdiSet, jtag_v1_0::ioTdoGet;
/// @name Options
/// @{
inline constexpr Call<None, dto::Jtag::OptionTdoExpectedGetReply> optionTdoExpectedGet{
    "optionTdoExpectedGet"};
inline constexpr Call<dto::Jtag::OptionTdoExpectedSetRequest> optionTdoExpectedSet{"optionTdoExpectedSet"};
inline constexpr Call<None, dto::Jtag::OptionRetryGetReply> optionRetryGet{"optionRetryGet"};
inline constexpr Call<dto::Jtag::OptionRetrySetRequest> optionRetrySet{"optionRetrySet"};
inline constexpr Call<None, dto::Jtag::OptionRepeatGetReply> optionRepeatGet{"optionRepeatGet"};
inline constexpr Call<dto::Jtag::OptionRepeatSetRequest> optionRepeatSet{"optionRepeatSet"};
inline constexpr Call<None, dto::Base::FrequencyGetReply> optionTckFrequencyGet{"optionTckFrequencyGet"};
inline constexpr Call<dto::Jtag::OptionTckFrequencySetRequest> optionTckFrequencySet{"optionTckFrequencySet"};
inline constexpr Call<None, dto::Jtag::OptionTerminationStateGetReply> optionTerminationStateGet{
    "optionTerminationStateGet"};
inline constexpr Call<dto::Jtag::OptionTerminationStateSetRequest> optionTerminationStateSet{
    "optionTerminationStateSet"};
inline constexpr Call<None, dto::Jtag::OptionPrePostTckGetReply> optionPrePostTckGet{"optionPrePostTckGet"};
inline constexpr Call<dto::Jtag::OptionPrePostTckSetRequest> optionPrePostTckSet{"optionPrePostTckSet"};
/// @}

TAVO_API MethodRows rows() noexcept;
using EncoderList = EncoderListOf<rows>;
using DecoderList = DecoderListOf<rows>;

TAVO_API extern EncoderFunction &encode_shiftIR, &encode_shiftDR, &encode_tapStateGet, &encode_tapStateSet,
    &encode_sleep, &encode_optionTdoExpectedGet, &encode_optionTdoExpectedSet, &encode_optionRetryGet,
    &encode_optionRetrySet, &encode_optionRepeatGet, &encode_optionRepeatSet, &encode_optionTckFrequencyGet,
    &encode_optionTckFrequencySet, &encode_optionTerminationStateGet, &encode_optionTerminationStateSet,
    &encode_optionPrePostTckGet, &encode_optionPrePostTckSet, &encode_ioTrstGet, &encode_ioTrstSet,
    &encode_ioTckGet, &encode_ioTckSet, &encode_ioTmsGet, &encode_ioTmsSet, &encode_ioTdiGet,
    &encode_ioTdiSet, &encode_ioTdoGet, &encode_enableGet, &encode_enableSet, &encode_headerStatusGet,
    &encode_headerStatusClear;
TAVO_API extern DecoderFunction &decode_shiftIR, &decode_shiftDR, &decode_tapStateGet, &decode_tapStateSet,
    &decode_sleep, &decode_optionTdoExpectedGet, &decode_optionTdoExpectedSet, &decode_optionRetryGet,
    &decode_optionRetrySet, &decode_optionRepeatGet, &decode_optionRepeatSet, &decode_optionTckFrequencyGet,
    &decode_optionTckFrequencySet, &decode_optionTerminationStateGet, &decode_optionTerminationStateSet,
    &decode_optionPrePostTckGet, &decode_optionPrePostTckSet, &decode_ioTrstGet, &decode_ioTrstSet,
    &decode_ioTckGet, &decode_ioTckSet, &decode_ioTmsGet, &decode_ioTmsSet, &decode_ioTdiGet,
    &decode_ioTdiSet, &decode_ioTdoGet, &decode_enableGet, &decode_enableSet, &decode_headerStatusGet,
    &decode_headerStatusClear;

} // namespace TAVO::TAVOXTranscode::jtag_v1_1

namespace TAVO::HWDebug {

/// What the option getters of Jtag_v1_1 yield. BoundMethod::value() makes them from the replies.
namespace Jtag_v1_1_Structs {

/// Whether and how often the device repeats shifts, through the instruction register (ir) and the data
/// register (dr).
struct TAVO_API RepeatGet {
    RepeatGet() = default;
    RepeatGet(const dto::Jtag::OptionRepeatGetReply& reply);
    /// Converts the reply in a result.
    /// @throws std::runtime_error "Can't convert Result to desire type" when the result holds another record.
    explicit RepeatGet(const dto::result& outcome);

    std::int32_t irCount = 0;
    bool irEnable = false;
    std::int32_t drCount = 0;
    bool drEnable = false;
    bool operator==(const RepeatGet&) const = default;
    template <class Self = RepeatGet>
    static constexpr auto fields() {
        return std::tuple{dto::Field{"irCount", &Self::irCount}, dto::Field{"irEnable", &Self::irEnable},
                          dto::Field{"drCount", &Self::drCount}, dto::Field{"drEnable", &Self::drEnable}};
    }
};

/// Whether and how often the device retries shifts, through the instruction register (ir) and the data
/// register (dr).
struct TAVO_API RetryGet {
    RetryGet() = default;
    RetryGet(const dto::Jtag::OptionRetryGetReply& reply);
    /// Converts the reply in a result.
    /// @throws std::runtime_error "Can't convert Result to desire type" when the result holds another record.
    explicit RetryGet(const dto::result& outcome);

    std::int32_t irCount = 0;
    bool irEnable = false;
    std::int32_t drCount = 0;
    bool drEnable = false;
    bool operator==(const RetryGet&) const = default;
    template <class Self = RetryGet>
    static constexpr auto fields() {
        return std::tuple{dto::Field{"irCount", &Self::irCount}, dto::Field{"irEnable", &Self::irEnable},
                          dto::Field{"drCount", &Self::drCount}, dto::Field{"drEnable", &Self::drEnable}};
    }
};

/// What the device compares captured bits with, for the instruction register (ir) and the data register (dr).
struct TAVO_API TdoExpectedGet {
    TdoExpectedGet() = default;
    TdoExpectedGet(const dto::Jtag::OptionTdoExpectedGetReply& reply);
    /// Converts the reply in a result.
    /// @throws std::runtime_error "Can't convert Result to desire type" when the result holds another record.
    explicit TdoExpectedGet(const dto::result& outcome);

    std::int32_t irBits = 0;              ///< the length of the two bit strings that follow
    std::vector<std::uint8_t> irExpected; ///< the bits that TDO should show
    std::vector<std::uint8_t> irMask;     ///< which of them are compared
    std::int32_t drBits = 0;              ///< the length of the two bit strings that follow
    std::vector<std::uint8_t> drExpected; ///< the bits that TDO should show
    std::vector<std::uint8_t> drMask;     ///< which of them are compared
    bool operator==(const TdoExpectedGet&) const = default;
    template <class Self = TdoExpectedGet>
    static constexpr auto fields() {
        return std::tuple{
            dto::Field{"irBits", &Self::irBits},         dto::Field{"irExpected", &Self::irExpected},
            dto::Field{"irMask", &Self::irMask},         dto::Field{"drBits", &Self::drBits},
            dto::Field{"drExpected", &Self::drExpected}, dto::Field{"drMask", &Self::drMask}};
    }
};

} // namespace Jtag_v1_1_Structs

/// Proxy of a "jtag" object of version 1.0, a JTAG test access port (TAP, IEEE 1149.1). It has only the
/// operations of every object: build its calls with make() and the methods of jtag_v1_0.
///
/// @code
/// namespace calls = TAVO::TAVOXTranscode::jtag_v1_0;
/// const auto captured = device->value(jtag->make(calls::shiftDR, 32, bytes)).data;
/// @endcode
class TAVO_API Jtag_v1_0 : public Proxy<TAVOXTranscode::jtag_v1_0::rows> {
protected:
    using Proxy::Proxy;
};

/// Proxy of a "jtag" object of any version but 1.0, a JTAG test access port (TAP, IEEE 1149.1). Use it to
/// shift through the instruction register (IR) and data register (DR) of a chain, to move the TAP's state
/// machine, and to read and drive single pins. It is a child of "cpuDebug", "gpuDebug" and "csJtag" objects.
///
/// @code
/// const auto idcode = jtag->getShiftDRMethod(32, {0, 0, 0, 0});
/// const auto queue = std::make_shared<TAVO::MulticallQueue>();
/// queue->add(jtag->getTapStateSetMethod(0)); // Test-Logic-Reset, as this device numbers it
/// queue->add(idcode);
/// device->multicall(queue);
/// const auto captured = idcode->value().data;
/// @endcode
///
/// Each operation only builds a call, for Device::call; it throws SpecificationError when the device does not
/// list the method. Nothing is checked on this side: the device judges counts, states and lengths and answers
/// with the return code. How bits lie in their bytes, the numbering of states, units, and the meaning of
/// flags are the device's to define.
class TAVO_API Jtag_v1_1 : public Proxy<TAVOXTranscode::jtag_v1_1::rows> {
public:
    /// Shifts through the instruction register (Shift-IR). The value holds the bits that came out on TDO.
    /// @param bits how many bits to shift; 0 is sent like any other number.
    /// @param data the bits to send on TDI, packed as the device expects them; move a large block in.
    std::shared_ptr<BoundMethod<dto::Jtag::ShiftReply>>
    getShiftIRMethod(int bits, std::vector<std::uint8_t> data) const;
    /// The same through the data register (Shift-DR).
    std::shared_ptr<BoundMethod<dto::Jtag::ShiftReply>>
    getShiftDRMethod(int bits, std::vector<std::uint8_t> data) const;
    /// Asks for the current state of the TAP's state machine, by the device's numbering.
    std::shared_ptr<BoundMethod<dto::Jtag::TapStateGetReply>> tapStateGetMethod() const;
    /// Moves the TAP's state machine to a state, by the device's numbering.
    std::shared_ptr<Method> getTapStateSetMethod(int state) const;
    /// Makes the device pause. The unit of `duration` and the meaning of `flag` are the device's to define.
    std::shared_ptr<Method> getSleepMethod(int duration, bool flag) const;
    /// Asks for the frequency of TCK, in the device's unit, and a second integer, the device's to define.
    std::shared_ptr<BoundMethod<dto::Base::FrequencyGetReply>> getOptionTckFrequencyGetMethod() const;
    /// Sets the frequency of TCK, in the device's unit.
    std::shared_ptr<Method> getOptionTckFrequencySetMethod(int frequency) const;
    /// Asks what shifts are compared with.
    std::shared_ptr<BoundMethod<Jtag_v1_1_Structs::TdoExpectedGet>> getOptionTdoExpectedGetMethod() const;
    /// Makes the device compare what comes out on TDO with the expected bits, for each register.
    /// @param irBits, drBits the length of the expected bits and of the mask.
    /// @param irExpected, drExpected the bits that TDO should show.
    /// @param irMask, drMask which of them to compare.
    std::shared_ptr<Method> getOptionTdoExpectedSetMethod(int irBits,
                                                          const std::vector<std::uint8_t>& irExpected,
                                                          const std::vector<std::uint8_t>& irMask, int drBits,
                                                          const std::vector<std::uint8_t>& drExpected,
                                                          const std::vector<std::uint8_t>& drMask) const;
    /// Asks whether and how often the device retries shifts.
    std::shared_ptr<BoundMethod<Jtag_v1_1_Structs::RetryGet>> getOptionRetryGetMethod() const;
    /// Sets whether and how often the device retries shifts, for each register.
    std::shared_ptr<Method> getOptionRetrySetMethod(int irCount, bool irEnable, int drCount,
                                                    bool drEnable) const;
    /// Asks whether and how often the device repeats shifts.
    std::shared_ptr<BoundMethod<Jtag_v1_1_Structs::RepeatGet>> getOptionRepeatGetMethod() const;
    /// Sets whether and how often the device repeats shifts, for each register.
    std::shared_ptr<Method> getOptionRepeatSetMethod(int irCount, bool irEnable, int drCount,
                                                     bool drEnable) const;
    /// Asks for the states that shifts end in.
    std::shared_ptr<BoundMethod<dto::Jtag::OptionTerminationStateGetReply>>
    getOptionTerminationStateGetMethod() const;
    /// Sets the states that shifts through the instruction register and the data register end in.
    std::shared_ptr<Method> getOptionTerminationStateSetMethod(int ir, int dr) const;
    /// Asks for the four values about TCK before and after shifts, the device's to define.
    std::shared_ptr<BoundMethod<dto::Jtag::OptionPrePostTckGetReply>> getOptionPrePostTckGetMethod() const;
    /// Sets the four values about TCK before and after shifts, the device's to define.
    std::shared_ptr<Method> getOptionPrePostTckSetMethod(int value1, int value2, int value3,
                                                         int value4) const;
    /// Reads the pin TRST (test reset). The value holds two flags, the device's to define.
    std::shared_ptr<BoundMethod<dto::Header::IoGetReply>> getIoTrstGetMethod() const;
    /// The same for TCK (test clock).
    std::shared_ptr<BoundMethod<dto::Header::IoGetReply>> getIoTckGetMethod() const;
    /// The same for TMS (test mode select).
    std::shared_ptr<BoundMethod<dto::Header::IoGetReply>> getIoTmsGetMethod() const;
    /// The same for TDI (test data in).
    std::shared_ptr<BoundMethod<dto::Header::IoGetReply>> getIoTdiGetMethod() const;
    /// Reads the level of TDO (test data out), the output of the chain.
    std::shared_ptr<BoundMethod<dto::Header::oGetReply>> getIoTdoGetMethod() const;
    /// Drives the pin TRST. The two flags are the device's to define, in the order of getIoTrstGetMethod().
    std::shared_ptr<Method> getIoTrstSetMethod(bool first, bool second) const;
    /// The same for TCK.
    std::shared_ptr<Method> getIoTckSetMethod(bool first, bool second) const;
    /// The same for TMS.
    std::shared_ptr<Method> getIoTmsSetMethod(bool first, bool second) const;
    /// The same for TDI.
    std::shared_ptr<Method> getIoTdiSetMethod(bool first, bool second) const;
    /// Asks whether the test access port is enabled.
    std::shared_ptr<BoundMethod<dto::Header::EnableGetReply>> getEnableGetMethod() const;
    /// Enables or disables the test access port.
    std::shared_ptr<Method> getEnableSetMethod(bool enable) const;
    /// Asks for the status of the debug headers. The spelling is the published one. "headerStatusClear" has
    /// no operation here: make(jtag_v1_1::headerStatusClear) calls it.
    std::shared_ptr<BoundMethod<HeaderResult>> getheaderStatusGetMethod() const;

protected:
    using Proxy::Proxy;
};

/// Serves type "jtag": version 1.0 by Jtag_v1_0, every other version by Jtag_v1_1.
class TAVO_API JtagFactory : public TypeFactory {
public:
    JtagFactory();
};

} // namespace TAVO::HWDebug
