#include <array>
#include <atomic>
#include <string>
#include <thread>
#include <vector>

// The order matters: windows.h would bring in the first generation of the socket interface.
#include <winsock2.h>

#include <windows.h>

#include <gtest/gtest.h>

#include <tavo/client/wire/error.h>
#include <tavo/client/wire/socket_transport.h>
#include <tests/support/failure_text.h>
#include <tests/support/raw_server.h>
#include <tests/support/system_error.h>

namespace {

using support::bytesOf;
using support::failureOf;
using support::GuardedListener;
using support::RawListener;
using support::ScriptedServer;
using support::SystemError;
using TAVO::NetworkError;
using TAVO::SocketTransport;

// The text of the system, line break included; some systems have none for some codes.
std::string messageOf(DWORD code) {
    std::array<char, 1024> text{};
    const auto length = ::FormatMessageA(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr,
                                         code, 0, text.data(), static_cast<DWORD>(text.size()), nullptr);
    return {text.data(), length};
}

TEST(SocketTransportOnWindows, EndsTheTextOfTheSystemWithItsLineBreak) {
    GuardedListener listener;
    listener.stop();
    const auto text = failureOf<NetworkError>([&] { SocketTransport("127.0.0.1", listener.portText()); });
    EXPECT_EQ(text, "Could not connect to socket to: 127.0.0.1 port " + listener.portText() +
                        "[ErrorCode 10061:" + messageOf(10061) + "]");
    EXPECT_EQ(text.substr(text.size() - 3), "\r\n]");
}

TEST(SocketTransportOnWindows, NamesHostPortAndSystemTextOfAHostThatDoesNotResolve) {
    const auto text = failureOf<NetworkError>([] { SocketTransport("no-such-host.invalid", "4711"); });
    const std::string beginning = "Could not get address info for: no-such-host.invalid port 4711[ErrorCode ";
    EXPECT_TRUE(text == beginning + "11001:" + messageOf(11001) + "]" ||
                text == beginning + "11002:" + messageOf(11002) + "]")
        << text;
}

TEST(SocketTransportOnWindows, RefusesAPortThatDoesNotExistInsteadOfTakingItsLowest16Bits) {
    GuardedListener listener;
    const auto port = std::to_string(0x10000 + std::stoul(listener.portText()));
    EXPECT_EQ(failureOf<NetworkError>([&] { SocketTransport("127.0.0.1", port); }),
              "Could not get address info for: 127.0.0.1 port " + port +
                  "[ErrorCode 10109:" + messageOf(10109) + "]");
}

TEST(SocketTransportOnWindows, ReportsAPeerThatBreaksASend) {
    const auto request = support::pattern(32u << 20);
    ScriptedServer server([](RawListener& listener) {
        auto peer = listener.accept();
        peer.read(100000);
        peer.reset();
        EXPECT_EQ(listener.accept().read(8), bytesOf("question"));
    });
    SocketTransport transport("127.0.0.1", server.portText());
    const auto text = failureOf<NetworkError>([&] { transport.sendAll(request.data(), request.size()); });
    const std::string beginning = "Error transmitting message call to device.[ErrorCode ";
    EXPECT_TRUE(text == beginning + "10054:" + messageOf(10054) + "]" ||
                text == beginning + "10053:" + messageOf(10053) + "]")
        << text;
    const auto question = bytesOf("question");
    transport.sendAll(question.data(), question.size());
}

TEST(SocketTransportOnWindows, KeepsItsSocketFromProgramsThatTheApplicationStarts) {
    GuardedListener listener;
    const SocketTransport transport("127.0.0.1", listener.portText());
    int found = 0;
    for (SOCKET socket = 4; socket < 4096; socket += 4) {
        sockaddr_in peer{};
        int length = sizeof peer;
        if (::getpeername(socket, reinterpret_cast<sockaddr*>(&peer), &length) != 0 ||
            ntohs(peer.sin_port) != listener.port())
            continue;
        ++found;
        DWORD flags = HANDLE_FLAG_INHERIT;
        EXPECT_TRUE(::GetHandleInformation(reinterpret_cast<HANDLE>(socket), &flags));
        EXPECT_EQ(flags & HANDLE_FLAG_INHERIT, 0u);
    }
    EXPECT_EQ(found, 1);
}

TEST(SocketTransportOnWindows, StartsTheSocketLibraryForThreadsThatBeginTogether) {
    constexpr int threads = 8;
    GuardedListener listener(2 * threads);
    std::atomic<int> ready = 0;
    std::atomic<int> connected = 0;
    std::vector<std::thread> clients;
    for (int i = 0; i < threads; ++i)
        clients.emplace_back([&] {
            ++ready;
            while (ready < threads)
                std::this_thread::yield();
            const SocketTransport transport("127.0.0.1", listener.portText());
            ++connected;
        });
    for (auto& client : clients)
        client.join();
    EXPECT_EQ(connected, threads);
}

} // namespace
