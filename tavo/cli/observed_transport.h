#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <span>

#include <tavo/cli/waiting_line.h>
#include <tavo/client/wire/transport.h>

namespace TAVO::cli {

/// What is known about the answers of a device. Outlives the connection.
struct Answers {
    /// Whether there has ever been a connection.
    bool connected = false;
    /// Whether anything has ever come.
    bool any = false;
    /// Whether something of the last exchange has come.
    bool begun = false;
};

/// A connection that tells when the device answers.
class ObservedTransport final : public Transport {
public:
    /// @param waiting ends with the first answer.
    /// @param patient the time limit begins to hold with the first answer.
    ObservedTransport(std::unique_ptr<Transport> connection, std::shared_ptr<Answers> answers,
                      std::unique_ptr<WaitingLine> waiting, bool patient);

    void send(const TAVOX::OutputStream::Chunks& request) override;
    void receiveAll(std::uint8_t* buffer, std::uint64_t length) override;
    const std::uint8_t* receiveInPlace(std::uint64_t length) override;
    std::span<const std::uint8_t> held() const noexcept override { return connection_->held(); }
    void interrupt() noexcept override { connection_->interrupt(); }
    bool renew() noexcept override { return connection_->renew(); }
    bool hasUnaskedBytes() noexcept override { return connection_->hasUnaskedBytes(); }
    void ensureConnected() override { connection_->ensureConnected(); }
    std::uint64_t connectionNumber() const noexcept override { return connection_->connectionNumber(); }
    void keepConnection(bool kept) noexcept override { connection_->keepConnection(kept); }
    bool isConnected() const noexcept override { return connection_->isConnected(); }
    void setTimeLimit(TimeLimit limit) override;
    TimeLimit timeLimit() const noexcept override { return limit_; }

private:
    bool isUnlimited() const { return patient_ && !answers_->any; }
    void noteAnswer();

    std::unique_ptr<Transport> connection_;
    std::shared_ptr<Answers> answers_;
    std::unique_ptr<WaitingLine> waiting_;
    bool patient_;
    TimeLimit limit_;
};

} // namespace TAVO::cli
