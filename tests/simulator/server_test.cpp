#include <atomic>
#include <future>
#include <random>

#include <tests/simulator/simulator_fixture.h>
#include <tests/support/system_error.h>

namespace {

using namespace support;
using namespace TAVO::simulator;

class Server : public SimulatorFixture {
protected:
    /// The error code of a reply, 0 for none.
    static std::uint32_t errorOf(const Bytes& reply) {
        if (reply.size() < 16 || Bytes(reply.begin() + 4, reply.begin() + 8) == u32(0))
            return 0;
        return std::uint32_t{reply[12]} << 24 | std::uint32_t{reply[13]} << 16 |
               std::uint32_t{reply[14]} << 8 | reply[15];
    }
    Bytes answerTo(const Bytes& request) {
        RawClient client(simulator.port());
        client.send(request);
        return client.receive();
    }
    static Bytes repeated(std::uint32_t count, const Bytes& call) {
        auto request = joined({u32(0), u32(count)});
        for (std::uint32_t i = 0; i < count; ++i)
            request.insert(request.end(), call.begin(), call.end());
        return request;
    }
    /// The system's text as the simulator tells it: without a line break.
    static std::string reasonOf(SystemError error) {
        const auto text = systemText(error);
        return text.empty() ? "asio.system error" : text.substr(0, text.find_last_not_of("\r\n") + 1);
    }
    bool works() { return answerTo(requestBytes(0, {call("power", "get")})) == replyWith({{0, 0, 0, 0, 0}}); }
};

TEST_F(Server, AnswersAnEmptyBatch) { EXPECT_EQ(answerTo(requestBytes(0, {})), replyWith({})); }

TEST_F(Server, AnswersARequestThatComesByteByByte) {
    RawClient client(simulator.port());
    for (const auto byte : requestBytes(0, {call("power", "set", {1}), call("power", "get")}))
        client.send({byte});
    EXPECT_EQ(client.receive(), replyWith({u32(0), {0, 0, 0, 0, 1}}));
}

TEST_F(Server, AnswersRequestsThatComeTogetherOneByOne) {
    RawClient client(simulator.port());
    const auto request = requestBytes(0, {call("power", "get")});
    const auto reply = replyWith({{0, 0, 0, 0, 0}});
    client.send(joined({request, request, request}));
    EXPECT_EQ(client.receive(3 * reply.size()), joined({reply, reply, reply}));
    EXPECT_EQ(simulator.requestCount(), 3u);
}

TEST_F(Server, AnswersWithOneSend) {
    const auto request = repeated(1000, call("power", "get"));
    RawClient client(simulator.port());
    for (int i = 0; i < 20; ++i) {
        client.send(request);
        ASSERT_EQ(client.receive().size(), 12u + 1000 * 9) << "a piece of the reply";
    }
}

TEST_F(Server, AnswersAReplyLargerThanTheSocketTakesAtOnce) {
    const std::string info(1 << 20, 'x');
    simulator.inspect([&](Appliance& appliance) { appliance.get("power").setReservation({{"ann", info}}); });
    RawClient client(simulator.port());
    client.send(repeated(16, call("power", "available")));
    const std::size_t result = 4 + 4 + 1 + 4 + 3 + 4 + info.size();
    EXPECT_EQ(client.receive(12 + 16 * result).size(), 12 + 16 * result);
}

TEST_F(Server, NamesTheFaultOfARequest) {
    EXPECT_EQ(errorOf(answerTo(requestBytes(0, {callBytes(7, 3)}))), device_error::unknownObject);
    EXPECT_EQ(errorOf(answerTo(requestBytes(0, {callBytes(0, 4)}))), device_error::unknownMethod);
    EXPECT_EQ(errorOf(answerTo(requestBytes(0, {call("power", "set")}))), device_error::malformedParameters);
    EXPECT_EQ(errorOf(answerTo(requestBytes(0, {call("power", "set", {1, 1})}))),
              device_error::malformedParameters);
    EXPECT_EQ(errorOf(answerTo(requestBytes(0, {call("power", "get", {0})}))),
              device_error::malformedParameters);
    EXPECT_EQ(errorOf(answerTo(requestBytes(0, {call("device", "login", u32(0xFFFFFFFF))}))),
              device_error::malformedParameters);
    EXPECT_TRUE(works());
}

TEST_F(Server, KeepsTheResultsBeforeAFault) {
    EXPECT_EQ(
        answerTo(requestBytes(0, {call("power", "get"), callBytes(7, 3), call("power", "get")})),
        joined({u32(0), block(joined({u32(1), u32(1002), text("There is no object with instance id 7")})),
                u32(1), block({0, 0, 0, 0, 0})}));
}

TEST_F(Server, RefusesAbsurdSizesAndCloses) {
    RawClient client(simulator.port());
    client.send(joined({u32(0), u32(1), u32(0), u32(3), u32(0x04000001), Bytes(100)}));
    EXPECT_EQ(errorOf(client.receiveToEnd()), device_error::requestTooLarge);
    EXPECT_TRUE(works());
}

TEST_F(Server, WaitsForWhatAnAbsurdCountAnnounces) {
    RawClient client(simulator.port());
    client.send(joined({u32(0), u32(0xFFFFFFFF), call("power", "get")}));
    EXPECT_TRUE(works());
    EXPECT_FALSE(client.hasInput());
}

TEST_F(Server, TakesALargeParameterBlock) {
    const auto device = open();
    const std::vector<unsigned char> image(20 << 20, 0x11);
    EXPECT_EQ(called(device, device->getSystem()->getFirmwareUpdateMethod("main", image))->returnCode(), 0);
}

TEST_F(Server, SurvivesGarbage) {
    std::mt19937 chance(20); // NOLINT: the same garbage every time
    for (int i = 0; i < 200; ++i) {
        Bytes garbage(chance() % 300);
        for (auto& byte : garbage)
            byte = static_cast<std::uint8_t>(chance() % 4 == 0 ? chance() : 0);
        RawClient(simulator.port()).send(garbage);
    }
    EXPECT_TRUE(works());
    EXPECT_TRUE(soon([&] { return simulator.openConnections() == 0; }));
}

TEST_F(Server, Serves64ClientsAtOnce) {
    constexpr int clients = 64;
    std::promise<void> go;
    const auto start = go.get_future().share();
    std::atomic<int> ready = 0;
    std::vector<std::future<int>> results;
    for (int i = 0; i < clients; ++i)
        results.push_back(std::async(std::launch::async, [&, i] {
            const auto device = query();
            ++ready;
            start.wait();
            int good = 0;
            for (int n = 0; n < 10; ++n) {
                const auto user = "user" + std::to_string(i);
                const auto proxy = device->getDevice();
                good += called(device, proxy->getInfoMethod())->value().name == "tavo-sim" ? 1 : 0;
                called(device,
                       proxy->getReserveMethod(user, "")); // others may have it: only the order counts
            }
            return good;
        }));
    EXPECT_TRUE(soon([&] { return ready == clients; }));
    EXPECT_EQ(simulator.openConnections(), static_cast<std::size_t>(clients));
    go.set_value();
    for (auto& result : results)
        EXPECT_EQ(result.get(), 10);
    EXPECT_EQ(simulator.connectionCount(), static_cast<std::uint64_t>(clients));
    EXPECT_TRUE(soon([&] { return simulator.openConnections() == 0; }));
}

TEST_F(Server, StopsWhileClientsAreConnected) {
    RawClient idle(simulator.port()), sleeper(simulator.port()), half(simulator.port());
    sleeper.send(requestBytes(0, {call("system", "usleep", u32(1'000'000'000))}));
    half.send({0, 0, 0});
    ASSERT_TRUE(soon([&] { return simulator.requestCount() == 1; }));
    simulator.stop();
    EXPECT_EQ(sleeper.receive(), Bytes{});
    EXPECT_TRUE(idle.hasEnded());
    EXPECT_TRUE(half.hasEnded());
    EXPECT_THROW(RawClient(simulator.port()), std::runtime_error);
    EXPECT_EQ(simulator.openConnections(), 0u);
}

TEST_F(Server, StartsAgainOnItsPortWithItsState) {
    const auto port = simulator.port();
    RawClient(port).send({});
    answerTo(requestBytes(0, {call("power", "set", {1})}));
    simulator.stop();
    simulator.stop();
    simulator.start();
    simulator.start();
    EXPECT_EQ(simulator.port(), port);
    EXPECT_EQ(answerTo(requestBytes(0, {call("power", "get")})), replyWith({{0, 0, 0, 0, 1}}));
    EXPECT_EQ(simulator.requestCount(), 2u);
}

TEST_F(Server, NamesHostAndPortWhenItCannotListen) {
    const auto refusal = [](Options options) -> std::string {
        Simulator other(std::move(options));
        try {
            other.start();
        } catch (const std::runtime_error& error) {
            return error.what();
        }
        return "listening";
    };
    Options taken;
    taken.port = simulator.port();
    EXPECT_EQ(refusal(taken), "Cannot listen on 127.0.0.1 port " + std::to_string(taken.port) + ": " +
                                  reasonOf(SystemError::addressInUse));
    Options elsewhere;
    elsewhere.host = "192.0.2.1";
    EXPECT_EQ(refusal(elsewhere),
              "Cannot listen on 192.0.2.1 port 0: " + reasonOf(SystemError::addressNotAvailable));
}

TEST_F(Server, LogsEveryCall) {
    const auto device = open();
    simulator.clearCalls();
    const auto lockId = simulator.lockHolder()->lockId;
    const auto before = simulator.requestCount();
    called(device, object<CommonModules::Relay_v1_0>(device, "power")->getSetMethod(true));
    const auto calls = simulator.calls();
    ASSERT_EQ(calls.size(), 1u);
    EXPECT_EQ(calls[0].request, before + 1);
    EXPECT_EQ(calls[0].connection, 1u);
    EXPECT_EQ(calls[0].lockId, lockId);
    EXPECT_EQ(calls[0].instanceId, instanceId("power"));
    EXPECT_EQ(calls[0].object, "power");
    EXPECT_EQ(calls[0].method, "set");
    ASSERT_TRUE(calls[0].parameters.find("state"));
    EXPECT_EQ(calls[0].parameters.find("state")->toString(), "true");
    EXPECT_EQ(calls[0].returnCode, 0);
    EXPECT_EQ(calls[0].toString(), std::to_string(before + 1) + " #1 power.set(state=true) = 0");
    answerTo(requestBytes(lockId, {callBytes(7, 3)}));
    EXPECT_EQ(simulator.calls().back().toString(),
              std::to_string(before + 2) + " #2 object 7.?() error 1002");
}

TEST_F(Server, TellsItsObserverEveryCall) {
    std::atomic<int> seen = 0;
    simulator.setObserver([&](const CallRecord& call) { seen += call.method == "get" ? 1 : 0; });
    answerTo(requestBytes(0, {call("power", "get"), call("power", "get")}));
    EXPECT_EQ(seen, 2);
    simulator.setObserver({});
    answerTo(requestBytes(0, {call("power", "get")}));
    EXPECT_EQ(seen, 2);
}

TEST_F(Server, KeepsTheLast65536Calls) {
    const auto request = repeated(65537, call("power", "get"));
    RawClient client(simulator.port());
    client.send(requestBytes(0, {call("power", "type")}));
    client.receive();
    client.send(request);
    EXPECT_EQ(client.receive(12 + 65537 * 9).size(), 12u + 65537 * 9);
    const auto calls = simulator.calls();
    EXPECT_EQ(calls.size(), 65536u);
    EXPECT_EQ(calls.front().method, "get");
}

TEST(SimulatorLifecycle, StartsNothingBeforeStart) {
    Simulator idle;
    EXPECT_EQ(idle.port(), 0);
    EXPECT_EQ(idle.requestCount(), 0u);
    idle.stop();
}

} // namespace
