#pragma once

#include <cstdint>
#include <memory>

#include <tavo/simulator/models/board.h>

namespace tests {

/// A clock that moves only by hand, and the board that reads it.
struct HandClock {
    std::shared_ptr<std::uint64_t> time = std::make_shared<std::uint64_t>(5'000'000);
    std::shared_ptr<TAVO::simulator::Board> board =
        std::make_shared<TAVO::simulator::Board>([now = time] { return *now; });

    void advance(std::uint64_t microseconds) { *time += microseconds; }
};

} // namespace tests
