#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include <tavo/cli/account.h>
#include <tavo/cli/share/descriptions.h>
#include <tavo/cli/share/grants.h>
#include <tavo/server/frames.h>

namespace TAVO::cli {

/// What a client sees of the share besides the device.
struct FrontDesk {
    const Account& account; ///< who shares the device; a client must show the same
    Grants& grants;
    Descriptions& descriptions;
};

/// Which calls of a client's request the device is asked, and the answers to the others.
class Plan {
public:
    using Bytes = std::vector<std::uint8_t>;

    /// An answer given here, in the place of that call of the request.
    struct Answer {
        std::uint32_t index = 0;
        Bytes result;
    };
    struct Description {
        std::uint32_t index = 0;
        server::CallFrame call;
    };

    Plan(Bytes request, FrontDesk desk);
    Plan(const Plan&) = delete;
    Plan& operator=(const Plan&) = delete;

    /// How many calls get a result, unless the device refuses one.
    std::uint32_t callCount() const { return callCount_; }
    std::uint32_t callsForDevice() const { return callCount_ - static_cast<std::uint32_t>(answers_.size()); }
    /// In the order of the calls.
    const std::vector<Answer>& answers() const { return answers_; }
    /// Calls for the device whose results are to be kept. In the order of the calls.
    const std::vector<Description>& descriptions() const { return descriptions_; }
    /// Why the calls end here, as far as this is known without the device.
    const std::optional<server::ErrorFrame>& error() const { return error_; }
    /// Whether the device may describe itself anew afterwards.
    bool bringsChange() const { return bringsChange_; }
    /// The call at that place among those for the device.
    server::CallFrame callForDevice(std::uint32_t position) const;
    /// The place in the request of the call at that place among those for the device.
    std::uint32_t indexOf(std::uint32_t position) const;

    /// The request for the device. Valid as long as the plan.
    std::span<const std::uint8_t> requestForDevice(std::uint32_t lockId);
    std::size_t heldBytes() const { return request_.size() + composed_.size() + answerBytes_; }
    /// The calls of the request by their names, each name once.
    std::vector<std::string> callNames(const Descriptions& descriptions) const;

private:
    void take(const server::CallFrame& call, CallMeaning meaning, FrontDesk& desk);
    void describe(const server::CallFrame& call, const FrontDesk& desk);
    void lock(const server::CallFrame& call, FrontDesk& desk);
    void unlock(const server::CallFrame& call, FrontDesk& desk);
    void login(const server::CallFrame& call, FrontDesk& desk);
    bool requireCredentials(const server::CallFrame& call, const FrontDesk& desk);
    void answer(Bytes result);
    void fail(std::uint32_t code, std::string message);

    Bytes request_;
    Bytes composed_;
    std::uint32_t clientLockId_ = 0;
    bool isAuthorised_ = false;
    bool bringsChange_ = false;
    std::uint32_t callCount_ = 0;
    std::size_t answerBytes_ = 0;
    std::vector<Answer> answers_;
    std::vector<Description> descriptions_;
    std::optional<server::ErrorFrame> error_;
};

} // namespace TAVO::cli
