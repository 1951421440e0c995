#pragma once

#include <string>

/// Errors of the operating system as messages tell them.
namespace support {

enum class SystemError {
    connectionRefused,
    connectionReset,
    notConnected,
    addressInUse,
    addressNotAvailable
};

/// The system's text, with the line break that ends it on Windows. Empty where the system has none.
std::string systemText(SystemError error);

/// "[ErrorCode <code>:<text>]"
std::string errorCodeText(SystemError error);

} // namespace support
