#include <atomic>
#include <cstdlib>
#include <deque>
#include <exception>
#include <iostream>
#include <latch>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include <tavo/client/commonmodules/common_modules_objects.h>
#include <tavo/client/device/core_objects.h>
#include <tavo/client/device/device_factory.h>
#include <tavo/client/device/device_v1_0.h>
#include <tavo/client/hwdebug/hwd_objects.h>
#include <tests/support/appliance_server.h>

namespace {

constexpr int threadCount = 8;

/// Ends the process, with the number of openings that failed.
[[noreturn]] void registerAndOpenInManyThreadsAtOnce() {
    std::deque<support::FakeAppliance> appliances(threadCount);
    std::deque<support::ApplianceServer> servers;
    for (auto& appliance : appliances) {
        support::addFixedObjects(appliance);
        servers.emplace_back(appliance);
    }
    std::latch start(threadCount);
    std::atomic<int> failures = 0;
    std::vector<std::thread> threads;
    for (auto& server : servers)
        threads.emplace_back([&] {
            start.arrive_and_wait();
            try {
                TAVO::CoreObjects::registerCoreObjects();
                TAVO::HWDebug::HwdObjects::registerCoreObjects();
                CommonModules::CommonModulesObjects::registerCoreObjects();
                const auto device =
                    TAVO::DeviceFactory::buildDevice("127.0.0.1", server.port(), "a", "b", true);
                failures += device->getDevice() ? 0 : 1;
            } catch (const std::exception& failure) {
                std::cerr << failure.what() << '\n';
                ++failures;
            }
        });
    for (auto& thread : threads)
        thread.join();
    servers.clear();
    std::exit(failures);
}

TEST(FirstOpeningDeathTest, MayBeThatOfManyThreadsAtOnceTogetherWithTheRegistration) {
    // In a process of its own, in which nothing has been opened or registered.
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(registerAndOpenInManyThreadsAtOnce(), testing::ExitedWithCode(0), "");
}

} // namespace
