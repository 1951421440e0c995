#pragma once

#include <cstdint>
#include <tuple>
#include <vector>

#include <tavo/client/transcode/field.h>
#include <tavo/client/transcode/packet.h>

/// Records of the "jtag" object. Bit strings travel as the caller packs them. The numbering of states, the
/// units, and what a neutrally named member stands for are the device's to define.
namespace TAVO::dto::Jtag {

/// "shiftIR", "shiftDR"
struct TAVO_API ShiftRequest : request_packet {
    std::int32_t bits = 0;
    std::vector<std::uint8_t> data;
    bool operator==(const ShiftRequest&) const = default;
    template <class Self = ShiftRequest>
    static constexpr auto fields() {
        return std::tuple{Field{"bits", &Self::bits}, Field{"data", &Self::data}};
    }
};

/// "shiftIR", "shiftDR": the captured bits.
struct TAVO_API ShiftReply : reply_packet {
    std::vector<std::uint8_t> data;
    bool operator==(const ShiftReply&) const = default;
    template <class Self = ShiftReply>
    static constexpr auto fields() {
        return std::tuple{Field{"data", &Self::data}};
    }
};

/// "tapStateSet"
struct TAVO_API TapStateSetRequest : request_packet {
    std::int32_t state = 0;
    bool operator==(const TapStateSetRequest&) const = default;
    template <class Self = TapStateSetRequest>
    static constexpr auto fields() {
        return std::tuple{Field{"state", &Self::state}};
    }
};

/// "tapStateGet"
struct TAVO_API TapStateGetReply : reply_packet {
    std::int32_t state = 0;
    bool operator==(const TapStateGetReply&) const = default;
    template <class Self = TapStateGetReply>
    static constexpr auto fields() {
        return std::tuple{Field{"state", &Self::state}};
    }
};

/// "sleep"
struct TAVO_API SleepRequest : request_packet {
    std::int32_t duration = 0;
    bool flag = false;
    bool operator==(const SleepRequest&) const = default;
    template <class Self = SleepRequest>
    static constexpr auto fields() {
        return std::tuple{Field{"duration", &Self::duration}, Field{"flag", &Self::flag}};
    }
};

/// "tckFrequencySet", "optionTckFrequencySet", and the frequency setters of "i2c" and "gpuScan".
struct TAVO_API OptionTckFrequencySetRequest : request_packet {
    std::int32_t frequency = 0;
    bool operator==(const OptionTckFrequencySetRequest&) const = default;
    template <class Self = OptionTckFrequencySetRequest>
    static constexpr auto fields() {
        return std::tuple{Field{"frequency", &Self::frequency}};
    }
};

/// "terminationStateIRSet", "terminationStateDRSet" of version 1.0.
struct TAVO_API TerminationStateSetRequest : request_packet {
    std::int32_t state = 0;
    bool operator==(const TerminationStateSetRequest&) const = default;
    template <class Self = TerminationStateSetRequest>
    static constexpr auto fields() {
        return std::tuple{Field{"state", &Self::state}};
    }
};

/// "terminationStateIRGet", "terminationStateDRGet" of version 1.0.
struct TAVO_API TerminationStateGetReply : reply_packet {
    std::int32_t state = 0;
    bool operator==(const TerminationStateGetReply&) const = default;
    template <class Self = TerminationStateGetReply>
    static constexpr auto fields() {
        return std::tuple{Field{"state", &Self::state}};
    }
};

/// "repeatSet" of version 1.0.
struct TAVO_API RepeatSetRequest : request_packet {
    std::int32_t count = 0;
    bool enable = false;
    bool operator==(const RepeatSetRequest&) const = default;
    template <class Self = RepeatSetRequest>
    static constexpr auto fields() {
        return std::tuple{Field{"count", &Self::count}, Field{"enable", &Self::enable}};
    }
};

/// "repeatGet" of version 1.0.
struct TAVO_API RepeatGetReply : reply_packet {
    std::int32_t count = 0;
    bool enable = false;
    bool operator==(const RepeatGetReply&) const = default;
    template <class Self = RepeatGetReply>
    static constexpr auto fields() {
        return std::tuple{Field{"count", &Self::count}, Field{"enable", &Self::enable}};
    }
};

/// "retrySet" of version 1.0: two integers, unlike "repeatSet".
struct TAVO_API RetrySetRequest : request_packet {
    std::int32_t first = 0;
    std::int32_t second = 0;
    bool operator==(const RetrySetRequest&) const = default;
    template <class Self = RetrySetRequest>
    static constexpr auto fields() {
        return std::tuple{Field{"first", &Self::first}, Field{"second", &Self::second}};
    }
};

/// "retryGet" of version 1.0.
struct TAVO_API RetryGetReply : reply_packet {
    std::int32_t count = 0;
    bool enable = false;
    bool operator==(const RetryGetReply&) const = default;
    template <class Self = RetryGetReply>
    static constexpr auto fields() {
        return std::tuple{Field{"count", &Self::count}, Field{"enable", &Self::enable}};
    }
};

/// "tdoExpectedSet" of version 1.0.
struct TAVO_API TdoExpectedSetRequest : request_packet {
    std::int32_t bits = 0;
    std::vector<std::uint8_t> expected;
    std::vector<std::uint8_t> mask;
    bool operator==(const TdoExpectedSetRequest&) const = default;
    template <class Self = TdoExpectedSetRequest>
    static constexpr auto fields() {
        return std::tuple{Field{"bits", &Self::bits}, Field{"expected", &Self::expected},
                          Field{"mask", &Self::mask}};
    }
};

/// "tdoExpectedGet" of version 1.0.
struct TAVO_API TdoExpectedGetReply : reply_packet {
    std::int32_t bits = 0;
    std::vector<std::uint8_t> expected;
    std::vector<std::uint8_t> mask;
    bool operator==(const TdoExpectedGetReply&) const = default;
    template <class Self = TdoExpectedGetReply>
    static constexpr auto fields() {
        return std::tuple{Field{"bits", &Self::bits}, Field{"expected", &Self::expected},
                          Field{"mask", &Self::mask}};
    }
};

/// "optionTerminationStateSet" of version 1.1.
struct TAVO_API OptionTerminationStateSetRequest : request_packet {
    std::int32_t irState = 0;
    std::int32_t drState = 0;
    bool operator==(const OptionTerminationStateSetRequest&) const = default;
    template <class Self = OptionTerminationStateSetRequest>
    static constexpr auto fields() {
        return std::tuple{Field{"irState", &Self::irState}, Field{"drState", &Self::drState}};
    }
};

/// "optionTerminationStateGet" of version 1.1.
struct TAVO_API OptionTerminationStateGetReply : reply_packet {
    std::int32_t irState = 0;
    std::int32_t drState = 0;
    bool operator==(const OptionTerminationStateGetReply&) const = default;
    template <class Self = OptionTerminationStateGetReply>
    static constexpr auto fields() {
        return std::tuple{Field{"irState", &Self::irState}, Field{"drState", &Self::drState}};
    }
};

/// "optionRepeatSet" of version 1.1.
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

/// "optionRepeatGet" of version 1.1.
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

/// "optionRetrySet" of version 1.1.
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

/// "optionRetryGet" of version 1.1.
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

/// "optionTdoExpectedSet" of version 1.1.
struct TAVO_API OptionTdoExpectedSetRequest : request_packet {
    std::int32_t irBits = 0;
    std::vector<std::uint8_t> irExpected;
    std::vector<std::uint8_t> irMask;
    std::int32_t drBits = 0;
    std::vector<std::uint8_t> drExpected;
    std::vector<std::uint8_t> drMask;
    bool operator==(const OptionTdoExpectedSetRequest&) const = default;
    template <class Self = OptionTdoExpectedSetRequest>
    static constexpr auto fields() {
        return std::tuple{Field{"irBits", &Self::irBits},         Field{"irExpected", &Self::irExpected},
                          Field{"irMask", &Self::irMask},         Field{"drBits", &Self::drBits},
                          Field{"drExpected", &Self::drExpected}, Field{"drMask", &Self::drMask}};
    }
};

/// "optionTdoExpectedGet" of version 1.1.
struct TAVO_API OptionTdoExpectedGetReply : reply_packet {
    std::int32_t irBits = 0;
    std::vector<std::uint8_t> irExpected;
    std::vector<std::uint8_t> irMask;
    std::int32_t drBits = 0;
    std::vector<std::uint8_t> drExpected;
    std::vector<std::uint8_t> drMask;
    bool operator==(const OptionTdoExpectedGetReply&) const = default;
    template <class Self = OptionTdoExpectedGetReply>
    static constexpr auto fields() {
        return std::tuple{Field{"irBits", &Self::irBits},         Field{"irExpected", &Self::irExpected},
                          Field{"irMask", &Self::irMask},         Field{"drBits", &Self::drBits},
                          Field{"drExpected", &Self::drExpected}, Field{"drMask", &Self::drMask}};
    }
};

/// "optionPrePostTckSet" of version 1.1.
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

/// "optionPrePostTckGet" of version 1.1.
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
