#include <algorithm>
#include <atomic>
#include <csignal>
#include <filesystem>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include <arpa/inet.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <pthread.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <tavo/client/wire/error.h>
#include <tavo/client/wire/socket_transport.h>
#include <tests/support/failure_text.h>
#include <tests/support/raw_server.h>
#include <tests/support/transport_calls.h>

namespace {

using support::Bytes;
using support::bytesOf;
using support::failureOf;
using support::GuardedListener;
using support::pattern;
using support::RawListener;
using support::receive;
using support::ScriptedServer;
using support::sendText;
using TAVO::NetworkError;
using TAVO::SocketTransport;

/// A descriptor that closes itself.
class Descriptor {
public:
    explicit Descriptor(int number)
        : number_(number) {}
    Descriptor(Descriptor&& other) noexcept
        : number_(std::exchange(other.number_, -1)) {}
    Descriptor& operator=(Descriptor&& other) noexcept {
        std::swap(number_, other.number_);
        return *this;
    }
    ~Descriptor() { close(); }

    int number() const { return number_; }
    void close() {
        if (number_ >= 0)
            ::close(number_);
        number_ = -1;
    }

private:
    int number_;
};

TEST(SocketTransportOnPosix, NamesHostPortAndResolverTextOfAHostThatDoesNotResolve) {
    const auto text = failureOf<NetworkError>([] { SocketTransport("no-such-host.invalid", "4711"); });
    const std::string beginning = "Could not get address info for: no-such-host.invalid port 4711[ErrorCode ";
    EXPECT_EQ(text.substr(0, beginning.size()), beginning);
    const auto code = text.substr(beginning.size());
    EXPECT_TRUE(code == "-2:Name or service not known]" || code == "-3:Temporary failure in name resolution]")
        << text;
}

TEST(SocketTransportOnPosix, RefusesAPortThatDoesNotExistInsteadOfTakingItsLowest16Bits) {
    GuardedListener listener;
    for (const auto beyond : {std::uint64_t{0x10000}, std::uint64_t{1} << 32}) {
        const auto port = std::to_string(beyond + std::stoul(listener.portText()));
        EXPECT_EQ(failureOf<NetworkError>([&] { SocketTransport("127.0.0.1", port); }),
                  "Could not get address info for: 127.0.0.1 port " + port +
                      "[ErrorCode -8:Servname not supported for ai_socktype]");
    }
}

TEST(SocketTransportOnPosix, ReportsThatNoSocketCanBeCreated) {
    GuardedListener listener;
    SocketTransport transport("127.0.0.1", listener.portText());
    rlimit before{};
    getrlimit(RLIMIT_NOFILE, &before);
    // Resolving needs a few descriptors itself, so the limit is lowered step by step until only it succeeds.
    std::string text;
    for (rlim_t limit = 3; limit < 64; ++limit) {
        const rlimit few{limit, before.rlim_max};
        setrlimit(RLIMIT_NOFILE, &few);
        text = failureOf<NetworkError>([&] { transport.connect(); });
        setrlimit(RLIMIT_NOFILE, &before);
        if (text.rfind("Could not get address info", 0) != 0)
            break;
    }
    EXPECT_EQ(text, "Could not create socket to: 127.0.0.1 port " + listener.portText() +
                        "[ErrorCode 24:Too many open files]");
    EXPECT_NO_THROW(sendText(transport, "question"));
}

std::atomic<int> caughtSignals{0};

/// Counts a signal instead of obeying it; calls that it interrupts are not restarted by the system.
class SignalCounter {
public:
    explicit SignalCounter(int number)
        : number_(number) {
        caughtSignals = 0;
        struct sigaction counting {};
        counting.sa_handler = [](int) { ++caughtSignals; };
        sigaction(number, &counting, &before_);
    }
    SignalCounter(const SignalCounter&) = delete;
    SignalCounter& operator=(const SignalCounter&) = delete;
    ~SignalCounter() { sigaction(number_, &before_, nullptr); }

private:
    int number_;
    struct sigaction before_ {};
};

void signalRepeatedly(pthread_t thread, int times) {
    for (int i = 0; i < times; ++i) {
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
        pthread_kill(thread, SIGUSR1);
    }
}

TEST(SocketTransportOnPosix, ReportsAPeerThatBreaksASendWithoutRaisingASignal) {
    const SignalCounter counter(SIGPIPE);
    const auto request = pattern(32u << 20);
    ScriptedServer server([](RawListener& listener) {
        auto peer = listener.accept();
        peer.read(100000);
        peer.finishWriting();
        peer.reset();
        EXPECT_EQ(listener.accept().read(8), bytesOf("question"));
    });
    SocketTransport transport("127.0.0.1", server.portText());
    EXPECT_EQ(failureOf<NetworkError>([&] { transport.sendAll(request.data(), request.size()); }),
              "Error transmitting message call to device.[ErrorCode 32:Broken pipe]");
    EXPECT_EQ(caughtSignals, 0);
    sendText(transport, "question");
}

TEST(SocketTransportOnPosix, GoesOnWaitingWhenASignalInterruptsAReceive) {
    const SignalCounter counter(SIGUSR1);
    const auto client = pthread_self();
    ScriptedServer server([client](RawListener& listener) {
        auto peer = listener.accept();
        peer.write(bytesOf("ans"));
        signalRepeatedly(client, 20);
        peer.write(bytesOf("wer"));
    });
    SocketTransport transport("127.0.0.1", server.portText());
    EXPECT_EQ(receive(transport, 6), bytesOf("answer"));
    EXPECT_GT(caughtSignals, 0);
}

TEST(SocketTransportOnPosix, ResumesARequestWhereASignalHasCutItsSend) {
    const SignalCounter counter(SIGUSR1);
    const auto client = pthread_self();
    const auto bytes = pattern(32u << 20);
    ScriptedServer server([&](RawListener& listener) {
        auto peer = listener.accept();
        Bytes all;
        while (all.size() < bytes.size() + 4) {
            signalRepeatedly(client, 3);
            const auto piece = peer.read(std::min<std::size_t>(4u << 20, bytes.size() + 4 - all.size()));
            all.insert(all.end(), piece.begin(), piece.end());
        }
        all.erase(all.begin(), all.begin() + 4);
        EXPECT_TRUE(all == bytes);
        peer.write(bytesOf("ok"));
    });
    SocketTransport transport("127.0.0.1", server.portText());
    TAVOX::OutputStream request;
    request.writeBytes(bytes.size(), bytes.data());
    const auto undisturbed = (request.chunks().size() + 63) / 64;
    transport.send(request.chunks());
    EXPECT_EQ(receive(transport, 2), bytesOf("ok"));
    EXPECT_GT(transport.counters().sends, undisturbed);
    EXPECT_EQ(transport.counters().connects, 1u);
}

TEST(SocketTransportOnPosix, FinishesAConnectThatASignalInterrupts) {
    const SignalCounter counter(SIGUSR1);
    const auto client = pthread_self();
    support::Signal full;
    ScriptedServer server(
        [&](RawListener& listener) {
            full.await();
            signalRepeatedly(client, 20);
            listener.accept();
            listener.accept().write(bytesOf("hello"));
        },
        0);
    // With no room for another client the system lets a connect wait.
    const SocketTransport occupant("127.0.0.1", server.portText());
    full.raise();
    SocketTransport transport("127.0.0.1", server.portText());
    EXPECT_EQ(receive(transport, 5), bytesOf("hello"));
    EXPECT_GT(caughtSignals, 0);
}

/// The descriptors of this process that are connected to a port.
std::vector<int> connectedTo(const std::string& port) {
    std::vector<int> found;
    for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
        const int descriptor = std::stoi(entry.path().filename());
        sockaddr_in peer{};
        socklen_t size = sizeof peer;
        if (::getpeername(descriptor, reinterpret_cast<sockaddr*>(&peer), &size) == 0 &&
            peer.sin_family == AF_INET && std::to_string(ntohs(peer.sin_port)) == port)
            found.push_back(descriptor);
    }
    return found;
}

