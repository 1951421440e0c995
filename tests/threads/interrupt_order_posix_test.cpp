#include <atomic>
#include <chrono>
#include <cstdint>
#include <ctime>
#include <functional>
#include <future>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include <pthread.h>
#include <sched.h>

#include <gtest/gtest.h>

#include <tavo/client/wire/error.h>
#include <tavo/client/wire/interrupter.h>
#include <tavo/client/wire/socket_transport.h>
#include <tests/support/failure_text.h>
#include <tests/support/raw_server.h>
#include <tests/support/shut_down_hook.h>

namespace {

using namespace std::chrono_literals;
using support::Bytes;
using support::bytesOf;
using support::failureOf;
using TAVO::Interrupter;
using TAVO::NetworkError;
using TAVO::SocketTransport;

/// Holds the threads that are about to cut a connection until they are let go.
class HeldInterrupts {
public:
    /// How many have come so far.
    int count() const { return count_; }
    void awaitFirst() {
        while (count_ == 0)
            std::this_thread::yield();
    }
    void letGo() { open_.raise(); }

private:
    support::Signal open_;
    std::atomic<int> count_ = 0;
    support::ShutDownHook hook_{[this] {
        ++count_;
        open_.await();
    }};
};

class InterruptOrder : public testing::Test {
protected:
    support::GuardedListener listener;
    std::shared_ptr<Interrupter> interrupter = std::make_shared<Interrupter>();
    SocketTransport transport{"127.0.0.1", listener.portText(), interrupter};
    support::RawConnection peer{listener.accept()};

