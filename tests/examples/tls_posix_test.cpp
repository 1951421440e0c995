#include <atomic>
#include <chrono>
#include <csignal>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include <examples/tls_transport.h>
#include <tavo/client.h>
#include <tavo/simulator/simulator.h>
#include <tests/examples/tls_gateway.h>
#include <tests/support/failure_text.h>
#include <tests/support/raw_server.h>
#include <tests/support/transport_calls.h>

// The transport of the example 13_tls, with an unchanged stunnel as the gateway.

namespace {

using namespace std::chrono_literals;
using support::Bytes;
using support::bytesOf;
using support::Certificates;
using support::failureOf;
using support::Gateway;
using TAVO::NetworkError;
namespace faults = TAVO::simulator::faults;

class Tls : public testing::Test {
protected:
    static void SetUpTestSuite() {
        TAVO::CoreObjects::registerCoreObjects();
        if (isInstalled())
            certificates = std::make_unique<Certificates>();
    }
    static void TearDownTestSuite() { certificates.reset(); }
    void SetUp() override {
        if (!isInstalled())
            GTEST_SKIP() << "needs the packages stunnel4 and openssl";
    }

    static bool isInstalled() {
        return std::filesystem::exists(support::stunnel) && std::filesystem::exists(support::openssl);
    }
    static std::unique_ptr<TlsTransport> transportTo(const Gateway& gateway, const std::string& ca = "ca.pem",
                                                     const std::string& name = support::certifiedName) {
        return std::make_unique<TlsTransport>("127.0.0.1", gateway.port(), certificates->file(ca), name);
    }

    inline static std::unique_ptr<Certificates> certificates;
    support::HangGuard guard;
};

class TlsDevice : public Tls {
protected:
    void SetUp() override {
        Tls::SetUp();
        if (IsSkipped())
            return;
        simulator.start();
        gateway = std::make_unique<Gateway>(*certificates, simulator.port());
    }

    std::shared_ptr<TAVO::Device> open(std::unique_ptr<TAVO::Transport> transport,
                                       bool secure = false) const {
        return TAVO::DeviceFactory::buildDevice(std::move(transport), "engineer", "tavo", secure);
    }

    TAVO::simulator::Simulator simulator{{.topology = "bare"}};
    std::unique_ptr<Gateway> gateway;
};

TEST_F(TlsDevice, IsOpenedUsedAndReleasedOverOneConnection) {
    auto device = open(transportTo(*gateway), true);
    EXPECT_TRUE(simulator.lockHolder());
    for (int i = 0; i < 20; ++i)
        EXPECT_EQ(device->getDevice()->type(), "device");
    device.reset();
    EXPECT_FALSE(simulator.lockHolder());
    EXPECT_EQ(simulator.connectionCount(), 1u);
}

TEST_F(TlsDevice, IsFoundByItsAddressWhereTheCertificateNamesIt) {
    EXPECT_TRUE(open(transportTo(*gateway, "ca.pem", "127.0.0.1")));
    EXPECT_TRUE(open(transportTo(*gateway, "ca.pem", "")));
}

TEST_F(TlsDevice, IsSentNothingWhenAnotherCaHasSigned) {
    EXPECT_EQ(failureOf<NetworkError>([&] { open(transportTo(*gateway, "other-ca.pem")); }),
              "Could not trust 127.0.0.1 port " + gateway->port() +
                  ", unable to get local issuer certificate[certificate verify failed]");
    EXPECT_EQ(simulator.requestCount(), 0u);
}

TEST_F(TlsDevice, IsSentNothingWhenTheCertificateIsForAnotherName) {
    for (const auto& [name, text] :
         {std::pair{"other.example", "hostname mismatch"}, std::pair{"127.0.0.2", "IP address mismatch"}})
        EXPECT_EQ(
            failureOf<NetworkError>([&, other = name] { open(transportTo(*gateway, "ca.pem", other)); }),
            "Could not trust 127.0.0.1 port " + gateway->port() + ", " + text +
                "[certificate verify failed]");
    EXPECT_EQ(simulator.requestCount(), 0u);
}

TEST_F(TlsDevice, IsReachedAnewWhenTheConnectionHasEnded) {
    const auto device = open(transportTo(*gateway));
    simulator.stop();
    simulator.start();
    // The gateway may pass the end on a moment later.
    const auto deadline = std::chrono::steady_clock::now() + support::patience;
    bool answered = false;
    while (!answered && std::chrono::steady_clock::now() < deadline)
        try {
            answered = device->getDevice()->type() == "device";
        } catch (const NetworkError&) {
        }
    EXPECT_TRUE(answered);
    EXPECT_EQ(simulator.connectionCount(), 2u);
}

TEST_F(TlsDevice, IsInterruptedAndReachedAnew) {
    const auto device = open(transportTo(*gateway));
    simulator.failNext(faults::Silent{});
    std::thread other([&, silent = simulator.requestCount() + 1] {
        while (simulator.requestCount() < silent)
            std::this_thread::sleep_for(1ms);
        device->interrupt();
    });
    EXPECT_EQ(failureOf<NetworkError>([&] { device->getDevice()->type(); }), "Call to device interrupted.");
    other.join();
    EXPECT_EQ(device->getDevice()->type(), "device");
    EXPECT_EQ(simulator.connectionCount(), 2u);
    device->interrupt();
    EXPECT_EQ(device->getDevice()->type(), "device");
    EXPECT_EQ(simulator.connectionCount(), 3u);
}

TEST_F(TlsDevice, IsUnlockedOverANewConnectionBehindAReplyThatNobodyRead) {
    auto device = open(transportTo(*gateway), true);
    simulator.failNext(faults::Stray{});
    EXPECT_EQ(device->getDevice()->type(), "device");
    device.reset();
    EXPECT_FALSE(simulator.lockHolder());
    EXPECT_EQ(simulator.connectionCount(), 2u);
}

/// A gateway to a peer that the test plays byte by byte.
class TlsTransportPair : public Tls {
protected:
    void SetUp() override {
        Tls::SetUp();
        if (IsSkipped())
            return;
        gateway = std::make_unique<Gateway>(*certificates, listener.port());
        transport = transportTo(*gateway);
    }

