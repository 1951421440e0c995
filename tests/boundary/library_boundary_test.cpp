#include <algorithm>
#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include <tavo/client.h>
#include <tests/support/appliance_server.h>
#include <tests/support/failure_text.h>

/// What an application sees of the library across its boundary, be it part of the program or loaded beside
/// it.
namespace {

using support::Bytes;
using support::failureOf;
using support::joined;
using support::result;
using support::text;
using support::u32;
using TAVO::dto::relay::GetReply;
using TAVO::dto::relay::SetRequest;

namespace wire = TAVO::TAVOXTranscode;

constexpr wire::Call<SetRequest, GetReply> openSilo{"open"};
constexpr auto siloRows = wire::tableOf(openSilo);

struct SiloEncoders : wire::base_v1_0::EncoderList {
    SiloEncoders() { enter(siloRows); }
};

struct SiloDecoders : wire::base_v1_0::DecoderList {
    SiloDecoders() { enter(siloRows); }
};

class Silo : public TAVO::Object_v1_0 {
public:
    using Object_v1_0::Object_v1_0;

    bool hasInitialized = false;

    std::shared_ptr<TAVO::Method> getOpenMethod(bool wide) { return make(openSilo, wide); }

protected:
    void initalize() override { hasInitialized = true; }
};

class SiloFactory : public TAVO::ObjectFactory {
public:
    SiloFactory()
        : ObjectFactory("silo") {}

private:
    std::shared_ptr<TAVO::Container> build(std::shared_ptr<TAVO::Device> device,
                                           std::shared_ptr<TAVO::Container> parent, const std::string& name,
                                           std::uint32_t instanceId,
                                           std::shared_ptr<TAVO::Object_v1_0> probe) override {
        if (probe->version() != TAVO::Version("1"))
            throw TAVO::SpecificationError("another silo");
        static const SiloEncoders encoders;
        static const SiloDecoders decoders;
        return create<Silo>(std::move(device), std::move(parent), name, instanceId, encoders, decoders);
    }
};

class LibraryBoundary : public testing::Test {
protected:
    LibraryBoundary() {
        TAVO::CoreObjects::registerCoreObjects();
        TAVO::HWDebug::HwdObjects::registerCoreObjects();
        CommonModules::CommonModulesObjects::registerCoreObjects();
        server.change([](support::FakeAppliance& fake) {
            support::addFixedObjects(fake);
            fake.add(7, "silo").method("open", result(3, {1}));
            fake.object(0).method("rootMembers", result(0, joined({u32(1), text("north"), u32(7)})));
        });
    }

    std::shared_ptr<TAVO::Device> open(bool secure = false) {
        return TAVO::DeviceFactory::buildDevice("127.0.0.1", server.port(), "alice", "secret", secure);
    }

    /// Lets the object "device" answer its method "version" with that error.
    void failWith(std::uint32_t code) {
        server.change([code](support::FakeAppliance& fake) {
            fake.object(0).method("version", [code](const Bytes&) -> Bytes {
                throw support::DeviceFault{code, "why"};
            });
        });
    }

