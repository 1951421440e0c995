#include <tests/simulator/simulator_fixture.h>

namespace {

using namespace support;
using namespace TAVO::simulator;

const Bytes timeSet = {0, 0, 0, 0, 0, 0, 0, 9};
const Bytes done = u32(0);

class Faults : public SimulatorFixture {
protected:
    /// A request of three calls, answered by `whole` when nothing goes wrong.
    Bytes request() {
        return requestBytes(0, {call("system", "timeSet", timeSet), call("device", "getKey"),
                                call("system", "timeSet", timeSet)});
    }
    const Bytes key = {0x74, 0x61, 0x76, 0x6f, 0x2d, 0x64, 0x65, 0x76,
                       0x2d, 0x6b, 0x65, 0x79, 0x2d, 0x30, 0x30, 0x30};
    const Bytes whole = replyWith({done, joined({done, block(key)}), done});

    Bytes answerTo(const std::string& fault) {
        simulator.setFaults(FaultScript().add("1:" + fault));
        RawClient client(simulator.port());
        client.send(request());
        return client.receive(whole.size());
    }
};

TEST_F(Faults, ARequestWithoutFaultIsAnsweredWhole) {
    RawClient client(simulator.port());
    client.send(request());
    EXPECT_EQ(client.receive(), whole);
}

TEST_F(Faults, AreCountedOverAllConnections) {
    simulator.setFaults(FaultScript().add("3:close"));
    RawClient first(simulator.port()), second(simulator.port());
    for (auto* client : {&first, &second}) {
        client->send(request());
        EXPECT_EQ(client->receive(), whole);
    }
    first.send(request());
    EXPECT_EQ(first.receive(), Bytes{});
    second.send(request());
    EXPECT_EQ(second.receive(), whole);
    EXPECT_EQ(simulator.requestCount(), 4u);
    EXPECT_EQ(simulator.connectionCount(), 2u);
}

TEST_F(Faults, SilentAnswersNothingAndReadsOn) {
    simulator.setFaults(FaultScript().add("1:silent"));
    RawClient client(simulator.port());
    client.send(request());
    ASSERT_TRUE(soon([&] { return simulator.requestCount() == 1; }));
    EXPECT_FALSE(client.hasInput());
    client.send(request());
    EXPECT_EQ(client.receive(), whole);
}

TEST_F(Faults, DribbleSendsOneByteAndPauses) {
    simulator.setFaults(FaultScript().add("1:dribble=600000000"));
    RawClient client(simulator.port());
    client.send(request());
    EXPECT_EQ(client.receive(), Bytes(1));
    EXPECT_FALSE(client.hasInput());
}

TEST_F(Faults, DribbleSendsTheWholeReply) {
    simulator.setFaults(FaultScript().add("1:dribble=50"));
    RawClient client(simulator.port());
    client.send(request());
    EXPECT_EQ(client.receive(whole.size()), whole);
    client.send(request());
    EXPECT_EQ(client.receive(), whole);
}

TEST_F(Faults, CutClosesAfterThatManyBytes) {
    for (const std::size_t bytes : {0u, 1u, 17u}) {
        simulator.failNext(faults::Cut{bytes});
        RawClient client(simulator.port());
        client.send(request());
        EXPECT_EQ(client.receiveToEnd(), Bytes(whole.begin(), whole.begin() + static_cast<int>(bytes)));
    }
    simulator.failNext(faults::Cut{100000});
    RawClient client(simulator.port());
    client.send(request());
    EXPECT_EQ(client.receiveToEnd(), whole);
}

TEST_F(Faults, CloseCarriesTheRequestOutAndEndsTheConnection) {
    EXPECT_EQ(answerTo("close"), Bytes{});
    EXPECT_EQ(simulator.calls().size(), 3u);
}

TEST_F(Faults, CountAnnouncesAnotherNumberOfResults) {
    auto expected = whole;
    expected[11] = 2;
    EXPECT_EQ(answerTo("count=2"), expected);
}

TEST_F(Faults, SizeAnnouncesAnotherSizeOfTheStatus) {
    auto expected = whole;
    std::fill_n(expected.begin(), 4, std::uint8_t{0xFF});
    EXPECT_EQ(answerTo("size=status:0xFFFFFFFF"), expected);
}

TEST_F(Faults, SizeAnnouncesAnotherSizeOfTheError) {
    auto expected = whole;
    std::fill_n(expected.begin() + 4, 4, std::uint8_t{0xFF});
    EXPECT_EQ(answerTo("size=error:0xFFFFFFFF"), expected);
}

TEST_F(Faults, SizeAnnouncesAnotherSizeOfTheFirstResult) {
    auto expected = whole;
    std::fill_n(expected.begin() + 12, 4, std::uint8_t{0xFF});
    EXPECT_EQ(answerTo("size=result:0xFFFFFFFF"), expected);
}

TEST_F(Faults, SizeAndCutCloseBehindTheReply) {
    simulator.setFaults(FaultScript().add("1:size=result:99").add("1:cut=1000"));
    RawClient client(simulator.port());
    client.send(request());
    auto expected = whole;
    expected[15] = 99;
    EXPECT_EQ(client.receiveToEnd(), expected);
}

TEST_F(Faults, StrayBytesFollowTheReply) {
    simulator.setFaults(FaultScript().add("1:stray=3"));
    RawClient client(simulator.port());
    client.send(request());
    EXPECT_EQ(client.receive(whole.size() + 3), joined({whole, {0xA5, 0xA5, 0xA5}}));
}

TEST_F(Faults, AnErrorStopsAfterItsResults) {
    simulator.setFaults(FaultScript().add("1:error=1006:2:it broke"));
    RawClient client(simulator.port());
    client.send(request());
    EXPECT_EQ(client.receive(), joined({u32(0), block(joined({u32(2), u32(1006), text("it broke")})), u32(2),
                                        block(done), block(joined({done, block(key)}))}));
    EXPECT_EQ(simulator.calls().size(), 2u);
}

TEST_F(Faults, AnErrorMayAnnounceMoreResultsThanCalls) {
    simulator.setFaults(FaultScript().add("1:error=1010:5"));
    RawClient client(simulator.port());
    client.send(requestBytes(0, {call("system", "timeSet", timeSet)}));
    EXPECT_EQ(client.receive(), joined({u32(0), block(joined({u32(5), u32(1010), text("")})), u32(5),
                                        block(done), block(done), block(done), block(done), block(done)}));
}

TEST_F(Faults, AReturnCodeComesWithReplyDataOfZeros) {
    simulator.setFaults(FaultScript().add("1:return=-2:1"));
    RawClient client(simulator.port());
    client.send(request());
    EXPECT_EQ(client.receive(), replyWith({done, joined({u32(0xFFFFFFFE), block({})}), done}));
    EXPECT_EQ(simulator.calls().at(1).returnCode, -2);
}

TEST_F(Faults, AReturnCodeKeepsTheCallFromBeingCarriedOut) {
    simulator.setFaults(FaultScript().add("1:return=1"));
    RawClient client(simulator.port());
    client.send(requestBytes(0, {call("device", "lock", joined({text("engineer"), text("tavo")}))}));
    EXPECT_EQ(client.receive(), replyWith({joined({u32(1), u32(0)})}));
    EXPECT_FALSE(simulator.lockHolder());
}

} // namespace