    void sendBytes(const Bytes& bytes) {
        TAVOX::OutputStream request;
        for (const auto byte : bytes)
            request.writeByte(byte);
        transport->send(request.chunks());
    }
    Bytes receive(std::size_t count) { return support::receive(*transport, count); }
    void awaitUnasked() {
        while (!transport->hasUnaskedBytes())
            std::this_thread::yield();
    }

    support::RawListener listener;
    std::unique_ptr<Gateway> gateway;
    std::unique_ptr<TlsTransport> transport;
};

TEST_F(TlsTransportPair, MovesManyBytesBothWays) {
    const auto bytes = support::pattern(3'000'000);
    std::thread echo([&] {
        auto peer = listener.accept();
        peer.write(peer.read(bytes.size()));
        peer.readToEnd();
    });
    sendBytes(bytes);
    EXPECT_TRUE(receive(bytes.size()) == bytes);
    EXPECT_FALSE(transport->hasUnaskedBytes());
    EXPECT_EQ(transport->connectionNumber(), 1u);
    transport.reset();
    echo.join();
}

TEST_F(TlsTransportPair, EndsInsteadOfConnectingAnewWhileItsConnectionIsKept) {
    sendBytes(bytesOf("question"));
    listener.accept().read(8); // and closes
    transport->keepConnection(true);
    EXPECT_THROW(receive(1), NetworkError);
    EXPECT_EQ(failureOf<NetworkError>([&] { sendBytes(bytesOf("secret")); }),
              "Connection to device closed unexpectedly.[ErrorCode 104:Connection reset by peer]");
    transport->keepConnection(false);
    sendBytes(bytesOf("question"));
    EXPECT_EQ(listener.accept().read(8), bytesOf("question"));
    EXPECT_EQ(transport->connectionNumber(), 2u);
}

TEST_F(TlsTransportPair, SendsNothingBehindBytesThatNobodyAskedFor) {
    transport->ensureConnected();
    auto peer = listener.accept();
    peer.write(bytesOf("x"));
    awaitUnasked();
    EXPECT_EQ(failureOf<NetworkError>([&] { sendBytes(bytesOf("question")); }),
              "Unexpected data recieved from device.");
    EXPECT_EQ(peer.readToEnd(), Bytes{});
    sendBytes(bytesOf("question"));
    EXPECT_EQ(listener.accept().read(8), bytesOf("question"));
}

/// A TLS server that accepts one client, reads a little, says that it sends no more and breaks the
/// connection: the one order of events in which the system would raise SIGPIPE.
class BreakingServer {
public:
    explicit BreakingServer(const Certificates& certificates) {
        SSL_CTX_use_certificate_file(context_.get(), certificates.file("gateway.pem").c_str(),
                                     SSL_FILETYPE_PEM);
        SSL_CTX_use_PrivateKey_file(context_.get(), certificates.file("gateway.key").c_str(),
                                    SSL_FILETYPE_PEM);
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t size = sizeof address;
        auto* const generic = reinterpret_cast<sockaddr*>(&address);
        if (::bind(listening_, generic, size) != 0 || ::listen(listening_, 1) != 0 ||
            ::getsockname(listening_, generic, &size) != 0)
            throw std::runtime_error("cannot listen");
        port_ = std::to_string(ntohs(address.sin_port));
        thread_ = std::thread([this] { serve(); });
    }
    BreakingServer(const BreakingServer&) = delete;
    BreakingServer& operator=(const BreakingServer&) = delete;
    ~BreakingServer() {
        thread_.join();
        ::close(listening_);
    }

