#include <atomic>
#include <chrono>
#include <functional>
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
#include <tavo/client/wire/socket_transport.h>
#include <tavo/simulator/simulator.h>
#include <tests/support/failure_text.h>
#include <tests/support/raw_server.h>
#include <tests/support/transport_calls.h>

namespace {

using namespace std::chrono_literals;
using support::failureOf;
using support::interrupted;
using TAVO::Interrupter;
using TAVO::NetworkError;
namespace faults = TAVO::simulator::faults;

/// Interrupts in another thread, again and again until it is destroyed: a call under test may not have begun
/// to wait at the first time.
class Interruptions {
public:
    explicit Interruptions(std::function<void()> interrupt, std::chrono::milliseconds delay = 30ms)
        : thread_([this, interrupt = std::move(interrupt), delay] {
            do {
                std::this_thread::sleep_for(delay);
                interrupt();
            } while (!done_);
        }) {}
    Interruptions(const Interruptions&) = delete;
    Interruptions& operator=(const Interruptions&) = delete;
    ~Interruptions() {
        done_ = true;
        thread_.join();
    }

private:
    support::HangGuard guard_;
    std::atomic<bool> done_ = false;
    std::thread thread_;
};

class InterruptedDevice : public testing::Test {
protected:
    InterruptedDevice() {
        TAVO::CoreObjects::registerCoreObjects();
        simulator.start();
    }

    std::shared_ptr<TAVO::Device> open(const std::shared_ptr<Interrupter>& interrupter = nullptr) {
        return TAVO::DeviceFactory::buildDevice("127.0.0.1", simulator.port(), "engineer", "tavo", false,
                                                interrupter);
    }

