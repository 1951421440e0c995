#pragma once

#include <atomic>
#include <condition_variable>
#include <cstddef>
#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include <tests/hostile/conversation.h>
#include <tests/support/raw_server.h>

namespace hostile {

/// What the device does at one place of the conversation, instead of answering.
struct Plan {
    /// Gets the connection before the request is read.
    using Action = std::function<void(support::RawConnection&, const Exchange&)>;

    /// None for a device that does nothing but answer.
    std::optional<std::size_t> place = std::nullopt;
    Action action = {};
    /// From then on nobody can connect.
    bool gone = false;
    /// The connection lives on after the action.
    bool goesOn = false;
};

/// Plays the device's side of conversations, one after the other, on one port.
class ConversationPeer {
public:
    ConversationPeer();
    ConversationPeer(const ConversationPeer&) = delete;
    ConversationPeer& operator=(const ConversationPeer&) = delete;
    ~ConversationPeer();

    int port() const { return server_.port(); }
    /// What a client is told that cannot connect.
    std::string refusal() const;

    /// @param conversation must live until it is finished.
    void start(const Conversation& conversation, const Plan& plan);
    /// Ends the conversation when the client has closed its connection. Returns "connection" for each
    /// connection and the names of the exchanges that were requested on it.
    std::vector<std::string> finish();

private:
    void play(support::RawListener& listener);
    void converse(support::RawListener& listener);
    void serve(support::RawListener& listener, support::RawConnection connection);
    void act(support::RawConnection& connection, const Exchange& exchange);
    void answer(support::RawConnection& connection);
    const Exchange* exchangeOf(const Bytes& request) const;

    std::mutex mutex_;
    std::condition_variable changed_;
    bool running_ = false;
    bool quitting_ = false;
    std::atomic<bool> finishing_ = false;

    const Conversation* conversation_ = nullptr;
    Plan plan_;
    std::size_t place_ = 0;
    std::vector<std::string> log_;
    support::ScriptedServer server_;
};

} // namespace hostile
