#include <cstddef>
#include <string>

#include <gtest/gtest.h>

#include <tests/c/c_device.h>
#include <tests/support/allocation_meter.h>
#include <tests/support/sanitizers.h>

/// No exception crosses the C interface, not even when memory runs out.
namespace {

using support::AllocationMeter;
using support::FailingAllocation;

class CMemory : public c_test::OpenHandle {
protected:
    static constexpr const char* calls =
        R"([{"object": "cpu0.jtag", "method": "shiftDR", "arguments": {"bits": 8, "data": {"block": 0}}},
            {"object": "power", "method": "get"}])";

    /// Makes a batch while that allocation fails; whether the failure happened.
    bool failsAt(std::size_t number) {
        const tavo_bytes block = {"\x55", 1};
        tavo_reply* reply = nullptr;
        bool happened = false;
        tavo_status status = TAVO_OK;
        {
            const FailingAllocation failing(number);
            status = tavo_batch_json(device.get(), calls, &block, 1, TAVO_REPLY_BLOCKS, &reply);
            happened = failing.hasHappened();
        }
        tavo_reply_free(reply);
        if (status != TAVO_OK)
            failures += 1;
        EXPECT_EQ(tavo_last_error()->status, status);
        EXPECT_EQ(std::string(tavo_last_error()->message).empty(), status == TAVO_OK);
        return happened;
    }

    int failures = 0;
};

TEST_F(CMemory, ThatRunsOutIsAnErrorAtEveryAllocation) {
    if (support::sanitizerTakesAllocations)
        GTEST_SKIP() << "no allocation can be refused";
    std::size_t number = 1;
    while (failsAt(number))
        ++number;
    EXPECT_GT(number, 50u);
    EXPECT_GT(failures, 40);
    // Part of a reply may be unread.
    tavo_close(device.get());
    ASSERT_EQ(device.open(simulator.port()), TAVO_OK);
    EXPECT_EQ(device.call(R"({"object": "power", "method": "get"})").status, TAVO_OK);
}

TEST(CMemoryOfAHandle, MayBeRefused) {
    if (support::sanitizerTakesAllocations)
        GTEST_SKIP() << "no allocation can be refused";
    const FailingAllocation failing(1);
    EXPECT_EQ(tavo_new(), nullptr);
    EXPECT_EQ(tavo_last_error()->status, TAVO_ERROR_NO_MEMORY);
    EXPECT_STREQ(tavo_last_error()->message, "out of memory");
}

TEST_F(CMemory, IsAllGivenBack) {
    if (support::sanitizerTakesAllocations)
        GTEST_SKIP() << "what is given back to its own operators is not seen";
    const auto once = [&] {
        c_test::Handle other;
        EXPECT_EQ(other.open(simulator.port()), TAVO_OK);
        EXPECT_EQ(other.batch(calls, {{"\x55", 1}}, TAVO_REPLY_BLOCKS).status, TAVO_OK);
        EXPECT_EQ(other.tree().status, TAVO_OK);
        EXPECT_EQ(other.call("{").status, TAVO_ERROR_ARGUMENT);
    };
    once();
    const AllocationMeter meter;
    once();
    EXPECT_EQ(meter.heldPieces(), 0);
}

} // namespace
