#include <tests/hostile/conversation_peer.h>

#include <algorithm>
#include <chrono>
#include <stdexcept>
#include <thread>
#include <utility>

#include <tests/hostile/positions.h>
#include <tests/hostile/reply_model.h>

namespace hostile {

namespace {

constexpr std::chrono::milliseconds pause{1};

} // namespace

ConversationPeer::ConversationPeer()
    : server_([this](support::RawListener& listener) { play(listener); }) {}

ConversationPeer::~ConversationPeer() {
    const std::lock_guard lock(mutex_);
    quitting_ = true;
    changed_.notify_all();
}

std::string ConversationPeer::refusal() const { return refusedAt(server_.portText()); }

void ConversationPeer::start(const Conversation& conversation, const Plan& plan) {
    const std::lock_guard lock(mutex_);
    conversation_ = &conversation;
    plan_ = plan;
    place_ = 0;
    log_.clear();
    finishing_ = false;
    running_ = true;
    changed_.notify_all();
}

std::vector<std::string> ConversationPeer::finish() {
    finishing_ = true;
    std::unique_lock lock(mutex_);
    if (!changed_.wait_for(lock, support::patience, [this] { return !running_; }))
        throw std::runtime_error("the peer does not end the conversation");
    return std::move(log_);
}

void ConversationPeer::play(support::RawListener& listener) {
    std::unique_lock lock(mutex_);
    while (true) {
        changed_.wait(lock, [this] { return running_ || quitting_; });
        if (quitting_)
            return;
        lock.unlock();
        converse(listener);
        lock.lock();
        running_ = false;
        changed_.notify_all();
    }
}

void ConversationPeer::converse(support::RawListener& listener) {
    while (true) {
        const bool last = finishing_; // a client that came and went meanwhile is still seen
        if (listener.hasWaitingClient())
            serve(listener, listener.accept());
        else if (last)
            break;
        else
            std::this_thread::sleep_for(pause);
    }
    if (plan_.gone)
        listener.listen();
}

void ConversationPeer::serve(support::RawListener& listener, support::RawConnection connection) {
    log_.push_back("connection");
    while (connection.isOpen()) {
        if (!connection.hasInput(support::patience))
            throw std::runtime_error("waited too long for the client");
        if (connection.atEnd())
            return;
        if (place_++ != plan_.place) {
            answer(connection);
            continue;
        }
        if (plan_.gone)
            listener.stop();
        const auto& exchange = (*conversation_)[*plan_.place];
        log_.push_back(exchange.name);
        act(connection, exchange);
        if (!plan_.goesOn)
            connection.close();
    }
}

const Exchange* ConversationPeer::exchangeOf(const Bytes& request) const {
    for (const auto* afterwards : {&callAfterwards(), &keyAfterwards()})
        if (request == afterwards->request)
            return afterwards;
    const auto& all = conversation_->exchanges;
    const auto found = std::find_if(all.begin(), all.end(),
                                    [&](const auto& exchange) { return exchange.request == request; });
    return found == all.end() ? nullptr : &*found;
}

void ConversationPeer::act(support::RawConnection& connection, const Exchange& exchange) {
    try {
        plan_.action(connection, exchange);
    } catch (const std::exception&) {
        // A client that finds a large reply wrong may have gone before the reply is sent. Whether it has
        // reason to is told by what it says.
        connection.close();
        if (exchange.reply.size() <= smallReply)
            throw;
    }
}

void ConversationPeer::answer(support::RawConnection& connection) {
    const auto request = connection.readRequest();
    const auto* exchange = exchangeOf(request);
    log_.push_back(exchange ? exchange->name
                            : "unknown request of " + std::to_string(request.size()) + " bytes");
    if (exchange)
        connection.write(exchange->reply);
    else
        connection.close();
}

} // namespace hostile
