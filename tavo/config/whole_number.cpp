#include <tavo/config/whole_number.h>

#include <charconv>

#include <fmt/format.h>

namespace TAVO::config {

namespace {

bool isHexadecimal(std::string_view digits) { return digits.starts_with("0x") || digits.starts_with("0X"); }

bool areDecimal(std::string_view digits) {
    return !digits.empty() && digits.find_first_not_of("0123456789") == std::string_view::npos;
}

std::string_view withoutSign(std::string_view text) { return text.substr(text.starts_with('-') ? 1 : 0); }

[[noreturn]] void refuse(std::string_view text, std::string_view digits) {
    const bool octal = digits.size() > 1 && digits.front() == '0' && areDecimal(digits);
    throw std::invalid_argument(
        fmt::format("Value {} is not a number{}", text,
                    octal ? ": after a leading 0 it is octal, with the digits 0 to 7"
                          : "; whole numbers are decimal, hexadecimal after 0x, or octal after 0"));
}

} // namespace

bool WholeNumber::isWithin(std::int64_t lowest, std::uint64_t highest) const {
    if (enormous)
        return false;
    if (negative)
        return lowest <= 0 && magnitude <= std::uint64_t{0} - static_cast<std::uint64_t>(lowest);
    return magnitude <= highest && (lowest <= 0 || magnitude >= static_cast<std::uint64_t>(lowest));
}

WholeNumber parseWholeNumber(std::string_view text) {
    WholeNumber number;
    number.negative = text.starts_with('-');
    auto digits = withoutSign(text);
    const auto whole = digits;
    const bool hexadecimal = isHexadecimal(digits);
    digits.remove_prefix(hexadecimal ? 2 : 0);
    const int base = hexadecimal ? 16 : digits.starts_with('0') ? 8 : 10;
    const auto* end = digits.data() + digits.size();
    const auto [stop, error] = std::from_chars(digits.data(), end, number.magnitude, base);
    number.enormous = error == std::errc::result_out_of_range;
    if (stop != end || (error != std::errc() && !number.enormous))
        refuse(text, whole);
    return number;
}

std::int64_t parseWholeNumber(std::string_view text, std::int64_t lowest, std::int64_t highest) {
    const auto number = parseWholeNumber(text);
    if (!number.isWithin(lowest, static_cast<std::uint64_t>(highest)))
        throw std::invalid_argument(fmt::format(
            "Value {} not in range {}", text, boundsText(lowest, static_cast<std::uint64_t>(highest), text)));
    return number.value();
}

std::string boundsText(std::int64_t lowest, std::uint64_t highest, std::string_view text) {
    auto bounds = fmt::format("{} to {}", lowest, highest);
    if (isHexadecimal(withoutSign(text)) && lowest >= 0)
        bounds += fmt::format(" (0x{:x} to 0x{:x})", lowest, highest);
    return bounds;
}

} // namespace TAVO::config
