#pragma once

#include <functional>

namespace support {

/// Is called by every thread that is about to cut a connection for an interrupt, as long as it lives: there
/// that thread can be held. One at a time, made before the threads that interrupt and destroyed after them.
class ShutDownHook {
public:
    explicit ShutDownHook(std::function<void()> hook);
    ShutDownHook(const ShutDownHook&) = delete;
    ShutDownHook& operator=(const ShutDownHook&) = delete;
    ~ShutDownHook();
};

} // namespace support