    void sendText(const std::string& text) {
        const auto bytes = bytesOf(text);
        transport.sendAll(bytes.data(), bytes.size());
    }
};

TEST_F(InterruptOrder, ASocketIsNotClosedWhileAnotherThreadIsAboutToCutIt) {
    HeldInterrupts held;
    std::thread interrupting([&] { interrupter->interrupt(); });
    held.awaitFirst();
    auto closing = std::async(std::launch::async, [&] { transport.close(); });
    EXPECT_EQ(closing.wait_for(200ms), std::future_status::timeout)
        << "by now its number could belong to somebody else";
    held.letGo();
    closing.get();
    interrupting.join();
    EXPECT_EQ(peer.readToEnd(), Bytes{});
}

TEST_F(InterruptOrder, OneInterruptOfAnIdleConnectionEndsNothingMore) {
    HeldInterrupts held;
    std::thread interrupting([&] { interrupter->interrupt(); });
    held.awaitFirst();
    auto sending = std::async(std::launch::async, [&] { sendText("question"); });
    EXPECT_EQ(sending.wait_for(50ms), std::future_status::timeout);
    held.letGo();
    sending.get();
    interrupting.join();
    auto next = listener.accept();
    EXPECT_EQ(next.read(8), bytesOf("question"));
    next.write(bytesOf("answer"));
    Bytes answer(6);
    transport.receiveAll(answer.data(), answer.size());
    EXPECT_EQ(answer, bytesOf("answer"));
    EXPECT_EQ(held.count(), 1);
}

TEST_F(InterruptOrder, OnlyOneThreadActsAndNoOtherWaits) {
    HeldInterrupts held;
    std::thread interrupting([&] { interrupter->interrupt(); });
    held.awaitFirst();
    for (int i = 0; i < 1000; ++i)
        interrupter->interrupt();
    EXPECT_EQ(held.count(), 1);
    held.letGo();
    interrupting.join();
    interrupter->interrupt();
    EXPECT_EQ(held.count(), 2) << "it can be interrupted again";
}

TEST_F(InterruptOrder, AFormerConnectionIsAwaitedBeforeAnotherTakesItsPlace) {
    HeldInterrupts held;
    std::thread interrupting([&] { interrupter->interrupt(); });
    held.awaitFirst();
    auto connecting = std::async(std::launch::async, [&] {
        return std::make_unique<SocketTransport>("127.0.0.1", listener.portText(), interrupter);
    });
    auto latterPeer = listener.accept();
    EXPECT_EQ(connecting.wait_for(50ms), std::future_status::timeout);
    held.letGo();
    interrupting.join();
    auto latter = connecting.get();
    EXPECT_EQ(peer.readToEnd(), Bytes{});

    transport.close();
    latter->sendAll(bytesOf("question").data(), 8);
    EXPECT_EQ(latterPeer.read(8), bytesOf("question"));
    interrupter->interrupt();
    EXPECT_EQ(latterPeer.readToEnd(), Bytes{});
}

std::chrono::nanoseconds computingTimeOfThisThread() {
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
}

/// What it costs the device's thread to close a connection while the thread that cuts it is held for 300 ms.
std::chrono::nanoseconds computingTimeOfAHeldClose(Interrupter& interrupter, SocketTransport& transport,
                                                   const std::function<void()>& prepareThread) {
    HeldInterrupts held;
    std::thread interrupting([&] { interrupter.interrupt(); });
    held.awaitFirst();
    std::chrono::nanoseconds taken{};
    std::thread closing([&] {
        prepareThread();
        const auto before = computingTimeOfThisThread();
        transport.close();
        taken = computingTimeOfThisThread() - before;
    });
    std::this_thread::sleep_for(300ms);
    held.letGo();
    closing.join();
    interrupting.join();
    return taken;
}

/// All threads of this one run on the same processor, as long as it lives.
class OneProcessor {
public:
    OneProcessor() {
        pthread_getaffinity_np(pthread_self(), sizeof before_, &before_);
        cpu_set_t one;
        CPU_ZERO(&one);
        CPU_SET(sched_getcpu(), &one);
        pthread_setaffinity_np(pthread_self(), sizeof one, &one);
    }
    OneProcessor(const OneProcessor&) = delete;
    OneProcessor& operator=(const OneProcessor&) = delete;
    ~OneProcessor() { pthread_setaffinity_np(pthread_self(), sizeof before_, &before_); }

private:
    cpu_set_t before_{};
};

TEST_F(InterruptOrder, AThreadOfRealTimeLetsTheOtherOneGoOn) {
    const OneProcessor one;
    bool permitted = false;
    const auto becomeRealTime = [&] {
        const sched_param lowest{sched_get_priority_min(SCHED_FIFO)};
        permitted = pthread_setschedparam(pthread_self(), SCHED_FIFO, &lowest) == 0;
    };
    const auto taken = computingTimeOfAHeldClose(*interrupter, transport, becomeRealTime);
    if (!permitted)
        GTEST_SKIP() << "no thread of real time is permitted";
    EXPECT_LT(taken, 150ms);
}

/// Interrupts in many threads, without a pause.
class Storm {
public:
    explicit Storm(Interrupter& interrupter) {
        for (int i = 0; i < 8; ++i)
            threads_.emplace_back([&] {
                while (!done_)
                    interrupter.interrupt();
            });
    }
    Storm(const Storm&) = delete;
    Storm& operator=(const Storm&) = delete;
    ~Storm() {
        done_ = true;
        for (auto& thread : threads_)
            thread.join();
    }

private:
    std::atomic<bool> done_ = false;
    std::vector<std::thread> threads_;
};

TEST_F(InterruptOrder, ManyThreadsThatInterruptWithoutAPauseHoldNothingUp) {
    const auto begin = std::chrono::steady_clock::now();
    {
        const Storm storm(*interrupter);
        for (int i = 0; i < 10; ++i) {
            EXPECT_EQ(failureOf<NetworkError>([&] {
                          sendText("question");
                          std::uint8_t byte = 0;
                          transport.receiveAll(&byte, 1);
                      }),
                      "Call to device interrupted.");
            transport.close();
        }
    }
    EXPECT_LT(std::chrono::steady_clock::now() - begin, 20s);
    sendText("again");
    transport.close();
}

} // namespace
