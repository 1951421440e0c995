#include <algorithm>
#include <cstdint>
#include <memory>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include <tavo/client/device/device_factory.h>
#include <tests/device/drawn_tree.h>
#include <tests/device/memory_transport.h>
#include <tests/support/all_types.h>
#include <tests/support/allocation_meter.h>
#include <tests/support/appliance_server.h>
#include <tests/support/failure_text.h>

namespace {

using support::Bytes;
using support::FakeAppliance;
using support::joined;
using support::result;
using support::text;
using support::u32;
using TAVO::DeviceFactory;
using TAVO::OpenOptions;
using Names = std::vector<std::string>;

std::string listedIds(const TAVO::Object_v1_0& object) {
    return opening::idsOf(object, Names{"type", "version", "members", "get", "set", "odd"});
}

/// What became of an opening: the tree, or the exception.
std::string outcomeOf(int port, const OpenOptions& options) {
    return opening::outcomeOf(
        [&] { return DeviceFactory::buildDevice("127.0.0.1", port, "alice", "secret", false, options); },
        listedIds);
}

const OpenOptions byLevels{.byLevels = true};

using Members = std::vector<std::pair<std::string, std::uint32_t>>;

void setRootMembers(FakeAppliance& appliance, const Members& members) {
    Bytes list = u32(static_cast<std::uint32_t>(members.size()));
    for (const auto& [name, id] : members)
        list = joined({list, text(name), u32(id)});
    appliance.object(0).method("rootMembers", result(0, list));
}

/// "power", "group" of an unknown type, "group.inner", "group.inner.deep".
void addSmallTree(FakeAppliance& appliance) {
    support::addFixedObjects(appliance);
    appliance.add(9, "relay");
    appliance.add(4, "novelty").member("inner", 12);
    appliance.add(12, "cmosRelay").member("deep", 13);
    appliance.add(13, "relay");
    setRootMembers(appliance, {{"power", 9}, {"group", 4}});
}

class LevelOpening : public testing::Test {
protected:
    LevelOpening() { support::registerAllTypes(); }

