#include <algorithm>
#include <memory>
#include <mutex>
#include <vector>

#include <tavo/simulator/clock.h>
#include <tests/simulator/simulator_fixture.h>

// What a client may cost the simulator and the other clients.

namespace {

using namespace support;
using namespace TAVO::simulator;

constexpr std::size_t mebibyte = std::size_t{1} << 20;

class Bounds : public SimulatorFixture {
protected:
    explicit Bounds(const Options& options = {})
        : SimulatorFixture(options) {}

    Bytes update(std::size_t imageBytes) {
        return call("system", "firmwareUpdate", joined({text("main"), block(Bytes(imageBytes))}));
    }
    Bytes readRom() { return call("lpc.lpcRomEmulation", "sramGet", joined({u32(0), u32(8 * mebibyte)})); }
    Bytes exchange(RawClient& client, const Bytes& request) {
        client.send(request);
        return client.receive();
    }
    const Bytes& asks() {
        if (asks_.empty())
            asks_ = requestBytes(0, {call("power", "type")});
        return asks_;
    }
    /// Whether the connection is open, and the simulator answers.
    bool isServed(RawClient& client) {
        try {
            return client.send(asks()) && !client.receive().empty();
        } catch (const std::runtime_error&) {
            return false;
        }
    }
    /// Takes the lock and uses it.
    std::uint32_t lockWith(RawClient& client) {
        exchange(client, requestBytes(0, {call("device", "lock", joined({text("engineer"), text("tavo")}))}));
        const auto lockId = simulator.lockHolder()->lockId;
        asks_ = requestBytes(lockId, {call("power", "get")});
        exchange(client, asks_);
        asks_.clear();
        return lockId;
    }

private:
    Bytes asks_;
};

TEST_F(Bounds, TheLogKeepsTheLastCallsThatFitIn64Mebibytes) {
    RawClient client(simulator.port());
    for (int i = 0; i < 80; ++i)
        exchange(client, requestBytes(0, {update(mebibyte)}));
    EXPECT_TRUE(isServed(client));
    const auto calls = simulator.calls();
    EXPECT_LE(calls.size(), 64u);
    EXPECT_GE(calls.size(), 60u);
    EXPECT_EQ(calls.back().method, "type");
    ASSERT_EQ(calls.front().method, "firmwareUpdate");
    EXPECT_EQ(calls.front().request, 81 - (calls.size() - 1)) << "those before it are gone";
    const auto* image = calls.front().parameters.find("image");
    ASSERT_TRUE(image);
    EXPECT_EQ(std::get<TAVO::Value::Bytes>(image->data).size(), mebibyte);
}

TEST_F(Bounds, ParametersOver8MebibytesAreNotLogged) {
    RawClient client(simulator.port());
    exchange(client, requestBytes(0, {update(8 * mebibyte + 1)}));
    ASSERT_EQ(simulator.calls().size(), 1u);
    EXPECT_EQ(simulator.calls()[0].method, "firmwareUpdate");
    EXPECT_EQ(simulator.calls()[0].parameters, TAVO::Value(TAVO::Value::Record{}));
}

TEST_F(Bounds, AnAnswerEndsBeforeTheNextCallWhenItHas64Mebibytes) {
    RawClient client(simulator.port());
    const auto rom = readRom();
    client.send(requestBytes(0, {rom, rom, rom, rom, rom, rom, rom, rom, rom, rom, call("power", "get")}));
    const auto error = block(joined({u32(8), u32(1005), text("The answer is too large")}));
    const std::size_t result = 4 + 4 + 4 + 8 * mebibyte;
    auto answer = client.receive(4 + error.size() + 4 + 8 * result);
    ASSERT_EQ(answer.size(), 4 + error.size() + 4 + 8 * result);
    answer.resize(4 + error.size() + 4);
    EXPECT_EQ(answer, joined({u32(0), error, u32(8)}));
    EXPECT_TRUE(isServed(client));
    EXPECT_EQ(simulator.calls().back().method, "type");
}

TEST_F(Bounds, AnErrorQuotesLittleOfWhatTheClientSent) {
    RawClient client(simulator.port());
    const auto answer =
        exchange(client, requestBytes(0, {call("device", "login", text(std::string(mebibyte, 'x')))}));
    EXPECT_LT(answer.size(), 5000u);
    EXPECT_GT(answer.size(), 4000u);
}

TEST_F(Bounds, OthersAreServedWhileALongRequestIsCarriedOut) {
    std::mutex mutex;
    std::vector<std::string> carriedOut;
    simulator.setObserver([&](const CallRecord& record) {
        const std::lock_guard lock(mutex);
        carriedOut.push_back(record.method);
    });
    constexpr std::uint32_t scans = 2000;
    const auto scan = call("gpu0.gpuScan", "scan", u32(65536));
    auto request = joined({u32(0), u32(scans)});
    for (std::uint32_t i = 0; i < scans; ++i)
        request.insert(request.end(), scan.begin(), scan.end());
    RawClient busy(simulator.port()), other(simulator.port());
    ASSERT_TRUE(isServed(other));
    busy.send(request);
    ASSERT_TRUE(soon([&] {
        const std::lock_guard lock(mutex);
        return carriedOut.back() == "scan";
    }));
    ASSERT_TRUE(isServed(other));
    const auto seen = simulator.inspect([&](Appliance&) { return carriedOut.size(); });
    EXPECT_LT(seen, scans) << "the long request had to end first";
    const std::size_t result = 4 + 4 + 4 + 8192;
    EXPECT_EQ(busy.receive(12 + scans * result).size(), 12 + scans * result);
}

TEST_F(Bounds, ThousandsOfRequestsAtOnceAreAnsweredInOrder) {
    RawClient client(simulator.port());
    Bytes requests, answers;
    for (std::uint8_t i = 0; i < 250; ++i)
        for (int n = 0; n < 20; ++n) {
            const auto request =
                requestBytes(0, {call("power", "set", {std::uint8_t(i % 2)}), callBytes(0, i + 1000u)});
            requests.insert(requests.end(), request.begin(), request.end());
        }
    client.send(requests);
    const auto error = [](std::uint32_t id) {
        return block(
            joined({u32(1), u32(1003), text("Object 'device' has no method with id " + std::to_string(id))}));
    };
    for (std::uint8_t i = 0; i < 250; ++i)
        for (int n = 0; n < 20; ++n) {
            const auto answer = joined({u32(0), error(i + 1000u), u32(1), block(u32(0))});
            answers.insert(answers.end(), answer.begin(), answer.end());
        }
    EXPECT_EQ(client.receive(answers.size()), answers);
}

class FewConnections : public Bounds {
protected:
    FewConnections()
        : Bounds({.mostConnections = 4}) {}
    std::unique_ptr<RawClient> newClient() {
        auto client = std::make_unique<RawClient>(simulator.port());
        EXPECT_TRUE(isServed(*client));
        return client;
    }
};

TEST_F(FewConnections, TheLongestIdleOneGoesForANewOne) {
    const auto first = newClient(), second = newClient(), third = newClient(), fourth = newClient();
    EXPECT_TRUE(isServed(*first));
    const auto fifth = newClient();
    EXPECT_FALSE(isServed(*second));
    EXPECT_EQ(simulator.openConnections(), 4u);
    for (const auto* client : {&first, &third, &fourth, &fifth})
        EXPECT_TRUE(isServed(**client));
}

TEST_F(FewConnections, TheLockHolderStays) {
    RawClient holder(simulator.port());
    lockWith(holder);
    std::vector<std::unique_ptr<RawClient>> others;
    for (int i = 0; i < 20; ++i)
        others.push_back(newClient());
    EXPECT_TRUE(isServed(holder));
}

TEST_F(FewConnections, WhoHasJustTakenTheLockStays) {
    RawClient holder(simulator.port());
    exchange(holder, requestBytes(0, {call("device", "lock", joined({text("engineer"), text("tavo")}))}));
    std::vector<std::unique_ptr<RawClient>> others;
    for (int i = 0; i < 20; ++i)
        others.push_back(newClient());
    EXPECT_TRUE(isServed(holder));
}

TEST_F(FewConnections, AFormerLockHolderGoesLikeOthers) {
    RawClient holder(simulator.port());
    lockWith(holder);
    simulator.inspect([](Appliance& appliance) { appliance.lock().drop(); });
    std::vector<std::unique_ptr<RawClient>> others;
    for (int i = 0; i < 4; ++i)
        others.push_back(newClient());
    EXPECT_FALSE(isServed(holder));
}

TEST_F(FewConnections, WhoWaitsForADelayedAnswerIsNotIdle) {
    RawClient sleeper(simulator.port());
    sleeper.send(requestBytes(0, {call("system", "usleep", u32(1'000'000))}));
    ASSERT_TRUE(soon([&] { return simulator.requestCount() == 1; }));
    std::vector<std::unique_ptr<RawClient>> others;
    for (int i = 0; i < 20; ++i)
        others.push_back(newClient());
    EXPECT_EQ(sleeper.receive(), replyWith({u32(0)}));
}

TEST_F(FewConnections, WhenAllHoldTheLockTheNewOneIsClosed) {
    RawClient first(simulator.port()), second(simulator.port()), third(simulator.port()),
        fourth(simulator.port());
    for (auto* client : {&first, &second, &third, &fourth})
        lockWith(*client);
    RawClient fifth(simulator.port());
    EXPECT_FALSE(isServed(fifth));
    for (auto* client : {&first, &second, &third, &fourth})
        EXPECT_TRUE(isServed(*client));
}

class LittleHeld : public Bounds {
protected:
    LittleHeld()
        : Bounds({.mostHeldBytes = 40 * mebibyte}) {}
    /// Begins a request and does not end it.
    static void sendPart(RawClient& client, std::uint32_t lockId, std::size_t bytes) {
        client.send(joined({u32(lockId), u32(2), u32(0), u32(3), block(Bytes(bytes))}));
    }
};

TEST_F(LittleHeld, WhoKeepsARequestWaitingGoesForOthers) {
    RawClient waiting(simulator.port()), other(simulator.port()), idle(simulator.port());
    sendPart(waiting, 0, 25 * mebibyte);
    sendPart(other, 0, 25 * mebibyte);
    EXPECT_TRUE(waiting.hasEnded());
    other.send(call("power", "get"));
    EXPECT_FALSE(other.hasEnded());
    EXPECT_TRUE(isServed(idle)) << "for it nothing is kept";
}

TEST_F(LittleHeld, WhoDoesNotTakeAnAnswerGoesForOthers) {
    const auto rom = readRom();
    const auto request = requestBytes(0, {rom, rom, rom, rom});
    RawClient lazy(simulator.port()), other(simulator.port());
    lazy.send(request);
    ASSERT_TRUE(soon([&] { return simulator.calls().size() == 4; }));
    other.send(request);
    const std::size_t whole = 12 + 4 * (4 + 4 + 4 + 8 * mebibyte);
    EXPECT_EQ(other.receive(whole).size(), whole);
    std::size_t came = 0;
    try {
        came = lazy.receive(whole).size();
    } catch (const std::runtime_error&) { // reset
    }
    EXPECT_LT(came, whole);
}

TEST_F(LittleHeld, TheLockHolderDoesNotGoForOthers) {
    RawClient holder(simulator.port()), other(simulator.port());
    const auto lockId = lockWith(holder);
    sendPart(holder, lockId, 25 * mebibyte);
    ASSERT_TRUE(soon([&] { return simulator.requestCount() == 2; }));
    sendPart(other, 0, 25 * mebibyte);
    EXPECT_TRUE(other.hasEnded());
    holder.send(call("power", "get"));
    EXPECT_FALSE(holder.hasEnded());
}

TEST_F(LittleHeld, WhoWantsMoreThanThereIsGoes) {
    RawClient greedy(simulator.port());
    sendPart(greedy, 0, 50 * mebibyte);
    EXPECT_TRUE(greedy.hasEnded());
}

class SmallLog : public Bounds {
protected:
    SmallLog()
        : Bounds({.mostLogBytes = 100'000}) {}
};

TEST_F(SmallLog, KeepsACallThatIsTooLargeWithoutItsParameters) {
    RawClient client(simulator.port());
    exchange(client, requestBytes(0, {call("power", "get"), update(50'000), update(100'000)}));
    const auto calls = simulator.calls();
    ASSERT_EQ(calls.size(), 3u);
    EXPECT_TRUE(calls[1].parameters.find("image"));
    EXPECT_EQ(calls[2].method, "firmwareUpdate");
    EXPECT_EQ(calls[2].parameters, TAVO::Value(TAVO::Value::Record{}));
}

class NoLog : public Bounds {
protected:
    NoLog()
        : Bounds({.mostLogBytes = 0}) {}
};

TEST_F(NoLog, KeepsNoCallsAndTellsThem) {
    RawClient client(simulator.port());
    EXPECT_TRUE(isServed(client));
    int told = 0;
    simulator.setObserver([&](const CallRecord&) { ++told; });
    EXPECT_TRUE(isServed(client));
    simulator.setObserver({});
    EXPECT_EQ(told, 1);
    EXPECT_TRUE(simulator.calls().empty());
}

TEST(SimulatorOptions, RefuseToHaveNoRoomForAConnection) {
    EXPECT_THROW(Simulator({.mostConnections = 0}), std::invalid_argument);
}

TEST(SimulatedClock, EndsAtAnUnreachableTime) {
    constexpr auto most = std::chrono::microseconds::max();
    Clock clock;
    clock.freeze();
    clock.advance(most);
    clock.advance(most);
    EXPECT_EQ(clock.elapsed(), Clock::longest.count());

    Appliance appliance({}, {});
    CallContext context(appliance, 0, 1);
    context.delay(most);
    context.delay(most);
    EXPECT_EQ(context.totalDelay(), Clock::longest);
}

} // namespace
