#pragma once

#include <chrono>
#include <cstddef>
#include <string>

#include <gtest/gtest.h>

#include <tests/hostile/client.h>
#include <tests/hostile/conversation_peer.h>
#include <tests/hostile/expectation.h>
#include <tests/hostile/reply_model.h>
#include <tests/support/allocation_meter.h>
#include <tests/support/descriptors.h>

namespace hostile {

/// Conversations that are disturbed in one place each.
class HostileTest : public testing::Test {
protected:
    /// Holds the conversation and compares it with what must come of it.
    void expectCase(const std::string& name, const Plan& plan, const Expectation& expected) {
        SCOPED_TRACE(name);
        const auto descriptors = support::openDescriptors();
        peer.start(plan);
        const auto begin = std::chrono::steady_clock::now();
        const support::AllocationMeter memory;
        const auto client = converse(peer.port(), expected.troubledPlace);
        EXPECT_LT(memory.peak(), mostMemory);
        EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(5));
        EXPECT_EQ(peer.finish(), expected.peer);
        EXPECT_EQ(client, expected.client);
        EXPECT_EQ(support::openDescriptors(), descriptors);
        ++cases;
    }

    /// Every case of the group has run, and there were as many as were counted by hand.
    void expectCases(std::size_t count) {
        EXPECT_EQ(cases, count);
        RecordProperty("cases", static_cast<int>(cases));
    }

    /// What one client may hold at once. It reads ahead into 128 KiB, keeps 64 KiB for what must lie
    /// together, and begins a long text in another 64 KiB.
    static constexpr std::size_t mostMemory = 320 * 1024;

    ConversationPeer peer;
    std::size_t cases = 0;
};

/// The same in one place of the conversation, the parameter.
class HostilePlace : public HostileTest, public testing::WithParamInterface<std::size_t> {
protected:
    const Exchange& exchange() const { return conversation()[GetParam()]; }
    std::string caseName(const std::string& what) const { return exchange().name + ", " + what; }

    Plan plan(Plan::Action action) const { return {GetParam(), std::move(action)}; }
    Plan lastPlan(Plan::Action action) const { return {GetParam(), std::move(action), true}; }
    Plan goingOnPlan(Plan::Action action) const { return {GetParam(), std::move(action), false, true}; }
};

/// Names the test after the place.
inline std::string placeName(const testing::TestParamInfo<std::size_t>& place) {
    auto name = std::to_string(place.param) + "_" + conversation()[place.param].name;
    for (auto& letter : name)
        if (letter == '.')
            letter = '_';
    return name;
}

} // namespace hostile