    support::FakeAppliance appliance;
    support::ApplianceServer server{appliance};
};

TEST_F(LibraryBoundary, IsCrossedByEveryClassOfException) {
    auto device = open();
    const auto ask = [&] { device->getDevice()->version(); };
    failWith(1000);
    EXPECT_EQ(failureOf<TAVO::ConfigurationError>(ask), "why");
    failWith(1002);
    EXPECT_EQ(failureOf<TAVO::SpecificationError>(ask), "why");
    failWith(1013);
    EXPECT_EQ(failureOf<TAVO::TAVOLoginError>(ask), "why");
    failWith(77);
    EXPECT_EQ(failureOf<TAVO::Error>(ask), "Unknown error code: 77: why");

    failWith(1001);
    try {
        ask();
        FAIL() << "the lock of another user went unnoticed";
    } catch (const TAVO::LockError& error) {
        EXPECT_EQ(error.lockingUser(), "why");
    }
    failWith(1006);
    try {
        ask();
        FAIL() << "the failed method went unnoticed";
    } catch (const TAVO::ExecutionError& error) {
        EXPECT_EQ(error.failedMethod()->getFullName(), "device.version");
        EXPECT_EQ(error.failedMethodIndex(), 0u);
    }

    device.reset(); // the server has one connection at a time
    server.change([](support::FakeAppliance& fake) {
        fake.object(0).method("version", result(0, joined({u32(1), u32(0), u32(0)})));
        fake.object(0).method("getKey", result(0, text(std::string(16, 'x'))));
    });
    EXPECT_NE(failureOf<TAVO::TAVOKeyError>([&] { open(true); }).find("TAVO"), std::string::npos);
    server.stop();
    EXPECT_NE(failureOf<TAVO::NetworkError>([&] { open(); }).find("127.0.0.1"), std::string::npos);
}

TEST_F(LibraryBoundary, IsCrossedByTheBaseOfAllExceptions) {
    EXPECT_THROW(TAVO::Version("no version"), TAVO::Error);
    EXPECT_THROW(TAVO::Version("no version"), std::runtime_error);
}

TEST_F(LibraryBoundary, IsCrossedByRecordsBothWays) {
    namespace relay = CommonModules::TAVOXTranscode::relay_v1_0;
    const Bytes reply{0, 0, 0, 7, 1};
    TAVOX::InputStream in(reply.data(), reply.size());
    const auto outcome = relay::DecoderList().at("get")(in);
    const auto state = std::dynamic_pointer_cast<GetReply>(outcome.reply);
    ASSERT_NE(state, nullptr);
    EXPECT_EQ(outcome.code, 7);
    EXPECT_EQ(state->state, 1);

    auto request = std::make_shared<SetRequest>();
    request->state = true;
    TAVOX::OutputStream out;
    relay::EncoderList().at("set")(out, TAVO::dto::Params{request});
    ASSERT_FALSE(out.failed());
    EXPECT_EQ(Bytes(out.chunks()[0].begin(), out.chunks()[0].end()), Bytes{1});
}

TEST_F(LibraryBoundary, LetsAnApplicationDeriveProxyTableAndFactory) {
    const SiloFactory factory;
    const auto device = open();
    const auto silo = std::dynamic_pointer_cast<Silo>(device->getChild("north"));
    ASSERT_NE(silo, nullptr);
    EXPECT_TRUE(silo->hasInitialized);
    EXPECT_EQ(silo->type(), "silo");

    const auto opening = silo->getOpenMethod(true);
    device->call(opening);
    EXPECT_EQ(opening->returnCode(), 3);
    EXPECT_EQ(server.calls().back().parameters, Bytes{1});
}

TEST_F(LibraryBoundary, LetsEveryFactoryOfTheLibraryBeRegistered) {
    auto registered = TAVO::ObjectFactory::registeredTypes();
    std::sort(registered.begin(), registered.end());
    const std::vector<std::string> expected{"cfa633",       "cmosRelay", "com",         "cpuDebug",
                                            "csJtag",       "device",    "gpuDebug",    "gpuScan",
                                            "hdt",          "i2c",       "jtag",        "kelvorGpuDebugMux",
                                            "kelvorUvdMux", "lpc",       "lpcPostCode", "lpcRomEmulation",
                                            "private",      "relay",     "system"};
    EXPECT_EQ(registered, expected);
}

TEST_F(LibraryBoundary, IsCrossedByTheTypesOfProxies) {
    const auto device = open();
    EXPECT_NE(std::dynamic_pointer_cast<TAVO::Object_v1_0>(device->getChild("north")), nullptr);
    EXPECT_EQ(std::dynamic_pointer_cast<Silo>(device->getChild("north")), nullptr);
    EXPECT_EQ(device->getSystem()->type(), "system");
}

TEST_F(LibraryBoundary, ShowsTheConstantsOfTheLibrary) {
    EXPECT_EQ(TAVO::ClientLibraryVersion.find("2."), 0u);
    EXPECT_EQ(TAVO::serverKeys().size(), 4u);
}

} // namespace
