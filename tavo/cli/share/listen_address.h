#pragma once

#include <cstdint>
#include <string>

namespace TAVO::cli {

struct ListenAddress {
    std::string host = "127.0.0.1";
    std::uint16_t port = 0;
};

/// Parses "[ADDRESS:]PORT", where an IPv6 address stands in brackets.
/// @throws Failure (usage) that names the text.
ListenAddress parseListenAddress(const std::string& text);

} // namespace TAVO::cli