    support::HangGuard guard;
    TAVO::simulator::Simulator simulator{{.topology = "bare"}};
};

TEST_F(InterruptedDevice, EndsACallThatWaitsForItsReplyAndConnectsAnewAtTheNext) {
    const auto device = open();
    const auto lockId = simulator.lockHolder()->lockId;
    const auto connections = simulator.connectionCount();
    simulator.failNext(faults::Silent{});
    {
        const Interruptions interruptions([&] { device->interrupt(); });
        EXPECT_EQ(failureOf<NetworkError>([&] { device->getDevice()->type(); }), interrupted);
    }
    EXPECT_EQ(device->getDevice()->type(), "device");
    EXPECT_EQ(simulator.connectionCount(), connections + 1);
    EXPECT_EQ(simulator.calls().back().lockId, lockId) << "the lock outlives the connection";
}

TEST_F(InterruptedDevice, CanBeDestroyedAndUnlocks) {
    auto device = open();
    simulator.failNext(faults::Silent{});
    {
        const Interruptions interruptions([&] { device->interrupt(); });
        EXPECT_EQ(failureOf<NetworkError>([&] { device->getDevice()->type(); }), interrupted);
    }
    device.reset();
    EXPECT_FALSE(simulator.lockHolder());
}

TEST_F(InterruptedDevice, CanBeGivenUpByAWatchdog) {
    const auto device = open();
    simulator.failNext(faults::Silent{});
    std::jthread watchdog([&](const std::stop_token& answered) {
        for (int tenths = 0; tenths < 5 && !answered.stop_requested(); ++tenths)
            std::this_thread::sleep_for(std::chrono::milliseconds(100));
        if (!answered.stop_requested())
            device->interrupt();
    });
    EXPECT_EQ(failureOf<NetworkError>([&] { device->getDevice()->type(); }), interrupted);
}

TEST_F(InterruptedDevice, LosesOnlyItsConnectionWhenItIsIdle) {
    const auto device = open();
    const auto connections = simulator.connectionCount();
    for (int i = 0; i < 3; ++i)
        device->interrupt();
    EXPECT_EQ(device->getDevice()->type(), "device");
    EXPECT_EQ(simulator.connectionCount(), connections + 1);
    EXPECT_EQ(device->getDevice()->type(), "device");
    EXPECT_EQ(simulator.connectionCount(), connections + 1);
}

TEST_F(InterruptedDevice, CanBeInterruptedWhileItIsOpenedAndReleasesTheLockItTook) {
    open();
    const auto requestsOfAnOpening = simulator.requestCount() - 1;
    for (std::uint64_t request = 1; request <= requestsOfAnOpening; ++request) {
        const auto interrupter = std::make_shared<Interrupter>();
        simulator.failNext(faults::Silent{}, request);
        // Once the request is there its exchange runs, so that one interrupt is enough.
        std::thread other([&, silent = simulator.requestCount() + request] {
            while (simulator.requestCount() < silent)
                std::this_thread::sleep_for(1ms);
            interrupter->interrupt();
        });
        EXPECT_EQ(failureOf<NetworkError>([&] { open(interrupter); }), interrupted) << request;
        other.join();
        const bool lockIdIsLost = simulator.calls().back().method == "lock";
        EXPECT_EQ(simulator.lockHolder().has_value(), lockIdIsLost) << request;
    }
    EXPECT_TRUE(open());
}

TEST_F(InterruptedDevice, CanBeInterruptedWhileItIsIdentified) {
    const auto interrupter = std::make_shared<Interrupter>();
    simulator.failNext(faults::Silent{});
    TAVO::Device_Factory_Structs::TavoDeviceDescriptor descriptor;
    const Interruptions interruptions([&] { interrupter->interrupt(); });
    EXPECT_EQ(failureOf<NetworkError>([&] {
                  TAVO::DeviceFactory::queryDevice("127.0.0.1", simulator.port(), descriptor, interrupter);
              }),
              interrupted);
}

TEST_F(InterruptedDevice, CanBeInterruptedWhileItUnlocksAtItsEnd) {
    const auto interrupter = std::make_shared<Interrupter>();
    auto device = open(interrupter);
    simulator.failNext(faults::Silent{});
    const Interruptions interruptions([&] { interrupter->interrupt(); });
    device.reset();
    EXPECT_TRUE(simulator.lockHolder() || simulator.calls().back().method == "unlock");
}

TEST_F(InterruptedDevice, NeedsNotToBeThereAnyMore) {
    const auto interrupter = std::make_shared<Interrupter>();
    open(interrupter).reset();
    interrupter->interrupt();
    EXPECT_TRUE(open(interrupter)) << "an interrupter may serve the next device";
}

TEST_F(InterruptedDevice, EndsEveryCallOfAnOperation) {
    const auto interrupter = std::make_shared<Interrupter>();
    const auto device = open(interrupter);
    {
        const Interrupter::Operation outer(*interrupter);
        const Interrupter::Operation inner(*interrupter);
        EXPECT_EQ(device->getDevice()->type(), "device");
        interrupter->interrupt();
        EXPECT_EQ(failureOf<NetworkError>([&] { device->getDevice()->type(); }), interrupted);
        EXPECT_EQ(failureOf<NetworkError>([&] { device->getDevice()->type(); }), interrupted);
    }
    EXPECT_EQ(device->getDevice()->type(), "device");
}

TEST(InterruptedTransport, EndsASendThatThePeerDoesNotTake) {
    support::GuardedListener listener;
    TAVO::SocketTransport transport("127.0.0.1", listener.portText());
    auto peer = listener.accept();
    const std::vector<std::uint8_t> bytes(64 * 1024 * 1024);
    {
        const Interruptions interruptions([&] { transport.interrupt(); });
        EXPECT_EQ(failureOf<NetworkError>([&] { transport.sendAll(bytes.data(), bytes.size()); }),
                  interrupted);
    }
    transport.sendAll(bytes.data(), 3);
    EXPECT_EQ(listener.accept().read(3), support::Bytes(3));
}

TEST(InterruptedTransport, EndsAReceiveInTheMiddleOfABlock) {
    support::GuardedListener listener;
    TAVO::SocketTransport transport("127.0.0.1", listener.portText());
    auto peer = listener.accept();
    peer.write(support::Bytes(10));
    std::vector<std::uint8_t> block(1'000'000);
    const Interruptions interruptions([&] { transport.interrupt(); });
    EXPECT_EQ(failureOf<NetworkError>([&] { transport.receiveAll(block.data(), block.size()); }),
              interrupted);
}

TEST(InterruptedTransport, EndsAConnectThatNobodyAnswers) {
    support::GuardedListener listener(0);
    // The system keeps the first connections waiting, and leaves those after them without an answer.
    const auto interrupter = std::make_shared<Interrupter>();
    const Interruptions interruptions([&] { interrupter->interrupt(); }, 300ms);
    std::vector<std::unique_ptr<TAVO::SocketTransport>> waiting;
    const auto connectOneMore = [&] {
        waiting.push_back(
            std::make_unique<TAVO::SocketTransport>("127.0.0.1", listener.portText(), interrupter));
    };
    EXPECT_EQ(failureOf<NetworkError>([&] {
                  for (int i = 0; i < 100; ++i)
                      connectOneMore();
              }),
              interrupted);
}

} // namespace
