#include <atomic>
#include <chrono>
#include <csignal>
#include <thread>

#include <pthread.h>

#include <gtest/gtest.h>

#include <tavo/client/wire/error.h>
#include <tavo/client/wire/socket_transport.h>
#include <tests/support/failure_text.h>
#include <tests/support/raw_server.h>

namespace {

using namespace std::chrono_literals;

void doNothing(int) {}

/// Sends a signal to the thread that makes it, again and again until it is destroyed.
class Signals {
public:
    Signals() {
        struct sigaction action {};
        action.sa_handler = doNothing;
        ::sigaction(SIGUSR1, &action, &before_);
        other_ = std::thread([this, caller = ::pthread_self()] {
            while (!done_) {
                std::this_thread::sleep_for(5ms);
                ::pthread_kill(caller, SIGUSR1);
            }
        });
    }
    Signals(const Signals&) = delete;
    Signals& operator=(const Signals&) = delete;
    ~Signals() {
        done_ = true;
        other_.join();
        ::sigaction(SIGUSR1, &before_, nullptr);
    }

private:
    struct sigaction before_ {};
    std::atomic<bool> done_ = false;
    std::thread other_;
};

TEST(LimitedTransportOnPosix, IsHeldUpByNoSignals) {
    support::GuardedListener listener;
    TAVO::SocketTransport transport("127.0.0.1", listener.portText());
    transport.setTimeLimit(200ms);
    auto peer = listener.accept();
    const Signals signals;
    const std::uint8_t byte = 1;
    transport.sendAll(&byte, 1);
    std::uint8_t received = 0;
    EXPECT_EQ(support::failureOf<TAVO::NetworkError>([&] { transport.receiveAll(&received, 1); }),
              "Call to device timed out.");
}

TEST(LimitedTransportOnPosix, TakesNoSignalForItsEnd) {
    support::ScriptedServer slow([](support::RawListener& port) {
        auto client = port.accept();
        client.read(1);
        std::this_thread::sleep_for(100ms);
        client.write({9});
    });
    TAVO::SocketTransport transport("127.0.0.1", slow.portText(), nullptr, 1h);
    const Signals signals;
    const std::uint8_t byte = 1;
    transport.sendAll(&byte, 1);
    std::uint8_t received = 0;
    transport.receiveAll(&received, 1);
    EXPECT_EQ(received, 9);
}

} // namespace
