#include <algorithm>
#include <chrono>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include <tavo/client/device/core_objects.h>
#include <tavo/client/device/device_factory.h>
#include <tavo/client/device/device_v1_0.h>
#include <tavo/client/exchange/tavox_device.h>
#include <tavo/client/wire/error.h>
#include <tests/device/memory_transport.h>
#include <tests/support/failure_text.h>
#include <tests/support/raw_server.h>

namespace {

using support::Bytes;
using support::failureOf;
using TAVO::DeviceFactory;
using TAVO::TraceDirection;

/// What a trace told, joined by direction and connection.
struct Told {
    TraceDirection direction;
    std::uint64_t connection;
    Bytes bytes;
    bool operator==(const Told&) const = default;
};

struct TraceLog {
    std::vector<Told> told;
    std::vector<std::chrono::system_clock::time_point> times;

    TAVO::TraceSink sink() {
        return [this](const TAVO::TracedBytes& traced) {
            times.push_back(traced.time);
            if (told.empty() || told.back().direction != traced.direction ||
                told.back().connection != traced.connection)
                told.push_back({traced.direction, traced.connection, {}});
            auto& bytes = told.back().bytes;
            bytes.insert(bytes.end(), traced.bytes.begin(), traced.bytes.end());
        };
    }
    Bytes all(TraceDirection direction) const {
        Bytes bytes;
        for (const auto& one : told)
            if (one.direction == direction)
                bytes.insert(bytes.end(), one.bytes.begin(), one.bytes.end());
        return bytes;
    }
};

// A request for "methods" of the object 0 without a lock, and the reply that there are none.
const Bytes asked{0, 0, 0, 0, 0, 0, 0, 1, 0, 0, 0, 0, 0, 0, 0, 3, 0, 0, 0, 0};
const Bytes answered{0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1, 0, 0, 0, 8, 0, 0, 0, 0, 0, 0, 0, 0};

/// Asks the object 0 for its methods, as each new object does.
void ask(const std::shared_ptr<TAVO::Device>& device) {
    static_cast<void>(std::make_shared<TAVO::Object_v1_0>(device, "device", 0, nullptr,
                                                          TAVO::TAVOXTranscode::base_v1_0::encoders(),
                                                          TAVO::TAVOXTranscode::base_v1_0::decoders()));
}

std::shared_ptr<TAVO::TAVOXDevice> deviceAt(const support::ScriptedServer& server) {
    return std::make_shared<TAVO::TAVOXDevice>("127.0.0.1", server.port(), "", "", false);
}

TEST(TracedDevice, TellsTheBytesThatItsPeerSawAndSent) {
    support::ScriptedServer server([](support::RawListener& listener) {
        auto connection = listener.accept();
        EXPECT_EQ(connection.read(asked.size()), asked);
        connection.write(answered);
        connection.read(asked.size());
        connection.write(answered);
    });
    const auto device = deviceAt(server);
    TraceLog log;
    const auto before = std::chrono::system_clock::now();
    device->setTrace(log.sink());
    ask(device);
    device->setTrace({});
    ask(device);
    server.join();
    EXPECT_EQ(log.told,
              (std::vector<Told>{{TraceDirection::sent, 1, asked}, {TraceDirection::received, 1, answered}}));
    EXPECT_GE(log.times.front(), before);
    EXPECT_GE(log.times.back(), log.times.front());
}

TEST(TracedDevice, LosesNothingOfAReplyThatBreaksOff) {
    const Bytes begun(answered.begin(), answered.end() - 3);
    support::ScriptedServer server([&](support::RawListener& listener) {
        auto connection = listener.accept();
        connection.read(asked.size());
        connection.write(begun);
    });
    const auto device = deviceAt(server);
    TraceLog log;
    device->setTrace(log.sink());
    EXPECT_THROW(ask(device), TAVO::NetworkError);
    EXPECT_EQ(log.all(TraceDirection::sent), asked);
    EXPECT_EQ(log.all(TraceDirection::received), begun);
}

TEST(TracedDevice, TellsLargeBlocksInPiecesAndKeepsThemWhole) {
    Bytes block = support::pattern(3'000'000);
    const Bytes head{0, 0,    0,    0,    0, 0, 0, 0, 0, 0,    0,    1,
                     0, 0x2d, 0xc6, 0xc8, 0, 0, 0, 0, 0, 0x2d, 0xc6, 0xc0};
    support::ScriptedServer server([&](support::RawListener& listener) {
        auto connection = listener.accept();
        connection.read(asked.size());
        connection.write(head);
        connection.write(block);
    });
    const auto device = deviceAt(server);
    Bytes received;
    std::size_t largest = 0;
    device->setTrace([&](const TAVO::TracedBytes& traced) {
        if (traced.direction == TraceDirection::sent)
            return;
        received.insert(received.end(), traced.bytes.begin(), traced.bytes.end());
        largest = std::max(largest, traced.bytes.size());
    });
    auto& transport = device->transport();
    TAVOX::OutputStream request;
    for (const std::uint32_t word : {0u, 1u, 0u, 3u, 0u})
        request.writeUInt32(word);
    transport.send(request.chunks());
    Bytes got(head.size() + block.size());
    transport.receiveAll(got.data(), got.size());
    Bytes whole = head;
    whole.insert(whole.end(), block.begin(), block.end());
    EXPECT_TRUE(got == whole);
    EXPECT_TRUE(received == whole);
    EXPECT_LE(largest, 65536u + 1);
}

TEST(TracedDevice, TellsNothingBetweenExchanges) {
    support::ScriptedServer server([](support::RawListener& listener) {
        auto connection = listener.accept();
        connection.read(asked.size());
        connection.write(answered);
    });
    const auto device = deviceAt(server);
    std::size_t bytes = 0;
    device->setTrace([&](const TAVO::TracedBytes& traced) { bytes += traced.bytes.size(); });
    EXPECT_EQ(bytes, 0u);
    ask(device);
    EXPECT_EQ(bytes, asked.size() + answered.size());
}

TEST(TracedDevice, GoesOnWithoutATraceThatThrows) {
    support::ScriptedServer server([](support::RawListener& listener) {
        auto connection = listener.accept();
        EXPECT_EQ(connection.read(asked.size()), asked); // the first was never sent
        connection.write(answered);
    });
    const auto device = deviceAt(server);
    int calls = 0;
    device->setTrace([&](const TAVO::TracedBytes&) {
        ++calls;
        throw std::runtime_error("full");
    });
    EXPECT_EQ(failureOf<std::runtime_error>([&] { ask(device); }), "full");
    ask(device);
    EXPECT_EQ(calls, 1);
}

class TracedOpening : public testing::Test {
protected:
    TracedOpening() {
        TAVO::CoreObjects::registerCoreObjects();
        support::addFixedObjects(line.appliance);
    }

