#pragma once

#include <cstdint>
#include <tuple>
#include <vector>

#include <tavo/client/transcode/field.h>
#include <tavo/client/transcode/packet.h>

/// Records of the "hdt" object. Units, codes, and what a neutrally named member stands for are the device's
/// to define.
namespace TAVO::dto::hdt {

/// "ioDbrdyGet": one byte for each DBRDY line.
struct TAVO_API ioDbrdyReply : reply_packet {
    std::vector<std::uint8_t> lines;
    bool operator==(const ioDbrdyReply&) const = default;
    static constexpr auto fields() { return std::tuple{Field{"lines", &ioDbrdyReply::lines}}; }
};

/// "ioDbrdySnapshotGet": one byte for each DBRDY line.
struct TAVO_API ioDbrdySnapshotReply : reply_packet {
    std::vector<std::uint8_t> lines;
    bool operator==(const ioDbrdySnapshotReply&) const = default;
    static constexpr auto fields() { return std::tuple{Field{"lines", &ioDbrdySnapshotReply::lines}}; }
};

/// "ioDbrdyWait" of version 1.1.
struct TAVO_API ioDbrdyWaitRequest : request_packet {
    std::vector<std::uint8_t> lines;
    std::int32_t timeout = 0;
    bool operator==(const ioDbrdyWaitRequest&) const = default;
    static constexpr auto fields() {
        return std::tuple{Field{"lines", &ioDbrdyWaitRequest::lines},
                          Field{"timeout", &ioDbrdyWaitRequest::timeout}};
    }
};

/// "ioDbreqSourceSnapshotGet" of version 1.1.
struct TAVO_API ioDbreqSourceSnapshotReply : reply_packet {
    std::int32_t source = 0;
    bool operator==(const ioDbreqSourceSnapshotReply&) const = default;
    static constexpr auto fields() {
        return std::tuple{Field{"source", &ioDbreqSourceSnapshotReply::source}};
    }
};

/// "ioTriggerGet" of version 1.1.
struct TAVO_API ioTriggerGetRequest : request_packet {
    std::int32_t index = 0;
    bool operator==(const ioTriggerGetRequest&) const = default;
    static constexpr auto fields() { return std::tuple{Field{"index", &ioTriggerGetRequest::index}}; }
};

/// "ioTriggerGet" of version 1.1.
struct TAVO_API ioTriggerGetReply : reply_packet {
    bool level = false;
    bool operator==(const ioTriggerGetReply&) const = default;
    static constexpr auto fields() { return std::tuple{Field{"level", &ioTriggerGetReply::level}}; }
};

/// "ioTriggerSet" of version 1.1.
struct TAVO_API ioTriggerSetRequest : request_packet {
    std::int32_t index = 0;
    bool level = false;
    bool operator==(const ioTriggerSetRequest&) const = default;
    static constexpr auto fields() {
        return std::tuple{Field{"index", &ioTriggerSetRequest::index},
                          Field{"level", &ioTriggerSetRequest::level}};
    }
};

/// "optionDbreqOnDbrdySet"
struct TAVO_API OptionDbreqOnDbrdySetRequest : request_packet {
    bool enable = false;
    bool operator==(const OptionDbreqOnDbrdySetRequest&) const = default;
    static constexpr auto fields() {
        return std::tuple{Field{"enable", &OptionDbreqOnDbrdySetRequest::enable}};
    }
};

/// The other name of the same record.
using OptionDbreqOnDbrdyRequest = OptionDbreqOnDbrdySetRequest;

/// "optionDbreqOnDbrdyGet"
struct TAVO_API OptionDbreqOnDbrdyGetReply : reply_packet {
    bool enable = false;
    bool operator==(const OptionDbreqOnDbrdyGetReply&) const = default;
    static constexpr auto fields() {
        return std::tuple{Field{"enable", &OptionDbreqOnDbrdyGetReply::enable}};
    }
};

/// "optionDbreqOnResetSet"
struct TAVO_API OptionDbreqOnResetRequest : request_packet {
    bool enable = false;
    bool operator==(const OptionDbreqOnResetRequest&) const = default;
    static constexpr auto fields() { return std::tuple{Field{"enable", &OptionDbreqOnResetRequest::enable}}; }
};

/// "optionDbreqOnResetGet"
struct TAVO_API OptionDbreqOnResetReply : reply_packet {
    bool enable = false;
    bool operator==(const OptionDbreqOnResetReply&) const = default;
    static constexpr auto fields() { return std::tuple{Field{"enable", &OptionDbreqOnResetReply::enable}}; }
};

/// "optionDbreqOnTriggerSet" of version 1.1.
struct TAVO_API OptionDbreqOnTriggerSetRequest : request_packet {
    bool flag1 = false;
    std::int32_t value1 = 0;
    bool flag2 = false;
    std::int32_t value2 = 0;
    bool operator==(const OptionDbreqOnTriggerSetRequest&) const = default;
    static constexpr auto fields() {
        return std::tuple{Field{"flag1", &OptionDbreqOnTriggerSetRequest::flag1},
                          Field{"value1", &OptionDbreqOnTriggerSetRequest::value1},
                          Field{"flag2", &OptionDbreqOnTriggerSetRequest::flag2},
                          Field{"value2", &OptionDbreqOnTriggerSetRequest::value2}};
    }
};

/// "optionDbreqOnTriggerGet" of version 1.1.
struct TAVO_API OptionDbreqOnTriggerGetReply : reply_packet {
    bool flag1 = false;
    std::int32_t value1 = 0;
    bool flag2 = false;
    std::int32_t value2 = 0;
    bool operator==(const OptionDbreqOnTriggerGetReply&) const = default;
    static constexpr auto fields() {
        return std::tuple{Field{"flag1", &OptionDbreqOnTriggerGetReply::flag1},
                          Field{"value1", &OptionDbreqOnTriggerGetReply::value1},
                          Field{"flag2", &OptionDbreqOnTriggerGetReply::flag2},
                          Field{"value2", &OptionDbreqOnTriggerGetReply::value2}};
    }
};

/// "optionDbreqPulseWidthSet"
struct TAVO_API OptionDbreqPulseWidthRequest : request_packet {
    std::int32_t pulseWidth = 0;
    bool operator==(const OptionDbreqPulseWidthRequest&) const = default;
    static constexpr auto fields() {
        return std::tuple{Field{"pulseWidth", &OptionDbreqPulseWidthRequest::pulseWidth}};
    }
};

/// "optionDbreqPulseWidthGet"
struct TAVO_API OptionDbreqPulseWidthReply : reply_packet {
    std::int32_t pulseWidth = 0;
    bool operator==(const OptionDbreqPulseWidthReply&) const = default;
    static constexpr auto fields() {
        return std::tuple{Field{"pulseWidth", &OptionDbreqPulseWidthReply::pulseWidth}};
    }
};

/// "optionDbrdyMaskSet" of version 1.1: one byte, 0 or 1, for each DBRDY line.
struct TAVO_API OptionDbrdyMaskSetRequest : request_packet {
    std::vector<std::uint8_t> mask;
    bool operator==(const OptionDbrdyMaskSetRequest&) const = default;
    static constexpr auto fields() { return std::tuple{Field{"mask", &OptionDbrdyMaskSetRequest::mask}}; }
};

/// "optionDbrdyMaskGet" of version 1.1.
struct TAVO_API OptionDbrdyMaskGetReply : reply_packet {
    std::vector<std::uint8_t> mask;
    bool operator==(const OptionDbrdyMaskGetReply&) const = default;
    static constexpr auto fields() { return std::tuple{Field{"mask", &OptionDbrdyMaskGetReply::mask}}; }
};

/// "frequencyGet" of version 1.0, "optionFrequencyGet" of version 1.1: the frequency alone, unlike
/// dto::Base::FrequencyGetReply.
struct TAVO_API FrequencyGetReply : reply_packet {
    std::uint64_t frequency = 0;
    bool operator==(const FrequencyGetReply&) const = default;
    static constexpr auto fields() { return std::tuple{Field{"frequency", &FrequencyGetReply::frequency}}; }
};

/// "optionTriggerSetupSet" of version 1.1: the trigger and its setup.
struct TAVO_API OptionTriggerSetupSetRequest : request_packet {
    std::int32_t index = 0;
    std::int32_t value1 = 0;
    std::int32_t value2 = 0;
    std::int32_t value3 = 0;
    std::int32_t value4 = 0;
    std::int32_t value5 = 0;
    std::int32_t value6 = 0;
    std::int32_t value7 = 0;
    bool operator==(const OptionTriggerSetupSetRequest&) const = default;
    static constexpr auto fields() {
        return std::tuple{Field{"index", &OptionTriggerSetupSetRequest::index},
                          Field{"value1", &OptionTriggerSetupSetRequest::value1},
                          Field{"value2", &OptionTriggerSetupSetRequest::value2},
                          Field{"value3", &OptionTriggerSetupSetRequest::value3},
                          Field{"value4", &OptionTriggerSetupSetRequest::value4},
                          Field{"value5", &OptionTriggerSetupSetRequest::value5},
                          Field{"value6", &OptionTriggerSetupSetRequest::value6},
                          Field{"value7", &OptionTriggerSetupSetRequest::value7}};
    }
};

/// "optionTriggerSetupGet" of version 1.1.
struct TAVO_API OptionTriggerSetupGetRequest : request_packet {
    std::int32_t index = 0;
    bool operator==(const OptionTriggerSetupGetRequest&) const = default;
    static constexpr auto fields() {
        return std::tuple{Field{"index", &OptionTriggerSetupGetRequest::index}};
    }
};

/// "optionTriggerSetupGet" of version 1.1: the setup without the index.
struct TAVO_API OptionTriggerSetupGetReply : reply_packet {
    std::int32_t value1 = 0;
    std::int32_t value2 = 0;
    std::int32_t value3 = 0;
    std::int32_t value4 = 0;
    std::int32_t value5 = 0;
    std::int32_t value6 = 0;
    std::int32_t value7 = 0;
    bool operator==(const OptionTriggerSetupGetReply&) const = default;
    static constexpr auto fields() {
        return std::tuple{Field{"value1", &OptionTriggerSetupGetReply::value1},
                          Field{"value2", &OptionTriggerSetupGetReply::value2},
                          Field{"value3", &OptionTriggerSetupGetReply::value3},
                          Field{"value4", &OptionTriggerSetupGetReply::value4},
                          Field{"value5", &OptionTriggerSetupGetReply::value5},
                          Field{"value6", &OptionTriggerSetupGetReply::value6},
                          Field{"value7", &OptionTriggerSetupGetReply::value7}};
    }
};

} // namespace TAVO::dto::hdt
