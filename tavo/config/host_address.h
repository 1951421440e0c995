#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace TAVO::config {

/// What a user writes for a device: NAME, HOST, HOST:PORT, an IPv6 address, or [ADDRESS]:PORT.
struct HostAddress {
    /// Without brackets.
    std::string host;
    std::optional<std::uint16_t> port;
};

/// @throws std::invalid_argument that says what is wrong with the text.
HostAddress parseHostAddress(const std::string& text);

} // namespace TAVO::config