    support::MemoryLine line;
    TraceLog log;
};

TEST_F(TracedOpening, TellsAllExchangesFromTheFirstToTheLast) {
    {
        const auto device = DeviceFactory::buildDevice(std::make_unique<support::MemoryTransport>(line),
                                                       "alice", "secret", false, {.trace = log.sink()});
        EXPECT_TRUE(device->isLocked());
    }
    EXPECT_EQ(log.told.size(), 2 * (line.log.size() - 1)); // one of the log is "connect"
    EXPECT_EQ(Bytes(log.told.front().bytes.begin(), log.told.front().bytes.begin() + 20), asked);
    const auto sent = log.all(TraceDirection::sent);
    const std::string text(sent.begin(), sent.end());
    const auto first = text.find("secret");
    EXPECT_NE(first, std::string::npos);
    EXPECT_NE(text.find("secret", first + 1), std::string::npos) << "unlock is missing";
}

TEST_F(TracedOpening, TellsARequestAgainThatGoesOverANewConnection) {
    const auto device = DeviceFactory::buildDevice(std::make_unique<support::MemoryTransport>(line), "alice",
                                                   "secret", false, {.trace = log.sink()});
    log.told.clear();
    line.endsBeforeSend = true;
    device->getDevice()->type();
    ASSERT_EQ(log.told.size(), 3u);
    EXPECT_EQ(log.told[0].connection, 1u);
    EXPECT_EQ(log.told[1].connection, 2u);
    EXPECT_EQ(log.told[1].bytes, log.told[0].bytes);
    EXPECT_EQ(log.told[2].direction, TraceDirection::received);
}

TEST_F(TracedOpening, ThatFailsLeavesTheTraceOfBefore) {
    const auto device =
        std::make_shared<TAVO::TAVOXDevice>(std::make_unique<support::MemoryTransport>(line), "", "", false);
    device->setTrace(log.sink());
    TraceLog ofOpening;
    // Nobody has built the "device" object.
    EXPECT_THROW(DeviceFactory::openDevice(device, "alice", "secret", {.trace = ofOpening.sink()}),
                 TAVO::SpecificationError);
    ask(device);
    ASSERT_FALSE(log.told.empty());
    EXPECT_EQ(log.told.front().bytes, asked);
    EXPECT_TRUE(ofOpening.told.empty());
}

} // namespace
