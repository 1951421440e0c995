#pragma once

#include <cstdint>
#include <tuple>
#include <vector>

#include <tavo/client/transcode/field.h>
#include <tavo/client/transcode/packet.h>

/// Records of the "hdt" object, the debug signals of a target processor: the debug request (DBREQ), one
/// debug-ready line for each core (DBRDY), reset, power-good and triggers. Units, codes, and what a neutrally
/// named member stands for are the device's to define.
namespace TAVO::dto::hdt {

/// "ioDbrdyGet": the DBRDY lines as they are.
struct TAVO_API ioDbrdyReply : reply_packet {
    std::vector<std::uint8_t> lines; ///< one byte for each line; any but 0 is true
    bool operator==(const ioDbrdyReply&) const = default;
    template <class Self = ioDbrdyReply>
    static constexpr auto fields() {
        return std::tuple{Field{"lines", &Self::lines}};
    }
};

/// "ioDbrdySnapshotGet": the snapshot of the DBRDY lines.
struct TAVO_API ioDbrdySnapshotReply : reply_packet {
    std::vector<std::uint8_t> lines; ///< one byte for each line; any but 0 is true
    bool operator==(const ioDbrdySnapshotReply&) const = default;
    template <class Self = ioDbrdySnapshotReply>
    static constexpr auto fields() {
        return std::tuple{Field{"lines", &Self::lines}};
    }
};

/// "ioDbrdyWait" of version 1.1: which DBRDY lines to wait for, and how long.
struct TAVO_API ioDbrdyWaitRequest : request_packet {
    std::vector<std::uint8_t> lines; ///< one byte for each line
    std::int32_t timeout = 0;        ///< in the device's unit
    bool operator==(const ioDbrdyWaitRequest&) const = default;
    template <class Self = ioDbrdyWaitRequest>
    static constexpr auto fields() {
        return std::tuple{Field{"lines", &Self::lines}, Field{"timeout", &Self::timeout}};
    }
};

/// "ioDbreqSourceSnapshotGet" of version 1.1: where the debug request came from.
struct TAVO_API ioDbreqSourceSnapshotReply : reply_packet {
    std::int32_t source = 0; ///< a code, the device's to define
    bool operator==(const ioDbreqSourceSnapshotReply&) const = default;
    template <class Self = ioDbreqSourceSnapshotReply>
    static constexpr auto fields() {
        return std::tuple{Field{"source", &Self::source}};
    }
};

/// "ioTriggerGet" of version 1.1.
struct TAVO_API ioTriggerGetRequest : request_packet {
    std::int32_t index = 0; ///< which trigger
    bool operator==(const ioTriggerGetRequest&) const = default;
    template <class Self = ioTriggerGetRequest>
    static constexpr auto fields() {
        return std::tuple{Field{"index", &Self::index}};
    }
};

/// "ioTriggerGet" of version 1.1: the level of the trigger.
struct TAVO_API ioTriggerGetReply : reply_packet {
    bool level = false;
    bool operator==(const ioTriggerGetReply&) const = default;
    template <class Self = ioTriggerGetReply>
    static constexpr auto fields() {
        return std::tuple{Field{"level", &Self::level}};
    }
};

/// "ioTriggerSet" of version 1.1: the level to give a trigger.
struct TAVO_API ioTriggerSetRequest : request_packet {
    std::int32_t index = 0; ///< which trigger
    bool level = false;
    bool operator==(const ioTriggerSetRequest&) const = default;
    template <class Self = ioTriggerSetRequest>
    static constexpr auto fields() {
        return std::tuple{Field{"index", &Self::index}, Field{"level", &Self::level}};
    }
};

/// "optionDbreqOnDbrdySet": whether the device asserts DBREQ by itself on DBRDY.
struct TAVO_API OptionDbreqOnDbrdySetRequest : request_packet {
    bool enable = false;
    bool operator==(const OptionDbreqOnDbrdySetRequest&) const = default;
    template <class Self = OptionDbreqOnDbrdySetRequest>
    static constexpr auto fields() {
        return std::tuple{Field{"enable", &Self::enable}};
    }
};

/// Another name of the same record.
using OptionDbreqOnDbrdyRequest = OptionDbreqOnDbrdySetRequest;

/// "optionDbreqOnDbrdyGet": whether the device asserts DBREQ by itself on DBRDY.
struct TAVO_API OptionDbreqOnDbrdyGetReply : reply_packet {
    bool enable = false;
    bool operator==(const OptionDbreqOnDbrdyGetReply&) const = default;
    template <class Self = OptionDbreqOnDbrdyGetReply>
    static constexpr auto fields() {
        return std::tuple{Field{"enable", &Self::enable}};
    }
};

/// "optionDbreqOnResetSet": whether the device asserts DBREQ by itself on reset.
struct TAVO_API OptionDbreqOnResetRequest : request_packet {
    bool enable = false;
    bool operator==(const OptionDbreqOnResetRequest&) const = default;
    template <class Self = OptionDbreqOnResetRequest>
    static constexpr auto fields() {
        return std::tuple{Field{"enable", &Self::enable}};
    }
};

/// "optionDbreqOnResetGet": whether the device asserts DBREQ by itself on reset.
struct TAVO_API OptionDbreqOnResetReply : reply_packet {
    bool enable = false;
    bool operator==(const OptionDbreqOnResetReply&) const = default;
    template <class Self = OptionDbreqOnResetReply>
    static constexpr auto fields() {
        return std::tuple{Field{"enable", &Self::enable}};
    }
};

/// "optionDbreqOnTriggerSet" of version 1.1: whether the device asserts DBREQ by itself on a trigger: four
/// values, the device's to define.
struct TAVO_API OptionDbreqOnTriggerSetRequest : request_packet {
    bool flag1 = false;
    std::int32_t value1 = 0;
    bool flag2 = false;
    std::int32_t value2 = 0;
    bool operator==(const OptionDbreqOnTriggerSetRequest&) const = default;
    template <class Self = OptionDbreqOnTriggerSetRequest>
    static constexpr auto fields() {
        return std::tuple{Field{"flag1", &Self::flag1}, Field{"value1", &Self::value1},
                          Field{"flag2", &Self::flag2}, Field{"value2", &Self::value2}};
    }
};

/// "optionDbreqOnTriggerGet" of version 1.1: the four values that "optionDbreqOnTriggerSet" takes.
struct TAVO_API OptionDbreqOnTriggerGetReply : reply_packet {
    bool flag1 = false;
    std::int32_t value1 = 0;
    bool flag2 = false;
    std::int32_t value2 = 0;
    bool operator==(const OptionDbreqOnTriggerGetReply&) const = default;
    template <class Self = OptionDbreqOnTriggerGetReply>
    static constexpr auto fields() {
        return std::tuple{Field{"flag1", &Self::flag1}, Field{"value1", &Self::value1},
                          Field{"flag2", &Self::flag2}, Field{"value2", &Self::value2}};
    }
};

/// "optionDbreqPulseWidthSet": how long DBREQ is asserted.
struct TAVO_API OptionDbreqPulseWidthRequest : request_packet {
    std::int32_t pulseWidth = 0; ///< in the device's unit
    bool operator==(const OptionDbreqPulseWidthRequest&) const = default;
    template <class Self = OptionDbreqPulseWidthRequest>
    static constexpr auto fields() {
        return std::tuple{Field{"pulseWidth", &Self::pulseWidth}};
    }
};

/// "optionDbreqPulseWidthGet": how long DBREQ is asserted.
struct TAVO_API OptionDbreqPulseWidthReply : reply_packet {
    std::int32_t pulseWidth = 0; ///< in the device's unit
    bool operator==(const OptionDbreqPulseWidthReply&) const = default;
    template <class Self = OptionDbreqPulseWidthReply>
    static constexpr auto fields() {
        return std::tuple{Field{"pulseWidth", &Self::pulseWidth}};
    }
};

/// "optionDbrdyMaskSet" of version 1.1: a mask over the DBRDY lines.
struct TAVO_API OptionDbrdyMaskSetRequest : request_packet {
    std::vector<std::uint8_t> mask; ///< one byte, 0 or 1, for each line
    bool operator==(const OptionDbrdyMaskSetRequest&) const = default;
    template <class Self = OptionDbrdyMaskSetRequest>
    static constexpr auto fields() {
        return std::tuple{Field{"mask", &Self::mask}};
    }
};

/// "optionDbrdyMaskGet" of version 1.1: the mask over the DBRDY lines.
struct TAVO_API OptionDbrdyMaskGetReply : reply_packet {
    std::vector<std::uint8_t> mask; ///< one byte for each line
    bool operator==(const OptionDbrdyMaskGetReply&) const = default;
    template <class Self = OptionDbrdyMaskGetReply>
    static constexpr auto fields() {
        return std::tuple{Field{"mask", &Self::mask}};
    }
};

/// "frequencyGet" of version 1.0, "optionFrequencyGet" of version 1.1: a frequency. Unlike
/// dto::Base::FrequencyGetReply it has no second integer.
struct TAVO_API FrequencyGetReply : reply_packet {
    std::uint64_t frequency = 0; ///< in the device's unit
    bool operator==(const FrequencyGetReply&) const = default;
    template <class Self = FrequencyGetReply>
    static constexpr auto fields() {
        return std::tuple{Field{"frequency", &Self::frequency}};
    }
};

/// "optionTriggerSetupSet" of version 1.1: a trigger, and the seven values of its setup, the device's to
/// define.
struct TAVO_API OptionTriggerSetupSetRequest : request_packet {
    std::int32_t index = 0; ///< which trigger
    std::int32_t value1 = 0;
    std::int32_t value2 = 0;
    std::int32_t value3 = 0;
    std::int32_t value4 = 0;
    std::int32_t value5 = 0;
    std::int32_t value6 = 0;
    std::int32_t value7 = 0;
    bool operator==(const OptionTriggerSetupSetRequest&) const = default;
    template <class Self = OptionTriggerSetupSetRequest>
    static constexpr auto fields() {
        return std::tuple{Field{"index", &Self::index},   Field{"value1", &Self::value1},
                          Field{"value2", &Self::value2}, Field{"value3", &Self::value3},
                          Field{"value4", &Self::value4}, Field{"value5", &Self::value5},
                          Field{"value6", &Self::value6}, Field{"value7", &Self::value7}};
    }
};

/// "optionTriggerSetupGet" of version 1.1.
struct TAVO_API OptionTriggerSetupGetRequest : request_packet {
    std::int32_t index = 0; ///< which trigger
    bool operator==(const OptionTriggerSetupGetRequest&) const = default;
    template <class Self = OptionTriggerSetupGetRequest>
    static constexpr auto fields() {
        return std::tuple{Field{"index", &Self::index}};
    }
};

/// "optionTriggerSetupGet" of version 1.1: the seven values of the setup, without the index.
struct TAVO_API OptionTriggerSetupGetReply : reply_packet {
    std::int32_t value1 = 0;
    std::int32_t value2 = 0;
    std::int32_t value3 = 0;
    std::int32_t value4 = 0;
    std::int32_t value5 = 0;
    std::int32_t value6 = 0;
    std::int32_t value7 = 0;
    bool operator==(const OptionTriggerSetupGetReply&) const = default;
    template <class Self = OptionTriggerSetupGetReply>
    static constexpr auto fields() {
        return std::tuple{Field{"value1", &Self::value1}, Field{"value2", &Self::value2},
                          Field{"value3", &Self::value3}, Field{"value4", &Self::value4},
                          Field{"value5", &Self::value5}, Field{"value6", &Self::value6},
                          Field{"value7", &Self::value7}};
    }
};

} // namespace TAVO::dto::hdt
