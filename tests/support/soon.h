#pragma once

#include <chrono>
#include <thread>

namespace support {

/// Whether the condition comes true within 20 seconds.
template <class Condition>
bool soon(Condition condition) {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    while (!condition()) {
        if (std::chrono::steady_clock::now() > deadline)
            return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return true;
}

} // namespace support
