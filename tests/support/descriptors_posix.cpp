#include <tests/support/descriptors.h>

#include <filesystem>
#include <iterator>

namespace support {

std::size_t openDescriptors() {
    const std::filesystem::directory_iterator entries("/proc/self/fd");
    return static_cast<std::size_t>(std::distance(begin(entries), end(entries)));
}

} // namespace support
