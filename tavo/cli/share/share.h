#pragma once

#include <chrono>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include <asio/io_context.hpp>
#include <asio/signal_set.hpp>
#include <asio/steady_timer.hpp>

#include <tavo/cli/share/device_line.h>
#include <tavo/cli/share/share_client.h>
#include <tavo/cli/share/share_log.h>
#include <tavo/cli/share/share_socket.h>

namespace TAVO::cli {

struct ShareSettings {
    std::string listenHost;
    std::uint16_t listenPort = 0;
    /// Of the socket in the file system; empty for none.
    std::string socketPath;
    /// Gives the lock back when there was no client for that long; never when empty.
    std::optional<std::chrono::milliseconds> idle;
    std::string logPath;
};

/// One connection and one lock, shared by many clients. Speaks the protocol of the device; each client has a
/// lock id of its own, and the exchanges take turns.
class Share final : private ShareClient::Owner, private DeviceLine::Owner {
public:
    using Tell = std::function<void(const std::string&)>;

    /// Listens from now on.
    /// @param account must outlive the share.
    /// @param tell is told, a line at a time, what becomes of the share.
    /// @throws Failure (usage), std::runtime_error where it cannot listen.
    Share(const ShareSettings& settings, const Account& account, DeviceLine::Access access, Tell tell);
    ~Share() override;

    /// Opens the device, and serves until a signal comes. The exchange that runs then is finished.
    /// @throws what the opening of the device throws the first time.
    void run();

private:
    using Listener = server::Listener<asio::ip::tcp>;
    using LocalListener = server::Listener<asio::local::stream_protocol>;

    void serve(ShareClient& client, Plan::Bytes request) override;
    void refuse(ShareClient& client) override;
    void holdReply(ShareClient& client, bool held) override;
    void left(ShareClient& client) override;
    bool othersWait() const override { return !waiting_.empty() || isEnding_; }
    server::Clients& clients() override { return clients_; }

    void lineOpened(const DeviceLine::Methods& ofDevice, const DeviceLine::Methods& ofSystem) override;
    void lineLost(const std::exception& exception) override;
    void lineReleased() override;
    void turnAnswered(const Turn& turn) override;
    void turnEnded(Turn& turn) override;

    void enter(server::Socket socket);
    void queue(ShareClient& client);
    void nextTurn();
    void refuseWaiting(const std::exception& exception);
    void retryLater();
    void awaitIdleness();
    void awaitSignal();
    void end(int signal);
    void stopWhenDone();
    void watchServed();
    void logRequest(const ShareClient& client, const Turn& turn, bool wasAnswered);

    ShareSettings settings_;
    const Account& account_;
    Tell tell_;
    ShareLog log_;
    asio::io_context context_;
    Grants grants_;
    Descriptions descriptions_;
    server::Clients clients_;
    std::uint64_t connections_ = 0;
    std::deque<std::weak_ptr<ShareClient>> waiting_; ///< in the order of their turns
    ShareClient* served_ = nullptr;                  ///< whose calls the device executes
    DeviceLine line_;
    bool wasOpened_ = false;
    std::exception_ptr openingFailure_;
    unsigned failures_ = 0;
    asio::steady_timer retry_;
    asio::steady_timer idle_;
    asio::steady_timer watch_;
    asio::signal_set signals_;
    bool isEnding_ = false;
    std::unique_ptr<share_socket::File> file_;
    std::unique_ptr<LocalListener> localListener_;
    Listener listener_;
};

} // namespace TAVO::cli
