#include <future>
#include <memory>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include <tavo/client/commonmodules/relay.h>
#include <tavo/client/device/device_factory.h>
#include <tavo/client/object/multicall_queue.h>
#include <tavo/simulator/simulator.h>
#include <tests/support/all_types.h>

namespace {

using Get = std::shared_ptr<TAVO::BoundMethod<TAVO::dto::relay::GetReply>>;
using Batch = std::vector<Get>;

/// Builds and executes a batch; its results may be taken and freed by any thread afterwards.
Batch executed(TAVO::Device& device) {
    const auto relay = device.get<CommonModules::Relay_v1_0>("power");
    const auto queue = std::make_shared<TAVO::MulticallQueue>();
    Batch batch;
    for (int i = 0; i < 300; ++i) {
        batch.push_back(relay->getGetMethod());
        queue->add(batch.back());
    }
    device.multicall(queue);
    return batch;
}

TEST(BatchInThreads, MayBeTakenAndFreedInAnotherThreadThanItWasBuiltIn) {
    support::registerAllTypes();
    TAVO::simulator::Simulator simulator;
    simulator.start();
    const auto device =
        TAVO::DeviceFactory::buildDevice("127.0.0.1", simulator.port(), "engineer", "tavo", false);
    for (int round = 0; round < 20; ++round) {
        auto batch = executed(*device);
        std::thread([taken = std::move(batch)]() mutable {
            for (const auto& method : taken)
                EXPECT_EQ(method->take().state, false);
            taken.clear();
        }).join();
    }
}

TEST(BatchInThreads, OfSeveralDevicesAreBuiltAndFreedAtOnce) {
    support::registerAllTypes();
    std::vector<std::future<void>> threads;
    for (int i = 0; i < 3; ++i)
        threads.push_back(std::async(std::launch::async, [] {
            TAVO::simulator::Simulator simulator;
            simulator.start();
            const auto device =
                TAVO::DeviceFactory::buildDevice("127.0.0.1", simulator.port(), "engineer", "tavo", false);
            std::future<void> freed;
            for (int round = 0; round < 10; ++round)
                freed =
                    std::async(std::launch::async, [batch = executed(*device)]() mutable { batch.clear(); });
        }));
    for (auto& thread : threads)
        thread.get();
}

} // namespace
