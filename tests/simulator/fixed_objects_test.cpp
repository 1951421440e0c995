#include <tests/simulator/simulator_fixture.h>

namespace {

using namespace support;
using namespace TAVO::simulator;
using std::chrono::microseconds;
using std::chrono::seconds;

class FixedObjects : public SimulatorFixture {
protected:
    FixedObjects() { freeze(); }
    static Bytes xored(Bytes challenge, const std::string& password) {
        Bytes response;
        for (std::size_t i = 0; i < password.size(); ++i)
            response.push_back(
                static_cast<std::uint8_t>(static_cast<std::uint8_t>(password[i]) ^ challenge[i % 16]));
        return response;
    }
};

TEST_F(FixedObjects, DeviceTellsWhatItIs) {
    const auto device = open();
    const auto info = called(device, device->getDevice()->getInfoMethod())->value();
    EXPECT_EQ(info.name, "tavo-sim");
    EXPECT_EQ(info.version, (TAVO::dto::Base::Version{2, 0, 0}));
    ASSERT_EQ(info.firmware.size(), 2u);
    EXPECT_EQ(info.firmware[0].name, "fpga");
    EXPECT_EQ(info.boards.size(), 2u);
}

TEST_F(FixedObjects, DeviceListsRootMembersAlone) {
    const auto device = open();
    std::vector<std::string> names;
    for (const auto& member : called(device, device->getDevice()->getRootMembersMethod())->value().members)
        names.push_back(member.name);
    for (const auto* name : {"power", "cmos", "bench"})
        EXPECT_EQ(std::count(names.begin(), names.end(), name), 1) << name;
    for (const auto* name : {"device", "system", "private", "lamp"})
        EXPECT_EQ(std::count(names.begin(), names.end(), name), 0) << name;
}

TEST_F(FixedObjects, DeviceAnswersTheChosenKey) {
    for (int key = 0; key < 4; ++key) {
        Options options;
        options.serverKey = key;
        options.topology = "bare";
        Simulator other(options);
        other.start();
        TAVO::Device_Factory_Structs::TavoDeviceDescriptor found;
        TAVO::DeviceFactory::queryDevice("127.0.0.1", other.port(), found);
        EXPECT_EQ(found.firstKeyFlag, key >= 2);
        EXPECT_EQ(found.secondKeyFlag, key % 2 == 1);
    }
}

TEST_F(FixedObjects, DeviceCanAnswerAnUnknownKey) {
    Options options;
    options.serverKey = -1;
    Simulator other(options);
    other.start();
    EXPECT_THROW(TAVO::DeviceFactory::buildDevice("127.0.0.1", other.port(), "engineer", "tavo", true),
                 TAVO::TAVOKeyError);
    EXPECT_NO_THROW(TAVO::DeviceFactory::buildDevice("127.0.0.1", other.port(), "engineer", "tavo", false));
}

TEST(SimulatorOptions, RefuseWhatThereIsNot) {
    Options options;
    options.serverKey = 4;
    EXPECT_THROW(Simulator{options}, std::invalid_argument);
    options = {};
    options.topology = "moon";
    EXPECT_THROW(Simulator{options}, std::invalid_argument);
}

TEST_F(FixedObjects, LoginAsksForTheCombinedPassword) {
    const auto device = open();
    const auto proxy = device->getDevice();
    const auto challenge = called(device, proxy->getLoginMethod("guest"))->value().challenge;
    ASSERT_EQ(challenge.size(), 16u);
    const auto answer = called(device, proxy->getCHAPResponseMethod(xored(challenge, "tavo"), 0));
    const auto welcome = answer->value();
    EXPECT_EQ(std::string(welcome.begin(), welcome.end()), "Welcome, guest");
    EXPECT_NE(called(device, proxy->getLoginMethod("guest"))->value().challenge, challenge);
}

TEST_F(FixedObjects, LoginIsRefusedWithA1013) {
    const auto device = open();
    const auto proxy = device->getDevice();
    EXPECT_THROW(called(device, proxy->getLoginMethod("stranger")), TAVO::TAVOLoginError);
    EXPECT_THROW(called(device, proxy->getCHAPResponseMethod({1, 2}, 0)), TAVO::TAVOLoginError);
    const auto challenge = called(device, proxy->getLoginMethod("guest"))->value().challenge;
    EXPECT_THROW(called(device, proxy->getCHAPResponseMethod(xored(challenge, "wrong"), 0)),
                 TAVO::TAVOLoginError);
    EXPECT_THROW(called(device, proxy->getCHAPResponseMethod(xored(challenge, "tavo"), 0)),
                 TAVO::TAVOLoginError);
    EXPECT_THROW(TAVO::DeviceFactory::authenticate(device, "stranger", ""), TAVO::TAVOLoginError);
}

TEST_F(FixedObjects, DeviceListsGetMaxPacketSize) {
    RawClient client(simulator.port());
    client.send(requestBytes(0, {call("device", "getMaxPacketSize")}));
    EXPECT_EQ(client.receive(), replyWith({{0, 0, 0, 0, 4, 0, 0, 0}}));
}

TEST_F(FixedObjects, PrivateHasTheBaseMethodsAlone) {
    const auto device = open();
    EXPECT_EQ(device->getPrivate()->type(), "private");
    EXPECT_EQ(device->getPrivate()->methods().size(), 8u);
}

TEST_F(FixedObjects, TheClockIsSetAndRuns) {
    const auto device = open();
    const auto system = device->getSystem();
    const auto now = [&] { return called(device, system->getTimeGetMethod())->value(); };
    EXPECT_EQ(called(device, system->getTimeSetMethod(1'000'000))->returnCode(), 0);
    EXPECT_EQ(now(), 1'000'000);
    pass(microseconds(5));
    EXPECT_EQ(now(), 1'000'005);
    called(device, system->getTimeSetMethod(-1));
    EXPECT_EQ(now(), -1);
    called(device, system->getTimeSetMethod(INT64_MIN));
    EXPECT_EQ(now(), INT64_MIN);
}

TEST_F(FixedObjects, SleepingInABatchMovesTheTimeOfLaterCalls) {
    const auto device = open();
    const auto system = device->getSystem();
    const auto before = system->getTimeGetMethod(), between = system->getTimeGetMethod(),
               after = system->getTimeGetMethod();
    const auto batch = std::make_shared<TAVO::MulticallQueue>();
    batch->add(system->getTimeSetMethod(0));
    batch->add(before);
    batch->add(system->getUSleepMethod(300));
    batch->add(between);
    batch->add(system->getUWaitMethod(50));
    batch->add(after);
    device->multicall(batch);
    EXPECT_EQ(before->value(), 0);
    EXPECT_EQ(between->value(), 300);
    EXPECT_EQ(after->value(), 350);
    EXPECT_EQ(called(device, system->getTimeGetMethod())->value(), 350);
}

TEST_F(FixedObjects, SettingTheClockBehindASleepCountsFromThere) {
    const auto device = open();
    const auto system = device->getSystem();
    const auto batch = std::make_shared<TAVO::MulticallQueue>();
    const auto after = system->getTimeGetMethod();
    batch->add(system->getUSleepMethod(300));
    batch->add(system->getTimeSetMethod(1000));
    batch->add(after);
    device->multicall(batch);
    EXPECT_EQ(after->value(), 1000);
    EXPECT_EQ(called(device, system->getTimeGetMethod())->value(), 1000);
}

TEST_F(FixedObjects, SleepingDelaysTheAnswer) {
    const auto device = open();
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(called(device, device->getSystem()->getUSleepMethod(50'000))->returnCode(), 0);
    EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(50));
    EXPECT_EQ(called(device, device->getSystem()->getUSleepMethod(0))->returnCode(), 0);
    EXPECT_EQ(called(device, device->getSystem()->getUSleepMethod(-1))->returnCode(),
              return_code::badArgument);
    EXPECT_EQ(called(device, device->getSystem()->getUWaitMethod(-1))->returnCode(),
              return_code::badArgument);
}

TEST_F(FixedObjects, ALongSleepPassesInSimulatedTimeOnly) {
    Options options;
    options.longestDelay = microseconds(1000);
    Simulator other(options);
    other.start();
    const auto device = TAVO::DeviceFactory::buildDevice("127.0.0.1", other.port(), "engineer", "tavo", true);
    const auto elapsed = [&] {
        return other.inspect([](Appliance& appliance) { return appliance.clock().elapsed(); });
    };
    const auto before = elapsed();
    called(device, device->getSystem()->getUSleepMethod(2'000'000'000));
    EXPECT_GE(elapsed(), before + 2'000'000'000);
}

TEST_F(FixedObjects, OthersAreServedWhileOneSleeps) {
    RawClient sleeper(simulator.port()), other(simulator.port());
    sleeper.send(requestBytes(0, {call("system", "usleep", u32(1'000'000'000))}));
    ASSERT_TRUE(soon([&] { return simulator.requestCount() == 1; }));
    other.send(requestBytes(0, {call("power", "get")}));
    EXPECT_EQ(other.receive(), replyWith({{0, 0, 0, 0, 0}}));
    EXPECT_FALSE(sleeper.hasInput());
}

TEST_F(FixedObjects, SimulatedTimeNeverGoesBack) {
    Simulator running;
    running.start();
    const auto elapsed = [&] {
        return running.inspect([](Appliance& appliance) { return appliance.clock().elapsed(); });
    };
    const auto id =
        running.inspect([](Appliance& appliance) { return appliance.get("system").methodId("usleep"); });
    RawClient sleeper(running.port());
    const auto before = elapsed();
    sleeper.send(requestBytes(0, {callBytes(1, id, u32(3'000'000))}));
    ASSERT_TRUE(soon([&] { return running.requestCount() == 1; }));
    EXPECT_GE(elapsed(), before + 3'000'000);
    running.inspect([](Appliance& appliance) { appliance.clock().advance(seconds(1)); });
    EXPECT_GE(elapsed(), before + 4'000'000);
}

TEST_F(FixedObjects, ResetDropsLockAndReservationsAndClosesEveryConnection) {
    const auto device = open();
    RawClient other(simulator.port());
    called(device, object(device, "power")->getReserveMethod("ann", ""));
    called(device, object<CommonModules::Relay_v1_0>(device, "power")->getSetMethod(true));
    ASSERT_TRUE(soon([&] { return simulator.openConnections() == 2; }));
    EXPECT_EQ(called(device, device->getSystem()->getDeviceResetMethod())->returnCode(), 0);
    EXPECT_EQ(other.receive(), Bytes{});
    EXPECT_TRUE(soon([&] { return simulator.openConnections() == 0; }));
    EXPECT_FALSE(simulator.lockHolder());
    EXPECT_TRUE(called(device, object(device, "power")->getAvailableMethod())->value().available);
    EXPECT_EQ(
        called(device, object<CommonModules::Relay_v1_0>(device, "power")->getGetMethod())->value().state, 0);
}

TEST_F(FixedObjects, AFirmwareUpdateGoesOnInSimulatedTime) {
    const auto device = open();
    const auto system = device->getSystem();
    const auto status = [&](const std::string& name) {
        const auto reply = called(device, system->getFirmwareStatusMethod(name))->value();
        return std::pair(reply.first, reply.second);
    };
    const std::vector<unsigned char> image(100, 0x5A);
    EXPECT_EQ(status("main"), std::pair(0u, 0u));
    EXPECT_EQ(called(device, system->getFirmwareUpdateMethod("main", image))->returnCode(), 0);
    EXPECT_EQ(status("main"), std::pair(1u, 0u));
    EXPECT_EQ(status("fpga"), std::pair(0u, 0u));
    EXPECT_EQ(called(device, system->getFirmwareUpdateMethod("main", image))->returnCode(),
              return_code::busy);
    pass(microseconds(600'000));
    EXPECT_EQ(status("main").first, 1u);
    EXPECT_GE(status("main").second, 50u);
    pass(seconds(1));
    EXPECT_EQ(status("main"), std::pair(2u, 100u));
    simulator.inspect([&](Appliance& appliance) {
        const auto& firmware = appliance.firmware().at("main", appliance.clock().elapsed());
        EXPECT_EQ(firmware.image, image);
        EXPECT_EQ(firmware.version, (TAVO::dto::Base::Version{2, 4, 8}));
    });
}

TEST_F(FixedObjects, ABadImageFailsOnTheWayAndAnEmptyOneAtOnce) {
    const auto device = open();
    const auto system = device->getSystem();
    EXPECT_EQ(called(device, system->getFirmwareUpdateMethod("fpga", {}))->returnCode(), 0);
    EXPECT_EQ(called(device, system->getFirmwareStatusMethod("fpga"))->value().first, 3u);
    EXPECT_EQ(called(device, system->getFirmwareUpdateMethod("main", {'B', 'A', 'D', '!'}))->returnCode(), 0);
    EXPECT_EQ(called(device, system->getFirmwareStatusMethod("main"))->value().first, 1u);
    pass(seconds(2));
    const auto status = called(device, system->getFirmwareStatusMethod("main"))->value();
    EXPECT_EQ(status.first, 3u);
    EXPECT_EQ(status.second, 50u);
}

TEST_F(FixedObjects, AnUnknownFirmwareIsAConfigurationError) {
    const auto device = open();
    EXPECT_THROW(called(device, device->getSystem()->getFirmwareStatusMethod("toaster")),
                 TAVO::ConfigurationError);
    EXPECT_THROW(called(device, device->getSystem()->getFirmwareUpdateMethod("toaster", {1})),
                 TAVO::ConfigurationError);
}

} // namespace
