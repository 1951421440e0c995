#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include <asio/steady_timer.hpp>

#include <tavo/cli/share/turn.h>
#include <tavo/server/clients.h>
#include <tavo/server/listener.h>
#include <tavo/server/request_assembler.h>

namespace TAVO::cli {

/// One connection of a client: reads a request, waits for its reply to be written, reads the next.
class ShareClient final : public server::Client,
                          public ReplyTarget,
                          public std::enable_shared_from_this<ShareClient> {
public:
    using Bytes = std::vector<std::uint8_t>;

    /// The share, as its clients know it.
    class Owner {
    public:
        virtual ~Owner() = default;
        virtual void serve(ShareClient& client, Bytes request) = 0;
        /// Answers a request that is too large, and closes the connection.
        virtual void refuse(ShareClient& client) = 0;
        /// The client takes its reply too slowly to go on, or goes on taking it.
        virtual void holdReply(ShareClient& client, bool held) = 0;
        virtual void left(ShareClient& client) = 0;
        /// Whether other clients wait for the device.
        virtual bool othersWait() const = 0;
        virtual server::Clients& clients() = 0;
    };

    ShareClient(Owner& owner, server::Socket socket, std::uint64_t number);

    void start();
    /// Closes the connection when the reply has been sent. @param gently waits until the client, which may
    /// still be sending, has read it.
    void closeAfterReply(bool gently);
    /// Whether the client has closed the connection, or its sending side.
    bool hasEndedSending();
    std::uint64_t number() const { return number_; }
    /// Who is at the other end: "127.0.0.1:40000", or "process 4711" on this machine.
    const std::string& peer() const { return peer_; }

    void close() override;
    Time active() const override { return active_; }
    std::size_t heldBytes() const override { return heldBytes_; }
    bool isSpared() const override { return turn_ != nullptr; }

    void append(std::span<const std::uint8_t> bytes) override;
    void finish() override;
    void abandon() override { close(); }

    /// The request that is served.
    const std::shared_ptr<Turn>& turn() const { return turn_; }
    void setTurn(std::shared_ptr<Turn> turn) { turn_ = std::move(turn); }

private:
    void read();
    void take(std::size_t count);
    void next();
    void write();
    std::size_t unwritten() const { return writing_.size() - writtenBytes_ + waiting_.size(); }
    /// Takes up what waits to be written. Returns false if nothing does.
    bool refill();
    void awaitRoom();
    void closeGently();
    void discard();
    void replied();
    void setHolding(bool holding);
    void limitStall();
    /// Returns false if it closed the connection because too much is kept.
    bool note();
    template <class Action>
    void attempt(Action action);

    Owner& owner_;
    server::Socket socket_;
    asio::steady_timer stall_;
    std::uint64_t number_;
    std::string peer_;
    std::array<std::uint8_t, 65536> received_;
    server::RequestAssembler assembler_;
    std::shared_ptr<Turn> turn_;
    Bytes waiting_; ///< to be written next
    Bytes writing_;
    std::size_t writtenBytes_ = 0; ///< of writing_
    bool isWriting_ = false;
    bool isReplyWhole_ = false;
    bool isHolding_ = false;
    bool closesAfterReply_ = false;
    bool closesGently_ = false;
    bool closed_ = false;
    Time active_ = std::chrono::steady_clock::now();
    std::size_t heldBytes_ = 0;
};

} // namespace TAVO::cli
