#include <tavo/config/host_address.h>

#include <stdexcept>
#include <string_view>

#include <fmt/format.h>

#include <tavo/config/whole_number.h>

namespace TAVO::config {

namespace {

std::uint16_t parsePort(std::string_view text) {
    try {
        return static_cast<std::uint16_t>(parseWholeNumber(text, 1, 65535));
    } catch (const std::invalid_argument& error) {
        throw std::invalid_argument(fmt::format("port: {}", error.what()));
    }
}

HostAddress parseBracketed(std::string_view text) {
    const auto end = text.find(']');
    const auto rest = end == std::string_view::npos ? text : text.substr(end + 1);
    if (end == std::string_view::npos || (!rest.empty() && rest.front() != ':'))
        throw std::invalid_argument(fmt::format("'{}' is neither [ADDRESS] nor [ADDRESS]:PORT", text));
    HostAddress address{std::string(text.substr(1, end - 1)), {}};
    if (!rest.empty())
        address.port = parsePort(rest.substr(1));
    return address;
}

HostAddress parsePlain(std::string_view text) {
    const auto colon = text.find(':');
    const bool isAddress = colon != text.rfind(':'); // of IPv6
    if (colon == std::string_view::npos || isAddress)
        return {std::string(text), {}};
    return {std::string(text.substr(0, colon)), parsePort(text.substr(colon + 1))};
}

} // namespace

HostAddress parseHostAddress(const std::string& text) {
    auto address = text.starts_with('[') ? parseBracketed(text) : parsePlain(text);
    if (address.host.empty())
        throw std::invalid_argument(fmt::format("'{}' names no host", text));
    return address;
}

} // namespace TAVO::config