    FakeAppliance appliance;
};

TEST_F(LevelOpening, AsksForEachLevelInTwoExchanges) {
    addSmallTree(appliance);
    support::ApplianceServer server(appliance);
    const auto device =
        DeviceFactory::buildDevice("127.0.0.1", server.port(), "alice", "secret", false, byLevels);
    const Names expected{"0.methods",                                                           //
                         "0.type",        "0.version",  "0.members",                            //
                         "0.lock",                                                              //
                         "0.rootMembers",                                                       //
                         "2.methods",     "1.methods",  "9.methods",  "4.methods",              //
                         "2.type",        "2.version",  "2.members",  "1.type",    "1.version", //
                         "1.members",     "9.type",     "9.version",  "9.members", "4.type",    //
                         "4.version",     "4.members",                                          //
                         "12.methods",                                                          //
                         "12.type",       "12.version", "12.members",                           //
                         "13.methods",                                                          //
                         "13.type",       "13.version", "13.members"};
    EXPECT_EQ(server.callNames(), expected);
    EXPECT_EQ(server.exchanges(), 10u);
    EXPECT_EQ(server.connections(), 1u);
    // From now on the device is asked again.
    EXPECT_EQ(device->get<TAVO::Object_v1_0>("power")->type(), "relay");
    EXPECT_EQ(server.exchanges(), 11u);
}

TEST_F(LevelOpening, BuildsTheSameTree) {
    addSmallTree(appliance);
    support::ApplianceServer server(appliance);
    const auto usual = outcomeOf(server.port(), {});
    EXPECT_NE(usual.find("group.inner.deep"), std::string::npos) << usual;
    EXPECT_EQ(outcomeOf(server.port(), byLevels), usual);
}

TEST_F(LevelOpening, InTwoHalvesDoesTheSame) {
    addSmallTree(appliance);
    support::ApplianceServer server(appliance);
    TAVO::Device_Factory_Structs::TavoDeviceDescriptor descriptor;
    const auto device = DeviceFactory::queryDevice("127.0.0.1", server.port(), descriptor, byLevels);
    EXPECT_EQ(server.exchanges(), 3u);
    DeviceFactory::openDevice(device, "alice", "secret", byLevels);
    EXPECT_EQ(server.exchanges(), 11u);
    EXPECT_EQ(device->get<TAVO::Object_v1_0>("group.inner.deep")->getInstanceID(), 13u);
}

TEST_F(LevelOpening, AsksAgainForWhatIsRefusedInABatch) {
    addSmallTree(appliance);
    bool batched = true;
    appliance.object(9).method("version", [&](const Bytes&) -> Bytes {
        if (std::exchange(batched, false))
            throw support::DeviceFault{1006, "busy"};
        return result(0, joined({u32(1), u32(0), u32(0)}));
    });
    support::ApplianceServer server(appliance);
    const auto first = outcomeOf(server.port(), byLevels);
    EXPECT_EQ(first, outcomeOf(server.port(), {}));
}

TEST_F(LevelOpening, MeetsEveryRefusalAsWithoutBatches) {
    for (const std::uint32_t code : {1000U, 1001U, 1002U, 1003U, 1004U, 1005U, 1006U, 1013U, 4711U})
        for (const std::uint32_t object : {0U, 1U, 2U, 9U, 12U, 13U})
            for (const auto* method : {"methods", "type", "version", "members"}) {
                appliance = {};
                addSmallTree(appliance);
                appliance.object(object).method(method, [code](const Bytes&) -> Bytes {
                    throw support::DeviceFault{code, "refused"};
                });
                support::ApplianceServer server(appliance);
                const auto usual = outcomeOf(server.port(), {});
                server.awaitNoConnection();
                EXPECT_EQ(outcomeOf(server.port(), byLevels), usual) << code << " " << object << method;
            }
}

/// What becomes of an opening of the small tree, over a transport in memory, with this result block for one
/// call.
std::string outcomeWith(std::uint32_t object, const std::string& method, const Bytes& block, bool levels) {
    support::MemoryLine line;
    addSmallTree(line.appliance);
    line.appliance.object(object).method(method, block);
    return opening::outcomeOf(
        [&] {
            return DeviceFactory::buildDevice(std::make_unique<support::MemoryTransport>(line), "alice",
                                              "secret", false, {.byLevels = levels});
        },
        listedIds);
}

/// The block cut everywhere, continued, and with each of its bytes changed.
std::vector<Bytes> damaged(const Bytes& block) {
    std::vector<Bytes> all;
    for (std::size_t length = 0; length < block.size(); ++length)
        all.emplace_back(block.begin(), block.begin() + static_cast<std::ptrdiff_t>(length));
    all.push_back(joined({block, Bytes(1, 0)}));
    all.push_back(joined({block, Bytes(100, 0xFF)}));
    for (std::size_t place = 0; place < block.size(); ++place)
        for (const auto value : Bytes{0x00, 0x01, 0x41, 0x7F, 0xFF}) {
            all.push_back(block);
            all.back()[place] = value;
        }
    return all;
}

TEST_F(LevelOpening, MeetsEveryDamagedDescriptionAsWithoutBatches) {
    addSmallTree(appliance);
    const std::size_t besideBlock = 4 + 4 + 4 + 4; // status, error, count, size
    std::size_t failures = 0;
    for (const std::uint32_t object : {0U, 1U, 2U, 4U, 9U, 12U, 13U})
        for (const auto* method : {"methods", "type", "version", "members", "rootMembers"}) {
            if (object != 0 && method == std::string("rootMembers"))
                continue;
            const auto id = appliance.object(object).methodId(method);
            const auto reply = appliance.answer(joined({u32(0), u32(1), u32(object), u32(id), u32(0)}));
            for (const auto& block : damaged({reply.begin() + besideBlock, reply.end()})) {
                const auto usual = outcomeWith(object, method, block, false);
                EXPECT_EQ(outcomeWith(object, method, block, true), usual) << object << method;
                failures += usual.find("Error") != std::string::npos;
            }
        }
    EXPECT_GT(failures, 1000u);
}

/// Trees of any shape, with objects that are there twice or not at all, that contain each other, list less
/// than they should or answer what cannot be read.
void addRandomTree(FakeAppliance& appliance, std::uint32_t seed) {
    std::mt19937 random(seed);
    const auto below = [&random](std::uint32_t bound) {
        return static_cast<std::uint32_t>(random() % bound);
    };
    const std::vector<std::string> types{"relay", "cmosRelay", "jtag", "i2c", "novelty", "csJtag"};
    support::addFixedObjects(appliance);
    const auto count = 1 + below(30);
    const std::uint32_t firstId = 10;
    for (std::uint32_t i = 0; i < count; ++i)
        appliance.add(firstId + i, types[below(static_cast<std::uint32_t>(types.size()))]);
    Bytes roots = u32(0);
    std::uint32_t rootCount = 0;
    for (std::uint32_t i = 0; i < count; ++i) {
        const auto name = "n" + std::to_string(i);
        if (i == 0 || below(4) == 0) {
            ++rootCount;
            roots = joined({roots, text(name), u32(firstId + i)});
        } else {
            appliance.object(firstId + below(i)).member(name, firstId + i);
        }
        auto& object = appliance.object(firstId + i);
        if (below(40) == 0)
            object.version(below(2), below(3), 0);
        switch (below(250)) {
        case 0:
            object.member("missing", 9999);
            break;
        case 1:
            object.member("again", firstId + below(count));
            break;
        case 2:
            object.withoutListedMethods();
            break;
        case 3:
            object.method("type", result(5, text("relay")));
            break;
        case 4:
            object.method("members", Bytes{0, 0});
            break;
        case 5:
            object.method("version", [](const Bytes&) -> Bytes { throw support::DeviceFault{1005, "no"}; });
            break;
        default:
            object.method("odd", result(0));
        }
    }
    const auto number = u32(rootCount);
    std::copy(number.begin(), number.end(), roots.begin());
    appliance.object(0).method("rootMembers", result(0, roots));
}

TEST_F(LevelOpening, OfAnyTreeComesToTheSame) {
    unsigned failures = 0;
    for (std::uint32_t seed = 1; seed <= 150; ++seed) {
        appliance = {};
        addRandomTree(appliance, seed);
        support::ApplianceServer server(appliance);
        const auto usual = outcomeOf(server.port(), {});
        server.awaitNoConnection();
        const auto before = server.exchanges();
        EXPECT_EQ(outcomeOf(server.port(), byLevels), usual) << seed;
        server.awaitNoConnection();
        EXPECT_LE(server.exchanges() - before, before + 9) << seed; // for what is refused
        failures += usual.find("Error") != std::string::npos;
    }
    EXPECT_GT(failures, 10u);
    EXPECT_LT(failures, 140u);
}

TEST_F(LevelOpening, OverAConnectionThatEndsFailsAsWithoutBatches) {
    addSmallTree(appliance);
    const support::ApplianceServer::Fault cut = [](support::RawConnection& connection, const Bytes& reply) {
        connection.write(Bytes(reply.begin(), reply.begin() + static_cast<std::ptrdiff_t>(reply.size() / 2)));
        connection.close();
    };
    std::string usual;
    {
        support::ApplianceServer server(appliance, {{1, cut}});
        usual = outcomeOf(server.port(), {});
    }
    EXPECT_NE(usual.find("Connection to device closed unexpectedly."), std::string::npos);
    for (std::size_t exchange = 1; exchange <= 10; ++exchange) {
        appliance = {};
        addSmallTree(appliance);
        support::ApplianceServer server(appliance, {{exchange, cut}});
        EXPECT_EQ(outcomeOf(server.port(), byLevels), usual) << exchange;
        server.awaitNoConnection();
        const auto calls = server.callNames();
        EXPECT_EQ(calls.back() == "0.unlock", exchange > 3) << exchange;
        EXPECT_EQ(outcomeOf(server.port(), byLevels).find("Error"), std::string::npos) << exchange;
    }
}

TEST_F(LevelOpening, AnErrorWithTooManyResultsEndsItAtOnce) {
    const support::ApplianceServer::Fault excess = [](support::RawConnection& connection,
                                                      const Bytes& reply) {
        constexpr std::ptrdiff_t head = 12;
        const Bytes results(reply.begin() + head, reply.end());
        const auto count = static_cast<std::uint32_t>(reply[10] << 8 | reply[11]);
        connection.write(joined({u32(0), support::deviceError(1002, "no such object"), u32(count + 1),
                                 results, support::block({})}));
    };
    for (const std::size_t exchange : {std::size_t{5}, std::size_t{6}}) {
        appliance = {};
        addSmallTree(appliance);
        support::ApplianceServer server(appliance, {{exchange, excess}});
        const auto outcome = outcomeOf(server.port(), byLevels);
        EXPECT_NE(outcome.find("Error"), std::string::npos) << outcome;
        server.awaitNoConnection();
        EXPECT_EQ(server.callNames().back(), "0.unlock");
        EXPECT_LE(server.exchanges(), exchange + 2) << "nothing is asked again";
    }
}

TEST_F(LevelOpening, OfALargeTreeIsSplit) {
    support::addFixedObjects(appliance);
    Members roots;
    for (std::uint32_t i = 0; i < 2500; ++i) {
        appliance.add(100 + i, "relay");
        roots.emplace_back("r" + std::to_string(i), 100 + i);
    }
    setRootMembers(appliance, roots);
    support::ApplianceServer server(appliance);
    const auto device =
        DeviceFactory::buildDevice("127.0.0.1", server.port(), "alice", "secret", false, byLevels);
    EXPECT_EQ(device->getChildren().size(), 2500u);
    // 4 up to the root members, then 2502 and three times as many calls by the thousand.
    EXPECT_EQ(server.exchanges(), 4u + 3u + 8u);
}

TEST_F(LevelOpening, HoldsALongNameOnceForAllThatIsBelowIt) {
    support::addFixedObjects(appliance);
    const std::string longName(100'000, 'n');
    auto& group = appliance.add(50, "novelty");
    for (std::uint32_t i = 0; i < 1000; ++i) {
        appliance.add(100 + i, "relay");
        group.member("m" + std::to_string(i), 100 + i);
    }
    setRootMembers(appliance, {{longName, 50}});
    support::ApplianceServer server(appliance);
    const support::AllocationMeter meter;
    const auto device =
        DeviceFactory::buildDevice("127.0.0.1", server.port(), "alice", "secret", false, byLevels);
    EXPECT_EQ(device->getChildren().front()->getChildren().size(), 1000u);
    EXPECT_LT(meter.peak(), 20'000'000u);
}

TEST_F(LevelOpening, OfChosenPathsBuildsNothingElse) {
    addSmallTree(appliance);
    support::ApplianceServer server(appliance);
    for (const bool levels : {false, true}) {
        const auto device =
            DeviceFactory::buildDevice("127.0.0.1", server.port(), "alice", "secret", false,
                                       {.byLevels = levels, .only = {"group.inner", "nobody"}});
        EXPECT_EQ(device->getChildren().size(), 1u);
        EXPECT_NE(device->find("group.inner.deep"), nullptr);
        EXPECT_NE(device->getSystem(), nullptr);
    }
    for (const bool levels : {false, true}) {
        const auto device = DeviceFactory::buildDevice("127.0.0.1", server.port(), "alice", "secret", false,
                                                       {.byLevels = levels, .only = {"group", "power"}});
        EXPECT_EQ(device->getChildren().size(), 2u);
        EXPECT_NE(device->find("group.inner.deep"), nullptr);
    }
    const auto device = DeviceFactory::buildDevice("127.0.0.1", server.port(), "alice", "secret", false,
                                                   {.only = {"group.inn"}});
    EXPECT_TRUE(device->getChildren().front()->getChildren().empty());
}

TEST_F(LevelOpening, OfAChosenPathBuildsAllMembersOfObjectsThatHaveAFactory) {
    addSmallTree(appliance);
    support::ApplianceServer server(appliance);
    const OpenOptions below{.byLevels = true, .only = {"group.inner.nobody"}};
    {
        const auto device =
            DeviceFactory::buildDevice("127.0.0.1", server.port(), "alice", "secret", false, below);
        EXPECT_NE(device->find("group.inner.deep"), nullptr);
    }
    server.awaitNoConnection();
    EXPECT_EQ(server.exchanges(), 11u); // the last one unlocks
}

} // namespace
