// The order matters: windows.h would bring in the first generation of the socket interface.
#include <winsock2.h>

#include <windows.h>

#include <tests/simulator/simulator_fixture.h>

namespace {

using namespace support;

class ServerOnWindows : public SimulatorFixture {};

TEST_F(ServerOnWindows, KeepsItsSocketsFromProgramsThatTheApplicationStarts) {
    RawClient client(simulator.port());
    client.send(requestBytes(0, {}));
    client.receive();
    int found = 0;
    for (SOCKET socket = 4; socket < 4096; socket += 4) {
        sockaddr_in address{};
        int length = sizeof address;
        if (::getsockname(socket, reinterpret_cast<sockaddr*>(&address), &length) != 0 ||
            ntohs(address.sin_port) != simulator.port())
            continue;
        ++found;
        DWORD flags = HANDLE_FLAG_INHERIT;
        EXPECT_TRUE(::GetHandleInformation(reinterpret_cast<HANDLE>(socket), &flags));
        EXPECT_EQ(flags & HANDLE_FLAG_INHERIT, 0u);
    }
    EXPECT_EQ(found, 2) << "the listener and the connection";
}

TEST_F(ServerOnWindows, SharesItsPortWithNobody) {
    const SOCKET other = ::socket(AF_INET, SOCK_STREAM, IPPROTO_TCP);
    ASSERT_NE(other, INVALID_SOCKET);
    const BOOL yes = TRUE;
    ::setsockopt(other, SOL_SOCKET, SO_REUSEADDR, reinterpret_cast<const char*>(&yes), sizeof yes);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    address.sin_port = htons(simulator.port());
    EXPECT_NE(::bind(other, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    ::closesocket(other);
}

} // namespace
