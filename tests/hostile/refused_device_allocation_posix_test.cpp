#include <tests/hostile/refused_allocation.h>

#include <algorithm>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include <tavo/client/device/device_factory.h>
#include <tavo/client/device/device_v1_0.h>
#include <tavo/client/object/multicall_queue.h>
#include <tavo/client/transcode/small_blocks.h>
#include <tests/hostile/client.h>
#include <tests/hostile/conversation_peer.h>
#include <tests/hostile/expectation.h>
#include <tests/hostile/reply_model.h>
#include <tests/support/all_types.h>
#include <tests/support/appliance_server.h>
#include <tests/support/descriptors.h>

namespace hostile {
namespace {

bool isDocumented(const std::string& outcome) {
    return outcome == "std::bad_alloc" ||
           (outcome.starts_with("Error decoding TAVOX return values in call to ") &&
            outcome.ends_with(": std::bad_alloc"));
}

class RefusedDeviceAllocation : public testing::Test {
protected:
    RefusedDeviceAllocation() { support::registerAllTypes(); }
};

/// What all Methods of "unlock" share is two pieces. Its credentials and the Method itself are two more,
/// unless the thread has kept memory for them.
std::size_t piecesOfTheUnlock() { return TAVO::TAVOXTranscode::SmallBlocks::areKept() ? 2 : 4; }

TEST_F(RefusedDeviceAllocation, EndsAnOpeningAndLeavesNothingOpenAndNothingLocked) {
    ConversationPeer peer;
    const auto whole = [&] {
        auto log = undisturbed(conversation(0)).peer;
        log.erase(std::remove_if(log.begin(), log.end(),
                                 [](const auto& name) {
                                     return name == "batch" || name == "faulty" || name == "device.info";
                                 }),
                  log.end());
        return log;
    }();
    const auto lock = std::find(whole.begin(), whole.end(), "device.lock");
    const auto descriptors = support::openDescriptors();
    const std::string host = "127.0.0.1", user = "ann", password = "pw";
    peer.start(conversation(0), {});
    std::size_t released = 0;
    const auto count = refuseEachAllocation(
        [&] { TAVO::DeviceFactory::buildDevice(host, peer.port(), user, password, true); },
        [&](const Refusal& refusal) {
            EXPECT_TRUE(refusal.outcome.empty() || isDocumented(refusal.outcome)) << refusal.outcome;
            auto log = peer.finish();
            EXPECT_EQ(support::openDescriptors(), descriptors);
            peer.start(conversation(0), {});
            if (refusal.number == 1)
                log.erase(log.begin(), log.begin() + static_cast<std::ptrdiff_t>(whole.size()));
            const bool unlocks = !log.empty() && log.back() == "device.unlock";
            if (unlocks)
                log.pop_back();
            ASSERT_LT(log.size(), whole.size());
            EXPECT_TRUE(std::equal(log.begin(), log.end(), whole.begin()));
            // Right behind the reply to the lock it depends on whether the lock id could be stored.
            const auto afterLock = static_cast<std::ptrdiff_t>(log.size()) - (lock - whole.begin()) - 1;
            if (refusal.outcome.empty()) {
                ++released;
                EXPECT_FALSE(unlocks);
                EXPECT_EQ(log.size(), whole.size() - 1);
            } else if (afterLock != 0) {
                EXPECT_EQ(unlocks, afterLock > 0) << log.size();
            }
        });
    peer.finish();
    EXPECT_EQ(support::openDescriptors(), descriptors);
    EXPECT_GE(count, 100u);
    EXPECT_EQ(released, piecesOfTheUnlock());
    RecordProperty("cases", static_cast<int>(count));
}

TEST_F(RefusedDeviceAllocation, DoesNotKeepADeviceFromBeingReleased) {
    ConversationPeer peer;
    const auto descriptors = support::openDescriptors();
    std::size_t number = 0;
    std::size_t withoutUnlock = 0;
    for (bool refused = true; refused;) {
        peer.start(conversation(0), {});
        auto device = TAVO::DeviceFactory::buildDevice("127.0.0.1", peer.port(), "ann", "pw", true);
        {
            const support::FailingAllocation failing(++number);
            device.reset();
            refused = failing.hasHappened();
        }
        const auto log = peer.finish();
        withoutUnlock += log.back() != "device.unlock";
        EXPECT_EQ(support::openDescriptors(), descriptors);
    }
    EXPECT_EQ(withoutUnlock, piecesOfTheUnlock());
    RecordProperty("cases", static_cast<int>(number - 1));
}

TEST_F(RefusedDeviceAllocation, LeavesADeviceWhoseLaterCallsDoAsDocumented) {
    support::FakeAppliance appliance;
    support::ApplianceServer server(appliance);
    server.change(support::addFixedObjects);
    const std::string longName(100, 'n');
    server.change([&](support::FakeAppliance& changed) {
        changed.object(0).method(
            "available",
            support::result(0, support::joined({{1}, support::text(longName), support::text(longName)})));
    });
    const auto device = TAVO::DeviceFactory::buildDevice("127.0.0.1", server.port(), "ann", "pw", true);
    const auto object = device->getDevice();

    // What may be left of the reply: all results behind one that could not be stored.
    const std::size_t size = 4 + 4 + 1 + 2 * (4 + longName.size());
    const std::set<std::size_t> rests{0, size, 2 * size};
    std::set<std::size_t> seen;
    const auto count = refuseEachAllocation(
        [&] {
            const auto queue = std::make_shared<TAVO::MulticallQueue>();
            for (int i = 0; i < 3; ++i)
                queue->add(object->getAvailableMethod());
            device->multicall(queue);
        },
        [&](const Refusal& refusal) {
            EXPECT_TRUE(isDocumented(refusal.outcome)) << refusal.outcome;
            std::size_t unexpected = 0;
            auto outcome = outcomeOf([&] { object->type(); });
            for (; outcome == unexpectedData; ++unexpected)
                outcome = outcomeOf([&] { object->type(); });
            EXPECT_EQ(outcome, "ok");
            EXPECT_TRUE(rests.contains(unexpected)) << unexpected;
            if (refusal.outcome == "std::bad_alloc") {
                EXPECT_EQ(unexpected, 0u); // nothing had been sent
            }
            seen.insert(unexpected);
        });
    EXPECT_EQ(seen, rests);
    EXPECT_EQ(server.connections(), 1u);
    EXPECT_GE(count, 6u); // texts; the thread may keep memory for Methods and records
    RecordProperty("cases", static_cast<int>(count));
}

} // namespace
} // namespace hostile
