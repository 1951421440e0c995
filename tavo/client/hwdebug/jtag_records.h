#pragma once

#include <cstdint>
#include <tuple>
#include <vector>

#include <tavo/client/transcode/field.h>
#include <tavo/client/transcode/packet.h>

/// Records of the "jtag" object, a JTAG test access port (IEEE 1149.1). "ir" stands for the instruction
/// register, "dr" for the data register. Bit strings travel as the caller packs them: nothing checks or pads
/// them. How bits lie in their bytes, the numbering of states, units, and what a neutrally named member
/// stands for are the device's to define.
namespace TAVO::dto::Jtag {

/// "shiftIR", "shiftDR": the bits to send on TDI.
struct TAVO_API ShiftRequest : request_packet {
    std::int32_t bits = 0;          ///< how many bits are shifted
    std::vector<std::uint8_t> data; ///< packed by the caller
    bool operator==(const ShiftRequest&) const = default;
    template <class Self = ShiftRequest>
    static constexpr auto fields() {
        return std::tuple{Field{"bits", &Self::bits}, Field{"data", &Self::data}};
    }
};

/// "shiftIR", "shiftDR": the bits that came out on TDO.
struct TAVO_API ShiftReply : reply_packet {
    std::vector<std::uint8_t> data; ///< the captured bits
    bool operator==(const ShiftReply&) const = default;
    template <class Self = ShiftReply>
    static constexpr auto fields() {
        return std::tuple{Field{"data", &Self::data}};
    }
};

/// "tapStateSet": where to move the TAP's state machine.
struct TAVO_API TapStateSetRequest : request_packet {
    std::int32_t state = 0; ///< by the device's numbering
    bool operator==(const TapStateSetRequest&) const = default;
    template <class Self = TapStateSetRequest>
    static constexpr auto fields() {
        return std::tuple{Field{"state", &Self::state}};
    }
};

/// "tapStateGet": where the TAP's state machine is.
struct TAVO_API TapStateGetReply : reply_packet {
    std::int32_t state = 0; ///< by the device's numbering
    bool operator==(const TapStateGetReply&) const = default;
    template <class Self = TapStateGetReply>
    static constexpr auto fields() {
        return std::tuple{Field{"state", &Self::state}};
    }
};

/// "sleep": a pause.
struct TAVO_API SleepRequest : request_packet {
    std::int32_t duration = 0; ///< in the device's unit
    bool flag = false;         ///< the device's to define
    bool operator==(const SleepRequest&) const = default;
    template <class Self = SleepRequest>
    static constexpr auto fields() {
        return std::tuple{Field{"duration", &Self::duration}, Field{"flag", &Self::flag}};
    }
};

/// "tckFrequencySet", "optionTckFrequencySet", and the frequency setters of "i2c" and "gpuScan".
struct TAVO_API OptionTckFrequencySetRequest : request_packet {
    std::int32_t frequency = 0; ///< in the device's unit
    bool operator==(const OptionTckFrequencySetRequest&) const = default;
    template <class Self = OptionTckFrequencySetRequest>
    static constexpr auto fields() {
        return std::tuple{Field{"frequency", &Self::frequency}};
    }
};

/// "terminationStateIRSet", "terminationStateDRSet" of version 1.0: the state that a shift ends in.
struct TAVO_API TerminationStateSetRequest : request_packet {
    std::int32_t state = 0; ///< by the device's numbering
    bool operator==(const TerminationStateSetRequest&) const = default;
    template <class Self = TerminationStateSetRequest>
    static constexpr auto fields() {
        return std::tuple{Field{"state", &Self::state}};
    }
};

/// "terminationStateIRGet", "terminationStateDRGet" of version 1.0: the state that a shift ends in.
struct TAVO_API TerminationStateGetReply : reply_packet {
    std::int32_t state = 0; ///< by the device's numbering
    bool operator==(const TerminationStateGetReply&) const = default;
    template <class Self = TerminationStateGetReply>
    static constexpr auto fields() {
        return std::tuple{Field{"state", &Self::state}};
    }
};

/// "repeatSet" of version 1.0: whether and how often the device repeats a shift.
struct TAVO_API RepeatSetRequest : request_packet {
    std::int32_t count = 0;
    bool enable = false;
    bool operator==(const RepeatSetRequest&) const = default;
    template <class Self = RepeatSetRequest>
    static constexpr auto fields() {
        return std::tuple{Field{"count", &Self::count}, Field{"enable", &Self::enable}};
    }
};

/// "repeatGet" of version 1.0: whether and how often the device repeats a shift.
struct TAVO_API RepeatGetReply : reply_packet {
    std::int32_t count = 0;
    bool enable = false;
    bool operator==(const RepeatGetReply&) const = default;
    template <class Self = RepeatGetReply>
    static constexpr auto fields() {
        return std::tuple{Field{"count", &Self::count}, Field{"enable", &Self::enable}};
    }
};

/// "retrySet" of version 1.0: two integers, the device's to define, where "repeatSet" has an integer and a
/// flag.
struct TAVO_API RetrySetRequest : request_packet {
    std::int32_t first = 0;
    std::int32_t second = 0;
    bool operator==(const RetrySetRequest&) const = default;
    template <class Self = RetrySetRequest>
    static constexpr auto fields() {
        return std::tuple{Field{"first", &Self::first}, Field{"second", &Self::second}};
    }
};

/// "retryGet" of version 1.0: whether and how often the device retries a shift.
struct TAVO_API RetryGetReply : reply_packet {
    std::int32_t count = 0;
    bool enable = false;
    bool operator==(const RetryGetReply&) const = default;
    template <class Self = RetryGetReply>
    static constexpr auto fields() {
        return std::tuple{Field{"count", &Self::count}, Field{"enable", &Self::enable}};
    }
};

/// "tdoExpectedSet" of version 1.0: what the device compares captured bits with.
struct TAVO_API TdoExpectedSetRequest : request_packet {
    std::int32_t bits = 0;              ///< the length of the two bit strings
    std::vector<std::uint8_t> expected; ///< the bits that TDO should show
    std::vector<std::uint8_t> mask;     ///< which of them are compared
    bool operator==(const TdoExpectedSetRequest&) const = default;
    template <class Self = TdoExpectedSetRequest>
    static constexpr auto fields() {
        return std::tuple{Field{"bits", &Self::bits}, Field{"expected", &Self::expected},
                          Field{"mask", &Self::mask}};
    }
};

/// "tdoExpectedGet" of version 1.0: what the device compares captured bits with.
struct TAVO_API TdoExpectedGetReply : reply_packet {
    std::int32_t bits = 0;              ///< the length of the two bit strings
    std::vector<std::uint8_t> expected; ///< the bits that TDO should show
    std::vector<std::uint8_t> mask;     ///< which of them are compared
    bool operator==(const TdoExpectedGetReply&) const = default;
    template <class Self = TdoExpectedGetReply>
    static constexpr auto fields() {
        return std::tuple{Field{"bits", &Self::bits}, Field{"expected", &Self::expected},
                          Field{"mask", &Self::mask}};
    }
};

/// "optionTerminationStateSet" of version 1.1: the states that shifts end in.
struct TAVO_API OptionTerminationStateSetRequest : request_packet {
    std::int32_t irState = 0; ///< after a shift through the instruction register
    std::int32_t drState = 0; ///< after a shift through the data register
    bool operator==(const OptionTerminationStateSetRequest&) const = default;
    template <class Self = OptionTerminationStateSetRequest>
    static constexpr auto fields() {
        return std::tuple{Field{"irState", &Self::irState}, Field{"drState", &Self::drState}};
    }
};

/// "optionTerminationStateGet" of version 1.1: the states that shifts end in.
struct TAVO_API OptionTerminationStateGetReply : reply_packet {
    std::int32_t irState = 0; ///< after a shift through the instruction register
    std::int32_t drState = 0; ///< after a shift through the data register
    bool operator==(const OptionTerminationStateGetReply&) const = default;
    template <class Self = OptionTerminationStateGetReply>
    static constexpr auto fields() {
        return std::tuple{Field{"irState", &Self::irState}, Field{"drState", &Self::drState}};
    }
};

/// "optionRepeatSet" of version 1.1: whether and how often the device repeats shifts, for each register.
struct TAVO_API OptionRepeatSetRequest : request_packet {
    std::int32_t irCount = 0;
    bool irEnable = false;
    std::int32_t drCount = 0;
    bool drEnable = false;
    bool operator==(const OptionRepeatSetRequest&) const = default;
    template <class Self = OptionRepeatSetRequest>
    static constexpr auto fields() {
        return std::tuple{Field{"irCount", &Self::irCount}, Field{"irEnable", &Self::irEnable},
                          Field{"drCount", &Self::drCount}, Field{"drEnable", &Self::drEnable}};
    }
};

/// "optionRepeatGet" of version 1.1: whether and how often the device repeats shifts, for each register.
struct TAVO_API OptionRepeatGetReply : reply_packet {
    std::int32_t irCount = 0;
    bool irEnable = false;
    std::int32_t drCount = 0;
    bool drEnable = false;
    bool operator==(const OptionRepeatGetReply&) const = default;
    template <class Self = OptionRepeatGetReply>
    static constexpr auto fields() {
        return std::tuple{Field{"irCount", &Self::irCount}, Field{"irEnable", &Self::irEnable},
                          Field{"drCount", &Self::drCount}, Field{"drEnable", &Self::drEnable}};
    }
};

/// "optionRetrySet" of version 1.1: whether and how often the device retries shifts, for each register.
struct TAVO_API OptionRetrySetRequest : request_packet {
    std::int32_t irCount = 0;
    bool irEnable = false;
    std::int32_t drCount = 0;
    bool drEnable = false;
    bool operator==(const OptionRetrySetRequest&) const = default;
    template <class Self = OptionRetrySetRequest>
    static constexpr auto fields() {
        return std::tuple{Field{"irCount", &Self::irCount}, Field{"irEnable", &Self::irEnable},
                          Field{"drCount", &Self::drCount}, Field{"drEnable", &Self::drEnable}};
    }
};

/// "optionRetryGet" of version 1.1: whether and how often the device retries shifts, for each register.
struct TAVO_API OptionRetryGetReply : reply_packet {
    std::int32_t irCount = 0;
    bool irEnable = false;
    std::int32_t drCount = 0;
    bool drEnable = false;
    bool operator==(const OptionRetryGetReply&) const = default;
    template <class Self = OptionRetryGetReply>
    static constexpr auto fields() {
        return std::tuple{Field{"irCount", &Self::irCount}, Field{"irEnable", &Self::irEnable},
                          Field{"drCount", &Self::drCount}, Field{"drEnable", &Self::drEnable}};
    }
};

/// "optionTdoExpectedSet" of version 1.1: what the device compares captured bits with, for each register.
struct TAVO_API OptionTdoExpectedSetRequest : request_packet {
    std::int32_t irBits = 0;              ///< the length of the two bit strings that follow
    std::vector<std::uint8_t> irExpected; ///< the bits that TDO should show
    std::vector<std::uint8_t> irMask;     ///< which of them are compared
    std::int32_t drBits = 0;              ///< the length of the two bit strings that follow
    std::vector<std::uint8_t> drExpected; ///< the bits that TDO should show
    std::vector<std::uint8_t> drMask;     ///< which of them are compared
    bool operator==(const OptionTdoExpectedSetRequest&) const = default;
    template <class Self = OptionTdoExpectedSetRequest>
    static constexpr auto fields() {
        return std::tuple{Field{"irBits", &Self::irBits},         Field{"irExpected", &Self::irExpected},
                          Field{"irMask", &Self::irMask},         Field{"drBits", &Self::drBits},
                          Field{"drExpected", &Self::drExpected}, Field{"drMask", &Self::drMask}};
    }
};

/// "optionTdoExpectedGet" of version 1.1: what the device compares captured bits with, for each register.
struct TAVO_API OptionTdoExpectedGetReply : reply_packet {
    std::int32_t irBits = 0;              ///< the length of the two bit strings that follow
    std::vector<std::uint8_t> irExpected; ///< the bits that TDO should show
    std::vector<std::uint8_t> irMask;     ///< which of them are compared
    std::int32_t drBits = 0;              ///< the length of the two bit strings that follow
    std::vector<std::uint8_t> drExpected; ///< the bits that TDO should show
    std::vector<std::uint8_t> drMask;     ///< which of them are compared
    bool operator==(const OptionTdoExpectedGetReply&) const = default;
    template <class Self = OptionTdoExpectedGetReply>
    static constexpr auto fields() {
        return std::tuple{Field{"irBits", &Self::irBits},         Field{"irExpected", &Self::irExpected},
                          Field{"irMask", &Self::irMask},         Field{"drBits", &Self::drBits},
                          Field{"drExpected", &Self::drExpected}, Field{"drMask", &Self::drMask}};
    }
};

/// "optionPrePostTckSet" of version 1.1: four values about TCK before and after shifts, the device's to
/// define.
struct TAVO_API OptionPrePostTckSetRequest : request_packet {
    std::int32_t value1 = 0;
    std::int32_t value2 = 0;
    std::int32_t value3 = 0;
    std::int32_t value4 = 0;
    bool operator==(const OptionPrePostTckSetRequest&) const = default;
    template <class Self = OptionPrePostTckSetRequest>
    static constexpr auto fields() {
        return std::tuple{Field{"value1", &Self::value1}, Field{"value2", &Self::value2},
                          Field{"value3", &Self::value3}, Field{"value4", &Self::value4}};
    }
};

/// "optionPrePostTckGet" of version 1.1: four values about TCK before and after shifts, the device's to
/// define.
struct TAVO_API OptionPrePostTckGetReply : reply_packet {
    std::int32_t value1 = 0;
    std::int32_t value2 = 0;
    std::int32_t value3 = 0;
    std::int32_t value4 = 0;
    bool operator==(const OptionPrePostTckGetReply&) const = default;
    template <class Self = OptionPrePostTckGetReply>
    static constexpr auto fields() {
        return std::tuple{Field{"value1", &Self::value1}, Field{"value2", &Self::value2},
                          Field{"value3", &Self::value3}, Field{"value4", &Self::value4}};
    }
};

} // namespace TAVO::dto::Jtag
