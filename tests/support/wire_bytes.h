#pragma once

#include <charconv>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

/// Bytes of requests and replies, put together by hand.
namespace support {

using Bytes = std::vector<std::uint8_t>;

inline Bytes bytesOf(const std::string& text) { return {text.begin(), text.end()}; }

/// `count` bytes that differ from their neighbours and do not repeat with a power of two.
inline Bytes pattern(std::size_t count) {
    Bytes bytes(count);
    for (std::size_t i = 0; i < count; ++i)
        bytes[i] = static_cast<std::uint8_t>(i % 251);
    return bytes;
}

inline Bytes joined(std::initializer_list<Bytes> parts) {
    Bytes all;
    for (const auto& part : parts)
        all.insert(all.end(), part.begin(), part.end());
    return all;
}

/// The bytes of pairs of digits, with or without blanks between the pairs.
inline Bytes bytesFromHex(std::string_view digits) {
    Bytes bytes;
    while (!digits.empty()) {
        if (digits.front() == ' ') {
            digits.remove_prefix(1);
            continue;
        }
        const auto pair = digits.substr(0, 2);
        const auto* const end = pair.data() + pair.size();
        std::uint8_t byte = 0;
        const auto parsed = std::from_chars(pair.data(), end, byte, 16);
        if (parsed.ec != std::errc() || parsed.ptr != end || pair.size() != 2)
            throw std::invalid_argument("not two hexadecimal digits: " + std::string(pair));
        bytes.push_back(byte);
        digits.remove_prefix(2);
    }
    return bytes;
}

inline std::string hexOf(const Bytes& bytes) {
    std::string text;
    for (const auto byte : bytes)
        for (const auto digit : {byte >> 4, byte & 15})
            text += "0123456789abcdef"[digit];
    return text;
}

inline Bytes u32(std::uint32_t value) {
    return {static_cast<std::uint8_t>(value >> 24), static_cast<std::uint8_t>(value >> 16),
            static_cast<std::uint8_t>(value >> 8), static_cast<std::uint8_t>(value)};
}

/// A length and the bytes.
inline Bytes block(const Bytes& content) {
    return joined({u32(static_cast<std::uint32_t>(content.size())), content});
}

inline Bytes text(const std::string& content) { return block({content.begin(), content.end()}); }

/// A reply without device error that carries these result blocks.
inline Bytes replyWith(std::initializer_list<Bytes> results) {
    auto reply = joined({u32(0), u32(0), u32(static_cast<std::uint32_t>(results.size()))});
    for (const auto& result : results)
        reply = joined({reply, block(result)});
    return reply;
}

/// The error block of a reply, its size in front.
inline Bytes deviceError(std::uint32_t code, const std::string& message) {
    return block(joined({u32(0xABCDEF01), u32(code), text(message)}));
}

/// A reply that reports a device error after these result blocks.
inline Bytes errorReply(std::uint32_t code, const std::string& message,
                        std::initializer_list<Bytes> results = {}) {
    auto reply =
        joined({u32(0), deviceError(code, message), u32(static_cast<std::uint32_t>(results.size()))});
    for (const auto& result : results)
        reply = joined({reply, block(result)});
    return reply;
}

} // namespace support
