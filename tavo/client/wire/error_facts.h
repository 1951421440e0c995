#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <utility>

#include <tavo/client/export.h>

namespace TAVO {

/// Where an error began.
enum class ErrorOrigin {
    device,     ///< the device reported an error, or a return code that the library cannot go on with
    connection, ///< there was no connection, it broke, or waiting for it was cut short
    library     ///< found on this side: a call that cannot be made, a reply that makes no sense
};

/// What is known of a failure besides its class, so that programs need not parse the text of an exception.
/// Error::facts() returns one.
struct TAVO_API ErrorFacts {
    /// Who to blame: device, connection or this side.
    ErrorOrigin origin = ErrorOrigin::library;
    /// The error code that the device reported: 1000 to 1006, 1013, or one that the library does not know.
    /// Empty where it reported none; a method's return code is not an error code.
    std::optional<std::uint32_t> deviceErrorCode = {};
    /// Whether the next call can use the same connection: nothing was sent, or the reply was read to its end.
    /// False when the connection has ended, or may still hold bytes that nobody has read.
    bool connectionUsable = true;
    /// Full name of the method that failed; empty where the failure concerns none, or several at once.
    std::string method = {};
    /// The field where one of the library's own decoders ran out of bytes: its value is missing or longer
    /// than the rest of the result. "return code", or a path such as "members[3].name"; empty for other
    /// failures.
    std::string field = {};
    /// Where the value of `field` begins, in bytes from the start of the result; the return code is at 0.
    std::optional<std::uint64_t> offset = {};

    bool operator==(const ErrorFacts&) const = default;
};

/// Returns `error` with these facts, ready to be thrown.
///
/// @code
/// throw withFacts(Error("The valve is stuck"), {.origin = ErrorOrigin::device, .method = "valve.open"});
/// @endcode
template <class Exception>
Exception withFacts(Exception error, ErrorFacts facts) {
    error.setFacts(std::move(facts));
    return error;
}

} // namespace TAVO
