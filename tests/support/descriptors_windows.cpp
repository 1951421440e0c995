#include <tests/support/descriptors.h>

#include <winsock2.h>

namespace support {

// Other handles come and go with threads; the numbers of all are multiples of 4 and are given anew from
// below.
std::size_t openDescriptors() {
    constexpr SOCKET step = 4;
    constexpr SOCKET limit = 4096;
    std::size_t open = 0;
    for (SOCKET handle = step; handle < limit; handle += step) {
        int type = 0;
        int length = sizeof type;
        open += ::getsockopt(handle, SOL_SOCKET, SO_TYPE, reinterpret_cast<char*>(&type), &length) == 0;
    }
    return open;
}

} // namespace support
