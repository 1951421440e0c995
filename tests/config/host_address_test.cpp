#include <optional>
#include <stdexcept>
#include <string>

#include <gtest/gtest.h>

#include <tavo/config/host_address.h>

namespace {

using namespace TAVO::config;

void expectAddress(const char* text, const std::string& host, std::optional<std::uint16_t> port) {
    const auto address = parseHostAddress(text);
    EXPECT_EQ(address.host, host) << text;
    EXPECT_EQ(address.port, port) << text;
}

TEST(ParseHostAddress, TakesAPortBehindAColon) {
    expectAddress("lab1", "lab1", std::nullopt);
    expectAddress("lab1.example:6124", "lab1.example", 6124);
    expectAddress("10.0.0.1:1", "10.0.0.1", 1);
}

TEST(ParseHostAddress, TakesIpv6WithAndWithoutBrackets) {
    expectAddress("::1", "::1", std::nullopt);
    expectAddress("fe80::1%eth0", "fe80::1%eth0", std::nullopt);
    expectAddress("[::1]", "::1", std::nullopt);
    expectAddress("[fe80::1%eth0]:65535", "fe80::1%eth0", 65535);
}

TEST(ParseHostAddress, RefusesTheRest) {
    for (const auto* text : {"", ":", ":1", "a:", "a:0", "a:65536", "a:x", "a:-1", "a:08", "[::1", "[]:1",
                             "[::1]1", "[::1]:", "[::1]x:1"})
        EXPECT_THROW(parseHostAddress(text), std::invalid_argument) << text;
}

} // namespace
