#include <tavo/jtag/svf/comparison.h>

#include <algorithm>

#include <fmt/format.h>

namespace TAVO::jtag::svf {

namespace {

/// As a file writes it.
std::string digitsOf(const BitString& bits) {
    std::string text;
    for (auto nibble = (bits.size() + 3) / 4; nibble-- > 0;)
        text += "0123456789ABCDEF"[bits.bytes()[nibble / 2] >> nibble % 2 * 4 & 0xF];
    return text;
}

} // namespace

std::optional<std::size_t> firstWrongBit(const Check::Part& part, const BitString& captured) {
    const auto& expected = part.data.tdo->bytes();
    for (std::size_t byte = 0; byte < expected.size(); ++byte) {
        const auto bits = std::min<std::size_t>(8, part.data.length - byte * 8);
        unsigned wrong = captured.number(part.first + byte * 8, bits) ^ expected[byte];
        if (part.data.mask)
            wrong &= part.data.mask->bytes()[byte];
        for (std::size_t bit = 0; wrong != 0; ++bit, wrong >>= 1)
            if ((wrong & 1) != 0)
                return byte * 8 + bit;
    }
    return std::nullopt;
}

void insistOn(const Check& check, const BitString& captured, std::string_view file) {
    for (const auto& part : check.parts) {
        const auto wrong = firstWrongBit(part, captured);
        if (!wrong)
            continue;
        constexpr std::size_t mostShown = 256, before = 64, behind = 64;
        const auto length = part.data.length;
        std::size_t first = 0, count = length;
        std::string which;
        if (length > mostShown) {
            first = (*wrong - std::min(*wrong, before)) / 4 * 4;
            count = std::min(length, *wrong + behind) - first;
            which = fmt::format(", bits {} to {} of {},", first, first + count - 1, length);
        }
        if (part.line != check.line)
            which = fmt::format(" around the scan, from line {},{}", part.line, which);
        const auto mask = part.data.mask ? part.data.mask->part(first, count) : BitString(count, true);
        throw Mismatch(fmt::format("{}:{}: TDO{} is ({}), expected ({}) under MASK ({}), first wrong bit {}",
                                   file, check.line, which,
                                   digitsOf(captured.part(part.first + first, count)),
                                   digitsOf(part.data.tdo->part(first, count)), digitsOf(mask), *wrong));
    }
}

} // namespace TAVO::jtag::svf
