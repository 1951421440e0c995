#include <tavo/cli/values/bit_notation.h>

#include <algorithm>
#include <stdexcept>

#include <fmt/format.h>

#include <tavo/cli/values/json_value.h>

namespace TAVO::cli {

namespace {

std::vector<std::uint8_t> bytesOfNumber(std::size_t size, std::string_view text) {
    if (text.starts_with("0x") || text.starts_with("0X"))
        text.remove_prefix(2);
    if (text.empty() && size > 0)
        throw std::invalid_argument("a number needs at least one hexadecimal digit");
    std::string digits(text.substr(std::min(text.find_first_not_of('0'), text.size())));
    if (digits.size() % 2 != 0)
        digits.insert(0, "0");
    auto bytes = bytesFromHex(digits);
    std::reverse(bytes.begin(), bytes.end());
    if (bytes.size() > BitString::bytesFor(size))
        throw std::invalid_argument(fmt::format("0x{} has more than {} bits", text, size));
    bytes.resize(BitString::bytesFor(size));
    return bytes;
}

std::vector<std::uint8_t> bytesInOrder(std::size_t size, std::string_view text) {
    auto bytes = bytesFromHex(text);
    if (bytes.size() != BitString::bytesFor(size))
        throw std::invalid_argument(
            fmt::format("{} bits are {} bytes, not {}", size, BitString::bytesFor(size), bytes.size()));
    return bytes;
}

} // namespace

BitString parseBits(std::size_t size, std::string_view text, BitNotation notation) {
    auto bytes = notation == BitNotation::number ? bytesOfNumber(size, text) : bytesInOrder(size, text);
    BitString bits(size, bytes);
    if (bits.bytes() != bytes)
        throw std::invalid_argument(fmt::format("'{}' has more than {} bits", text, size));
    return bits;
}

std::string bitsText(const BitString& bits, BitNotation notation) {
    std::string text;
    if (notation == BitNotation::bytes) {
        for (const auto byte : bits.bytes())
            text += fmt::format("{:02x}", byte);
        return text;
    }
    for (std::size_t digit = (bits.size() + 3) / 4; digit-- > 0;)
        text += fmt::format("{:x}", bits.bytes()[digit / 2] >> digit % 2 * 4 & 0xF);
    return text.empty() ? text : "0x" + text;
}

} // namespace TAVO::cli
