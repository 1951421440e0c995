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
    static constexpr auto fields() {
        return std::tuple{Field{"bits", &ShiftRequest::bits}, Field{"data", &ShiftRequest::data}};
    }
};

/// "shiftIR", "shiftDR": the captured bits.
struct TAVO_API ShiftReply : reply_packet {
    std::vector<std::uint8_t> data;
    bool operator==(const ShiftReply&) const = default;
    static constexpr auto fields() { return std::tuple{Field{"data", &ShiftReply::data}}; }
};

/// "tapStateSet"
struct TAVO_API TapStateSetRequest : request_packet {
    std::int32_t state = 0;
    bool operator==(const TapStateSetRequest&) const = default;
    static constexpr auto fields() { return std::tuple{Field{"state", &TapStateSetRequest::state}}; }
};

/// "tapStateGet"
struct TAVO_API TapStateGetReply : reply_packet {
    std::int32_t state = 0;
    bool operator==(const TapStateGetReply&) const = default;
    static constexpr auto fields() { return std::tuple{Field{"state", &TapStateGetReply::state}}; }
};

/// "sleep"
struct TAVO_API SleepRequest : request_packet {
    std::int32_t duration = 0;
    bool flag = false;
    bool operator==(const SleepRequest&) const = default;
    static constexpr auto fields() {
        return std::tuple{Field{"duration", &SleepRequest::duration}, Field{"flag", &SleepRequest::flag}};
    }
};

/// "tckFrequencySet", "optionTckFrequencySet", and the frequency setters of "i2c" and "gpuScan".
struct TAVO_API OptionTckFrequencySetRequest : request_packet {
    std::int32_t frequency = 0;
    bool operator==(const OptionTckFrequencySetRequest&) const = default;
    static constexpr auto fields() {
        return std::tuple{Field{"frequency", &OptionTckFrequencySetRequest::frequency}};
    }
};

/// "terminationStateIRSet", "terminationStateDRSet" of version 1.0.
struct TAVO_API TerminationStateSetRequest : request_packet {
    std::int32_t state = 0;
    bool operator==(const TerminationStateSetRequest&) const = default;
    static constexpr auto fields() { return std::tuple{Field{"state", &TerminationStateSetRequest::state}}; }
};

/// "terminationStateIRGet", "terminationStateDRGet" of version 1.0.
struct TAVO_API TerminationStateGetReply : reply_packet {
    std::int32_t state = 0;
    bool operator==(const TerminationStateGetReply&) const = default;
    static constexpr auto fields() { return std::tuple{Field{"state", &TerminationStateGetReply::state}}; }
};

/// "repeatSet" of version 1.0.
struct TAVO_API RepeatSetRequest : request_packet {
    std::int32_t count = 0;
    bool enable = false;
    bool operator==(const RepeatSetRequest&) const = default;
    static constexpr auto fields() {
        return std::tuple{Field{"count", &RepeatSetRequest::count},
                          Field{"enable", &RepeatSetRequest::enable}};
    }
};

/// "repeatGet" of version 1.0.
struct TAVO_API RepeatGetReply : reply_packet {
    std::int32_t count = 0;
    bool enable = false;
    bool operator==(const RepeatGetReply&) const = default;
    static constexpr auto fields() {
        return std::tuple{Field{"count", &RepeatGetReply::count}, Field{"enable", &RepeatGetReply::enable}};
    }
};

/// "retrySet" of version 1.0: two integers, unlike "repeatSet".
struct TAVO_API RetrySetRequest : request_packet {
    std::int32_t first = 0;
    std::int32_t second = 0;
    bool operator==(const RetrySetRequest&) const = default;
    static constexpr auto fields() {
        return std::tuple{Field{"first", &RetrySetRequest::first}, Field{"second", &RetrySetRequest::second}};
    }
};

/// "retryGet" of version 1.0.
struct TAVO_API RetryGetReply : reply_packet {
    std::int32_t count = 0;
    bool enable = false;
    bool operator==(const RetryGetReply&) const = default;
    static constexpr auto fields() {
        return std::tuple{Field{"count", &RetryGetReply::count}, Field{"enable", &RetryGetReply::enable}};
    }
};

/// "tdoExpectedSet" of version 1.0.
struct TAVO_API TdoExpectedSetRequest : request_packet {
    std::int32_t bits = 0;
    std::vector<std::uint8_t> expected;
    std::vector<std::uint8_t> mask;
    bool operator==(const TdoExpectedSetRequest&) const = default;
    static constexpr auto fields() {
        return std::tuple{Field{"bits", &TdoExpectedSetRequest::bits},
                          Field{"expected", &TdoExpectedSetRequest::expected},
                          Field{"mask", &TdoExpectedSetRequest::mask}};
    }
};

/// "tdoExpectedGet" of version 1.0.
struct TAVO_API TdoExpectedGetReply : reply_packet {
    std::int32_t bits = 0;
    std::vector<std::uint8_t> expected;
    std::vector<std::uint8_t> mask;
    bool operator==(const TdoExpectedGetReply&) const = default;
    static constexpr auto fields() {
        return std::tuple{Field{"bits", &TdoExpectedGetReply::bits},
                          Field{"expected", &TdoExpectedGetReply::expected},
                          Field{"mask", &TdoExpectedGetReply::mask}};
    }
};

/// "optionTerminationStateSet" of version 1.1.
struct TAVO_API OptionTerminationStateSetRequest : request_packet {
    std::int32_t irState = 0;
    std::int32_t drState = 0;
    bool operator==(const OptionTerminationStateSetRequest&) const = default;
    static constexpr auto fields() {
        return std::tuple{Field{"irState", &OptionTerminationStateSetRequest::irState},
                          Field{"drState", &OptionTerminationStateSetRequest::drState}};
    }
};