    const std::string& port() const { return port_; }

private:
    void serve() {
        const int socket = ::accept(listening_, nullptr, nullptr);
        const std::unique_ptr<SSL, decltype(&SSL_free)> tls(SSL_new(context_.get()), SSL_free);
        SSL_set_fd(tls.get(), socket);
        char byte = 0;
        EXPECT_EQ(SSL_accept(tls.get()), 1);
        EXPECT_EQ(SSL_read(tls.get(), &byte, 1), 1);
        ::shutdown(socket, SHUT_WR);
        const linger atOnce{1, 0};
        ::setsockopt(socket, SOL_SOCKET, SO_LINGER, &atOnce, sizeof atOnce);
        ::close(socket);
    }

    const std::unique_ptr<SSL_CTX, decltype(&SSL_CTX_free)> context_{SSL_CTX_new(TLS_server_method()),
                                                                     SSL_CTX_free};
    int listening_ = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    std::string port_;
    std::thread thread_;
};

std::atomic<int> brokenPipes = 0;

TEST_F(Tls, ReportsAPeerThatBreaksASendWithoutRaisingASignal) {
    struct sigaction counting {
    }, before{};
    counting.sa_handler = [](int) { ++brokenPipes; };
    sigaction(SIGPIPE, &counting, &before);
    const Bytes bytes(32'000'000);
    TAVOX::OutputStream request;
    request.writeBytes(bytes.size(), bytes.data());
    const BreakingServer server(*certificates);
    TlsTransport transport("127.0.0.1", server.port(), certificates->file("ca.pem"));
    const auto text = failureOf<NetworkError>([&] { transport.send(request.chunks()); });
    sigaction(SIGPIPE, &before, nullptr);
    EXPECT_EQ(text, "Error transmitting message call to device.[the connection has ended]");
    EXPECT_EQ(brokenPipes, 0);
}

TEST_F(TlsTransportPair, CanBeInterruptedWhileItAgreesOnTls) {
    support::RawListener silent;
    TlsTransport waiting("127.0.0.1", silent.portText(), certificates->file("ca.pem"));
    std::thread interrupting([&] {
        auto peer = silent.accept();
        peer.read(1);
        waiting.interrupt();
        peer.readToEnd();
    });
    EXPECT_EQ(failureOf<NetworkError>([&] { waiting.ensureConnected(); }), "Call to device interrupted.");
    interrupting.join();
}

TEST_F(TlsTransportPair, RefusesAPeerWithoutTls) {
    support::ScriptedServer plain([](support::RawListener& plainListener) {
        auto peer = plainListener.accept();
        peer.write(bytesOf("hello"));
        peer.readToEnd();
    });
    TlsTransport refusing("127.0.0.1", plain.portText(), certificates->file("ca.pem"));
    const auto text = failureOf<NetworkError>([&] { refusing.ensureConnected(); });
    EXPECT_EQ(text.substr(0, 26), "Could not agree on TLS wit");
    EXPECT_EQ(refusing.connectionNumber(), 0u);
}

TEST_F(TlsTransportPair, NamesTheFileThatCannotBeUsed) {
    EXPECT_EQ(failureOf<NetworkError>([] { TlsTransport("127.0.0.1", "1", "/nowhere.pem"); }),
              "Could not use the certificates in /nowhere.pem: No such file or directory");
}

TEST_F(TlsTransportPair, ReportsThatNobodyListens) {
    listener.stop();
    TlsTransport refused("127.0.0.1", listener.portText(), certificates->file("ca.pem"));
    EXPECT_EQ(failureOf<NetworkError>([&] { refused.ensureConnected(); }),
              "Could not connect to socket to: 127.0.0.1 port " + listener.portText() +
                  "[ErrorCode 111:Connection refused]");
}

} // namespace
