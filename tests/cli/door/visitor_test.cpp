#include <tavo/cli/door/visitor.h>

#include <chrono>
#include <memory>
#include <optional>
#include <thread>
#include <utility>
#include <vector>

#include <asio/executor_work_guard.hpp>
#include <asio/io_context.hpp>
#include <asio/ip/tcp.hpp>
#include <gtest/gtest.h>

#include <tests/simulator/raw_client.h>
#include <tests/support/soon.h>

namespace {

using namespace std::chrono_literals;
using support::Bytes;
using support::RawClient;
using TAVO::cli::Visitor;

/// A client, and its connection on the side of a server.
class VisitorTest : public testing::Test {
    // Outlives the visitor.
    asio::io_context context_;
    asio::executor_work_guard<asio::io_context::executor_type> work_{context_.get_executor()};
    std::thread thread_{[this] { context_.run(); }};

protected:
    ~VisitorTest() override {
        context_.stop();
        thread_.join();
    }

    void let(const Visitor::Bounds& bounds) {
        auto acceptor = TAVO::server::listenOn(context_, "127.0.0.1", 0);
        client.emplace(acceptor.local_endpoint().port());
        visitor = std::make_shared<Visitor>(TAVO::server::Socket(acceptor.accept()), bounds);
        visitor->start();
    }

    std::optional<RawClient> client;
    std::shared_ptr<Visitor> visitor;
    Bytes taken;
};

TEST_F(VisitorTest, LosesWhatItSentWhenItIsLongGone) {
    let({.finishing = 200ms});
    ASSERT_TRUE(client->send(Bytes(100'000, 'x')));
    ASSERT_EQ(visitor->take(taken, std::nullopt), Visitor::Arrival::bytes);
    client->finishSending();
    EXPECT_TRUE(support::soon([&] {
        try {
            visitor->send({});
            return false;
        } catch (const Visitor::Gone&) {
            return true;
        }
    }));
    EXPECT_EQ(visitor->take(taken, std::nullopt), Visitor::Arrival::end) << "and not the rest";
    EXPECT_EQ(taken, Bytes());
    visitor->stopTellingOfEnd();
    EXPECT_NO_THROW(visitor->send(Bytes{'x'}));
    EXPECT_EQ(client->receive(), Bytes{'x'});
    visitor->close();
}

TEST_F(VisitorTest, HasAllThatItSentBeforeItsEndTaken) {
    let({});
    ASSERT_TRUE(client->send(Bytes(100'000, 'x')));
    client.reset();
    Bytes all;
    while (visitor->take(taken, std::nullopt) == Visitor::Arrival::bytes)
        all.insert(all.end(), taken.begin(), taken.end());
    EXPECT_EQ(all, Bytes(100'000, 'x'));
    visitor->close();
}

TEST_F(VisitorTest, IsClosedIfItTakesNothingForTooLong) {
    let({.received = 1000, .unsent = 1000, .untaken = 200ms});
    // Its end is behind what is not read.
    ASSERT_TRUE(client->send(Bytes(200'000, 'x')));
    client->finishSending();
    EXPECT_TRUE(support::soon([&] {
        visitor->send(Bytes(1'000'000, 'y'));
        return visitor->awaitGoing(0ms);
    }));
    visitor->close();
}

} // namespace