TEST(SocketTransportOnPosix, IsNotHandedOnToProgramsThatTheProcessStarts) {
    GuardedListener listener;
    SocketTransport transport("127.0.0.1", listener.portText());
    for (int connection = 0; connection < 2; ++connection) {
        const auto sockets = connectedTo(listener.portText());
        ASSERT_EQ(sockets.size(), 1u);
        EXPECT_TRUE(::fcntl(sockets.front(), F_GETFD) & FD_CLOEXEC);
        transport.connect();
    }
}

TEST(SocketTransportOnPosix, WorksWithADescriptorAbove1023) {
    rlimit before{};
    getrlimit(RLIMIT_NOFILE, &before);
    const rlimit enough{std::max<rlim_t>(before.rlim_cur, 1100), before.rlim_max};
    if (before.rlim_max < 1100 || setrlimit(RLIMIT_NOFILE, &enough) != 0)
        GTEST_SKIP() << "no more than " << before.rlim_max << " descriptors are allowed";

    GuardedListener listener;
    std::vector<Descriptor> occupied;
    do {
        occupied.emplace_back(::open("/dev/null", O_RDONLY | O_CLOEXEC));
        ASSERT_GE(occupied.back().number(), 0);
    } while (occupied.back().number() < 1023);

    SocketTransport transport("127.0.0.1", listener.portText());
    auto peer = listener.accept();
    sendText(transport, "question");
    EXPECT_EQ(peer.read(8), bytesOf("question"));
    peer.write(bytesOf("answerx"));
    EXPECT_EQ(receive(transport, 6), bytesOf("answer"));
    EXPECT_EQ(failureOf<NetworkError>([&] { sendText(transport, "question"); }),
              "Unexpected data recieved from device.");
    peer.write(bytesOf("y"));
    EXPECT_EQ(failureOf<NetworkError>([&] { sendText(transport, "question"); }),
              "Unexpected data recieved from device.");

    occupied.clear();
    setrlimit(RLIMIT_NOFILE, &before);
}

} // namespace
