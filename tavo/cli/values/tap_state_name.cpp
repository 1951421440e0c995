#include <tavo/cli/values/tap_state_name.h>

#include <iterator>
#include <limits>
#include <stdexcept>

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <tavo/cli/values/whole_number.h>

namespace TAVO::cli {

namespace {

constexpr std::string_view names[] = {
    "Test-Logic-Reset", "Run-Test/Idle", "Select-DR-Scan", "Capture-DR",     "Shift-DR",   "Exit1-DR",
    "Pause-DR",         "Exit2-DR",      "Update-DR",      "Select-IR-Scan", "Capture-IR", "Shift-IR",
    "Exit1-IR",         "Pause-IR",      "Exit2-IR",       "Update-IR",
};

std::string essence(std::string_view name) {
    std::string letters;
    for (const char c : name) {
        if (c >= 'A' && c <= 'Z')
            letters += static_cast<char>(c - 'A' + 'a');
        else if ((c >= 'a' && c <= 'z') || (c >= '0' && c <= '9'))
            letters += c;
    }
    return letters;
}

} // namespace

std::optional<std::string_view> tapStateName(std::int32_t number) {
    if (number < 0 || number >= static_cast<std::int32_t>(std::size(names)))
        return std::nullopt;
    return names[number];
}

std::int32_t parseTapState(std::string_view text) {
    for (std::size_t state = 0; state < std::size(names); ++state)
        if (essence(text) == essence(names[state]))
            return static_cast<std::int32_t>(state);
    try {
        return static_cast<std::int32_t>(parseWholeNumber(text, std::numeric_limits<std::int32_t>::min(),
                                                          std::numeric_limits<std::int32_t>::max()));
    } catch (const std::invalid_argument& error) {
        throw std::invalid_argument(fmt::format("'{}' is not a TAP state ({}); the states are: {}", text,
                                                error.what(), fmt::join(names, ", ")));
    }
}

std::string tapStateText(std::int32_t number) {
    const auto name = tapStateName(number);
    return name ? fmt::format("{} {}", number, *name) : fmt::format("{}", number);
}

} // namespace TAVO::cli
