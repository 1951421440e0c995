#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <tavo/client/device/core_objects.h>
#include <tavo/client/device/device_factory.h>
#include <tavo/client/device/device_v1_0.h>
#include <tavo/client/wire/error.h>
#include <tests/support/appliance_server.h>
#include <tests/support/failure_text.h>
#include <tests/support/system_error.h>

namespace {

using support::Bytes;
using support::failureOf;
using support::joined;
using support::RawConnection;
using support::u32;
using TAVO::NetworkError;

const std::string closedEarly = "Connection to device closed unexpectedly." +
                                support::errorCodeText(support::SystemError::connectionReset);
const std::string unexpected = "Unexpected data recieved from device.";

/// An open, locked device, and what its next calls do after a fault.
class TavoxDeviceFault : public testing::Test {
protected:
    TavoxDeviceFault() {
        TAVO::CoreObjects::registerCoreObjects();
        server.change(support::addFixedObjects);
        device = TAVO::DeviceFactory::buildDevice("127.0.0.1", server.port(), "alice", "secret", true);
    }

    std::string type() { return device->getDevice()->type(); }

    template <class Exception>
    std::string failureWith(support::ApplianceServer::Fault fault) {
        server.failNext(std::move(fault));
        return failureOf<Exception>([&] { type(); });
    }

    void expectSilentReconnect() {
        const auto before = server.calls().size();
        const auto connections = server.connections();
        EXPECT_EQ(type(), "device");
        const auto calls = server.calls();
        ASSERT_EQ(calls.size(), before + 1);
        EXPECT_EQ(calls.back(), (support::FakeCall{0x51, 0, "type", {}}));
        EXPECT_EQ(server.connections(), connections + 1);
    }

    support::FakeAppliance appliance;
    support::ApplianceServer server{appliance};
    std::shared_ptr<TAVO::Device> device;
};

TEST_F(TavoxDeviceFault, OfAReplyInSingleBytesIsNone) {
    server.failNext([](RawConnection& connection, const Bytes& reply) {
        for (const auto byte : reply)
            connection.write({byte});
    });
    EXPECT_EQ(type(), "device");
}

TEST_F(TavoxDeviceFault, OfAConnectionClosedBetweenCallsIsMendedSilentlyAndKeepsTheLock) {
    server.failNext([](RawConnection& connection, const Bytes& reply) {
        connection.write(reply);
        connection.close();
    });
    EXPECT_EQ(type(), "device");
    server.awaitNoConnection();
    expectSilentReconnect();
}

TEST_F(TavoxDeviceFault, OfAConnectionClosedInsteadOfAReplyIsReportedOnce) {
    EXPECT_EQ(failureWith<NetworkError>([](RawConnection& connection, const Bytes&) { connection.close(); }),
              closedEarly);
    expectSilentReconnect();
}

TEST_F(TavoxDeviceFault, OfAConnectionResetInsteadOfAReplyIsReportedOnce) {
    EXPECT_EQ(failureWith<NetworkError>([](RawConnection& connection, const Bytes&) { connection.reset(); }),
              closedEarly);
    expectSilentReconnect();
}

TEST_F(TavoxDeviceFault, OfAReplyCutAtAnyByteIsReportedOnce) {
    // Status size, error size, result count, result size, return code, length and "device".
    for (std::size_t cut = 0; cut < 4 * 6 + 6; ++cut) {
        EXPECT_EQ(failureWith<NetworkError>([cut](RawConnection& connection, const Bytes& reply) {
                      connection.write(
                          Bytes(reply.begin(), reply.begin() + static_cast<std::ptrdiff_t>(cut)));
                      connection.close();
                  }),
                  closedEarly)
            << cut;
        expectSilentReconnect();
    }
}

TEST_F(TavoxDeviceFault, OfAPeerThatIsGoneIsReportedByEveryCall) {
    server.stop();
    const auto refused = failureOf<NetworkError>([&] { type(); });
    EXPECT_NE(refused.find(support::errorCodeText(support::SystemError::connectionRefused)),
              std::string::npos)
        << refused;
    EXPECT_EQ(failureOf<NetworkError>([&] { type(); }), refused);
}

TEST_F(TavoxDeviceFault, OfAStrayByteIsReportedByTheNextCallAndTakesTheByte) {
    server.failNext([](RawConnection& connection, const Bytes& reply) {
        connection.write(joined({reply, {0xA5}}));
    });
    EXPECT_EQ(type(), "device");
    const auto before = server.exchanges();
    EXPECT_EQ(failureOf<NetworkError>([&] { type(); }), unexpected);
    EXPECT_EQ(server.exchanges(), before);
    EXPECT_EQ(type(), "device");
    EXPECT_EQ(server.connections(), 1u);
}

TEST_F(TavoxDeviceFault, OfAWrongCountLeavesTheRestOfTheReplyToLaterCalls) {
    EXPECT_EQ(failureWith<TAVO::Error>([](RawConnection& connection, const Bytes&) {
                  connection.write(joined({u32(0), u32(0), u32(2), {1, 2}}));
              }),
              "Error calling methods: received result count of 2 expected count of 1");
    EXPECT_EQ(failureOf<NetworkError>([&] { type(); }), unexpected);
    EXPECT_EQ(failureOf<NetworkError>([&] { type(); }), unexpected);
    EXPECT_EQ(type(), "device");
    EXPECT_EQ(server.connections(), 1u);
}

TEST_F(TavoxDeviceFault, OfAShortResultLeavesTheConnectionUsable) {
    EXPECT_EQ(
        failureWith<TAVO::SpecificationError>([](RawConnection& connection, const Bytes&) {
            connection.write(support::replyWith({support::result(0)}));
        }),
        "Error decoding TAVOX return values in call to device.type: Could not read Result from device for "
        "method: device.type");
    EXPECT_EQ(type(), "device");
    EXPECT_EQ(server.connections(), 1u);
}

TEST_F(TavoxDeviceFault, OfADeviceErrorLeavesTheConnectionUsable) {
    EXPECT_EQ(failureWith<TAVO::ExecutionError>([](RawConnection& connection, const Bytes&) {
                  connection.write(support::errorReply(1006, "stuck"));
              }),
              "Failed to execute device.type: stuck");
    EXPECT_EQ(type(), "device");
    EXPECT_EQ(server.connections(), 1u);
}

TEST_F(TavoxDeviceFault, OfAnUnknownDeviceErrorBehindStatusBytesLeavesTheConnectionUsable) {
    EXPECT_EQ(failureWith<TAVO::Error>([](RawConnection& connection, const Bytes&) {
                  connection.write(joined({u32(3), {1, 2, 3}, support::deviceError(1010, "hot"), u32(0)}));
              }),
              "Unknown error code: 1010: hot");
    EXPECT_EQ(type(), "device");
}

} // namespace