/// "optionTerminationStateGet" of version 1.1.
struct TAVO_API OptionTerminationStateGetReply : reply_packet {
    std::int32_t irState = 0;
    std::int32_t drState = 0;
    bool operator==(const OptionTerminationStateGetReply&) const = default;
    static constexpr auto fields() {
        return std::tuple{Field{"irState", &OptionTerminationStateGetReply::irState},
                          Field{"drState", &OptionTerminationStateGetReply::drState}};
    }
};

/// "optionRepeatSet" of version 1.1.
struct TAVO_API OptionRepeatSetRequest : request_packet {
    std::int32_t irCount = 0;
    bool irEnable = false;
    std::int32_t drCount = 0;
    bool drEnable = false;
    bool operator==(const OptionRepeatSetRequest&) const = default;
    static constexpr auto fields() {
        return std::tuple{Field{"irCount", &OptionRepeatSetRequest::irCount},
                          Field{"irEnable", &OptionRepeatSetRequest::irEnable},
                          Field{"drCount", &OptionRepeatSetRequest::drCount},
                          Field{"drEnable", &OptionRepeatSetRequest::drEnable}};
    }
};

/// "optionRepeatGet" of version 1.1.
struct TAVO_API OptionRepeatGetReply : reply_packet {
    std::int32_t irCount = 0;
    bool irEnable = false;
    std::int32_t drCount = 0;
    bool drEnable = false;
    bool operator==(const OptionRepeatGetReply&) const = default;
    static constexpr auto fields() {
        return std::tuple{Field{"irCount", &OptionRepeatGetReply::irCount},
                          Field{"irEnable", &OptionRepeatGetReply::irEnable},
                          Field{"drCount", &OptionRepeatGetReply::drCount},
                          Field{"drEnable", &OptionRepeatGetReply::drEnable}};
    }
};

/// "optionRetrySet" of version 1.1.
struct TAVO_API OptionRetrySetRequest : request_packet {
    std::int32_t irCount = 0;
    bool irEnable = false;
    std::int32_t drCount = 0;
    bool drEnable = false;
    bool operator==(const OptionRetrySetRequest&) const = default;
    static constexpr auto fields() {
        return std::tuple{Field{"irCount", &OptionRetrySetRequest::irCount},
                          Field{"irEnable", &OptionRetrySetRequest::irEnable},
                          Field{"drCount", &OptionRetrySetRequest::drCount},
                          Field{"drEnable", &OptionRetrySetRequest::drEnable}};
    }
};

/// "optionRetryGet" of version 1.1.
struct TAVO_API OptionRetryGetReply : reply_packet {
    std::int32_t irCount = 0;
    bool irEnable = false;
    std::int32_t drCount = 0;
    bool drEnable = false;
    bool operator==(const OptionRetryGetReply&) const = default;
    static constexpr auto fields() {
        return std::tuple{Field{"irCount", &OptionRetryGetReply::irCount},
                          Field{"irEnable", &OptionRetryGetReply::irEnable},
                          Field{"drCount", &OptionRetryGetReply::drCount},
                          Field{"drEnable", &OptionRetryGetReply::drEnable}};
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
    static constexpr auto fields() {
        return std::tuple{Field{"irBits", &OptionTdoExpectedSetRequest::irBits},
                          Field{"irExpected", &OptionTdoExpectedSetRequest::irExpected},
                          Field{"irMask", &OptionTdoExpectedSetRequest::irMask},
                          Field{"drBits", &OptionTdoExpectedSetRequest::drBits},
                          Field{"drExpected", &OptionTdoExpectedSetRequest::drExpected},
                          Field{"drMask", &OptionTdoExpectedSetRequest::drMask}};
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
    static constexpr auto fields() {
        return std::tuple{Field{"irBits", &OptionTdoExpectedGetReply::irBits},
                          Field{"irExpected", &OptionTdoExpectedGetReply::irExpected},
                          Field{"irMask", &OptionTdoExpectedGetReply::irMask},
                          Field{"drBits", &OptionTdoExpectedGetReply::drBits},
                          Field{"drExpected", &OptionTdoExpectedGetReply::drExpected},
                          Field{"drMask", &OptionTdoExpectedGetReply::drMask}};
    }
};

/// "optionPrePostTckSet" of version 1.1.
struct TAVO_API OptionPrePostTckSetRequest : request_packet {
    std::int32_t value1 = 0;
    std::int32_t value2 = 0;
    std::int32_t value3 = 0;
    std::int32_t value4 = 0;
    bool operator==(const OptionPrePostTckSetRequest&) const = default;
    static constexpr auto fields() {
        return std::tuple{Field{"value1", &OptionPrePostTckSetRequest::value1},
                          Field{"value2", &OptionPrePostTckSetRequest::value2},
                          Field{"value3", &OptionPrePostTckSetRequest::value3},
                          Field{"value4", &OptionPrePostTckSetRequest::value4}};
    }
};

/// "optionPrePostTckGet" of version 1.1.
struct TAVO_API OptionPrePostTckGetReply : reply_packet {
    std::int32_t value1 = 0;
    std::int32_t value2 = 0;
    std::int32_t value3 = 0;
    std::int32_t value4 = 0;
    bool operator==(const OptionPrePostTckGetReply&) const = default;
    static constexpr auto fields() {
        return std::tuple{Field{"value1", &OptionPrePostTckGetReply::value1},
                          Field{"value2", &OptionPrePostTckGetReply::value2},
                          Field{"value3", &OptionPrePostTckGetReply::value3},
                          Field{"value4", &OptionPrePostTckGetReply::value4}};
    }
};

} // namespace TAVO::dto::Jtag
