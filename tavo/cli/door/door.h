#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <thread>

#include <asio/executor_work_guard.hpp>
#include <asio/io_context.hpp>
#include <asio/steady_timer.hpp>

#include <tavo/cli/door/conversation.h>
#include <tavo/cli/door/visitor.h>
#include <tavo/cli/share/listen_address.h>

namespace TAVO::cli {

/// Lets clients of another protocol in, one at a time; those that come meanwhile wait. Its own thread moves
/// the bytes. Conversations, and with them the device, are in the thread that calls serve().
class Door {
public:
    /// Makes the conversation with a client that has come.
    using Greet = std::function<std::unique_ptr<Conversation>(Conversation::Send send)>;

    /// Listens from now on.
    /// @throws std::runtime_error where it cannot.
    Door(const ListenAddress& address, const Visitor::Bounds& bounds);
    Door(const Door&) = delete;
    Door& operator=(const Door&) = delete;
    ~Door();

    /// "listening on 127.0.0.1:40000".
    std::string place() const;

    /// Waits for a client, and serves it until it goes or its conversation is over.
    /// @throws Interrupted when a signal came; what the conversation throws.
    void serve(const Greet& greet);

private:
    std::shared_ptr<Visitor> nextVisitor();
    void accept();
    /// Until the client has ended, or the conversation is over.
    static void converse(Visitor& visitor, Conversation& conversation);
    /// For a client that sends no more, but may still listen.
    static void sayFarewell(Visitor& visitor, Conversation& conversation);

    std::string host_;
    Visitor::Bounds bounds_;
    asio::io_context context_;
    asio::executor_work_guard<asio::io_context::executor_type> work_;
    asio::ip::tcp::acceptor acceptor_;
    asio::steady_timer pause_;
    std::mutex mutex_;
    std::condition_variable changed_;
    std::shared_ptr<Visitor> entered_;
    std::thread thread_;
};

} // namespace TAVO::cli
