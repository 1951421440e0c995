#include <tavo/cli/door/door.h>

#include <algorithm>
#include <chrono>
#include <utility>
#include <vector>

#include <asio/post.hpp>
#include <fmt/format.h>

#include <tavo/cli/interrupt.h>

namespace TAVO::cli {

Door::Door(const ListenAddress& address, const Visitor::Bounds& bounds)
    : host_(address.host)
    , bounds_(bounds)
    , work_(context_.get_executor())
    , acceptor_(server::listenOn(context_, address.host, address.port))
    , pause_(context_)
    , thread_([this] { context_.run(); }) {}

Door::~Door() {
    context_.stop();
    thread_.join();
}

std::string Door::place() const {
    const bool isV6 = host_.find(':') != std::string::npos;
    return fmt::format("listening on {}:{}", isV6 ? '[' + host_ + ']' : host_,
                       acceptor_.local_endpoint().port());
}

void Door::accept() {
    acceptor_.async_accept([this](const asio::error_code& failure, asio::ip::tcp::socket socket) {
        if (!failure) {
            server::keepFromStartedPrograms(socket.native_handle());
            asio::error_code ignored;
            socket.set_option(asio::ip::tcp::no_delay(true), ignored);
            socket.set_option(asio::socket_base::keep_alive(true), ignored);
            const std::lock_guard lock(mutex_);
            entered_ = std::make_shared<Visitor>(server::Socket(std::move(socket)), bounds_);
            return changed_.notify_all();
        }
        // The client has gone again, or descriptors are short.
        pause_.expires_after(std::chrono::milliseconds(50));
        pause_.async_wait([this](const asio::error_code& cancelled) {
            if (!cancelled)
                accept();
        });
    });
}

std::shared_ptr<Visitor> Door::nextVisitor() {
    asio::post(context_, [this] { accept(); });
    std::unique_lock lock(mutex_);
    while (!entered_) {
        changed_.wait_for(lock, std::chrono::milliseconds(50));
        InterruptWatch::throwIfInterrupted();
    }
    return std::exchange(entered_, nullptr);
}

void Door::serve(const Greet& greet) {
    const auto visitor = nextVisitor();
    visitor->start();
    try {
        const auto conversation = greet([&](std::span<const std::uint8_t> bytes) { visitor->send(bytes); });
        try {
            converse(*visitor, *conversation);
        } catch (const Visitor::Gone&) { // within what it sent
        }
        visitor->stopTellingOfEnd();
        conversation->end();
        visitor->finish();
    } catch (...) {
        visitor->close();
        throw;
    }
}

void Door::converse(Visitor& visitor, Conversation& conversation) {
    using Milliseconds = Conversation::Milliseconds;
    std::vector<std::uint8_t> bytes;
    Milliseconds silence(0);
    std::optional<Milliseconds> patience(0);
    for (;;) {
        const auto arrival = visitor.take(bytes, patience);
        if (arrival == Visitor::Arrival::end)
            return sayFarewell(visitor, conversation);
        if (arrival == Visitor::Arrival::bytes) {
            if (!conversation.receive(bytes))
                return;
            silence = Milliseconds(0);
            patience = Milliseconds(0);
            continue;
        }
        silence += *patience;
        patience = conversation.pause(silence);
        if (patience)
            *patience -= silence;
    }
}

void Door::sayFarewell(Visitor& visitor, Conversation& conversation) {
    using Milliseconds = Conversation::Milliseconds;
    using Clock = std::chrono::steady_clock;
    const auto end = Clock::now() + conversation.farewell();
    Milliseconds silence(0);
    for (;;) {
        const auto left = std::chrono::ceil<Milliseconds>(end - Clock::now());
        if (left <= Milliseconds(0))
            return;
        const auto next = conversation.pause(silence);
        if (!next || visitor.awaitGoing(std::min(*next - silence, left)))
            return;
        silence = *next;
    }
}

} // namespace TAVO::cli
