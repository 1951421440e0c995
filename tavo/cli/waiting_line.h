#pragma once

#include <condition_variable>
#include <mutex>
#include <string>
#include <thread>

namespace TAVO::cli {

/// A line on standard error about a wait, if that is a terminal and the wait lasts longer than a second: as
/// long as this exists.
class WaitingLine {
public:
    explicit WaitingLine(std::string text);
    WaitingLine(const WaitingLine&) = delete;
    WaitingLine& operator=(const WaitingLine&) = delete;
    ~WaitingLine();

private:
    void wait();

    std::string text_;
    std::mutex mutex_;
    std::condition_variable changed_;
    bool over_ = false;
    std::thread thread_;
};

} // namespace TAVO::cli
