#include <chrono>
#include <future>
#include <memory>
#include <string>
#include <thread>

#include <gtest/gtest.h>

#include <tavo/client/device/device_factory.h>
#include <tavo/client/device/device_v1_0.h>
#include <tavo/client/device/system_v1_0.h>
#include <tavo/client/object/multicall_queue.h>
#include <tavo/client/wire/error.h>
#include <tavo/simulator/simulator.h>
#include <tests/support/all_types.h>
#include <tests/support/failure_text.h>
#include <tests/support/hang_guard.h>
#include <tests/support/system_error.h>

namespace {

using support::failureOf;
using TAVO::Error;
using TAVO::NetworkError;
using TAVO::SpecificationError;
using TAVO::simulator::Fault;
namespace faults = TAVO::simulator::faults;

const std::string closedEarly = "Connection to device closed unexpectedly." +
                                support::errorCodeText(support::SystemError::connectionReset);
const std::string unexpected = "Unexpected data recieved from device.";

/// An open device and what each fault of the appliance does to a call, and to the calls after it.
class SimulatedFault : public testing::Test {
protected:
    SimulatedFault() {
        support::registerAllTypes();
        simulator.start();
        device = TAVO::DeviceFactory::buildDevice("127.0.0.1", simulator.port(), "engineer", "tavo", true);
        connections = simulator.connectionCount();
    }

    std::string type() { return device->getDevice()->type(); }

    template <class Exception>
    std::string failureWith(Fault fault) {
        simulator.failNext(std::move(fault));
        return failureOf<Exception>([&] { type(); });
    }

    void expectUsableOnTheSameConnection() {
        EXPECT_EQ(type(), "device");
        EXPECT_EQ(simulator.connectionCount(), connections);
    }

    void expectUsableOnANewConnectionWithTheLock() {
        const auto lockId = simulator.lockHolder()->lockId;
        EXPECT_EQ(type(), "device");
        EXPECT_EQ(simulator.connectionCount(), ++connections);
        EXPECT_EQ(simulator.calls().back().lockId, lockId);
        EXPECT_EQ(simulator.lockHolder()->user, "engineer");
    }

    /// Each later call takes one of the bytes that were left, and then all is well.
    void expectUsableAfter(int leftBytes) {
        for (int i = 0; i < leftBytes; ++i)
            EXPECT_EQ(failureOf<NetworkError>([&] { type(); }), unexpected) << i;
        expectUsableOnTheSameConnection();
    }

