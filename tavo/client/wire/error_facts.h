#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <utility>

#include <tavo/client/export.h>

namespace TAVO {

/// Where an error began.
enum class ErrorOrigin {
    device,     ///< the device reported it: an error, or a return code that ends what the library does
    connection, ///< there was no connection, it broke, or a wait for it was ended
    library     ///< found on this side: a call that cannot be made, a reply that cannot be understood
};

/// What is known of a failure besides its class and its text, so that nobody has to read it from the text.
/// See Error::facts().
struct TAVO_API ErrorFacts {
    ErrorOrigin origin = ErrorOrigin::library;
    /// The code of the error that the device reported: 1000 to 1006, 1013, or one that the library does not
    /// know. A method's return code is none.
    std::optional<std::uint32_t> deviceErrorCode = {};
    /// Whether the connection can be used on: nothing was sent, or the reply was read to its end. False when
    /// the connection has ended, and when bytes may be left on it that nobody has read.
    bool connectionUsable = true;
    /// Full name of the method that the failure concerns; empty where it concerns none, or several at once.
    std::string method = {};
    /// For a result that cannot be decoded by one of the library's own decoders: the field whose value is
    /// missing or longer than what is left, such as "members[3].name", or "return code"; and the offset in
    /// the result, in bytes, at which that value begins. The return code is the result's first four bytes.
    std::string field = {};
    std::optional<std::uint64_t> offset = {};

    bool operator==(const ErrorFacts&) const = default;
};

/// The error with these facts, to be thrown.
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
