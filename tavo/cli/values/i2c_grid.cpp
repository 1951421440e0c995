#include <tavo/cli/values/i2c_grid.h>

#include <algorithm>
#include <charconv>
#include <stdexcept>
#include <string_view>

#include <fmt/format.h>

namespace TAVO::cli {

namespace {

constexpr std::uint32_t columns = 16;

std::optional<std::uint32_t> parseNumber(std::string_view text) {
    const bool hexadecimal = text.starts_with("0x") || text.starts_with("0X");
    text.remove_prefix(hexadecimal ? 2 : 0);
    const int base = hexadecimal ? 16 : text.starts_with('0') ? 8 : 10;
    std::uint32_t number = 0;
    const auto* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number, base);
    if (error != std::errc() || stop != end)
        return std::nullopt;
    return number;
}

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
    const auto dash = std::min(text.find('-'), text.size());
    const auto first = parseNumber(std::string_view(text).substr(0, dash));
    const auto last = parseNumber(std::string_view(text).substr(std::min(dash + 1, text.size())));
    if (!first || !last || *first > *last || *last > highest)
        throw std::invalid_argument(
            fmt::format("'{}' is not a range A-B with numbers up to 0x{:02x}", text, highest));
    return {*first, *last};
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
