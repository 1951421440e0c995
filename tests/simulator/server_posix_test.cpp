#include <filesystem>
#include <string>
#include <vector>

#include <fcntl.h>
#include <netinet/in.h>
#include <sys/socket.h>

#include <tests/simulator/simulator_fixture.h>

namespace {

using namespace support;

class ServerOnPosix : public SimulatorFixture {};

TEST_F(ServerOnPosix, KeepsItsSocketsFromProgramsThatTheApplicationStarts) {
    RawClient client(simulator.port());
    client.send(requestBytes(0, {}));
    client.receive();
    std::vector<int> descriptors;
    for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd"))
        descriptors.push_back(std::stoi(entry.path().filename()));
    int found = 0;
    for (const int descriptor : descriptors) {
        sockaddr_in address{};
        socklen_t length = sizeof address;
        if (::getsockname(descriptor, reinterpret_cast<sockaddr*>(&address), &length) != 0 ||
            address.sin_family != AF_INET || ntohs(address.sin_port) != simulator.port())
            continue;
        ++found;
        EXPECT_NE(::fcntl(descriptor, F_GETFD) & FD_CLOEXEC, 0);
    }
    EXPECT_EQ(found, 2) << "the listener and the connection";
}

} // namespace
