#include <chrono>
#include <cstdint>
#include <memory>
#include <string>

#include <tests/device/opened_device.h>

namespace {

using support::Bytes;
using support::joined;
using support::RawConnection;
using support::result;
using support::text;
using support::u32;
using TAVO::DeviceFactory;
using TAVO::ErrorFacts;
using TAVO::ErrorOrigin;

template <class Action>
ErrorFacts factsOf(Action action) {
    try {
        action();
    } catch (const TAVO::Error& error) {
        return error.facts();
    }
    ADD_FAILURE() << "no error";
    return {};
}

std::string adviceOn(const TAVO::Error& error) {
    const auto& facts = error.facts();
    if (facts.origin == TAVO::ErrorOrigin::device)
        return "the device refuses " + facts.method;
    if (!facts.connectionUsable)
        return "try again over a new connection";
    return "mend the program";
}

/// What goes with the errors of a device over a real connection besides their texts.
class FactsOfDevice : public support::OpenedDevice {
protected:
    ErrorFacts factsOfType(const TAVO::Device& device) {
        return factsOf([&] { device.getDevice()->type(); });
    }

    /// Of a failure that begins with the connection.
    static ErrorFacts brokenIn(const std::string& method) {
        return {.origin = ErrorOrigin::connection, .connectionUsable = false, .method = method};
    }
};

TEST_F(FactsOfDevice, TellEveryCodeThatItReports) {
    const auto device = build();
    for (const std::uint32_t code : {1000u, 1001u, 1002u, 1003u, 1004u, 1005u, 1006u, 1013u, 4711u}) {
        answer("type", [code](const Bytes&) -> Bytes { throw support::DeviceFault{code, "why"}; });
        const ErrorFacts expected{
            .origin = ErrorOrigin::device, .deviceErrorCode = code, .method = "device.type"};
        EXPECT_EQ(factsOfType(*device), expected) << code;
    }
    answer("type", result(0, text("device")));
    EXPECT_EQ(device->getDevice()->type(), "device");
    EXPECT_EQ(device->reconnects(), 0u) << "the connection was usable";
}

TEST_F(FactsOfDevice, TellWhatToDo) {
    const auto device = build();
    const auto advice = [&](const std::shared_ptr<TAVO::Method>& method) -> std::string {
        try {
            device->call(method);
        } catch (const TAVO::Error& error) {
            return adviceOn(error);
        }
        return "go on";
    };
    const auto type = device->getDevice()->getTypeMethod();
    EXPECT_EQ(advice(type), "go on");
    EXPECT_EQ(advice(nullptr), "mend the program");
    server.failNext([](RawConnection& connection, const Bytes&) { connection.close(); });
    EXPECT_EQ(advice(type), "try again over a new connection");
    answer("type", [](const Bytes&) -> Bytes { throw support::DeviceFault{1000, "why"}; });
    EXPECT_EQ(advice(type), "the device refuses device.type");
}

TEST_F(FactsOfDevice, TellOfALockOfAnotherUserInAnOpening) {
    answer("lock", [](const Bytes&) -> Bytes { throw support::DeviceFault{1001, "bob"}; });
    const ErrorFacts expected{
        .origin = ErrorOrigin::device, .deviceErrorCode = 1001u, .method = "device.lock"};
    EXPECT_EQ(factsOf([&] { build(); }), expected);
}

TEST_F(FactsOfDevice, TellThatAReturnCodeCameFromIt) {
    answer("rootMembers", result(2, u32(0)));
    const ErrorFacts expected{.origin = ErrorOrigin::device, .method = "device.rootMembers"};
    EXPECT_EQ(factsOf([&] { build(); }), expected);
}

TEST_F(FactsOfDevice, AreThoseOfTheCauseWhereALoginIsRefused) {
    const auto device = build();
    answer("login", [](const Bytes&) -> Bytes { throw support::DeviceFault{1013, "who?"}; });
    const auto login = [&] { DeviceFactory::authenticate(device, "bob", "pass"); };
    const ErrorFacts refused{
        .origin = ErrorOrigin::device, .deviceErrorCode = 1013u, .method = "device.login"};
    EXPECT_EQ(factsOf(login), refused);
    server.failNext([](RawConnection& connection, const Bytes&) { connection.close(); });
    EXPECT_EQ(factsOf(login), brokenIn("device.login"));
}

TEST_F(FactsOfDevice, TellThatTheKeyWasRefusedHere) {
    answer("getKey", result(0, text(std::string(16, 'x'))));
    EXPECT_EQ(factsOf([&] { build(true); }), ErrorFacts());
    server.awaitNoConnection();
    EXPECT_EQ(factsOf([&] { query(); }), ErrorFacts());
}

TEST_F(FactsOfDevice, AreTheConnectionsWhereNobodyListens) {
    const auto device = build();
    server.stop();
    EXPECT_EQ(factsOf([&] { build(); }), brokenIn(""));
    EXPECT_EQ(factsOfType(*device), brokenIn("device.type"));
}

TEST_F(FactsOfDevice, AreTheConnectionsWhereItEndsOrBringsWhatNobodyAskedFor) {
    const auto device = build();
    server.failNext([](RawConnection& connection, const Bytes&) { connection.close(); });
    EXPECT_EQ(factsOfType(*device), brokenIn("device.type"));
    server.failNext([](RawConnection& connection, const Bytes& reply) {
        connection.write(joined({reply, {1}}));
    });
    device->getDevice()->type();
    EXPECT_EQ(factsOfType(*device), brokenIn("device.type"));
}

TEST_F(FactsOfDevice, AreTheConnectionsWhereAWaitIsEnded) {
    const auto device = build();
    server.failNext([&](RawConnection&, const Bytes&) { device->interrupt(); });
    EXPECT_EQ(factsOfType(*device), brokenIn("device.type"));
    device->setTimeLimit(std::chrono::milliseconds(300));
    server.failNext([](RawConnection&, const Bytes&) {});
    EXPECT_EQ(factsOfType(*device), brokenIn("device.type"));
}

TEST_F(FactsOfDevice, NameTheFieldOfAResultThatIsShort) {
    const auto version = joined({u32(1), u32(2), u32(3)});
    const auto begin = joined({text("bench"), version, u32(1), text("main"), version});
    answer("info", result(0, begin));
    const auto device = build();
    const ErrorFacts withoutBoards{.method = "device.info", .field = "boards", .offset = 4 + begin.size()};
    EXPECT_EQ(factsOf([&] { device->call(device->getDevice()->getInfoMethod()); }), withoutBoards);

    answer("info", result(0, joined({begin, u32(1), text("a"), text("b"), u32(9), Bytes(8)})));
    const auto inABoard = factsOf([&] { device->call(device->getDevice()->getInfoMethod()); });
    EXPECT_EQ(inABoard.field, "boards[0].field3");
    EXPECT_EQ(inABoard.offset, 4 + begin.size() + 4 + 5 + 5);
}

TEST_F(FactsOfDevice, NameTheMethodThatCannotBeBuilt) {
    const auto device = build();
    const ErrorFacts expected{.method = "device.getMaxPacketSize"};
    EXPECT_EQ(factsOf([&] { device->getDevice()->getMaxPacketSizeMethod(); }), expected);
}

TEST_F(FactsOfDevice, TellThatThereIsNoDeviceAnyMore) {
    auto device = build();
    const auto object = device->getDevice();
    device.reset();
    const ErrorFacts expected{.connectionUsable = false, .method = "device.type"};
    EXPECT_EQ(factsOf([&] { object->type(); }), expected);
}

TEST_F(FactsOfDevice, AreTheLibrarysForATreeThatItCannotBuild) {
    server.change([](support::FakeAppliance& fake) { fake.object(0).version(2, 0, 0); });
    EXPECT_EQ(factsOf([&] { build(); }), ErrorFacts());
}

} // namespace
