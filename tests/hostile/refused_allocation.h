#pragma once

#include <array>
#include <cstddef>
#include <cstring>
#include <exception>
#include <new>
#include <string>

#include <gtest/gtest.h>

#include <tests/support/allocation_meter.h>

namespace hostile {

/// What came of an action, one allocation of which was refused.
struct Refusal {
    /// Of the allocation, counted from 1.
    std::size_t number = 0;
    /// Empty for an action that ended well, "std::bad_alloc", or the text of another exception.
    std::string outcome;
};

/// Runs the action again and again with its first, second, ... allocation refused, until there is none left
/// to refuse and it ends well. The action must leave nothing on the heap, whatever happens.
/// @return the number of allocations.
template <class Action, class Check>
std::size_t refuseEachAllocation(Action action, Check check) {
    action(); // what is taken once and for all is taken now
    for (std::size_t number = 1;; ++number) {
        std::array<char, 1024> text{};
        bool refused = false;
        std::ptrdiff_t held = 0;
        {
            const support::AllocationMeter meter;
            {
                const support::FailingAllocation failing(number);
                try {
                    action();
                } catch (const std::bad_alloc&) {
                    std::strncpy(text.data(), "std::bad_alloc", text.size() - 1);
                } catch (const std::exception& failure) {
                    std::strncpy(text.data(), failure.what(), text.size() - 1);
                }
                refused = failing.hasHappened();
            }
            held = meter.heldPieces();
        }
        const Refusal refusal{number, text.data()};
        SCOPED_TRACE("allocation " + std::to_string(number) + ": " + refusal.outcome);
        EXPECT_EQ(held, 0);
        if (!refused) {
            EXPECT_EQ(refusal.outcome, "");
            return number - 1;
        }
        check(refusal);
    }
}

} // namespace hostile
