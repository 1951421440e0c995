#include <stdexcept>

#include <tavo/simulator/scripted_peer.h>
#include <tests/simulator/simulator_fixture.h>

// Wine ends a connection in order before it resets it, so that a client there may see either.
namespace {

using namespace support;
using namespace TAVO::simulator;

class ResetOnPosix : public SimulatorFixture {
protected:
    static void expectReset(RawClient& client) {
        try {
            client.receive();
            FAIL() << "the connection was not reset";
        } catch (const std::runtime_error& error) {
            EXPECT_STREQ(error.what(), "reset");
        }
    }
};

TEST_F(ResetOnPosix, ByAFaultIsSeenAsReset) {
    simulator.setFaults(FaultScript().add("1:reset"));
    RawClient client(simulator.port());
    client.send(requestBytes(0, {call("device", "getKey")}));
    expectReset(client);
}

TEST_F(ResetOnPosix, ByAScriptedPeerIsSeenAsReset) {
    ScriptedPeer peer([](PeerListener& listener) { listener.accept().reset(); });
    RawClient client(peer.port());
    expectReset(client);
}

} // namespace
