#include <atomic>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include <tavo/client/device/core_objects.h>
#include <tavo/client/device/device_factory.h>
#include <tavo/client/device/device_v1_0.h>
#include <tavo/client/object/multicall_queue.h>
#include <tavo/client/wire/error.h>
#include <tests/support/appliance_server.h>
#include <tests/support/system_error.h>

namespace {

constexpr int rounds = 10;

std::string typeInABatch(TAVO::Device& device) {
    const auto queue = std::make_shared<TAVO::MulticallQueue>();
    const auto type = device.getDevice()->getTypeMethod();
    queue->add(type);
    queue->add(device.getDevice()->getMembersMethod());
    device.multicall(queue);
    return type->value().type;
}

/// Opens a device of its own again and again, uses it and releases it. Returns what went wrong.
std::string useADevice(const std::string& user) {
    support::FakeAppliance appliance;
    support::addFixedObjects(appliance);
    appliance.object(0).method(
        "rootMembers",
        support::result(0, support::joined({support::u32(1), support::text(user), support::u32(9)})));
    appliance.add(9, "novelty");
    const support::ApplianceServer server(appliance);
    try {
        for (int round = 0; round < rounds; ++round) {
            TAVO::CoreObjects::registerCoreObjects();
            const auto device =
                TAVO::DeviceFactory::buildDevice("127.0.0.1", server.port(), user, "secret", true);
            if (typeInABatch(*device) != "device" || !device->getChild(user))
                return "another device's answer";
            device->unlock();
        }
    } catch (const std::exception& failure) {
        return failure.what();
    }
    return "";
}

TEST(DevicesInThreads, AreUsedAtOnceWithoutDisturbingEachOther) {
    std::vector<std::string> failures(4, "not run");
    std::vector<std::thread> threads;
    for (std::size_t i = 0; i < failures.size(); ++i)
        threads.emplace_back([&failures, i] { failures[i] = useADevice("user" + std::to_string(i)); });
    for (auto& thread : threads)
        thread.join();
    EXPECT_EQ(failures, std::vector<std::string>(4, ""));
}

TEST(DevicesInThreads, CanBeHandedFromOneThreadToAnother) {
    TAVO::CoreObjects::registerCoreObjects();
    support::FakeAppliance appliance;
    support::addFixedObjects(appliance);
    const support::ApplianceServer server(appliance);
    std::shared_ptr<TAVO::Device> device;
    std::thread([&] {
        device = TAVO::DeviceFactory::buildDevice("127.0.0.1", server.port(), "a", "b", true);
    }).join();
    std::string type;
    std::thread([&] { type = typeInABatch(*device); }).join();
    EXPECT_EQ(type, "device");
    std::thread([&] { device.reset(); }).join();
    EXPECT_EQ(server.callNames().back(), "0.unlock");
}

TEST(DevicesInThreads, FailAtOnceEachWithItsOwnText) {
    std::atomic<int> right = 0;
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i)
        threads.emplace_back([&right] {
            support::GuardedListener listener;
            listener.stop();
            for (int round = 0; round < rounds; ++round) {
                try {
                    TAVO::DeviceFactory::buildDevice("127.0.0.1", listener.port(), "", "", false);
                } catch (const TAVO::NetworkError& failure) {
                    right += std::string(failure.what()) ==
                             "Could not connect to socket to: 127.0.0.1 port " + listener.portText() +
                                 support::errorCodeText(support::SystemError::connectionRefused);
                }
            }
        });
    for (auto& thread : threads)
        thread.join();
    EXPECT_EQ(right, 4 * rounds);
}

} // namespace
