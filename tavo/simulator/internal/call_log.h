#pragma once

#include <cstddef>
#include <deque>
#include <vector>

#include <tavo/simulator/simulator.h>

namespace TAVO::simulator {

/// The most recent calls, as many as fit.
class CallLog {
public:
    CallLog(std::size_t mostCalls, std::size_t mostBytes)
        : mostCalls_(mostCalls)
        , mostBytes_(mostBytes) {}

    /// Drops the oldest calls to make room. Keeps a call that is too large by itself without its parameters.
    void add(CallRecord record);
    void clear();
    std::vector<CallRecord> records() const;

private:
    struct Entry {
        CallRecord record;
        std::size_t bytes = 0;
    };

    std::size_t mostCalls_;
    std::size_t mostBytes_;
    std::size_t bytes_ = 0;
    std::deque<Entry> entries_;
};

} // namespace TAVO::simulator
