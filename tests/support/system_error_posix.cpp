#include <tests/support/system_error.h>

#include <stdexcept>

namespace support {

std::string systemText(SystemError error) {
    switch (error) {
    case SystemError::connectionRefused:
        return "Connection refused";
    case SystemError::connectionReset:
        return "Connection reset by peer";
    case SystemError::notConnected:
        return "Transport endpoint is not connected";
    case SystemError::addressInUse:
        return "Address already in use";
    case SystemError::addressNotAvailable:
        return "Cannot assign requested address";
    }
    throw std::invalid_argument("unknown error");
}

std::string errorCodeText(SystemError error) {
    switch (error) {
    case SystemError::connectionRefused:
        return "[ErrorCode 111:Connection refused]";
    case SystemError::connectionReset:
        return "[ErrorCode 104:Connection reset by peer]";
    case SystemError::notConnected:
        return "[ErrorCode 107:Transport endpoint is not connected]";
    case SystemError::addressInUse:
        return "[ErrorCode 98:Address already in use]";
    case SystemError::addressNotAvailable:
        return "[ErrorCode 99:Cannot assign requested address]";
    }
    throw std::invalid_argument("unknown error");
}

} // namespace support
