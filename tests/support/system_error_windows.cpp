#include <tests/support/system_error.h>

#include <array>
#include <stdexcept>
#include <string>

// The order matters: windows.h would bring in the first generation of the socket interface.
#include <winsock2.h>

#include <windows.h>

namespace support {

namespace {

// The numbers, not the system's names for them.
DWORD codeOf(SystemError error) {
    switch (error) {
    case SystemError::connectionRefused:
        return 10061;
    case SystemError::connectionReset:
        return 10054;
    case SystemError::notConnected:
        return 10057;
    case SystemError::addressInUse:
        return 10048;
    case SystemError::addressNotAvailable:
        return 10049;
    }
    throw std::invalid_argument("unknown error");
}

} // namespace

std::string systemText(SystemError error) {
    std::array<char, 1024> text{};
    const DWORD length =
        ::FormatMessageA(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, codeOf(error),
                         0, text.data(), static_cast<DWORD>(text.size()), nullptr);
    return {text.data(), length};
}

std::string errorCodeText(SystemError error) {
    return "[ErrorCode " + std::to_string(codeOf(error)) + ":" + systemText(error) + "]";
}

} // namespace support