    support::HangGuard guard;
    TAVO::simulator::Simulator simulator;
    std::shared_ptr<TAVO::Device> device;
    std::uint64_t connections = 0;
};

TEST_F(SimulatedFault, DribbleIsNoFailure) {
    simulator.failNext(faults::Dribble{std::chrono::microseconds(100)});
    expectUsableOnTheSameConnection();
}

TEST_F(SimulatedFault, CloseBreaksOneCall) {
    EXPECT_EQ(failureWith<NetworkError>(faults::Close{}), closedEarly);
    expectUsableOnANewConnectionWithTheLock();
}

TEST_F(SimulatedFault, ResetBreaksOneCall) {
    EXPECT_EQ(failureWith<NetworkError>(faults::Reset{}), closedEarly);
    expectUsableOnANewConnectionWithTheLock();
}

TEST_F(SimulatedFault, CutAtAnyByteBreaksOneCall) {
    // Status size, error size, result count, result size, return code, length and "device".
    for (std::size_t bytes = 0; bytes < 6 * 4 + 6; ++bytes) {
        EXPECT_EQ(failureWith<NetworkError>(faults::Cut{bytes}), closedEarly) << bytes;
        expectUsableOnANewConnectionWithTheLock();
    }
}

TEST_F(SimulatedFault, CutBehindTheReplyIsNoFailure) {
    simulator.failNext(faults::Cut{6 * 4 + 6});
    EXPECT_EQ(type(), "device");
}

TEST_F(SimulatedFault, CountLeavesTheResultsToLaterCalls) {
    EXPECT_EQ(failureWith<Error>(faults::Count{0}),
              "Error calling methods: received result count of 0 expected count of 1");
    expectUsableAfter(4 + 4 + 4 + 6);
    EXPECT_EQ(failureWith<Error>(faults::Count{0xFFFFFFFF}),
              "Error calling methods: received result count of 4294967295 expected count of 1");
    expectUsableAfter(4 + 4 + 4 + 6);
}

TEST_F(SimulatedFault, SizeBeyondWhatComesEndsWithTheConnection) {
    using Field = faults::Size::Field;
    for (const auto field : {Field::status, Field::error, Field::result})
        for (const std::uint32_t size : {1000u, 0x7FFFFFFFu, 0x80000000u, 0xFFFFFFFFu}) {
            simulator.failNext(faults::Size{field, size});
            simulator.failNext(faults::Cut{1000000});
            EXPECT_EQ(failureOf<NetworkError>([&] { type(); }), closedEarly) << size;
            expectUsableOnANewConnectionWithTheLock();
        }
}

TEST_F(SimulatedFault, SizeBelowTheResultIsRefusedAndLeavesTheRest) {
    EXPECT_EQ(
        failureWith<SpecificationError>(faults::Size{faults::Size::Field::result, 10}),
        "Error decoding TAVOX return values in call to device.type: Could not read Result from device for "
        "method: device.type");
    expectUsableAfter(4);
}

TEST_F(SimulatedFault, StrayBytesAreMetByTheNextCalls) {
    simulator.failNext(faults::Stray{3});
    EXPECT_EQ(type(), "device");
    expectUsableAfter(3);
}

TEST_F(SimulatedFault, DeviceErrorsLeaveTheConnectionUsable) {
    EXPECT_EQ(failureWith<TAVO::ConfigurationError>(faults::DeviceError{1000, 0, "why"}), "why");
    EXPECT_EQ(failureWith<TAVO::LockError>(faults::DeviceError{1001, 0, "bob"}),
              "The device is locked by bob");
    for (const std::uint32_t code : {1002u, 1003u, 1004u, 1005u})
        EXPECT_EQ(failureWith<SpecificationError>(faults::DeviceError{code, 0, "why"}), "why");
    EXPECT_EQ(failureWith<TAVO::ExecutionError>(faults::DeviceError{1006, 1, "why"}),
              "Failed to execute device.type: why");
    EXPECT_EQ(failureWith<TAVO::TAVOLoginError>(faults::DeviceError{1013, 0, "why"}), "why");
    EXPECT_EQ(failureWith<Error>(faults::DeviceError{1010, 0, "why"}), "Unknown error code: 1010: why");
    expectUsableOnTheSameConnection();
}

TEST_F(SimulatedFault, DeviceErrorInABatchKeepsTheResultsBeforeIt) {
    const auto queue = std::make_shared<TAVO::MulticallQueue>();
    for (int i = 0; i < 5; ++i)
        queue->add(device->getDevice()->getTypeMethod());
    simulator.failNext(faults::DeviceError{1006, 2, "stuck"});
    try {
        device->multicall(queue);
        FAIL() << "no exception";
    } catch (const TAVO::ExecutionError& error) {
        EXPECT_EQ(error.failedMethodIndex(), 1u);
        EXPECT_EQ(error.failedMethod(), queue->getMethods()[1]);
    }
    for (std::size_t i = 0; i < 5; ++i)
        EXPECT_EQ(queue->getMethods()[i]->isResultSet(), i < 2) << i;
    expectUsableOnTheSameConnection();
}

TEST_F(SimulatedFault, ReturnCodeIsNoException) {
    simulator.failNext(faults::ReturnCode{-7, 0});
    const auto method = device->getDevice()->getTypeMethod();
    device->call(method);
    EXPECT_EQ(method->returnCode(), -7);
    EXPECT_EQ(method->value().type, "");
    expectUsableOnTheSameConnection();
}

TEST_F(SimulatedFault, SilenceLastsUntilTheConnectionEnds) {
    simulator.failNext(faults::Silent{});
    const auto before = simulator.requestCount();
    auto failure = std::async(std::launch::async, [&] { return failureOf<NetworkError>([&] { type(); }); });
    while (simulator.requestCount() == before)
        std::this_thread::yield();
    EXPECT_EQ(failure.wait_for(std::chrono::milliseconds(50)), std::future_status::timeout);
    simulator.stop();
    EXPECT_EQ(failure.get(), closedEarly);
    const auto refused = failureOf<NetworkError>([&] { type(); });
    EXPECT_NE(refused.find(support::errorCodeText(support::SystemError::connectionRefused)),
              std::string::npos)
        << refused;
    simulator.start();
    expectUsableOnANewConnectionWithTheLock();
}

TEST_F(SimulatedFault, WhileReleasingADeviceIsSwallowed) {
    for (const Fault& fault : {Fault(faults::Close{}), Fault(faults::Reset{}), Fault(faults::Count{9}),
                               Fault(faults::DeviceError{1000, 0, "no"}), Fault(faults::Cut{5})}) {
        simulator.failNext(fault);
        const auto before = simulator.requestCount();
        EXPECT_NO_THROW(device.reset());
        EXPECT_EQ(simulator.requestCount(), before + 1);
        device = TAVO::DeviceFactory::buildDevice("127.0.0.1", simulator.port(), "engineer", "tavo", true);
    }
}

} // namespace
