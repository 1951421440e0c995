#include <stdexcept>

#include <tests/simulator/simulator_fixture.h>

namespace {

using namespace support;
using namespace TAVO::simulator;

class FaultsOnPosix : public SimulatorFixture {};

// Wine ends a connection in order before it resets it, so that a client there may see either.
TEST_F(FaultsOnPosix, resetIsSeenAsReset) {
    simulator.setFaults(FaultScript().add("1:reset"));
    RawClient client(simulator.port());
    client.send(requestBytes(0, {call("device", "getKey")}));
    try {
        client.receive();
        FAIL() << "the connection was not reset";
    } catch (const std::runtime_error& error) {
        EXPECT_STREQ(error.what(), "reset");
    }
}

} // namespace
