#include <algorithm>
#include <csignal>
#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <tests/cli/share/share_fixture.h>

/// One lock and many clients: what each of them sees.
namespace tool_test {
namespace {

namespace fs = std::filesystem;
using namespace support;
using namespace std::chrono_literals;
using TAVO::DeviceFactory;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class Share : public ShareTest {};

TEST_F(Share, ManyProgramsUseTheDeviceUnderOneLock) {
    const auto lock = simulator.lockHolder();
    ASSERT_TRUE(lock);
    EXPECT_EQ(lock->user, "engineer");
    const auto first = open();
    const auto second = open();
    first->execute(power(first)->getSetMethod(true));
    EXPECT_TRUE(second->value(power(second)->getGetMethod()).state);
    EXPECT_EQ(shared({"relay", "set", "power", "off"}).exitCode, 0);
    EXPECT_FALSE(first->value(power(first)->getGetMethod()).state);
    EXPECT_EQ(simulator.lockHolder(), lock) << "no client has given the lock back";
    EXPECT_THROW(DeviceFactory::buildDevice("127.0.0.1", simulator.port(), "guest", "tavo", false),
                 TAVO::LockError);
}

TEST_F(Share, ShowsTheTreeOfTheDevice) {
    EXPECT_EQ(shared({"tree"}).output, shared({"--direct", "tree"}).output);
    for (const bool byLevels : {false, true}) {
        const auto device = open("engineer", "tavo", {.byLevels = byLevels});
        EXPECT_EQ(device->get<TAVO::Object_v1_0>("bench.drawer.left")->getInstanceID(),
                  instanceId("bench.drawer.left"));
    }
}

TEST_F(Share, PassesErrorsOnAsTheDeviceGaveThem) {
    const auto device = open();
    const auto direct = DeviceFactory::buildDevice("127.0.0.1", simulator.port(), "engineer", "tavo", false,
                                                   {.keepHeldLock = true});
    const auto failureOf = [](const std::shared_ptr<TAVO::Device>& through) {
        const auto queue = std::make_shared<TAVO::MulticallQueue>();
        const auto good = power(through)->getGetMethod();
        queue->add(good);
        queue->add(through->getSystem()->getFirmwareStatusMethod("no such firmware"));
        queue->add(power(through)->getGetMethod());
        try {
            through->multicall(queue);
        } catch (const TAVO::Error& error) {
            EXPECT_EQ(good->returnCode(), 0);
            return std::string(error.what()) + " " + std::to_string(*error.facts().deviceErrorCode);
        }
        return std::string("no failure");
    };
    EXPECT_EQ(failureOf(device), failureOf(direct));
    EXPECT_THAT(failureOf(device), HasSubstr("1000"));
}

TEST_F(Share, WantsTheSameUserAndPassword) {
    EXPECT_THROW(open("engineer", "wrong"), TAVO::TAVOLoginError);
    try {
        open("guest", "tavo");
        FAIL() << "another user was let in";
    } catch (const TAVO::LockError& error) {
        EXPECT_EQ(error.lockingUser(), "engineer");
    }
    EXPECT_TRUE(simulator.lockHolder());
}

TEST_F(Share, GivesEveryClientALockIdOfItsOwn) {
    RawClient first(share->port());
    RawClient second(share->port());
    const auto real = simulator.lockHolder()->lockId;
    const auto ids = std::vector{lockWith(first), lockWith(second)};
    EXPECT_NE(ids[0], ids[1]);
    for (const auto id : ids) {
        EXPECT_NE(id, 0u);
        EXPECT_NE(id, real);
    }
    const auto on = replyWith({u32(0)});
    const auto set = call("power", "set", {1});
    first.send(requestBytes(ids[0], {set}));
    EXPECT_EQ(first.receive(on.size()), on);
    // An id outlives its connection, as one of the device does, until it is given back.
    second.send(requestBytes(ids[0], {set}));
    EXPECT_EQ(second.receive(on.size()), on);
    first.send(requestBytes(ids[0], {call("device", "unlock", joined({text("engineer"), text("tavo")}))}));
    EXPECT_EQ(first.receive(on.size()), on);
    const auto refused = joined({u32(0), block(joined({u32(0), u32(1001), text("engineer")})), u32(0)});
    second.send(requestBytes(ids[0], {set}));
    EXPECT_EQ(second.receive(refused.size()), refused);
    EXPECT_EQ(simulator.lockHolder()->lockId, real);
    EXPECT_EQ(simulator.calls().back().lockId, real) << "the device is called with the lock it has given";
}

TEST_F(Share, GivesStrangersDescriptionsOnly) {
    const auto device = query();
    EXPECT_EQ(device->getDevice()->type(), "device");
    EXPECT_EQ(device->value(device->getDevice()->getRootMembersMethod()).members.size(), 3u);
    EXPECT_EQ(device->lockHolder(), "engineer");
    RawClient stranger(share->port());
    const auto refused = joined({u32(0), block(joined({u32(0), u32(1001), text("engineer")})), u32(0)});
    for (const auto& [object, method] : std::vector<std::pair<std::string, std::string>>{
             {"power", "get"}, {"power", "available"}, {"power", "unreserve"}, {"system", "deviceReset"}}) {
        stranger.send(requestBytes(0, {call(object, method)}));
        EXPECT_EQ(stranger.receive(refused.size()), refused) << object << "." << method;
    }
    stranger.send(requestBytes(simulator.lockHolder()->lockId, {call("power", "set", {1})}));
    EXPECT_EQ(stranger.receive(refused.size()), refused) << "the device's own lock id is worth nothing here";
    EXPECT_THAT(callsOf("power", "set"), IsEmpty());
}

TEST_F(Share, PutsAnswersOfItsOwnBetweenThoseOfTheDevice) {
    RawClient client(share->port());
    const auto id = lockWith(client);
    const auto type = call("power", "type");
    const auto typeResult = joined({u32(0), text("relay")});
    // "type" becomes known with the methods of its object, and is remembered from then on.
    {
        RawClient learning(share->port());
        learning.send(requestBytes(0, {callBytes(instanceId("power"), 3)}));
        learning.send(requestBytes(0, {type}));
        learning.finishSending();
        learning.receiveToEnd();
    }
    const auto before = simulator.requestCount();
    client.send(requestBytes(id, {type, call("power", "set", {1}), type, type, call("power", "get"), type}));
    const auto expected =
        replyWith({typeResult, u32(0), typeResult, typeResult, joined({u32(0), {1}}), typeResult});
    EXPECT_EQ(client.receive(expected.size()), expected);
    EXPECT_EQ(simulator.requestCount(), before + 1);
    EXPECT_EQ(callsOf("power", "type").size(), 1u);

    // An error ends the results where the call stands in the request, not where it stood for the device.
    client.send(
        requestBytes(id, {type, call("power", "get"), type, callBytes(instanceId("power"), 9999), type}));
    const auto message = "Object 'power' has no method with id 9999";
    const auto failed = joined({u32(0), block(joined({u32(3), u32(1003), text(message)})), u32(3),
                                block(typeResult), block(joined({u32(0), {1}})), block(typeResult)});
    EXPECT_EQ(client.receive(failed.size()), failed);

    // Wrong credentials end the calls as well, and what stands before them is executed.
    client.send(requestBytes(0, {lockCall(), call("power", "set", {0}),
                                 call("device", "unlock", joined({text("engineer"), text("wrong")})),
                                 call("power", "set", {1})}));
    const auto head = joined({u32(0), block(joined({u32(2), u32(1013), text("Wrong user name or password")})),
                              u32(2), u32(8), u32(0)});
    const auto reply = client.receive(head.size() + 12);
    ASSERT_EQ(reply.size(), head.size() + 12);
    EXPECT_EQ(Bytes(reply.begin(), reply.begin() + static_cast<std::ptrdiff_t>(head.size())), head);
    EXPECT_EQ(Bytes(reply.end() - 8, reply.end()), block(u32(0)));
    EXPECT_EQ(shared({"relay", "get", "power"}).output, "off\n");
}

TEST_F(Share, AsksTheDeviceForDescriptionsOnce) {
    ASSERT_EQ(shared({"tree"}).exitCode, 0);
    const auto before = simulator.requestCount();
    ASSERT_EQ(shared({"tree"}).exitCode, 0);
    EXPECT_EQ(shared({"relay", "get", "power"}).output, "off\n");
    EXPECT_EQ(simulator.requestCount(), before + 1) << "the value of the relay is all that is new";
}

TEST_F(Share, ForgetsDescriptionsWhenTheDeviceChanges) {
    ASSERT_EQ(shared({"tree"}).exitCode, 0);
    const auto asks = [&] {
        const auto before = callsOf("power", "methods").size();
        EXPECT_EQ(shared({"tree"}).exitCode, 0);
        return callsOf("power", "methods").size() - before;
    };
    EXPECT_EQ(asks(), 0u);
    const auto device = open();
    device->call(device->getSystem()->getFirmwareStatusMethod("main"));
    EXPECT_EQ(asks(), 1u) << "after a question for the firmware";
    EXPECT_EQ(asks(), 0u);
    RawClient client(share->port());
    const auto id = lockWith(client);
    client.send(requestBytes(id, {callBytes(instanceId("power"), 9999)}));
    client.receive();
    EXPECT_EQ(asks(), 1u) << "after an unknown method of a known object";
    client.send(requestBytes(id, {callBytes(4711, 9999)}));
    client.receive();
    EXPECT_EQ(asks(), 0u) << "an object that nobody was told of does not matter";
}

TEST_F(Share, TakesTurns) {
    const auto other = open();
    RawClient greedy(share->port());
    const auto id = lockWith(greedy);
    Bytes flood;
    for (int i = 0; i < 500; ++i)
        flood = joined({flood, requestBytes(id, {call("system", "uwait", u32(2000))})});
    greedy.send(flood);
    ASSERT_TRUE(soon([&] { return !callsOf("system", "uwait").empty(); }));
    const auto before = callsOf("system", "uwait").size();
    other->call(power(other)->getGetMethod());
    const auto calls = simulator.calls();
    const auto isOther = [](const auto& record) {
        return record.object == "power" && record.method == "get";
    };
    const auto turn = std::find_if(calls.begin(), calls.end(), isOther);
    ASSERT_NE(turn, calls.end());
    const auto isGreedy = [](const auto& record) { return record.method == "uwait"; };
    EXPECT_LE(std::count_if(calls.begin(), turn, isGreedy), static_cast<std::ptrdiff_t>(before + 100))
        << "of 500 that had arrived before";
}

TEST_F(Share, LargeBlocksGoThrough) {
    simulator.inspect([](TAVO::simulator::Appliance& appliance) {
        appliance.get("bench").add<TAVO::simulator::Relay>("late");
    });
    std::string calls;
    for (int i = 0; i < 20000; ++i)
        calls += "power.type\npower.get\n";
    auto through = setupWith({"batch", "-"});
    through.input = calls;
    auto direct = setupWith({"--direct", "batch", "-"});
    direct.input = calls;
    const auto first = runProcess(through);
    EXPECT_EQ(first.exitCode, 0) << first.errors;
    EXPECT_TRUE(first.output == runProcess(direct).output);
}

TEST_F(Share, IsFoundOnlyForTheSameDeviceAndUser) {
    const auto requests = [&](const Words& arguments) {
        const auto before = simulator.connectionCount();
        EXPECT_EQ(shared(arguments).exitCode, 0) << arguments.front();
        return simulator.connectionCount() - before;
    };
    EXPECT_EQ(requests({"relay", "list"}), 0u);
    EXPECT_EQ(requests({"--direct", "relay", "list"}), 1u);
    auto other = toolWith({"--host", "localhost", "--port", std::to_string(simulator.port()), "--user",
                           "engineer", "relay", "list"});
    other.environment = setupWith({}).environment;
    const auto before = simulator.connectionCount();
    EXPECT_EQ(runProcess(other).exitCode, 0);
    EXPECT_EQ(simulator.connectionCount(), before + 1);
    auto elsewhere = setupWith({"relay", "list"});
    elsewhere.environment["XDG_RUNTIME_DIR"] = "";
    EXPECT_EQ(runProcess(elsewhere).exitCode, 0);
    EXPECT_TRUE(simulator.lockHolder()) << "those that go round it leave the lock alone";
}

TEST_F(Share, IsAloneForItsDeviceAndUser) {
    const auto second = shared({"share"});
    EXPECT_EQ(second.exitCode, 2);
    EXPECT_THAT(second.errors, HasSubstr("this device is shared already: "));
    const auto path = socketFile();
    EXPECT_EQ(fs::status(path).permissions(), fs::perms::owner_read | fs::perms::owner_write);
    EXPECT_EQ(fs::status(folder / "tavo").permissions(), fs::perms::owner_all);
    share->process().signal(SIGKILL);
    share->process().wait();
    EXPECT_TRUE(fs::exists(path));
    EXPECT_EQ(shared({"relay", "get", "power"}).output, "off\n") << "what a killed share left is no obstacle";
    share = start();
    EXPECT_EQ(shared({"relay", "get", "power"}).output, "off\n");
    share->end();
    EXPECT_FALSE(fs::exists(path));
}

TEST_F(Share, OfSeveralThatStartAtOnceOneGetsTheDevice) {
    share->end();
    for (int round = 0; round < 5; ++round) {
        std::vector<std::unique_ptr<Process>> racing;
        for (int i = 0; i < 4; ++i)
            racing.push_back(std::make_unique<Process>(setupWith({"share"})));
        std::vector<Process*> winners;
        for (const auto& one : racing)
            try {
                if (one->firstLine().starts_with("listening"))
                    winners.push_back(one.get());
            } catch (const std::runtime_error& ended) {
                EXPECT_THAT(ended.what(),
                            HasSubstr("ended without a line: tavo: this device is shared already"));
            }
        ASSERT_EQ(winners.size(), 1u);
        EXPECT_EQ(shared({"relay", "get", "power"}).output, "off\n");
        winners.front()->signal(SIGTERM);
        EXPECT_EQ(winners.front()->wait().exitCode, 0);
        EXPECT_EQ(socketFile(), "");
    }
}

TEST_F(Share, IsNotTrustedInAFolderOfOthers) {
    fs::permissions(folder / "tavo", fs::perms::all);
    const auto before = simulator.connectionCount();
    EXPECT_EQ(shared({"relay", "list"}).exitCode, 0);
    EXPECT_EQ(simulator.connectionCount(), before + 1)
        << "the password went to the device, not to the socket";
}

TEST_F(Share, RefusesAFolderOfOthers) {
    share->end();
    fs::permissions(folder / "tavo", fs::perms::all);
    const auto outcome = shared({"share"});
    EXPECT_EQ(outcome.exitCode, 2);
    EXPECT_THAT(outcome.errors, HasSubstr("is not a folder of this user alone"));
    EXPECT_FALSE(simulator.lockHolder());
}

TEST_F(Share, SaysWhatIsWrongWithAnAddress) {
    for (const auto* address : {"", "x", "127.0.0.1:", "127.0.0.1:65536", ":0", "127.0.0.1:1x", "-1"}) {
        const auto outcome = runTool({"--sim", "share", "--listen", address});
        EXPECT_EQ(outcome.exitCode, 2) << address;
        EXPECT_THAT(outcome.errors, HasSubstr("'" + std::string(address) + "'")) << address;
    }
}

TEST_F(Share, AToolThatGoesRoundItLeavesTheLock) {
    EXPECT_EQ(shared({"--direct", "relay", "set", "power", "on"}).exitCode, 0);
    ASSERT_TRUE(simulator.lockHolder());
    EXPECT_EQ(shared({"relay", "get", "power"}).output, "on\n");
    share->end();
    EXPECT_FALSE(simulator.lockHolder());
}

} // namespace
} // namespace tool_test
