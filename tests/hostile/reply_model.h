#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include <tests/hostile/contents.h>
#include <tests/hostile/conversation.h>
#include <tests/support/system_error.h>

namespace hostile {

/// What a client must make of a reply.
struct Reading {
    /// "ok", or the exception as describe() names it.
    std::string outcome;
    /// How many Methods, from the first on, have got their result.
    std::size_t results = 0;
    /// Bytes that came and were not asked for.
    std::size_t left = 0;
    /// The texts and byte blocks of the results, in order.
    std::vector<std::string> blocks = {};
    /// The return code of the last result.
    std::uint32_t code = 0;
    /// All that the results hold.
    Contents contents = {};

    bool ok() const { return outcome == "ok"; }
};

/// Reads bytes that arrive instead of the reply to these calls, after which the connection ends. A reading of
/// the protocol's tables of its own, without any code of the library.
Reading readingOf(const std::vector<Call>& calls, const Bytes& bytes);

/// How outcomes name an exception of that class and text.
inline std::string describe(const std::string& exception, const std::string& text) {
    return exception + ": " + text;
}

inline const std::string closedEarly =
    describe("NetworkError", "Connection to device closed unexpectedly." +
                                 support::errorCodeText(support::SystemError::connectionReset));
inline const std::string unexpectedData = describe("NetworkError", "Unexpected data recieved from device.");

inline const std::string cutOffWhileSending =
    describe("NetworkError", "Error transmitting message call to device." +
                                 support::errorCodeText(support::SystemError::connectionReset));

/// What a client is told that cannot connect to that port.
inline std::string refusedAt(const std::string& port,
                             support::SystemError why = support::SystemError::connectionRefused) {
    return describe("NetworkError",
                    "Could not connect to socket to: 127.0.0.1 port " + port + support::errorCodeText(why));
}

} // namespace hostile
