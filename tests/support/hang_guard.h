#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdio>
#include <cstdlib>
#include <mutex>
#include <thread>

#include <tavo/simulator/internal/thread_without_signals.h>

namespace support {

using TAVO::simulator::threadWithoutSignals;

/// Ends the test program when it is not destroyed in time: the calls under test wait without a limit.
class HangGuard {
public:
    explicit HangGuard(std::chrono::seconds limit = std::chrono::seconds(60))
        : thread_(threadWithoutSignals([this, limit] { watch(limit); })) {}
    HangGuard(const HangGuard&) = delete;
    HangGuard& operator=(const HangGuard&) = delete;
    ~HangGuard() {
        {
            const std::lock_guard lock(mutex_);
            done_ = true;
        }
        changed_.notify_all();
        thread_.join();
    }

private:
    void watch(std::chrono::seconds limit) {
        std::unique_lock lock(mutex_);
        if (changed_.wait_for(lock, limit, [this] { return done_; }))
            return;
        std::fputs("The test hangs; giving up.\n", stderr);
        std::abort();
    }

    std::mutex mutex_;
    std::condition_variable changed_;
    bool done_ = false;
    std::thread thread_;
};

} // namespace support
