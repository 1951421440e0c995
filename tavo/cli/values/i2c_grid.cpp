#include <tavo/cli/values/i2c_grid.h>

#include <algorithm>
#include <stdexcept>

#include <fmt/format.h>

#include <tavo/cli/values/whole_number.h>

namespace TAVO::cli {

namespace {

constexpr std::uint32_t columns = 16;

std::string columnNumbers(const char* format) {
    std::string text;
    for (std::uint32_t column = 0; column < columns; ++column)
        text += fmt::format(fmt::runtime(format), column);
    return text;
}

/// Calls `row` with the first number of each row that overlaps `range`.
template <class Row>
void forRows(NumberRange range, Row row) {
    for (auto start = range.first - range.first % columns; start <= range.last; start += columns)
        row(start);
}

char asCharacter(std::uint8_t byte) {
    if (byte == 0x00 || byte == 0xff)
        return '.';
    return byte < 0x20 || byte >= 0x7f ? '?' : static_cast<char>(byte);
}

} // namespace

NumberRange parseRange(const std::string& text, std::uint32_t highest) {
    const auto refuse = [&](const std::string& why) {
        throw std::invalid_argument(
            fmt::format("'{}' is not a range A-B with numbers up to 0x{:02x}{}", text, highest, why));
    };
    const auto dash = std::min(text.find('-'), text.size());
    const auto numberIn = [&](const std::string& part) {
        try {
            return static_cast<std::uint32_t>(parseWholeNumber(part, 0, highest));
        } catch (const std::invalid_argument& error) {
            refuse(fmt::format(": {}", error.what()));
            throw;
        }
    };
    const auto first = numberIn(text.substr(0, dash));
    const auto last = numberIn(text.substr(std::min(dash + 1, text.size())));
    if (first > last)
        refuse(": it ends before it begins");
    return {first, last};
}

std::string detectGrid(NumberRange range, const std::vector<std::uint32_t>& found) {
    auto text = "   " + columnNumbers("{:3x}") + "\n";
    forRows({0, 0x7f}, [&](std::uint32_t start) {
        text += fmt::format("{:02x}: ", start);
        for (auto address = start; address < start + columns; ++address) {
            if (address < range.first || address > range.last)
                text += "   ";
            else if (std::find(found.begin(), found.end(), address) != found.end())
                text += fmt::format("{:02x} ", address);
            else
                text += "-- ";
        }
        text += "\n";
    });
    return text;
}

std::string dumpGrid(std::uint32_t first, std::span<const RegisterByte> bytes, bool wide) {
    const auto digits = wide ? 4 : 2;
    auto text =
        std::string(wide ? 5 : 3, ' ') + columnNumbers("{:3x}") + "    " + columnNumbers("{:x}") + "\n";
    if (bytes.empty())
        return text;
    const NumberRange range{first, first + static_cast<std::uint32_t>(bytes.size()) - 1};
    forRows(range, [&](std::uint32_t start) {
        text += fmt::format("{:0{}x}: ", start, digits);
        std::string characters;
        for (auto number = start; number < start + columns; ++number) {
            if (number < range.first || number > range.last) {
                text += "   ";
                characters += ' ';
            } else if (const auto byte = bytes[number - first]) {
                text += fmt::format("{:02x} ", *byte);
                characters += asCharacter(*byte);
            } else {
                text += "XX ";
                characters += 'X';
            }
        }
        text += "   " + characters + "\n";
    });
    return text;
}

} // namespace TAVO::cli
