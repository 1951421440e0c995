#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <vector>

#include <tavo/cli/share/plan.h>
#include <tavo/server/reply_scanner.h>

namespace TAVO::cli {

/// Where a reply goes.
class ReplyTarget {
public:
    virtual ~ReplyTarget() = default;
    virtual void append(std::span<const std::uint8_t> bytes) = 0;
    /// The reply is complete.
    virtual void finish() = 0;
    /// There will be no reply.
    virtual void abandon() = 0;
};

/// One request of a client, from its arrival to the last byte of the reply. Puts the results that come from
/// the device and those given here together, in the order of the calls.
class Turn final : public server::ReplyReceiver {
public:
    using Clock = std::chrono::steady_clock;

    Turn(Plan::Bytes request, FrontDesk desk, ReplyTarget& target);

    Plan& plan() { return plan_; }
    const Plan& plan() const { return plan_; }
    bool needsDevice() const { return plan_.callsForDevice() > 0; }
    Clock::time_point begin() const { return begin_; }
    /// The code of the error in the reply; 0 for none.
    std::uint32_t errorCode() const { return errorCode_; }
    /// Whether what the device told about a change of itself makes its descriptions worthless.
    bool staleDescriptions() const { return stale_; }

    /// The client has gone; what the device still sends is read and dropped.
    void dropTarget() { target_ = nullptr; }
    /// Answers without the device.
    void answerAlone();
    /// Answers that the device cannot be reached because of that error.
    void refuse(std::uint32_t code, const std::string& message);
    /// The device is lost.
    void abandon();
    /// The reply of the device is complete. Keeps the descriptions in it.
    void complete();

    void head(std::span<const std::uint8_t> status, const std::optional<server::ErrorFrame>& error,
              std::uint32_t resultCount) override;
    void resultBegins(std::uint32_t size) override;
    void resultBytes(std::span<const std::uint8_t> bytes) override;
    void resultEnds() override;

private:
    void append(std::span<const std::uint8_t> bytes);
    void appendResult(std::span<const std::uint8_t> result);
    /// Adds the answers given here that come next.
    void appendAnswers();
    std::uint32_t resultsWith(const server::ErrorFrame& error, std::uint32_t resultCount) const;
    bool concernsKnownObject(const server::ErrorFrame& error, std::uint32_t resultCount) const;
    const Plan::Description* describedNow() const;

    Plan plan_;
    Descriptions& descriptions_;
    ReplyTarget* target_;
    Clock::time_point begin_ = Clock::now();
    std::uint32_t errorCode_ = 0;
    bool stale_ = false;

    std::uint32_t index_ = 0;  ///< of the next call of the request that gets a result
    std::uint32_t wanted_ = 0; ///< the number of results of the reply
    std::size_t nextAnswer_ = 0;
    std::size_t nextDescription_ = 0;
    std::optional<Plan::Bytes> learning_; ///< the description that arrives
    std::vector<std::pair<server::CallFrame, Plan::Bytes>> learned_;
    std::size_t learnedBytes_ = 0;
};

} // namespace TAVO::cli
