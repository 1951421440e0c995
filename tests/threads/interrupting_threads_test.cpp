#include <atomic>
#include <chrono>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include <tavo/client/device/core_objects.h>
#include <tavo/client/device/device_factory.h>
#include <tavo/client/device/device_v1_0.h>
#include <tavo/client/wire/error.h>
#include <tavo/client/wire/interrupter.h>
#include <tavo/simulator/simulator.h>
#include <tests/support/hang_guard.h>

namespace {

/// Two devices of one appliance, the first interrupted without a pause, while both open connections: were a
/// socket's number shut down after it had passed to the other device, that one would have to connect again.
TEST(InterruptingThreads, NeverTouchTheConnectionOfAnotherDevice) {
    const support::HangGuard guard;
    TAVO::CoreObjects::registerCoreObjects();
    TAVO::simulator::Simulator simulator{{.topology = "bare"}};
    simulator.start();
    TAVO::Device_Factory_Structs::TavoDeviceDescriptor descriptor;
    const auto query = [&](const std::shared_ptr<TAVO::Interrupter>& interrupter) {
        return TAVO::DeviceFactory::queryDevice("127.0.0.1", simulator.port(), descriptor, interrupter);
    };

    const auto interrupter = std::make_shared<TAVO::Interrupter>();
    std::atomic<bool> done = false;
    std::vector<std::thread> threads;
    for (int i = 0; i < 2; ++i)
        threads.emplace_back([&] {
            while (!done)
                interrupter->interrupt();
        });
    std::atomic<int> interruptions = 0;
    threads.emplace_back([&] {
        TAVO::Device_Factory_Structs::TavoDeviceDescriptor mine;
        while (!done) {
            try {
                const auto device =
                    TAVO::DeviceFactory::queryDevice("127.0.0.1", simulator.port(), mine, interrupter);
                for (int call = 0; call < 20; ++call)
                    device->getDevice()->type();
            } catch (const TAVO::NetworkError&) {
                ++interruptions;
            }
        }
    });

    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    std::string failure;
    try {
        for (int round = 0; round < 100 && std::chrono::steady_clock::now() < end; ++round) {
            const auto untouched = query(nullptr);
            for (int call = 0; call < 5; ++call)
                if (untouched->getDevice()->type() != "device")
                    failure = "another answer";
        }
    } catch (const std::exception& thrown) {
        failure = thrown.what();
    }
    while (interruptions == 0)
        std::this_thread::yield();
    done = true;
    for (auto& thread : threads)
        thread.join();
    EXPECT_EQ(failure, "");
}

} // namespace
