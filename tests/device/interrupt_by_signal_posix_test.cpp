#include <atomic>
#include <csignal>
#include <memory>
#include <thread>

#include <pthread.h>

#include <gtest/gtest.h>

#include <tavo/client/device/core_objects.h>
#include <tavo/client/device/device_factory.h>
#include <tavo/client/device/device_v1_0.h>
#include <tavo/client/wire/error.h>
#include <tavo/simulator/simulator.h>
#include <tests/support/failure_text.h>
#include <tests/support/hang_guard.h>

namespace {

TAVO::Device* deviceOfHandler = nullptr;

void interruptTheDevice(int) { deviceOfHandler->interrupt(); }

TEST(InterruptBySignal, EndsACallOfTheThreadThatTheSignalInterrupts) {
    const support::HangGuard guard;
    TAVO::CoreObjects::registerCoreObjects();
    TAVO::simulator::Simulator simulator{{.topology = "bare"}};
    simulator.start();
    const auto device =
        TAVO::DeviceFactory::buildDevice("127.0.0.1", simulator.port(), "engineer", "tavo", false);
    deviceOfHandler = device.get();
    struct sigaction action {};
    action.sa_handler = interruptTheDevice;
    struct sigaction before {};
    ASSERT_EQ(::sigaction(SIGUSR1, &action, &before), 0);

    simulator.failNext(TAVO::simulator::faults::Silent{});
    std::atomic<bool> done = false;
    std::thread other([&, caller = ::pthread_self()] {
        do {
            std::this_thread::sleep_for(std::chrono::milliseconds(30));
            ::pthread_kill(caller, SIGUSR1);
        } while (!done);
    });
    EXPECT_EQ(support::failureOf<TAVO::NetworkError>([&] { device->getDevice()->type(); }),
              "Call to device interrupted.");
    done = true;
    other.join();
    EXPECT_EQ(device->getDevice()->type(), "device");
    ::sigaction(SIGUSR1, &before, nullptr);
}

} // namespace
