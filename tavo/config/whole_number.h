#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>

namespace TAVO::config {

/// The one way in which users write whole numbers: decimal, hexadecimal after 0x, or octal after 0.
struct WholeNumber {
    std::uint64_t magnitude = 0;
    bool negative = false;
    /// More than `magnitude` can hold.
    bool enormous = false;

    bool isWithin(std::int64_t lowest, std::uint64_t highest) const;
    /// In two's complement.
    std::int64_t value() const {
        return static_cast<std::int64_t>(negative ? std::uint64_t{0} - magnitude : magnitude);
    }
};

/// @throws std::invalid_argument that says what is wrong with the text.
WholeNumber parseWholeNumber(std::string_view text);

/// @throws std::invalid_argument also for a number outside of these bounds, and names them.
std::int64_t parseWholeNumber(std::string_view text, std::int64_t lowest, std::int64_t highest);

/// "8 to 119", for messages; hexadecimal too if `text` is.
std::string boundsText(std::int64_t lowest, std::uint64_t highest, std::string_view text = {});

} // namespace TAVO::config
