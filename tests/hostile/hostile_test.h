#pragma once

#include <chrono>
#include <cstddef>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include <tests/hostile/client.h>
#include <tests/hostile/conversation_peer.h>
#include <tests/hostile/counted.h>
#include <tests/hostile/expectation.h>
#include <tests/hostile/reply_model.h>
#include <tests/support/allocation_meter.h>
#include <tests/support/descriptors.h>

namespace hostile {

/// Conversations that are disturbed in one place each.
class HostileTest : public testing::Test {
protected:
    /// Holds the conversation and compares it with what must come of it.
    void expectCase(const Conversation& conversation, const std::string& name, const Plan& plan,
                    const Expectation& expected) {
        SCOPED_TRACE(conversation.name + ": " + name);
        const auto descriptors = support::openDescriptors();
        peer.start(conversation, plan);
        const auto begin = std::chrono::steady_clock::now();
        const support::AllocationMeter memory;
        const auto client = converse(conversation, peer.port(), expected.troubledPlace);
        EXPECT_LT(memory.peak(), conversation.mostMemory);
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

    ConversationPeer peer;
    std::size_t cases = 0;
};

/// The same in one place of a conversation, the parameter.
class HostilePlace : public HostileTest, public testing::WithParamInterface<CountedPlace> {
protected:
    HostilePlace()
        : conversation(hostile::conversation(GetParam().conversation))
        , exchange(conversation[GetParam().place]) {}

    void expectAfterBytes(const std::string& what, const Plan& plan, const Bytes& sent) {
        expectPlanned(what, plan,
                      afterBytes(conversation, GetParam().place, sent, plan.gone ? peer.refusal() : ""));
    }
    void expectPlanned(const std::string& what, const Plan& plan, const Expectation& expected) {
        expectCase(conversation, "exchange " + std::to_string(GetParam().place) + ", " + what, plan,
                   expected);
    }

    Plan plan(Plan::Action action) const { return {GetParam().place, std::move(action)}; }
    Plan lastPlan(Plan::Action action) const { return {GetParam().place, std::move(action), true}; }
    Plan goingOnPlan(Plan::Action action) const { return {GetParam().place, std::move(action), false, true}; }

    const Conversation& conversation;
    const Exchange& exchange;
};

/// Names the test after the place.
inline std::string placeName(const testing::TestParamInfo<CountedPlace>& info) {
    auto name = std::to_string(info.param.conversation) + "_" + std::to_string(info.param.place) + "_" +
                std::string(info.param.label);
    for (auto& letter : name)
        if (letter == '.' || letter == ' ')
            letter = '_';
    return name;
}

} // namespace hostile
